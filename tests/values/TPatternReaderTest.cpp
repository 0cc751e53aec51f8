// How whole patterns read stands in ValueMapTest.cpp; here is what no pattern can show.
#include "inmem/values/TPatternReader.h"

#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace havtest {
namespace {

using NORVHAV20::TPatternReader;

// The two ways to read the same: a stream, and the reader.
class TStreamReader {
 public:
  explicit TStreamReader(std::string_view text) : m_in{std::string(text)} {
    m_in.imbue(std::locale::classic());
    m_in.unsetf(std::ios::basefield);
  }
  std::uint64_t ReadNumber() {
    std::uint64_t number = 0;
    m_in >> number;
    return number;
  }
  bool ReadCharacter(char expected) {
    char c = 0;
    return m_in >> c && c == expected;
  }

 private:
  std::istringstream m_in;
};

// What reads of numbers (n) and points give, one after the other.
template <class TReader>
std::string Reads(std::string_view text, std::string_view what) {
  TReader reader(text);
  std::string said;
  for (const char c : what)
    said += (c == 'n'                  ? std::to_string(reader.ReadNumber())
             : reader.ReadCharacter(c) ? "yes"
                                       : "no") +
            " ";
  return said;
}

void ExpectReadsAsAStream(std::string_view text) {
  for (const std::string_view what : {"n..n", "nn.", ".n"})
    ASSERT_EQ(Reads<TPatternReader>(text, what), Reads<TStreamReader>(text, what)) << text;
}

TEST(TPatternReader, ReadsEveryShortTextAsAStreamDoes) {
  // With what stands beside the digits, the letters and the blanks.
  constexpr std::string_view kBytes("0179/:8afg@AFGxX`+-. \t\r\x08\x0E\x01\xFF\0", 29);
  for (const char a : kBytes) {
    ExpectReadsAsAStream({&a, 1});
    for (const char b : kBytes)
      for (const char c : kBytes) {
        const char text[] = {a, b, c, '5', '.', '2'};
        ExpectReadsAsAStream({text, 2});
        ExpectReadsAsAStream({text, 3});
        ExpectReadsAsAStream({text, 6});
      }
  }
}

TEST(TPatternReader, ReadsEveryByteAfterANumberAsAStreamDoes) {
  for (const std::string number : {"", "3", "07", "0x1", "-", "0x", "0"})
    for (int byte = 0; byte < 256; ++byte)
      ExpectReadsAsAStream(number + static_cast<char>(byte) + "1.");
}

TEST(TPatternReader, ReadsNumbersOfEveryLengthAsAStreamDoes) {
  for (const std::string sign : {"", "-", "+"})
    for (const std::string prefix : {"", "0", "0x", "0X"})
      for (const std::string digits : {"1", "3", "7", "9", "f", "F", "10", "19", "17"})
        for (std::size_t length = 0; length < 80; ++length) {
          std::string text = sign + prefix + digits;
          ExpectReadsAsAStream(text.append(length, digits.back()) + ".5");
        }
  for (const std::string text :
       {"18446744073709551615", "18446744073709551616", "-18446744073709551615",
        "-18446744073709551616", "01777777777777777777777", "02000000000000000000000",
        "0xffffffffffffffff", "0x10000000000000000", "184467440737095516160000000000000000001"})
    ExpectReadsAsAStream(text);
}

TEST(TPatternReader, ReadsNothingBehindTheEnd) {
  for (const std::string text : {"0x1f", "0x", "12", "+01", "-7", " 5"})
    for (std::size_t size = 0; size < text.size(); ++size)
      ExpectReadsAsAStream(std::string_view(text).substr(0, size));
}

TEST(TPatternReader, ReadsOnAfterANumber) {
  TPatternReader reader("7 8");
  EXPECT_EQ(7u, reader.ReadNumber());
  EXPECT_EQ(8u, reader.ReadNumber());
  EXPECT_TRUE(reader.IsAtEnd());
}

TEST(TPatternReader, ReadsOnAfterACharacterThatIsNotTheExpectedOne) {
  TPatternReader reader("a5");
  EXPECT_FALSE(reader.ReadCharacter('.'));
  EXPECT_EQ(5u, reader.ReadNumber());
}

TEST(TPatternReader, ReadsNothingAfterAFailure) {
  TPatternReader reader("99999999999999999999 5");
  EXPECT_EQ(std::numeric_limits<std::uint64_t>::max(), reader.ReadNumber());
  EXPECT_FALSE(reader.ReadCharacter('5'));
  EXPECT_EQ(0u, reader.ReadNumber());
}

TEST(TPatternReader, ReadsNothingAfterACharacterThatIsNotThere) {
  TPatternReader reader(" ");
  EXPECT_FALSE(reader.ReadCharacter('.'));
  EXPECT_EQ(0u, reader.ReadNumber());
}

}  // namespace
}  // namespace havtest

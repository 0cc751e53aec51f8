// How whole patterns read stands in ValueMapTest.cpp; here is what no pattern can show.
#include "inmem/values/TPatternReader.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace havtest {
namespace {

using NORVHAV20::TPatternReader;

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

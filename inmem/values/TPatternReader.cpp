#include "inmem/values/TPatternReader.h"

#include <limits>

namespace NORVHAV20 {

namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

bool IsBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr unsigned kNoDigit = 16;

// The value of a digit of any radix up to 16; kNoDigit for every other character.
unsigned DigitOf(char c) noexcept {
  const unsigned byte = static_cast<unsigned char>(c);
  const unsigned digit = byte - '0';  // huge where the byte comes before
  if (digit < 10) return digit;
  const unsigned letter = (byte | 0x20) - 'a';
  return letter < 6 ? letter + 10 : kNoDigit;
}

}  // namespace

bool TPatternReader::IsAtEnd() noexcept {
  while (m_next != m_end && IsBlank(*m_next)) ++m_next;
  return m_next == m_end;
}

bool TPatternReader::ReadCharacter(char expected) noexcept {
  if (m_failed || IsAtEnd()) return false;
  return *m_next++ == expected;
}

std::uint64_t TPatternReader::ReadNumber() noexcept {
  if (m_failed || IsAtEnd()) return 0;
  const bool negative = *m_next == '-';
  if (negative || *m_next == '+') ++m_next;
  const std::uint64_t magnitude = ReadMagnitude();
  return negative && !m_failed ? 0 - magnitude : magnitude;
}

std::uint64_t TPatternReader::ReadMagnitude() noexcept {
  const std::string_view rest(m_next, static_cast<std::size_t>(m_end - m_next));
  if (rest.substr(0, 1) != "0") return ReadDigits<10>();
  const std::string_view prefix = rest.substr(0, 2);
  if (prefix != "0x" && prefix != "0X") return ReadDigits<8>();
  m_next += prefix.size();
  return ReadDigits<16>();
}

template <unsigned kRadix>
std::uint64_t TPatternReader::ReadDigits() noexcept {
  const char* const first = m_next;
  std::uint64_t value = 0;
  bool overflow = false;
  for (; m_next != m_end; ++m_next) {
    const unsigned digit = DigitOf(*m_next);
    if (digit >= kRadix) break;
    overflow = overflow || value > (kLargest - digit) / kRadix;
    value = value * kRadix + digit;
  }
  m_failed = overflow || m_next == first;
  return overflow ? kLargest : value;
}

}  // namespace NORVHAV20

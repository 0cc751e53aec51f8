#include "inmem/values/TPatternReader.h"

#include <limits>

namespace NORVHAV20 {

namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

bool IsBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The value of a digit of any radix up to 16; 16 for every other character.
unsigned DigitOf(char c) noexcept {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return 16;
}

}  // namespace

bool TPatternReader::IsAtEnd() noexcept {
  while (m_next != m_end && IsBlank(*m_next)) ++m_next;
  return m_next == m_end;
}

bool TPatternReader::ReadCharacter(char expected) noexcept {
  if (m_failed || IsAtEnd()) {
    m_failed = true;
    return false;
  }
  return *m_next++ == expected;
}

std::uint64_t TPatternReader::ReadNumber() noexcept {
  if (m_failed || IsAtEnd()) {
    m_failed = true;
    return 0;
  }
  const bool negative = *m_next == '-';
  if (negative || *m_next == '+') ++m_next;
  const std::uint64_t magnitude = ReadMagnitude();
  return negative && !m_failed ? 0 - magnitude : magnitude;
}

std::uint64_t TPatternReader::ReadMagnitude() noexcept {
  if (m_next == m_end || *m_next != '0') return ReadDigits<10>();
  if (m_end - m_next < 2 || (m_next[1] != 'x' && m_next[1] != 'X')) return ReadDigits<8>();
  m_next += 2;
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

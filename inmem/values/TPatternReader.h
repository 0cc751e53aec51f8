// TPatternReader: reads the text of a value-map pattern from front to back, exactly as
// formatted extraction from a std::istringstream does that has the classic locale and no
// radix set; a map is read at every look-up, and building streams for it would take most of
// the time.
//
// So each read first skips blanks; "0x" begins a hexadecimal number and "0" an octal one; a
// minus sign negates modulo 2^64; what is no number reads as 0 and what is too large as the
// largest number; and after a read has failed, or found the text at its end, every further
// one fails.
//
// Ownership: refers to the text.
#pragma once

#include <cstdint>
#include <string_view>

namespace NORVHAV20 {

class TPatternReader {
 public:
  explicit TPatternReader(std::string_view text) noexcept
      : m_next(text.data()), m_end(text.data() + text.size()) {}

  // Returns 0 when the read fails, but the largest number when the number is too large.
  std::uint64_t ReadNumber() noexcept;
  // Whether the next character that is no blank is `expected`; reads that character.
  bool ReadCharacter(char expected) noexcept;
  // Whether nothing is left but blanks.
  bool IsAtEnd() noexcept;

 private:
  template <unsigned kRadix>
  std::uint64_t ReadDigits() noexcept;
  std::uint64_t ReadMagnitude() noexcept;

  const char* m_next;
  const char* m_end;
  bool m_failed = false;
};

}  // namespace NORVHAV20

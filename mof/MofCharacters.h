// MofCharacters: classes of characters in MOF text, blanks and comments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hav::mof {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
constexpr bool IsNameCharacter(char c) { return IsNameStart(c) || IsDigit(c); }

// The digit that `c` is in hexadecimal, 16 when it is none.
constexpr unsigned HexDigit(char c) {
  if (IsDigit(c)) return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return 16;
}

// The end of the blanks and comments that begin at `at`. A comment that is not closed ends
// with the text, and its beginning is left in `open`.
std::size_t EndOfBlanks(std::string_view text, std::size_t at, std::size_t& open) noexcept;

// Turns a text that begins with a byte-order mark of UTF-16, either order, into UTF-8 without
// one; leaves any other as it is. False when the text is no UTF-16 behind its mark.
bool DecodeUtf16(std::string& text);

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace hav::mof

// MofCharacters: classes of characters in MOF text, blanks and comments.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hav::mof {

// What a character can be, as bits. Reading a text asks this of every byte, so it is a table.
enum ECharacter : std::uint8_t {
  kDigit = 1,
  kNameStart = 2,
  kBlank = 4,
  kPunctuation = 8,
  kPlain = 16  // stands for itself in a string, and is ASCII; not NUL
};

constexpr std::array<std::uint8_t, 256> MakeCharacters() {
  std::array<std::uint8_t, 256> table{};
  for (unsigned c = 1; c < 0x80; ++c)
    if (c != '"' && c != '\\' && c != '\n' && c != '\r') table[c] |= kPlain;
  for (unsigned c = '0'; c <= '9'; ++c) table[c] |= kDigit;
  for (unsigned c = 'a'; c <= 'z'; ++c) table[c] |= kNameStart;
  for (unsigned c = 'A'; c <= 'Z'; ++c) table[c] |= kNameStart;
  table['_'] |= kNameStart;
  for (unsigned c = '\t'; c <= '\r'; ++c) table[c] |= kBlank;
  table[' '] |= kBlank;
  for (const char c : std::string_view("[](){},;:="))
    table[static_cast<unsigned char>(c)] |= kPunctuation;
  return table;
}

inline constexpr auto kCharacters = MakeCharacters();

constexpr bool Is(char c, unsigned bits) {
  return (kCharacters[static_cast<unsigned char>(c)] & bits) != 0;
}
constexpr bool IsDigit(char c) { return Is(c, kDigit); }
constexpr bool IsNameStart(char c) { return Is(c, kNameStart); }
constexpr bool IsNameCharacter(char c) { return Is(c, kNameStart | kDigit); }

// The end of the characters of these kinds that begin at `at`. Requires one of another kind behind
// them: NUL, which ends every text, is of none.
inline std::size_t EndOf(unsigned bits, std::string_view text, std::size_t at) noexcept {
  const char* end = text.data() + at;
  while (Is(*end, bits)) ++end;
  return static_cast<std::size_t>(end - text.data());
}

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

// Turns a text in UTF-16, either order, into UTF-8 without a byte-order mark; leaves any other as
// it is. Where there is no mark, a NUL beside the first character tells: all that MOF begins with
// is ASCII. False when the text does not go on as UTF-16.
bool DecodeUtf16(std::string& text);

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace hav::mof

#include "mof/MofCharacters.h"

#include <utility>

#include "havcore/client/Utf8.h"

namespace hav::mof {

std::size_t EndOfBlanks(std::string_view text, std::size_t at, std::size_t& open) noexcept {
  open = std::string_view::npos;
  while (at < text.size()) {
    const char c = text[at];
    if (Is(c, kBlank)) {
      ++at;
    } else if (c == '/' && at + 1 < text.size() && text[at + 1] == '/') {
      at = text.find_first_of("\r\n", at);
      if (at == std::string_view::npos) return text.size();
    } else if (c == '/' && at + 1 < text.size() && text[at + 1] == '*') {
      const auto end = text.find("*/", at + 2);
      if (end == std::string_view::npos) {
        open = at;
        return text.size();
      }
      at = end + 2;
    } else {
      break;
    }
  }
  return at;
}

bool DecodeUtf16(std::string& text) {
  const auto mark = std::string_view(text).substr(0, 2);
  const bool hasMark = mark == "\xFE\xFF" || mark == "\xFF\xFE";
  const bool hasNul = mark.size() == 2 && (mark[0] == '\0') != (mark[1] == '\0');
  if (!hasMark && !hasNul) return true;
  const bool bigEndian = mark[0] == '\xFE' || mark[0] == '\0';
  if (text.size() % 2 != 0) return false;
  const auto unitAt = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    const auto second = static_cast<unsigned char>(text[at + 1]);
    return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
  };
  std::string decoded;
  decoded.reserve(text.size() / 2);
  for (std::size_t at = hasMark ? 2 : 0; at < text.size(); at += 2) {
    auto character = unitAt(at);
    if (IsLowSurrogate(character)) return false;
    if (IsHighSurrogate(character)) {
      at += 2;
      const auto low = at < text.size() ? unitAt(at) : 0;
      if (!IsLowSurrogate(low)) return false;
      character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
    }
    client::AppendUtf8(decoded, character);
  }
  text = std::move(decoded);
  return true;
}

}  // namespace hav::mof

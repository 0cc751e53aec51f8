#include "havcore/client/Utf8.h"

namespace hav::client {

std::size_t Utf8Length(std::string_view text, std::size_t at) noexcept {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const unsigned lead = byte(at);
  if (lead < 0x80) return at < text.size() ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(at + i) & 0xC0u) != 0x80u) return 0;
  const unsigned second = byte(at + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second > 0x9F;
  const bool tooLarge = lead == 0xF4 && second > 0x8F;
  return overlong || surrogate || tooLarge ? 0 : length;
}

char32_t Utf8Value(std::string_view character) noexcept {
  const auto byte = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(character[i]));
  };
  switch (character.size()) {
    case 1: return byte(0);
    case 2: return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
    case 3: return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    default:
      return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 |
             (byte(3) & 0x3F);
  }
}

void AppendUtf8(std::string& text, char32_t codePoint) {
  const auto tail = [&](unsigned shift) {
    text += static_cast<char>(0x80u | ((codePoint >> shift) & 0x3Fu));
  };
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0u | (codePoint >> 6));
    tail(0);
  } else if (codePoint < 0x10000) {
    text += static_cast<char>(0xE0u | (codePoint >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0u | (codePoint >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::filesystem::path PathOf(const std::string& utf8) { return std::filesystem::u8path(utf8); }

std::string Utf8(const std::filesystem::path& path) { return path.u8string(); }

}  // namespace hav::client

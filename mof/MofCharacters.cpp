#include "mof/MofCharacters.h"

namespace hav::mof {

std::size_t EndOfBlanks(std::string_view text, std::size_t at, std::size_t& open) noexcept {
  open = std::string_view::npos;
  while (at < text.size()) {
    const char c = text[at];
    if (c == ' ' || (c >= '\t' && c <= '\r')) {
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

}  // namespace hav::mof

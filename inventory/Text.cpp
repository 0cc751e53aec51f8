#include "inventory/Text.h"

#include <algorithm>
#include <array>

namespace hav::inventory {
namespace {

constexpr std::string_view kBlank(" \t\r\n\v\f\0", 7);

// The length of the UTF-8 character at the start of `text`; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const auto first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first < 0xC2   ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool surrogate = first == 0xED && byte(1) >= 0xA0;
  const bool beyond = first == 0xF4 && byte(1) >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(" \t", at)) != std::string_view::npos) {
    const auto end = text.find_first_of(" \t", at);
    words.push_back(text.substr(at, end - at));
    if (end == std::string_view::npos) break;
    at = end;
  }
  return words;
}

std::map<std::string, std::string, std::less<>> KeyValues(std::string_view text, char separator) {
  std::map<std::string, std::string, std::less<>> values;
  for (const auto& entry : Lines(text)) {
    const std::string_view line(entry);
    const auto at = line.find(separator);
    if (at == std::string_view::npos) continue;
    values.emplace(Trim(line.substr(0, at)), Trim(line.substr(at + 1)));
  }
  return values;
}

bool IsReadable(std::string_view text) {
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7F) return false;
    const auto length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool IsPlaceholder(std::string_view text) {
  constexpr std::array<std::string_view, 11> kPlaceholders{"To Be Filled By O.E.M.",
                                                           "To be filled by O.E.M.",
                                                           "Default string",
                                                           "Default String",
                                                           "Not Specified",
                                                           "Not Applicable",
                                                           "None",
                                                           "System manufacturer",
                                                           "System Product Name",
                                                           "System Serial Number",
                                                           "0"};
  return std::find(kPlaceholders.begin(), kPlaceholders.end(), text) != kPlaceholders.end();
}

}  // namespace hav::inventory

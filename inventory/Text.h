// Text: reading what systems write about themselves. Such text is often broken; every
// function here takes any bytes.
//
// Threads: pure functions.
// Errors:  an empty optional when the text is not what was asked for.
#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hav::inventory {

// Without white space and NUL bytes at either end.
std::string_view Trim(std::string_view text);
// The lines without their ends; a last line may lack its own.
std::vector<std::string> Lines(std::string_view text);
// The parts between runs of blanks and tabs.
std::vector<std::string_view> Words(std::string_view text);
// "key<separator>value" of each line that has the separator, both trimmed; the first line of
// a key counts.
std::map<std::string, std::string, std::less<>> KeyValues(std::string_view text, char separator);

// True for UTF-8 without control characters.
bool IsReadable(std::string_view text);

// True for what boards say whose maker did not fill the field in.
bool IsPlaceholder(std::string_view text);

// The whole text, trimmed, as a number that fits T. `base` 16 takes a "0x" before it.
template <class T>
std::optional<T> ParseNumber(std::string_view text, int base = 10) {
  text = Trim(text);
  if (base == 16 && (text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X")) text.remove_prefix(2);
  T number{};
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// `number` times `factor`, when that can be said in 64 bits.
inline std::optional<std::uint64_t> Times(std::optional<std::uint64_t> number,
                                          std::uint64_t factor) {
  if (!number || *number > std::numeric_limits<std::uint64_t>::max() / factor) return {};
  return *number * factor;
}

}  // namespace hav::inventory

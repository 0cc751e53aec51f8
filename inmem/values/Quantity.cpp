#include "inmem/values/Quantity.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string_view>

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMDateTime.h"
#include "inmem/values/QualifierValue.h"

namespace NORVHAV20 {

namespace {

struct TPrefix {
  std::string_view word;
  std::string_view abbreviation;
};

constexpr TPrefix kPrefixes[] = {{"Peta", "P"},  {"Tera", "T"},  {"Giga", "G"},
                                 {"Mega", "M"},  {"Kilo", "K"},  {"", ""},
                                 {"Milli", "m"}, {"Micro", "u"}, {"Nano", "n"}};
constexpr std::size_t kNoPrefix = 5;
constexpr std::size_t kMilli = 6;
constexpr std::size_t kMicro = 7;
constexpr std::size_t kNano = 8;

struct TUnit {
  std::string_view name;
  float factor;  // from one prefix to the next larger one
  std::string_view abbreviation;
};

// Only bit rates are decimal, and only bits are never abbreviated: "KBits".
constexpr TUnit kUnits[] = {{"Bytes", 1024, "B"},
                            {"Bits", 1024, "Bits"},
                            {"Bytes per Second", 1024, "B/s"},
                            {"Bits per Second", 1000, "bps"}};

// Removes the prefix that `unit` begins with, and returns its index.
std::size_t SplitPrefix(std::string_view& unit) {
  for (std::size_t i = 0; i < std::size(kPrefixes); ++i) {
    const std::string_view word = kPrefixes[i].word;
    if (i == kNoPrefix || unit.substr(0, word.size()) != word) continue;
    unit.remove_prefix(word.size());
    return i;
  }
  return kNoPrefix;
}

// The largest prefix to scale to. A unit can be held down to some of the prefixes only.
std::size_t LargestPrefix(std::string_view fixedUnits) {
  for (const std::size_t i : {1U, 2U, 3U, 4U})
    if (fixedUnits == kPrefixes[i].word) return i;
  return 0;
}

std::string NumberText(float number) {
  char buffer[64];  // 2^64, the largest, has 20 digits
  char* const end =
      std::to_chars(buffer, buffer + sizeof buffer, double{number}, std::chars_format::fixed, 1)
          .ptr;
  const bool isWhole = end[-1] == '0';  // behind the point
  return {buffer, isWhole ? end - 2 : end};
}

// Letters and blanks, which have the bit already that makes letters small.
void AppendLowered(std::string& out, std::string_view text) {
  for (const char c : text) out += static_cast<char>(c | 0x20);
}

std::optional<std::string> FormatScaled(ICIMPropertyDecl& decl, std::uint64_t number,
                                        std::size_t prefix, const TUnit& unit) {
  const auto fixedUnits = QualifierValue(decl, "DISPLAYFIXEDUNITS");
  if (!fixedUnits) return std::nullopt;
  const std::size_t largest = LargestPrefix(TextOf(*fixedUnits));
  auto scaled = static_cast<float>(number);
  while (scaled > unit.factor && prefix > largest) {
    scaled /= unit.factor;
    --prefix;
  }
  const auto abbreviate = QualifierValue(decl, "ABBREVIATEUNITS");
  if (!abbreviate) return std::nullopt;

  std::string text = NumberText(scaled) + ' ';
  if (!abbreviate->IsNull()) {
    text += kPrefixes[prefix].abbreviation;
    text += unit.abbreviation;
    return text;
  }
  const std::size_t first = text.size();
  AppendLowered(text, kPrefixes[prefix].word);
  AppendLowered(text, unit.name);
  text[first] = prefix == kNoPrefix ? unit.name[0] : kPrefixes[prefix].word[0];
  return text;
}

TCIMDateTime IntervalOf(std::uint64_t seconds, std::uint64_t microseconds) {
  const std::uint64_t minutes = seconds / 60;
  const std::uint64_t hours = minutes / 60;
  // More days than fit the parameter are more than any interval has, and Set refuses them.
  const std::uint64_t days =
      std::min<std::uint64_t>(hours / 24, std::numeric_limits<std::uint32_t>::max());
  TCIMDateTime interval;
  interval.Set(static_cast<std::uint32_t>(days), static_cast<std::uint16_t>(hours % 24),
               static_cast<std::uint16_t>(minutes % 60), static_cast<std::uint16_t>(seconds % 60),
               static_cast<std::uint32_t>(microseconds));
  return interval;
}

TCIMDateTime IntervalOfMicroseconds(std::uint64_t microseconds) {
  return IntervalOf(microseconds / 1000000, microseconds % 1000000);
}

TCIMDateTime DurationOf(std::uint64_t number, std::size_t prefix) {
  switch (prefix) {
    case kNoPrefix: return IntervalOf(number, 0);
    case kMilli: return IntervalOfMicroseconds(number * 1000);
    case kMicro: return IntervalOfMicroseconds(number);
    case kNano: return IntervalOfMicroseconds(number / 1000);
    default: return TCIMDateTime();  // nobody measures in kiloseconds: shown as no time at all
  }
}

std::optional<std::string> FormatDuration(ICIMPropertyDecl& decl, std::uint64_t number,
                                          std::size_t prefix) {
  if (!QualifierValue(decl, "DISPLAYCPUTIME")) return std::nullopt;
  return DurationOf(number, prefix).ToUIString();
}

}  // namespace

std::optional<std::string> FormatQuantity(ICIMPropertyDecl& decl, std::uint64_t number) {
  const auto units = QualifierValue(decl, "UNITS");
  if (!units) return std::nullopt;
  const auto text = TextOf(*units);
  std::string_view name = text;
  const std::size_t prefix = SplitPrefix(name);
  if (name == "Seconds") return FormatDuration(decl, number, prefix);
  for (const TUnit& unit : kUnits)
    if (name == unit.name) return FormatScaled(decl, number, prefix, unit);
  return std::nullopt;
}

}  // namespace NORVHAV20

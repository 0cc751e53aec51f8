#include "tests/values/PlainDisplay.h"

#include <array>
#include <limits>
#include <locale>
#include <map>
#include <sstream>

namespace havtest {

using namespace NORVHAV20;

namespace {

constexpr std::uint64_t kOpen = std::numeric_limits<std::uint64_t>::max();

TCIMValue Qualifier(ICIMPropertyDecl& decl, const std::string& name) {
  return decl.GetQualifier(name, {})->GetValue({});
}

bool IsOfType(const TCIMValue& value, int code) {
  return !value.IsNull() && static_cast<int>(static_cast<ECIMType>(value.GetType())) == code;
}

std::vector<TCIMValue> Elements(const TCIMValue& value) {
  return static_cast<const std::vector<TCIMValue>&>(value);
}

std::string ElementText(const TCIMValue& element) {
  return element.IsNull() ? "" : element.ToString(10);
}

std::istringstream Reading(const std::string& text) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  in.unsetf(std::ios_base::basefield);
  return in;
}

std::uint64_t Unsigned(const TCIMValue& value) {
  switch (static_cast<int>(static_cast<ECIMType>(value.GetType()))) {
    case 1: return static_cast<bool>(value);
    case 2: return static_cast<std::uint8_t>(value);
    case 4: return static_cast<std::uint16_t>(value);
    case 6: return static_cast<std::uint32_t>(value);
    case 8: return static_cast<std::uint64_t>(value);
    default: throw THAVException(kHAVNotSupported);
  }
}

bool HasNames(int type) { return type == 1 || type == 2 || type == 4 || type == 6 || type == 8; }

std::string FormatPlainNumber(ICIMPropertyDecl& decl, const TCIMValue& value) {
  unsigned char radix = 10;
  try {
    const TCIMValue base = Qualifier(decl, "BASE");
    if (IsOfType(base, 2)) radix = static_cast<std::uint8_t>(base);
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != 15) throw;
  }
  return value.ToString(radix);
}

const std::array<std::string, 9> kWords{"Peta", "Tera",  "Giga",  "Mega", "Kilo",
                                        "",     "Milli", "Micro", "Nano"};
const std::array<std::string, 9> kAbbreviations{"P", "T", "G", "M", "K", "", "m", "u", "n"};
const std::map<std::string, float> kFactors{{"Bytes", 1024.0F},
                                            {"Bits", 1024.0F},
                                            {"Bytes per Second", 1024.0F},
                                            {"Bits per Second", 1000.0F}};
const std::map<std::string, std::string> kShort{
    {"Bytes", "B"}, {"Bytes per Second", "B/s"}, {"Bits per Second", "bps"}};

std::string FormatPlainDuration(ICIMPropertyDecl& decl, std::uint64_t n, std::size_t index) {
  Qualifier(decl, "DISPLAYCPUTIME");
  TCIMDateTime interval;
  if (index >= 5) {
    std::uint64_t seconds = n;
    std::uint64_t microseconds = 0;
    if (index != 5) {
      const std::uint64_t t = index == 6 ? n * 1000 : index == 7 ? n : n / 1000;
      seconds = t / 1000000;
      microseconds = t % 1000000;
    }
    const std::uint64_t days = seconds / 60 / 60 / 24;
    if (days > 0xFFFFFFFF) throw THAVException(kHAVTypesDiffer);
    interval.Set(
        static_cast<std::uint32_t>(days), static_cast<std::uint16_t>(seconds / 60 / 60 % 24),
        static_cast<std::uint16_t>(seconds / 60 % 60), static_cast<std::uint16_t>(seconds % 60),
        static_cast<std::uint32_t>(microseconds));
  }
  return interval.ToUIString();
}

std::string FormatPlainQuantity(ICIMPropertyDecl& decl, const TCIMValue& value) {
  const TCIMValue units = Qualifier(decl, "UNITS");
  std::string unit = IsOfType(units, 13) ? units.ToString(10) : "";
  std::size_t index = 5;
  for (std::size_t i = 0; i < 9; ++i) {
    if (i == 5 || unit.compare(0, kWords[i].size(), kWords[i]) != 0) continue;
    index = i;
    unit = unit.substr(kWords[i].size());
    break;
  }
  if (unit == "Seconds") return FormatPlainDuration(decl, Unsigned(value), index);
  if (kFactors.count(unit) == 0) return FormatPlainNumber(decl, value);
  const float factor = kFactors.at(unit);
  auto x = static_cast<float>(Unsigned(value));

  std::size_t limit = 0;
  const TCIMValue fixed = Qualifier(decl, "DISPLAYFIXEDUNITS");
  if (IsOfType(fixed, 13)) {
    const std::string text = fixed.ToString(10);
    limit = text == "Kilo" ? 4 : text == "Giga" ? 2 : text == "Mega" ? 3 : text == "Tera" ? 1 : 0;
  }
  while (x > factor && index > limit) {
    x = x / factor;
    index = index - 1;
  }
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.setf(std::ios_base::fixed, std::ios_base::floatfield);
  out.precision(1);
  out << x;
  std::string number = out.str();
  const std::size_t dot = number.find(".0");
  if (dot != std::string::npos) number.erase(dot);

  if (!Qualifier(decl, "ABBREVIATEUNITS").IsNull())
    return number + " " + kAbbreviations[index] + (kShort.count(unit) ? kShort.at(unit) : unit);
  std::string words = kWords[index] + unit;
  for (std::size_t i = 1; i < words.size(); ++i)
    words[i] = std::tolower(words[i], std::locale::classic());
  return number + " " + words;
}

std::string FormatPlainValue(ICIMPropertyDecl& decl, const TCIMValue& value) {
  try {
    if (value.IsNull()) {
      const TCIMValue text = Qualifier(decl, "NULLDISPLAY");
      return IsOfType(text, 13) ? text.ToString(10) : "";
    }
    const ECIMType type = value.GetType();
    if (HasNames(static_cast<int>(type)) && type != kCIMBoolean)
      return FormatPlainQuantity(decl, value);
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != 15) throw;
  }
  return FormatPlainNumber(decl, value);
}

}  // namespace

void AddPlainPattern(PlainValueMap& map, std::uint64_t& next, const std::string& pattern,
                     const std::string& text) {
  if (pattern == "..") {
    map.defaultText = text;
    return;
  }
  std::uint64_t low = next;
  std::uint64_t high = 0;
  if (pattern.compare(0, 2, "..") == 0) {
    auto in = Reading(pattern.substr(2));
    in >> high;
    next = high + 1;
  } else {
    auto in = Reading(pattern);
    low = 0;
    in >> low;
    if (!map.entries.empty() && map.entries.back().high == kOpen) map.entries.back().high = low - 1;
    char first = 0;
    char second = 0;
    in >> first >> second;
    high = low;
    next = low + 1;
    if (first == '.' && second == '.') {
      in >> std::ws;
      if (in.eof()) {
        high = kOpen;
      } else {
        high = 0;
        in >> high;
        next = high + 1;
      }
    }
  }
  map.entries.push_back({low, high, text});
}

bool BuildPlainValueMap(ICIMPropertyDecl& decl, PlainValueMap& map) {
  TCIMValue values;
  try {
    values = Qualifier(decl, "Values");
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != 15) throw;
  }
  if (!IsOfType(values, 29)) return false;
  const auto texts = Elements(values);

  TCIMValue valueMap;
  try {
    valueMap = Qualifier(decl, "ValueMap");
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != 15) throw;
  }
  if (!IsOfType(valueMap, 29)) {
    for (std::uint64_t i = 0; i < texts.size(); ++i)
      map.entries.push_back({i, i, ElementText(texts[i])});
    return true;
  }
  const auto patterns = Elements(valueMap);
  if (patterns.size() != texts.size()) return false;
  std::uint64_t next = 0;
  for (std::size_t i = 0; i < texts.size(); ++i)
    AddPlainPattern(map, next, ElementText(patterns[i]), ElementText(texts[i]));
  return true;
}

std::string LookupPlainValueMap(const TCIMValue& value, const PlainValueMap& map) {
  const std::uint64_t v = Unsigned(value);
  for (const PlainEntry& entry : map.entries)
    if (v >= entry.low && v <= entry.high) return entry.text;
  return map.defaultText.empty() ? value.ToString(10) : map.defaultText;
}

std::string PlainDisplayText(ICIMPropertyDecl& decl, const TCIMValue& value) {
  const auto type = static_cast<int>(static_cast<ECIMType>(decl.GetType({})));
  PlainValueMap map;
  if (!value.IsNull() && HasNames(type) && BuildPlainValueMap(decl, map))
    return LookupPlainValueMap(value, map);
  return FormatPlainValue(decl, value);
}

std::vector<std::string> PlainDisplayTexts(ICIMPropertyDecl& decl, const TCIMValue& value) {
  const auto type = static_cast<int>(static_cast<ECIMType>(decl.GetType({})));
  std::vector<std::string> texts;
  PlainValueMap map;
  if (!value.IsNull() && type > 16 && HasNames(type - 16) && BuildPlainValueMap(decl, map)) {
    for (const TCIMValue& element : Elements(value))
      texts.push_back(LookupPlainValueMap(element, map));
    return texts;
  }
  try {
    if (decl.IsArray({})) {
      for (const TCIMValue& element : Elements(value))
        texts.push_back(FormatPlainValue(decl, element));
    } else {
      texts.push_back(FormatPlainValue(decl, value));
    }
  } catch (const THAVException&) {
    const TCIMValue text = Qualifier(decl, "NULLDISPLAY");
    if (!text.IsNull()) return {text.ToString(10)};
  }
  return texts;
}

}  // namespace havtest

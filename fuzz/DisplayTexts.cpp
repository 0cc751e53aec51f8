// A property with qualifiers for its display, and its values: the text is made here in a plain way,
// the patterns of the value map read one by one with streams, and has to be the same.
//
// An input is a byte for the type, one for which qualifiers are there and one for what they hold,
// eight for the value, then texts, a line each: "UNITS", "DISPLAYFIXEDUNITS", "NULLDISPLAY", and
// a pattern and its name in turn.
#include <cctype>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "inmem/values/DisplayText.h"
#include "support/Repository.h"

namespace {

using namespace havtest;

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

// A qualifier: absent, or its value, NULL where there is no text.
struct TQualified {
  bool isThere = false;
  std::optional<std::string> text;
};

struct TDisplay {
  ECIMType type = kCIMUInt32;
  std::uint64_t number = 0;
  bool isNull = false;
  TQualified units, fixedUnits, abbreviate, cpuTime, nullDisplay;
  std::optional<unsigned> base;
  std::optional<std::vector<std::string>> values, patterns;
};

TQualified ReadQualified(bool isThere, bool hasText, std::string_view text) {
  TQualified qualified;
  qualified.isThere = isThere;
  if (hasText) qualified.text = std::string(text);
  return qualified;
}

TDisplay ReadDisplay(havfuzz::TInput& input) {
  constexpr ECIMType kTypes[] = {kCIMBoolean, kCIMUInt8,  kCIMUInt16, kCIMUInt32,
                                 kCIMUInt64,  kCIMSInt32, kCIMUInt64, kCIMUInt32};
  TDisplay display;
  const unsigned type = input.Byte(), there = input.Byte(), texts = input.Byte();
  display.type = kTypes[type % 8];
  display.isNull = type >= 0xF0;
  display.number = input.Number(8);
  const auto has = [](unsigned bits, unsigned i) { return (bits >> i & 1U) != 0; };
  display.units = ReadQualified(has(there, 0), !has(texts, 0), input.Until('\n'));
  display.fixedUnits = ReadQualified(has(there, 1), !has(texts, 1), input.Until('\n'));
  display.nullDisplay = ReadQualified(has(there, 2), !has(texts, 2), input.Until('\n'));
  display.abbreviate = ReadQualified(has(there, 3), !has(texts, 3), "yes");
  display.cpuTime = ReadQualified(has(there, 4), !has(texts, 4), "yes");
  if (has(there, 5)) display.base = texts >> 5 | type >> 6 << 3;
  if (!has(there, 6)) return display;
  display.values.emplace();
  if (has(there, 7)) display.patterns.emplace();
  while (!input.IsAtEnd()) {
    const std::string pattern(input.Until('\n'));
    if (display.patterns) display.patterns->push_back(pattern);
    // A pattern without a name makes arrays of another length.
    if (input.IsAtEnd() && display.patterns && has(texts, 4)) break;
    display.values->emplace_back(input.Until('\n'));
  }
  return display;
}

std::uint64_t Held(const TDisplay& display) {
  switch (display.type) {
    case kCIMBoolean: return display.number % 2;
    case kCIMUInt8: return display.number % 256;
    case kCIMUInt16: return display.number % 65536;
    case kCIMUInt32: return display.number % (std::uint64_t{1} << 32U);
    default: return display.number;
  }
}

TCIMValue ValueOf(const TDisplay& display) {
  if (display.isNull) return TCIMValue::Null(display.type);
  const auto number = Held(display);
  switch (display.type) {
    case kCIMBoolean: return TCIMValue(number != 0);
    case kCIMUInt8: return TCIMValue(static_cast<std::uint8_t>(number));
    case kCIMUInt16: return TCIMValue(static_cast<std::uint16_t>(number));
    case kCIMUInt32: return TCIMValue(static_cast<std::uint32_t>(number));
    case kCIMUInt64: return TCIMValue(number);
    default: return TCIMValue(static_cast<std::int32_t>(number % (std::uint64_t{1} << 31U)));
  }
}

// The plain way.

struct TStatus {
  int code;
};

std::string InRadix(std::uint64_t number, unsigned radix) {
  std::string digits;
  do {
    digits.insert(digits.begin(), "0123456789abcdefghijklmnopqrstuvwxyz"[number % radix]);
    number /= radix;
  } while (number != 0);
  return digits;
}

std::string PlainNumber(const TDisplay& display, unsigned radix) {
  if (display.isNull) return "NULL";
  if (display.type == kCIMBoolean) return Held(display) != 0 ? "TRUE" : "FALSE";
  const auto number =
      display.type == kCIMSInt32 ? Held(display) % (std::uint64_t{1} << 31U) : Held(display);
  return InRadix(number, radix < 2 || radix > 36 ? 10 : radix);
}

std::string FormatNumberPlainly(const TDisplay& display) {
  return PlainNumber(display, display.base.value_or(10));
}

struct TEntry {
  std::uint64_t low, high;
  std::string text;
};

// "Values" and "ValueMap", pattern by pattern, each with a stream of its own.
bool ReadMap(const TDisplay& display, std::vector<TEntry>& map, std::string& otherwise) {
  if (!display.values) return false;
  const auto& texts = *display.values;
  if (!display.patterns) {
    for (std::uint64_t i = 0; i < texts.size(); ++i) map.push_back({i, i, texts[i]});
    return true;
  }
  if (display.patterns->size() != texts.size()) return false;
  std::uint64_t next = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto& pattern = (*display.patterns)[i];
    if (pattern == "..") {
      otherwise = texts[i];
      continue;
    }
    const bool isUpTo = pattern.rfind("..", 0) == 0;
    std::istringstream stream(isUpTo ? pattern.substr(2) : pattern);
    stream.imbue(std::locale::classic());
    stream.unsetf(std::ios::basefield);
    std::uint64_t low = 0, high = 0;
    if (isUpTo) {
      stream >> high;
      map.push_back({next, high, texts[i]});
      next = high + 1;
      continue;
    }
    stream >> low;
    if (!map.empty() && map.back().high == kLargest) map.back().high = low - 1;
    char first = 0, second = 0;
    stream >> first;
    if (first == '.') stream >> second;
    if (first != '.' || second != '.') {
      map.push_back({low, low, texts[i]});
      next = low + 1;
    } else if ((stream >> std::ws).eof()) {
      map.push_back({low, kLargest, texts[i]});
      next = low + 1;
    } else {
      stream >> high;
      map.push_back({low, high, texts[i]});
      next = high + 1;
    }
  }
  return true;
}

std::string Padded(std::uint64_t number, int width) {
  std::ostringstream text;
  text << std::setw(width) << std::setfill('0') << number;
  return text.str();
}

std::string DurationOf(std::uint64_t n, int index) {
  std::uint64_t seconds = 0, microseconds = 0;
  if (index == 5) seconds = n;
  if (index > 5) {
    const std::uint64_t total = index == 6 ? n * 1000 : index == 7 ? n : n / 1000;
    seconds = total / 1000000;
    microseconds = total % 1000000;
  }
  const auto days = seconds / 86400;
  if (days > 99999999) throw TStatus{14};
  std::string text;
  if (days != 0) text = std::to_string(days) + (days == 1 ? " day " : " days ");
  text += Padded(seconds / 3600 % 24, 2) + ':' + Padded(seconds / 60 % 60, 2) + ':' +
          Padded(seconds % 60, 2);
  return microseconds == 0 ? text : text + '.' + Padded(microseconds, 6);
}

constexpr const char* kWords[] = {"Peta", "Tera",  "Giga",  "Mega", "Kilo",
                                  "",     "Milli", "Micro", "Nano"};
constexpr const char* kShort[] = {"P", "T", "G", "M", "K", "", "m", "u", "n"};

std::string FormatPlainly(const TDisplay& display) {
  if (display.isNull)
    return display.nullDisplay.isThere ? display.nullDisplay.text.value_or("")
                                       : FormatNumberPlainly(display);
  const bool isUnsigned = display.type != kCIMBoolean && display.type != kCIMSInt32;
  if (!isUnsigned || !display.units.isThere) return FormatNumberPlainly(display);
  std::string unit = display.units.text.value_or("");
  int index = 5;
  for (const int i : {0, 1, 2, 3, 4, 6, 7, 8}) {
    if (unit.rfind(kWords[i], 0) != 0) continue;
    unit.erase(0, std::string(kWords[i]).size());
    index = i;
    break;
  }
  if (unit == "Seconds")
    return display.cpuTime.isThere ? DurationOf(Held(display), index)
                                   : FormatNumberPlainly(display);
  const std::pair<const char*, float> factors[] = {{"Bytes", 1024.F},
                                                   {"Bits", 1024.F},
                                                   {"Bytes per Second", 1024.F},
                                                   {"Bits per Second", 1000.F}};
  float factor = 0;
  for (const auto& [name, by] : factors)
    if (unit == name) factor = by;
  if (factor == 0 || !display.fixedUnits.isThere || !display.abbreviate.isThere)
    return FormatNumberPlainly(display);
  const auto held = display.fixedUnits.text.value_or("");
  const int limit = held == "Kilo" ? 4 : held == "Mega" ? 3 : held == "Giga" ? 2 : held == "Tera";
  volatile float x = static_cast<float>(Held(display));
  while (x > factor && index > limit) {
    x = x / factor;
    --index;
  }
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << std::fixed << std::setprecision(1) << x;
  std::string number = stream.str();
  if (number.size() > 2 && number.substr(number.size() - 2) == ".0")
    number.erase(number.size() - 2);
  if (display.abbreviate.text) {
    const std::string abbreviated = unit == "Bytes"              ? "B"
                                    : unit == "Bytes per Second" ? "B/s"
                                    : unit == "Bits per Second"  ? "bps"
                                                                 : unit;
    return number + ' ' + kShort[index] + abbreviated;
  }
  std::string words = kWords[index] + unit;
  for (std::size_t i = 1; i < words.size(); ++i)
    words[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(words[i])));
  return number + ' ' + words;
}

std::string DisplayPlainly(const TDisplay& display) {
  std::vector<TEntry> map;
  std::string otherwise;
  if (display.isNull || display.type == kCIMSInt32 || !ReadMap(display, map, otherwise))
    return FormatPlainly(display);
  for (const auto& entry : map)
    if (entry.low <= Held(display) && Held(display) <= entry.high) return entry.text;
  return otherwise.empty() ? PlainNumber(display, 10) : otherwise;
}

// The plug-in's way.

TCIMValue Texts(const std::vector<std::string>& texts) {
  std::vector<TCIMValue> elements;
  for (const auto& text : texts) elements.emplace_back(text);
  return TCIMValue(kCIMString, elements);
}

struct TWorld {
  Repository repository;
  ClassPtr cls = repository.Class("T");
};

PropertyDeclPtr Declare(const TWorld& world, const TDisplay& display) {
  const auto decl = world.cls->AllocatePropertyDecl("P", TCIMValue::Null(display.type), TOptions());
  const auto qualify = [&](const char* name, const TCIMValue& value) {
    decl->AllocateQualifier(world.repository.Declaration(name, value), value, TOptions());
  };
  const auto qualifyText = [&](const char* name, const TQualified& qualified) {
    if (!qualified.isThere) return;
    qualify(name, qualified.text ? TCIMValue(*qualified.text) : TCIMValue::Null(kCIMString));
  };
  qualifyText("UNITS", display.units);
  qualifyText("DISPLAYFIXEDUNITS", display.fixedUnits);
  qualifyText("ABBREVIATEUNITS", display.abbreviate);
  qualifyText("DISPLAYCPUTIME", display.cpuTime);
  qualifyText("NULLDISPLAY", display.nullDisplay);
  if (display.base) qualify("BASE", TCIMValue(static_cast<std::uint8_t>(*display.base)));
  if (display.values) qualify("Values", Texts(*display.values));
  if (display.patterns) qualify("ValueMap", Texts(*display.patterns));
  return decl;
}

template <class F>
std::string Answer(F&& ask) {
  try {
    return ask();
  } catch (const THAVException& failure) {
    return "status " + std::to_string(failure.GetStatusCode());
  } catch (const TStatus& status) {
    return "status " + std::to_string(status.code);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const TWorld world;
  havfuzz::TInput input(data, size);
  const auto display = ReadDisplay(input);
  const auto decl = Declare(world, display);
  const auto expected = Answer([&] { return DisplayPlainly(display); });
  // The second time from the map that the declaration keeps.
  for (int i = 0; i < 2; ++i)
    havfuzz::RequireEqual(Answer([&] { return DisplayText(*decl, ValueOf(display)); }), expected,
                          "display text");
  havfuzz::RequireEqual(Answer([&] { return FormatValue(*decl, ValueOf(display)); }),
                        Answer([&] { return FormatPlainly(display); }), "text without value map");
  return 0;
}

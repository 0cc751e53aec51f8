#include "mof/MofDisplayChecks.h"

#include <array>
#include <charconv>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "mof/TMofValueReader.h"

namespace hav::mof {

using namespace NORVHAV20;

namespace {

constexpr std::array<std::string_view, 8> kPrefixes = {"Peta", "Tera",  "Giga",  "Mega",
                                                       "Kilo", "Milli", "Micro", "Nano"};
constexpr std::array<std::string_view, 4> kScaled = {"Bytes", "Bits", "Bytes per Second",
                                                     "Bits per Second"};
constexpr std::array<std::string_view, 5> kLimits = {"Kilo", "Mega", "Giga", "Tera", "Peta"};

template <std::size_t size>
bool IsOneOf(const std::array<std::string_view, size>& names, std::string_view name) {
  for (const auto one : names)
    if (one == name) return true;
  return false;
}

// The value that the element has, its own or an inherited one.
std::optional<TCIMValue> ValueOf(const TMofDisplayed& displayed, const char* name) {
  try {
    return displayed.made.GetQualifier(name, {})->GetValue({});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return std::nullopt;
  }
}

std::vector<std::string> TextsOf(const std::optional<TCIMValue>& value) {
  std::vector<std::string> texts;
  if (!value || value->IsNull() || value->GetType() != ArrayOf(kCIMString)) return texts;
  for (const auto& element : static_cast<const std::vector<TCIMValue>&>(*value))
    texts.push_back(element.IsNull() ? std::string() : element.ToString(10));
  return texts;
}

std::string Counted(std::size_t number, const char* thing) {
  return std::to_string(number) + ' ' + thing + (number == 1 ? "" : "s");
}

// The largest number of a type whose values have names; 0 for all other types.
std::uint64_t LargestOf(ECIMType type) {
  switch (ElementOf(type)) {
    case kCIMBoolean: return 1;
    case kCIMUInt8: return std::numeric_limits<std::uint8_t>::max();
    case kCIMUInt16: return std::numeric_limits<std::uint16_t>::max();
    case kCIMUInt32: return std::numeric_limits<std::uint32_t>::max();
    case kCIMUInt64: return std::numeric_limits<std::uint64_t>::max();
    default: return 0;
  }
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// A number as the display reads it: "0x" makes it hexadecimal, a leading 0 octal.
std::optional<std::uint64_t> NumberOf(std::string_view text) {
  text = Trimmed(text);
  int radix = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    radix = 16;
    text.remove_prefix(2);
  } else if (text.size() > 1 && text[0] == '0') {
    radix = 8;
  }
  std::uint64_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number, radix);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

// What is wrong with a pattern, empty when nothing is.
std::string FaultOf(std::string_view pattern, ECIMType type) {
  const auto shown = "pattern " + Quoted(pattern);
  const auto dots = pattern.find("..");
  const auto first = Trimmed(pattern.substr(0, dots));
  const auto last =
      dots == std::string_view::npos ? std::string_view() : Trimmed(pattern.substr(dots + 2));
  if (first.empty() && last.empty() && dots != std::string_view::npos) return {};
  const auto low = NumberOf(first), high = NumberOf(last);
  if ((!low && !(first.empty() && dots != std::string_view::npos)) || (!high && !last.empty()))
    return shown + " is neither a number nor a range of numbers";
  if (low && high && *high < *low) return shown + " ends before it begins";
  for (const auto& [text, number] : {std::pair(first, low), std::pair(last, high)}) {
    if (!number) continue;
    if (*number > LargestOf(type))
      return shown + " is more than " + TypeName(ElementOf(type)) + " holds";
    if (text.size() > 1 && text[0] == '0' && *number > 7 && text[1] != 'x' && text[1] != 'X')
      return shown + " is read as octal, " + Quoted(text) + " as " + std::to_string(*number);
  }
  return {};
}

void Warn(const TMofDisplayed& displayed, TMofOffset offset, std::string text, TMofReport& report) {
  report.AddWarning(displayed.file.text, offset, Quoted(displayed.name.text) + ": " + text);
}

void CheckPatterns(const TMofDisplayed& displayed, const TMofQualifier& map, TMofReport& report) {
  if (!map.value) return;
  for (const auto& element : map.value->elements) {
    if (element.kind != TMofToken::EKind::kString) continue;
    const auto fault = FaultOf(TMofLexer::StringValue(element.text), displayed.type);
    if (!fault.empty()) Warn(displayed, element.offset, fault, report);
  }
}

// The first of the qualifiers that the author gives, for where to report.
const TMofQualifier* FirstGiven(const TMofQualifiers& qualifiers,
                                std::initializer_list<std::string_view> names) {
  for (const auto name : names)
    if (const auto* const given = FindQualifier(qualifiers, name)) return given;
  return nullptr;
}

void CheckNeeded(const TMofDisplayed& displayed, TMofOffset offset, const std::string& unit,
                 std::initializer_list<const char*> needed, TMofReport& report) {
  std::string missing;
  const char* verb = " is missing";
  for (const char* const name : needed) {
    if (ValueOf(displayed, name)) continue;
    if (!missing.empty()) verb = " are missing";
    missing += (missing.empty() ? "" : " and ") + std::string(name);
  }
  if (!missing.empty())
    Warn(displayed, offset,
         "a number of " + Quoted(unit) + " is shown without its unit, because " + missing + verb,
         report);
}

void CheckLimit(const TMofDisplayed& displayed, TMofReport& report) {
  const auto* const given = FindQualifier(displayed.qualifiers, "DISPLAYFIXEDUNITS");
  const auto limit = ValueOf(displayed, "DISPLAYFIXEDUNITS");
  if (!given || !limit || limit->IsNull() || IsOneOf(kLimits, limit->ToString(10))) return;
  Warn(displayed, given->name.offset,
       "DISPLAYFIXEDUNITS says " + Quoted(limit->ToString(10)) +
           ", which is not Kilo, Mega, Giga, Tera or Peta, and is taken as Peta",
       report);
}

constexpr auto kFixedUnits = "DISPLAYFIXEDUNITS", kAbbreviate = "ABBREVIATEUNITS",
               kDuration = "DISPLAYCPUTIME";

// The unit without the prefix that the display takes from it.
std::string_view WithoutPrefix(std::string_view unit) {
  for (const auto prefix : kPrefixes)
    if (unit.substr(0, prefix.size()) == prefix) return unit.substr(prefix.size());
  return unit;
}

void CheckDuration(const TMofDisplayed& displayed, TMofOffset offset, const std::string& unit,
                   TMofReport& report) {
  const bool isShown = unit == "Seconds" || unit[0] == 'N' || unit.compare(0, 2, "Mi") == 0;
  if (!isShown)
    Warn(displayed, offset, "durations in " + Quoted(unit) + " are shown as no time at all",
         report);
  CheckNeeded(displayed, offset, unit, {kDuration}, report);
}

// Units that the display does not know are no fault, unless it is asked to show them.
void CheckUnits(const TMofDisplayed& displayed, TMofReport& report) {
  const auto* const asked = FirstGiven(displayed.qualifiers, {kFixedUnits, kAbbreviate, kDuration});
  const auto* const given = FindQualifier(displayed.qualifiers, "UNITS");
  if (!asked && !given) return;
  const auto offset = (given ? given : asked)->name.offset;
  const auto units = ValueOf(displayed, "UNITS");
  const auto unit = units && !units->IsNull() ? units->ToString(10) : std::string();
  const auto base = WithoutPrefix(unit);
  if (LargestOf(displayed.type) > 1 && base == "Seconds")
    CheckDuration(displayed, offset, unit, report);
  else if (LargestOf(displayed.type) > 1 && IsOneOf(kScaled, base))
    CheckNeeded(displayed, offset, unit, {kFixedUnits, kAbbreviate}, report);
  else if (asked && unit.empty())
    Warn(displayed, offset, "without UNITS there is no unit to show", report);
  else if (asked && LargestOf(displayed.type) <= 1)
    Warn(displayed, offset,
         "units are shown of unsigned integers only, and this is " + TypeName(displayed.type),
         report);
  else if (asked)
    Warn(displayed, offset,
         "numbers of " + Quoted(unit) +
             " are shown as they are: units are Bytes, Bits, each also per Second, and Seconds",
         report);
}

void CheckBase(const TMofDisplayed& displayed, TMofReport& report) {
  const auto* const given = FindQualifier(displayed.qualifiers, "BASE");
  const auto base = ValueOf(displayed, "BASE");
  if (!given || !base || base->IsNull()) return;
  if (base->GetType() != kCIMUInt8)
    return Warn(displayed, given->name.offset, "BASE is no uint8, and is not used", report);
  const auto radix = static_cast<std::uint8_t>(*base);
  if (radix < 2 || radix > 36)
    Warn(displayed, given->name.offset,
         "BASE is " + base->ToString(10) + ", not from 2 to 36, and counts as 10", report);
}

}  // namespace

void CheckValueMap(const TMofDisplayed& displayed, TMofReport& report) {
  const auto* const values = FindQualifier(displayed.qualifiers, "Values");
  const auto* const map = FindQualifier(displayed.qualifiers, "ValueMap");
  if (!values && !map) return;
  const auto texts = TextsOf(ValueOf(displayed, "Values"));
  const auto patterns = TextsOf(ValueOf(displayed, "ValueMap"));
  if (!texts.empty() && !patterns.empty() && texts.size() != patterns.size())
    Warn(displayed, (values ? values : map)->name.offset,
         "Values has " + Counted(texts.size(), "text") + " and ValueMap " +
             Counted(patterns.size(), "pattern") + ", so no value is shown by a name",
         report);
  // The patterns of texts and signed numbers say what is allowed, and are not read.
  if (map && LargestOf(displayed.type) != 0) CheckPatterns(displayed, *map, report);
}

void CheckDisplay(const TMofDisplayed& displayed, TMofReport& report) {
  const auto* const values = FindQualifier(displayed.qualifiers, "Values");
  const auto element = ElementOf(displayed.type);
  if (values && element != kCIMString && LargestOf(displayed.type) == 0)
    Warn(displayed, values->name.offset,
         "Values names numbers of unsigned types and booleans only, and this is " +
             TypeName(displayed.type),
         report);
  CheckUnits(displayed, report);
  CheckLimit(displayed, report);
  CheckBase(displayed, report);
}

}  // namespace hav::mof

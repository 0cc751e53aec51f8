#include "wbem/ValueText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "havcore/TCIMDateTime.h"
#include "havcore/client/FoldedName.h"
#include "havcore/client/Utf8.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

constexpr std::array<std::pair<ECIMType, std::string_view>, 15> kTypes{{
    {kCIMBoolean, "boolean"},
    {kCIMUInt8, "uint8"},
    {kCIMSInt8, "sint8"},
    {kCIMUInt16, "uint16"},
    {kCIMSInt16, "sint16"},
    {kCIMUInt32, "uint32"},
    {kCIMSInt32, "sint32"},
    {kCIMUInt64, "uint64"},
    {kCIMSInt64, "sint64"},
    {kCIMReal32, "real32"},
    {kCIMReal64, "real64"},
    {kCIMChar16, "char16"},
    {kCIMString, "string"},
    {kCIMDateTime, "datetime"},
    {kCIMReference, "reference"},
}};

[[noreturn]] void Refuse(ECIMType type, std::string_view text) {
  constexpr std::size_t kShown = 60;
  throw TCimError(ECimStatus::kTypeMismatch,
                  "'" + std::string(text.substr(0, kShown)) + "' is no " + TypeName(type));
}

std::string_view Trim(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string_view WithoutPlus(std::string_view text) {
  return text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+' ? text.substr(1)
                                                                               : text;
}

// Decimal, or hexadecimal behind 0x.
template <class T>
TCIMValue ParseInteger(ECIMType type, std::string_view text) {
  auto digits = WithoutPlus(text);
  const bool minus = !digits.empty() && digits[0] == '-';
  const auto unsignedPart = digits.substr(minus ? 1 : 0);
  std::string hexadecimal;
  int radix = 10;
  if (unsignedPart.size() > 2 && unsignedPart[0] == '0' && FoldCharacter(unsignedPart[1]) == 'x') {
    hexadecimal = (minus ? "-" : "") + std::string(unsignedPart.substr(2));
    digits = hexadecimal;
    radix = 16;
  }
  T value{};
  const auto* const end = digits.data() + digits.size();
  const auto [stopped, failure] = std::from_chars(digits.data(), end, value, radix);
  if (failure != std::errc() || stopped != end) Refuse(type, text);
  return TCIMValue(value);
}

template <class T>
TCIMValue ParseReal(ECIMType type, std::string_view text) {
  const auto digits = WithoutPlus(text);
  T value{};
  const auto* const end = digits.data() + digits.size();
  const auto [stopped, failure] = std::from_chars(digits.data(), end, value);
  if (failure != std::errc() || stopped != end) Refuse(type, text);
  return TCIMValue(value);
}

TCIMValue ParseCharacter(std::string_view text) {
  const auto length = Utf8Length(text, 0);
  if (length == 0 || length != text.size()) Refuse(kCIMChar16, text);
  const auto value = Utf8Value(text);
  if (value > 0xFFFF) Refuse(kCIMChar16, text);
  return TCIMValue(static_cast<char16_t>(value));
}

TCIMValue ParseDateTime(std::string_view text) {
  try {
    return TCIMValue(TCIMDateTime::Parse(std::string(text)));
  } catch (const THAVException&) {
    Refuse(kCIMDateTime, text);
  }
}

// With a point and a digit behind it.
std::string RealText(const TCIMValue& value, double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number < 0 ? "-INF" : "INF";
  auto text = value.ToString(10);
  if (text.find('.') != std::string::npos) return text;
  const auto exponent = text.find_first_of("eE");
  return text.insert(exponent == std::string::npos ? text.size() : exponent, ".0");
}

}  // namespace

std::string TypeName(ECIMType type) {
  for (const auto& [code, name] : kTypes)
    if (code == ElementOf(type)) return std::string(name);
  return "none";
}

std::optional<ECIMType> FindType(std::string_view name) {
  for (const auto& [code, known] : kTypes)
    if (SameName(known, name)) return code;
  return {};
}

std::string ValueText(const TCIMValue& value) {
  switch (value.GetType()) {
    case kCIMReal32: return RealText(value, static_cast<float>(value));
    case kCIMReal64: return RealText(value, static_cast<double>(value));
    default: return value.ToString(10);
  }
}

bool ParseBoolean(std::string_view text) {
  const auto word = Trim(text);
  if (SameName(word, "true")) return true;
  if (!SameName(word, "false")) Refuse(kCIMBoolean, text);
  return false;
}

TCIMValue ParseValue(ECIMType type, std::string_view text) {
  const auto word = Trim(text);
  switch (type) {
    case kCIMBoolean: return TCIMValue(ParseBoolean(word));
    case kCIMUInt8: return ParseInteger<std::uint8_t>(type, word);
    case kCIMSInt8: return ParseInteger<std::int8_t>(type, word);
    case kCIMUInt16: return ParseInteger<std::uint16_t>(type, word);
    case kCIMSInt16: return ParseInteger<std::int16_t>(type, word);
    case kCIMUInt32: return ParseInteger<std::uint32_t>(type, word);
    case kCIMSInt32: return ParseInteger<std::int32_t>(type, word);
    case kCIMUInt64: return ParseInteger<std::uint64_t>(type, word);
    case kCIMSInt64: return ParseInteger<std::int64_t>(type, word);
    case kCIMReal32: return ParseReal<float>(type, word);
    case kCIMReal64: return ParseReal<double>(type, word);
    case kCIMChar16: return ParseCharacter(text);
    case kCIMString: return TCIMValue(std::string(text));
    case kCIMDateTime: return ParseDateTime(word);
    default: Refuse(type, text);
  }
}

}  // namespace hav::wbem

#include "mof/TMofValueReader.h"

#include <charconv>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

#include "havcore/ICIMNamespace.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"
#include "havcore/client/FoldedName.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;
using EKind = TMofToken::EKind;

namespace {

// What a conversion gives: a value, or why there is none ("" for the usual reason).
struct TOutcome {
  std::optional<TCIMValue> value;
  std::string reason;
};

std::string_view WithoutSign(std::string_view text) {
  if (text[0] == '+' || text[0] == '-') text.remove_prefix(1);
  return text;
}

// False when the magnitude does not fit 64 bits.
bool Magnitude(std::string_view text, std::uint64_t& magnitude) {
  auto digits = WithoutSign(text);
  int radix = 10;
  if (digits.size() > 2 && FoldCharacter(digits[1]) == 'x') {
    radix = 16;
    digits.remove_prefix(2);
  } else if (FoldCharacter(digits.back()) == 'b') {
    radix = 2;
    digits.remove_suffix(1);
  } else if (digits[0] == '0') {
    radix = 8;
  }
  const auto* end = digits.data() + digits.size();
  return std::from_chars(digits.data(), end, magnitude, radix).ec == std::errc();
}

TOutcome OutOfRange(const TMofToken& literal, ECIMType type) {
  return {{}, literal.Describe() + " is out of range for " + TypeName(type)};
}

template <class T>
TOutcome Integer(const TMofToken& literal, ECIMType type) {
  if (literal.kind != EKind::kInteger) return {};
  constexpr auto lowest = std::numeric_limits<T>::min();
  constexpr auto highest = std::numeric_limits<T>::max();
  const bool negative = literal.text[0] == '-';
  std::uint64_t magnitude = 0;
  const bool known = Magnitude(literal.text, magnitude);
  // The most negative value is one further from zero than the highest.
  const auto limit = static_cast<std::uint64_t>(highest) + (negative ? 1 : 0);
  if (!known || magnitude > limit || (negative && lowest == 0 && magnitude != 0))
    return OutOfRange(literal, type);
  return {TCIMValue(static_cast<T>(negative ? std::uint64_t{0} - magnitude : magnitude)), {}};
}

template <class T>
TOutcome Real(const TMofToken& literal, ECIMType type) {
  T value = 0;
  std::uint64_t magnitude = 0;
  if (literal.kind == EKind::kInteger && Magnitude(literal.text, magnitude)) {
    value = static_cast<T>(magnitude);
  } else if (literal.kind == EKind::kReal || literal.kind == EKind::kInteger) {
    const auto digits = WithoutSign(literal.text);
    const auto* end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, value);
    if (failure != std::errc() || stop != end) return OutOfRange(literal, type);
  } else {
    return {};
  }
  return {TCIMValue(literal.text[0] == '-' ? -value : value), {}};
}

TOutcome Boolean(const TMofToken& literal) {
  if (literal.kind != EKind::kName) return {};
  return {TCIMValue(SameName(literal.text, "true")), {}};
}

TOutcome Character(const TMofToken& literal) {
  if (literal.kind == EKind::kCharacter)
    return {TCIMValue(TMofLexer::CharacterValue(literal.text)), {}};
  auto code = Integer<std::uint16_t>(literal, kCIMChar16);
  if (code.value)
    code.value = TCIMValue(static_cast<char16_t>(static_cast<std::uint16_t>(*code.value)));
  return code;
}

// No place on earth is further from UTC, in minutes.
bool IsOffset(std::string_view datetime) {
  if (datetime.size() != 25 || datetime[21] == ':') return true;
  int minutes = 0;
  std::from_chars(datetime.data() + 22, datetime.data() + 25, minutes);
  return minutes <= (datetime[21] == '-' ? 720 : 840);
}

TOutcome DateTime(const TMofToken& literal) {
  if (literal.kind != EKind::kString) return {};
  const auto text = TMofLexer::StringValue(literal.text);
  if (!IsOffset(text))
    return {{}, literal.Describe() + " is not a datetime: offsets from UTC go from -720 to +840"};
  try {
    return {TCIMValue(TCIMDateTime::Parse(text)), {}};
  } catch (const THAVException&) {
    return {{}, literal.Describe() + " is not a datetime"};
  }
}

TOutcome Alias(const TMofToken& literal, const TMofValueReader::TAliases& aliases) {
  auto value = aliases ? aliases(literal.text) : std::nullopt;
  if (!value) return {{}, "alias " + literal.Describe() + " stands for no object"};
  return {std::move(value), {}};
}

TOutcome Reference(const TMofToken& literal, const boost::shared_ptr<ICIMNamespace>& home,
                   const TMofValueReader::TAliases& aliases) {
  if (literal.kind == EKind::kAlias) return Alias(literal, aliases);
  if (literal.kind != EKind::kString) return {};
  try {
    return {TCIMValue(TCIMReference::Parse(TMofLexer::StringValue(literal.text), home)), {}};
  } catch (const THAVException&) {
    return {{}, literal.Describe() + " is not an object path"};
  }
}

bool IsNull(const TMofToken& literal) {
  return literal.kind == EKind::kName && SameName(literal.text, "null");
}

}  // namespace

std::string TypeName(ECIMType type) {
  std::ostringstream name;
  name << TCIMValue::TCIMType(type);
  return name.str();
}

TMofValueReader::TMofValueReader(boost::shared_ptr<ICIMNamespace> home, TMofReport& report)
    : m_home(std::move(home)), m_report(report) {}

std::optional<TCIMValue> TMofValueReader::Read(const TMofFile& file, const TMofValue& value,
                                               ECIMType type, const TAliases& aliases) const {
  const bool array = (type & kCIMArray) != 0;
  if (!value.isArray && IsNull(value.scalar)) return TCIMValue::Null(type);
  if (!array && !value.isArray) return ReadScalar(file, value.scalar, type, aliases);
  if (array != value.isArray) {
    m_report.AddError(file.text, value.offset,
                      "expected a value of type " + TypeName(type) + ", found " +
                          (array ? value.scalar.Describe() : "an array"));
    return {};
  }
  std::vector<TCIMValue> elements;
  elements.reserve(value.elements.size());
  for (const auto& literal : value.elements) {
    auto element = IsNull(literal) ? TCIMValue::Null(ElementOf(type))
                                   : ReadScalar(file, literal, ElementOf(type), aliases);
    if (element) elements.push_back(*std::move(element));
  }
  if (elements.size() != value.elements.size()) return {};
  return TCIMValue(ElementOf(type), std::move(elements));
}

std::optional<TCIMValue> TMofValueReader::ReadScalar(const TMofFile& file, const TMofToken& literal,
                                                     ECIMType type, const TAliases& aliases) const {
  if (literal.kind == EKind::kBroken) return {};
  if (type == kCIMString && literal.kind == EKind::kString) {  // most are
    TMofLexer::StringValue(literal.text, m_text);
    TCIMValue value(m_text);
    constexpr std::size_t usual = 4096;
    if (m_text.capacity() > usual) std::string().swap(m_text);
    return value;
  }
  const auto convert = [&]() -> TOutcome {
    switch (type) {
      case kCIMBoolean: return Boolean(literal);
      case kCIMUInt8: return Integer<std::uint8_t>(literal, type);
      case kCIMSInt8: return Integer<std::int8_t>(literal, type);
      case kCIMUInt16: return Integer<std::uint16_t>(literal, type);
      case kCIMSInt16: return Integer<std::int16_t>(literal, type);
      case kCIMUInt32: return Integer<std::uint32_t>(literal, type);
      case kCIMSInt32: return Integer<std::int32_t>(literal, type);
      case kCIMUInt64: return Integer<std::uint64_t>(literal, type);
      case kCIMSInt64: return Integer<std::int64_t>(literal, type);
      case kCIMReal32: return Real<float>(literal, type);
      case kCIMReal64: return Real<double>(literal, type);
      case kCIMChar16: return Character(literal);
      case kCIMString:
        if (literal.kind == EKind::kAlias && aliases) return Alias(literal, aliases);
        return {};
      case kCIMDateTime: return DateTime(literal);
      case kCIMReference: return Reference(literal, m_home, aliases);
      default: return {};
    }
  };
  auto [value, reason] = convert();
  if (value) return std::move(value);
  if (reason.empty())
    reason = "expected a value of type " + TypeName(type) + ", found " + literal.Describe();
  m_report.AddError(file.text, literal.offset, std::move(reason));
  return {};
}

}  // namespace hav::mof

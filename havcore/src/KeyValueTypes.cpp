#include <charconv>
#include <type_traits>

#include "AsciiFold.h"
#include "ObjectPathText.h"
#include "ValueText.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"

namespace NORVHAV20 {
namespace {

template <class T>
std::optional<TCIMValue> ReadNumber(const TKeyText& key) {
  if (key.kind != TKeyText::kNumber) return std::nullopt;
  std::string_view text = key.text;
  if (text.front() == '+') text.remove_prefix(1);
  if (std::is_unsigned_v<T> && text == "-0") text.remove_prefix(1);  // from_chars refuses it
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return TCIMValue(number);
}

std::optional<TCIMValue> ReadBoolean(const TKeyText& key) {
  if (key.kind != TKeyText::kBoolean) return std::nullopt;
  return TCIMValue(EqualFolded(key.text, "TRUE"));
}

std::optional<TCIMValue> ReadCharacter(const std::string& text) {
  const auto unit = ReadChar16(text);
  if (!unit) return std::nullopt;
  return TCIMValue(*unit);
}

// The text of a datetime or a reference; any text may stand in quotes, so one that is
// neither is no error.
template <class Read>
std::optional<TCIMValue> ReadIfValid(Read&& read) {
  try {
    return TCIMValue(read());
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVTypesDiffer && failure.GetStatusCode() != kHAVNotFound)
      throw;
    return std::nullopt;
  }
}

std::optional<TCIMValue> ReadQuoted(const TKeyText& key, ECIMType type,
                                    const boost::shared_ptr<ICIMNamespace>& home) {
  if (key.kind != TKeyText::kQuoted) return std::nullopt;
  switch (type) {
    case kCIMString: return TCIMValue(key.text);
    case kCIMChar16: return ReadCharacter(key.text);
    case kCIMDateTime: return ReadIfValid([&] { return TCIMDateTime::Parse(key.text); });
    case kCIMReference: return ReadIfValid([&] { return TCIMReference::Parse(key.text, home); });
    default: return std::nullopt;
  }
}

}  // namespace

TCIMValue UntypedKeyValue(const TKeyText& key) {
  if (key.kind == TKeyText::kNull) return TCIMValue();
  if (key.kind == TKeyText::kQuoted) return TCIMValue(key.text);
  if (const auto truth = ReadBoolean(key)) return *truth;
  // Minus zero is a real: the integers have only one.
  if (key.text != "-0") {
    if (const auto number = ReadNumber<std::uint64_t>(key)) return *number;
    if (const auto number = ReadNumber<std::int64_t>(key)) return *number;
  }
  if (const auto number = ReadNumber<double>(key)) return *number;
  throw THAVException(kHAVNotFound);
}

std::optional<TCIMValue> TypedKeyValue(const TKeyText& key, ECIMType type,
                                       const boost::shared_ptr<ICIMNamespace>& home) {
  if (key.kind == TKeyText::kNull) return TCIMValue::Null(type);
  switch (type) {
    case kCIMBoolean: return ReadBoolean(key);
    case kCIMUInt8: return ReadNumber<std::uint8_t>(key);
    case kCIMSInt8: return ReadNumber<std::int8_t>(key);
    case kCIMUInt16: return ReadNumber<std::uint16_t>(key);
    case kCIMSInt16: return ReadNumber<std::int16_t>(key);
    case kCIMUInt32: return ReadNumber<std::uint32_t>(key);
    case kCIMSInt32: return ReadNumber<std::int32_t>(key);
    case kCIMUInt64: return ReadNumber<std::uint64_t>(key);
    case kCIMSInt64: return ReadNumber<std::int64_t>(key);
    case kCIMReal32: return ReadNumber<float>(key);
    case kCIMReal64: return ReadNumber<double>(key);
    default: return ReadQuoted(key, type, home);
  }
}

}  // namespace NORVHAV20

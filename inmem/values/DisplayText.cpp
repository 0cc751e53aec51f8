#include "inmem/values/DisplayText.h"

#include <cstdint>
#include <optional>

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"
#include "inmem/values/QualifierValue.h"
#include "inmem/values/Quantity.h"
#include "inmem/values/UnsignedInteger.h"
#include "inmem/values/ValueMap.h"

namespace NORVHAV20 {

namespace {

// Only numbers that are no more than bits have names.
bool CanHaveValueMap(ECIMType type) {
  return type == kCIMBoolean || type == kCIMUInt8 || type == kCIMUInt16 || type == kCIMUInt32 ||
         type == kCIMUInt64;
}

THeld<std::vector<TCIMValue>> ElementsOf(const TCIMValue& value) {
  return Held<std::vector<TCIMValue>>(value);
}

}  // namespace

std::string DisplayText(ICIMPropertyDecl& decl, TCIMValue value) {
  const ECIMType type = decl.GetType(TOptions());
  if (!value.IsNull() && CanHaveValueMap(type))
    if (const auto map = FindValueMap(decl)) return LookupValueMap(value, *map);
  return FormatValue(decl, value);
}

std::vector<std::string> DisplayTexts(ICIMPropertyDecl& decl, TCIMValue value) {
  std::vector<std::string> texts;
  const ECIMType type = decl.GetType(TOptions());
  if (!value.IsNull() && type > kCIMArray && CanHaveValueMap(ElementOf(type)))
    if (const auto map = FindValueMap(decl)) {
      for (const TCIMValue& element : ElementsOf(value))
        texts.push_back(LookupValueMap(element, *map));
      return texts;
    }
  try {
    if (!decl.IsArray(TOptions())) return {FormatValue(decl, value)};
    for (const TCIMValue& element : ElementsOf(value)) texts.push_back(FormatValue(decl, element));
  } catch (const THAVException&) {
    const TCIMValue text = RequiredQualifierValue(decl, "NULLDISPLAY");
    if (!text.IsNull()) return {text.ToString(10)};
  }
  return texts;
}

std::string FormatValue(ICIMPropertyDecl& decl, const TCIMValue& value) {
  if (value.IsNull()) {
    if (const auto text = QualifierValue(decl, "NULLDISPLAY")) return std::string(TextOf(*text));
  } else if (const auto number = UnsignedInteger(value)) {
    if (auto quantity = FormatQuantity(decl, *number)) return *std::move(quantity);
  }
  return FormatNumber(decl, value);
}

std::string FormatNumber(ICIMPropertyDecl& decl, const TCIMValue& value) {
  const auto base = QualifierValue(decl, "BASE");
  if (!base || base->IsNull() || base->GetType() != kCIMUInt8) return value.ToString(10);
  return value.ToString(static_cast<std::uint8_t>(*base));
}

}  // namespace NORVHAV20

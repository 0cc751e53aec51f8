#include "havhost/report/Json.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "havhost/report/Text.h"
#include "havhost/report/TypeText.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

// JSON has no infinities.
TJson RealToJson(const TCIMValue& value, double real) {
  return std::isfinite(real) ? TJson(real) : TJson(value.ToString(10));
}

TJson ScalarToJson(const TCIMValue& value) {
  switch (value.GetType()) {
    case kCIMBoolean: return static_cast<bool>(value);
    case kCIMUInt8: return static_cast<std::uint8_t>(value);
    case kCIMSInt8: return static_cast<std::int8_t>(value);
    case kCIMUInt16: return static_cast<std::uint16_t>(value);
    case kCIMSInt16: return static_cast<std::int16_t>(value);
    case kCIMUInt32: return static_cast<std::uint32_t>(value);
    case kCIMSInt32: return static_cast<std::int32_t>(value);
    case kCIMUInt64: return static_cast<std::uint64_t>(value);
    case kCIMSInt64: return static_cast<std::int64_t>(value);
    case kCIMReal32: return RealToJson(value, static_cast<double>(static_cast<float>(value)));
    case kCIMReal64: return RealToJson(value, static_cast<double>(value));
    case kCIMReference: return WithoutStrayBytes(value.ToString(10));
    default: return value.ToString(10);
  }
}

TJson ToJson(const std::vector<TQualifierReport>& qualifiers) {
  TJson result = TJson::object();
  for (const auto& qualifier : qualifiers)
    result[qualifier.name] = havhost::ToJson(qualifier.value);
  return result;
}

TJson ToJson(const TDeclReport& decl) {
  return {{"name", decl.name}, {"type", decl.type}, {"origin", decl.origin}};
}

TJson ToJson(const TPropertyDeclReport& property) {
  TJson result = ToJson(static_cast<const TDeclReport&>(property));
  result["key"] = property.isKey;
  result["default"] = havhost::ToJson(property.defaultValue);
  result["qualifiers"] = ToJson(property.qualifiers);
  return result;
}

TJson ToJson(const TMethodDeclReport& method) {
  TJson result = ToJson(static_cast<const TDeclReport&>(method));
  result["parameters"] = TJson::array();
  for (const auto& parameter : method.parameters)
    result["parameters"].push_back({{"name", parameter.name},
                                    {"type", parameter.type},
                                    {"qualifiers", ToJson(parameter.qualifiers)}});
  result["qualifiers"] = ToJson(method.qualifiers);
  return result;
}

template <class Report>
TJson ListToJson(const std::vector<Report>& reports) {
  TJson result = TJson::array();
  for (const auto& report : reports) result.push_back(ToJson(report));
  return result;
}

}  // namespace

TJson ToJson(const TCIMValue& value) {
  if (value.IsNull()) return nullptr;
  if (!value.IsArray()) return ScalarToJson(value);
  TJson elements = TJson::array();
  for (const auto& element : static_cast<const std::vector<TCIMValue>&>(value))
    elements.push_back(ToJson(element));
  return elements;
}

TJson ToJson(const TPropertyReport& property) {
  const bool isList = property.value.IsArray() && !property.value.IsNull();
  return {{"type", TypeText(property.type)},
          {"value", ToJson(property.value)},
          {"display", isList ? TJson(property.display) : TJson(Join(property.display))}};
}

TJson ToJson(const TInstanceReport& instance) {
  TJson properties = TJson::object();
  for (const auto& property : instance.properties) properties[property.name] = ToJson(property);
  return {{"path", WithoutStrayBytes(instance.path)},
          {"class", instance.className},
          {"properties", properties}};
}

TJson ToJson(const TClassReport& cls) {
  return {{"name", cls.name},
          {"superclass", cls.superclass.empty() ? TJson() : TJson(cls.superclass)},
          {"subclasses", cls.subclasses},
          {"association", cls.kind.isAssociation},
          {"abstract", cls.kind.isAbstract},
          {"indication", cls.kind.isIndication},
          {"instances", cls.instances},
          {"qualifiers", ToJson(cls.qualifiers)},
          {"properties", ListToJson(cls.properties)},
          {"methods", ListToJson(cls.methods)}};
}

void PrintJson(std::ostream& out, TJson document) {
  TJson versioned = {{"version", kJsonVersion}};
  for (auto& [name, value] : document.items()) versioned[name] = std::move(value);
  out << versioned.dump(2, ' ', false, TJson::error_handler_t::replace) << '\n';
}

}  // namespace havhost

#include "wbem/TParameters.h"

#include <utility>

#include "havcore/client/FoldedName.h"
#include "wbem/ElementReader.h"
#include "wbem/TCimError.h"
#include "wbem/ValueText.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

[[noreturn]] void Refuse(std::string_view name, const std::string& what) {
  throw TCimError(ECimStatus::kInvalidParameter, std::string(name) + " " + what);
}

const TXmlElement& OnlyValue(const TXmlElement& parameter, std::string_view name,
                             std::string_view kind) {
  const auto& value = OnlyChild(parameter);
  if (!value.Is(kind)) Refuse(name, "is a " + std::string(kind) + ", not a " + value.name);
  return value;
}

}  // namespace

TParameters::TParameters(std::vector<TXmlElement> elements) {
  for (auto& element : elements) {
    const auto& name = Required(element, "NAME");
    for (const auto& other : m_parameters)
      if (SameName(other.element.Get("NAME"), name)) Refuse(name, "is given twice");
    m_parameters.push_back({std::move(element), false});
  }
}

const TXmlElement* TParameters::Find(std::string_view name) {
  for (auto& parameter : m_parameters) {
    if (!SameName(parameter.element.Get("NAME"), name)) continue;
    parameter.isKnown = true;
    return parameter.element.children.empty() ? nullptr : &parameter.element;
  }
  return nullptr;
}

const TXmlElement& TParameters::Object(std::string_view name) {
  const auto* const parameter = Find(name);
  if (!parameter) Refuse(name, "is missing");
  return OnlyChild(*parameter);
}

bool TParameters::Flag(std::string_view name, bool otherwise) {
  const auto* const parameter = Find(name);
  if (!parameter) return otherwise;
  try {
    return ParseBoolean(OnlyValue(*parameter, name, "VALUE").text);
  } catch (const TCimError& failure) {
    Refuse(name, std::string("is TRUE or FALSE: ") + failure.what());
  }
}

std::string TParameters::Text(std::string_view name) {
  const auto* const parameter = Find(name);
  return parameter ? OnlyValue(*parameter, name, "VALUE").text : std::string();
}

std::string TParameters::ClassName(std::string_view name) {
  const auto* const parameter = Find(name);
  return parameter ? Required(OnlyValue(*parameter, name, "CLASSNAME"), "NAME") : std::string();
}

std::string TParameters::RequiredText(std::string_view name) {
  auto text = Text(name);
  if (text.empty()) Refuse(name, "is missing");
  return text;
}

std::string TParameters::RequiredClassName(std::string_view name) {
  auto className = ClassName(name);
  if (className.empty()) Refuse(name, "is missing");
  return className;
}

std::optional<std::uint32_t> TParameters::Number(std::string_view name) {
  const auto* const parameter = Find(name);
  if (!parameter) return {};
  try {
    return static_cast<std::uint32_t>(
        ParseValue(kCIMUInt32, OnlyValue(*parameter, name, "VALUE").text));
  } catch (const TCimError& failure) {
    Refuse(name, std::string("is a number: ") + failure.what());
  }
}

std::optional<TNameSet> TParameters::PropertyList() {
  constexpr std::string_view name = "PropertyList";
  const auto* const parameter = Find(name);
  if (!parameter) return {};
  TNameSet names;
  for (const auto& value : OnlyValue(*parameter, name, "VALUE.ARRAY").children) {
    if (!value.Is("VALUE")) Refuse(name, "holds names, not " + value.name);
    names.insert(value.text);
  }
  return names;
}

void TParameters::RequireAllKnown() const {
  for (const auto& parameter : m_parameters)
    if (!parameter.isKnown)
      Refuse(parameter.element.Get("NAME"), "is no parameter of this operation");
}

}  // namespace hav::wbem

// TParameters: the parameters of one operation, by name.
//
// Ownership: owns the elements.
// Errors:    TCimError kInvalidParameter for what is missing, given twice, or not what it
//            should be.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wbem/TElementWriter.h"
#include "wbem/TXmlElement.h"

namespace hav::wbem {

class TParameters {
 public:
  TParameters() = default;
  // `elements`: IPARAMVALUE each. Throws when a name is missing or there twice.
  explicit TParameters(std::vector<TXmlElement> elements);

  // The IPARAMVALUE itself, null when it is not there or empty, which stands for NULL.
  const TXmlElement* Find(std::string_view name);
  // What is in it. Throws when there is nothing.
  const TXmlElement& Object(std::string_view name);

  bool Flag(std::string_view name, bool otherwise);
  // Empty when it is not given.
  std::string Text(std::string_view name);
  std::string ClassName(std::string_view name);
  std::string RequiredText(std::string_view name);
  std::string RequiredClassName(std::string_view name);
  std::optional<std::uint32_t> Number(std::string_view name);
  // "PropertyList"; nothing when it is not given.
  std::optional<TNameSet> PropertyList();

  // Throws when there are parameters that nobody asked for.
  void RequireAllKnown() const;

 private:
  struct TParameter {
    TXmlElement element;
    bool isKnown;
  };
  std::vector<TParameter> m_parameters;
};

}  // namespace hav::wbem

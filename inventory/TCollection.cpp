#include "inventory/TCollection.h"

using NORVHAV20::TCIMValue;

namespace hav::inventory {

const char* const TCollection::kSystem = "system";

TElement& TElement::Set(const char* property, const std::vector<std::string>& texts) {
  if (texts.empty()) return *this;
  values.emplace_back(property, TCIMValue(NORVHAV20::kCIMString,
                                          std::vector<TCIMValue>(texts.begin(), texts.end())));
  return *this;
}

TElement& TElement::Describe(const std::optional<std::string>& what) {
  if (what) Set("Caption", std::optional(Get("Name").ToString(10) + ", " + *what));
  return *this;
}

TCIMValue TElement::Get(const std::string& property) const {
  for (const auto& [name, value] : values)
    if (name == property) return value;
  return {};
}

std::string TFailure::ToString() const { return collector + ": " + source + ": " + reason; }

TElement& TCollection::Add(const std::string& id, const std::string& className,
                           const std::string& name) {
  m_elements.push_back({id, className, {{"Name", TCIMValue(name)}}});
  return m_elements.back();
}

TElement& TCollection::AddSystemDevice(const std::string& id, const std::string& className,
                                       const std::string& name) {
  Link("ORVSG_SystemDevice", {"GroupComponent", kSystem}, {"PartComponent", id});
  return Add(id, className, name);
}

void TCollection::Link(const std::string& className, TLink::TEnd antecedent,
                       TLink::TEnd dependent) {
  m_links.push_back({className, std::move(antecedent), std::move(dependent)});
}

void TCollection::Link(const std::string& className, const std::string& antecedent,
                       const std::string& dependent) {
  Link(className, {"Antecedent", antecedent}, {"Dependent", dependent});
}

void TCollection::Fail(const std::string& source, const std::string& reason) {
  m_failures.push_back({m_collector, source, reason});
}

const TElement* TCollection::Find(const std::string& id) const {
  for (const auto& element : m_elements)
    if (element.id == id) return &element;
  return nullptr;
}

}  // namespace hav::inventory

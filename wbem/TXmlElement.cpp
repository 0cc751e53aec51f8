#include "wbem/TXmlElement.h"

#include <algorithm>

namespace hav::wbem {

const std::string* TXmlElement::Find(std::string_view attribute) const {
  const auto found = std::find_if(attributes.begin(), attributes.end(),
                                  [&](const auto& pair) { return pair.first == attribute; });
  return found == attributes.end() ? nullptr : &found->second;
}

std::string TXmlElement::Get(std::string_view attribute, std::string_view otherwise) const {
  const auto* const value = Find(attribute);
  return value ? *value : std::string(otherwise);
}

const TXmlElement* TXmlElement::Child(std::string_view element) const {
  const auto found = std::find_if(children.begin(), children.end(),
                                  [&](const auto& child) { return child.Is(element); });
  return found == children.end() ? nullptr : &*found;
}

TXmlElement& TXmlTreeBuilder::Open(std::string name) {
  if (m_open.size() == TXmlElement::kMaximumDepth)
    throw TXmlError("elements are nested more than " + std::to_string(TXmlElement::kMaximumDepth) +
                    " deep");
  if (++m_elements > TXmlElement::kMaximumElements)
    throw TXmlError("there are more than " + std::to_string(TXmlElement::kMaximumElements) +
                    " elements");
  if (m_open.empty() && m_elements != 1) throw TXmlError("there is more than one document");
  // A sibling moves only while it is closed, so that the open ones stay where they are.
  TXmlElement* element = &m_root;
  if (!m_open.empty()) element = &m_open.back()->children.emplace_back();
  element->name = std::move(name);
  m_open.push_back(element);
  return *element;
}

void TXmlTreeBuilder::Close() { m_open.pop_back(); }

void TXmlTreeBuilder::Text(std::string_view text) {
  if (!m_open.empty()) m_open.back()->text += text;
}

}  // namespace hav::wbem

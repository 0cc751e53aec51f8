#include "tests/inventory/CollectionText.h"

#include <gtest/gtest.h>

using namespace hav::inventory;

namespace havtest {

Texts Values(const TElement& element) {
  Texts texts;
  for (const auto& [property, value] : element.values)
    texts.push_back(property + "=" + value.ToString(10));
  return texts;
}

Texts Names(const TCollection& collection, const std::string& className) {
  Texts names;
  for (const auto& element : collection.Elements())
    if (element.className == className) names.push_back(element.Get("Name").ToString(10));
  return names;
}

TElement Element(const TCollection& collection, const std::string& className,
                 const std::string& name) {
  for (const auto& element : collection.Elements())
    if (element.className == className && element.Get("Name").ToString(10) == name) return element;
  ADD_FAILURE() << "no " << className << " named " << name;
  return {};
}

Texts Links(const TCollection& collection, const std::string& className) {
  Texts links;
  for (const auto& link : collection.Links()) {
    const auto* const antecedent = collection.Find(link.antecedent.id);
    const auto* const dependent = collection.Find(link.dependent.id);
    if (link.className == className && antecedent && dependent)
      links.push_back(antecedent->Get("Name").ToString(10) + " -> " +
                      dependent->Get("Name").ToString(10));
  }
  return links;
}

Texts Failures(const TCollection& collection) {
  Texts failures;
  for (const auto& failure : collection.Failures()) failures.push_back(failure.ToString());
  return failures;
}

}  // namespace havtest

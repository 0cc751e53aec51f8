// CollectionText: what was collected, as texts that a test can compare.
#pragma once

#include <string>
#include <vector>

#include "inventory/TCollection.h"

namespace havtest {

using Texts = std::vector<std::string>;

// "property=value" of each value that is set, in the order of collection, Name first.
Texts Values(const hav::inventory::TElement& element);
// The names of the elements of a class.
Texts Names(const hav::inventory::TCollection& collection, const std::string& className);
// The element of that class and name; a failed assertion and an empty one when there is none.
hav::inventory::TElement Element(const hav::inventory::TCollection& collection,
                                 const std::string& className, const std::string& name);
// "antecedent -> dependent" by name, of each link of a class whose ends are there.
Texts Links(const hav::inventory::TCollection& collection, const std::string& className);
Texts Failures(const hav::inventory::TCollection& collection);

}  // namespace havtest

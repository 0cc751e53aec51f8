// CompareNamespaces: whether two namespaces hold the same, element by element.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "havcore/ICIMNamespace.h"

namespace havtest {

// What differs, as text, at most `limit` lines; empty when the namespaces hold the same:
// qualifier declarations; classes in the order of the tree, with superclass, qualifiers
// (value, flavor, propagated or not), properties (type, default, origin), methods and
// parameters; instances with the values of their properties.
std::vector<std::string> Differences(NORVHAV20::ICIMNamespace& a, NORVHAV20::ICIMNamespace& b,
                                     std::size_t limit = 10);

}  // namespace havtest

// ClassBuilder: a class as CLASS describes it.
#pragma once

#include "wbem/ElementReader.h"

namespace hav::wbem {

// Makes the class with its qualifiers, properties and methods; it is not registered yet. What
// overrides takes over the qualifiers that propagate, and properties the default value.
// Elements that are marked as propagated are inherited anyway and passed over.
// Throws TCimError: kInvalidSuperclass, kInvalidParameter for qualifiers that the namespace
// does not declare and classes that it does not have; what the repository refuses passes
// through.
boost::shared_ptr<NORVHAV20::ICIMClass> BuildClass(const TNamespacePtr& home,
                                                   const TXmlElement& element);

}  // namespace hav::wbem

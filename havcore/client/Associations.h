// Associations: the four association queries of CIM, on instances and on classes.
//
// An association links an object with others: it refers to the object by one of its
// references and to the others by its other references. The names of the references are the
// roles. References are the associations that refer to an object; associators are what stands
// at their other ends, each once. An object is its own associator only where an association
// refers to it by two references.
//
// At class level an association class refers to a class by every reference that is declared
// to it or to one of its superclasses, and the other ends are the classes that its other
// references are declared to.
//
// Filters: empty text filters nothing. A class stands for its subclasses too; a class that
//          the namespace does not have finds nothing, and so does an unknown role. Names
//          ignore case. Asking changes nothing in the namespace.
// Order:   that of the association classes and, within one, of the paths of its instances.
// Errors:  THAVException: 25 for a filter that is no class name; what the namespace throws
//          passes through, but a reference that leads nowhere is passed over.
// Threads: one thread at a time per namespace.
// Complexity: linear in the associations that refer to the object.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/TCIMReference.h"

namespace hav::client {

struct TReferenceFilter {
  std::string resultClass = {};  // the associations are of this class
  std::string role = {};         // they refer to the object by this reference
};

struct TAssociatorFilter {
  std::string associationClass = {};  // the associations are of this class
  std::string resultClass = {};       // what is found is of this class
  std::string role = {};              // the associations refer to the object by this reference,
  std::string resultRole = {};        // and to what is found by this one
};

using TInstances = std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>>;
using TClasses = std::vector<boost::shared_ptr<NORVHAV20::ICIMClass>>;
using TPaths = std::vector<NORVHAV20::TCIMReference>;

TInstances References(NORVHAV20::ICIMInstance& object, const TReferenceFilter& filter = {});
TInstances Associators(NORVHAV20::ICIMInstance& object, const TAssociatorFilter& filter = {});
TClasses References(const NORVHAV20::ICIMClass& object, const TReferenceFilter& filter = {});
TClasses Associators(const NORVHAV20::ICIMClass& object, const TAssociatorFilter& filter = {});

// The paths of what the same question finds; those of classes have no keys. `namespaceName`
// is written into them.
TPaths ReferenceNames(NORVHAV20::ICIMInstance& object, const TReferenceFilter& filter = {},
                      const std::string& namespaceName = {});
TPaths AssociatorNames(NORVHAV20::ICIMInstance& object, const TAssociatorFilter& filter = {},
                       const std::string& namespaceName = {});
TPaths ReferenceNames(const NORVHAV20::ICIMClass& object, const TReferenceFilter& filter = {},
                      const std::string& namespaceName = {});
TPaths AssociatorNames(const NORVHAV20::ICIMClass& object, const TAssociatorFilter& filter = {},
                       const std::string& namespaceName = {});

}  // namespace hav::client

// Operations: the CIM operations, each on one namespace.
//
// Ownership: answers share what they will write.
// Threads:   that of the namespace.
// Errors:    TCimError with the status that the operation's clients are told; what the
//            repository throws passes through.
#pragma once

#include <string>

#include "wbem/ElementReader.h"
#include "wbem/TAnswer.h"
#include "wbem/TCimError.h"
#include "wbem/TEnumerations.h"
#include "wbem/TParameters.h"

namespace hav::wbem {

struct TCall {
  TNamespacePtr home;
  std::string homeName;
  TParameters parameters;
  TEnumerations& enumerations;
};

TAnswer GetClass(TCall& call);
TAnswer EnumerateClasses(TCall& call);
TAnswer EnumerateClassNames(TCall& call);
TAnswer CreateClass(TCall& call);
TAnswer ModifyClass(TCall& call);
TAnswer DeleteClass(TCall& call);

TAnswer GetInstance(TCall& call);
TAnswer EnumerateInstances(TCall& call);
TAnswer EnumerateInstanceNames(TCall& call);
TAnswer CreateInstance(TCall& call);
TAnswer ModifyInstance(TCall& call);
TAnswer DeleteInstance(TCall& call);
TAnswer GetProperty(TCall& call);
TAnswer SetProperty(TCall& call);

TAnswer Associators(TCall& call);
TAnswer AssociatorNames(TCall& call);
TAnswer References(TCall& call);
TAnswer ReferenceNames(TCall& call);

TAnswer GetQualifier(TCall& call);
TAnswer EnumerateQualifiers(TCall& call);
TAnswer SetQualifier(TCall& call);
TAnswer DeleteQualifier(TCall& call);

TAnswer OpenEnumerateInstances(TCall& call);
TAnswer OpenEnumerateInstancePaths(TCall& call);
TAnswer OpenAssociatorInstances(TCall& call);
TAnswer OpenAssociatorInstancePaths(TCall& call);
TAnswer OpenReferenceInstances(TCall& call);
TAnswer OpenReferenceInstancePaths(TCall& call);
TAnswer PullInstancesWithPath(TCall& call);
TAnswer PullInstancePaths(TCall& call);
TAnswer CloseEnumeration(TCall& call);
TAnswer EnumerationCount(TCall& call);

// What several of them share.
using TClassPtr = boost::shared_ptr<NORVHAV20::ICIMClass>;
using TInstancePtr = boost::shared_ptr<NORVHAV20::ICIMInstance>;

// The class; throws `absent` when there is none.
TClassPtr RequireClass(TCall& call, const std::string& name, ECimStatus absent);
// The instance of an INSTANCENAME. Throws kInvalidClass and kNotFound.
TInstancePtr RequireInstance(TCall& call, const TXmlElement& name);

// Instances of a class and its subclasses, for "ClassName".
std::vector<TInstancePtr> InstancesOfClass(TCall& call, TClassPtr& cls);
// "IncludeClassOrigin" and "PropertyList", and "DeepInheritance" where `cls` is given.
TDetail InstanceDetail(TCall& call);
void ReadDeepInheritance(TCall& call, const NORVHAV20::ICIMClass& cls, TDetail& detail);

std::vector<TInstancePtr> AssociatorsOf(TCall& call, NORVHAV20::ICIMInstance& object);
std::vector<TInstancePtr> ReferencesOf(TCall& call, NORVHAV20::ICIMInstance& object);

}  // namespace hav::wbem

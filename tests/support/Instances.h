// Instances: short ways to ask an instance, for tests. Everything goes through the contract.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/PrintValue.h"
#include "support/Repository.h"

namespace havtest {

// A copy of a property's value; the slot may be one that nothing else keeps.
inline TCIMValue ValueOf(const InstancePtr& instance, const std::string& name) {
  const PropertyPtr slot = instance->GetProperty(name, {});
  return slot->GetValue({});
}

// The names of the slots' declarations, in the order of the walk.
inline std::vector<std::string> SlotNames(const InstancePtr& instance) {
  std::vector<std::string> names;
  instance->EnumerateProperties(
      [&](PropertyPtr slot) {
        names.push_back(slot->GetDecl({})->GetName({}));
        return true;
      },
      {});
  return names;
}

inline std::string PathOf(const InstancePtr& instance) {
  return instance->GetReference({}).GetPath();
}

// A reference to an instance of `cls`, there or not.
inline TCIMReference ReferenceTo(const ClassPtr& cls, const std::map<std::string, TCIMValue>& keys,
                                 const NamespacePtr& home = {}) {
  TCIMReference reference(home, keys);
  reference.SetClass(cls);
  return reference;
}

// What the class holds, subclasses left out, as object paths.
inline std::vector<std::string> Stored(const ClassPtr& cls) {
  return Paths([&](const TEnumCallback<ICIMInstance>& callback) {
    cls->EnumerateInstances(callback, false, {});
  });
}

// The association instances that refer to `instance`, as object paths.
inline std::vector<std::string> References(const InstancePtr& instance,
                                           const std::string& resultClass = "",
                                           const std::string& role = "") {
  return Paths([&](const TEnumCallback<ICIMInstance>& callback) {
    instance->EnumerateAssociationInstances(callback, resultClass, role, {});
  });
}

// The four filters of the query for the other ends. "<root>" stands for any class.
struct AssociatorFilters {
  std::string associationClass = {};
  std::string resultClass = "<root>";
  std::string role = {};
  std::string resultRole = {};
};

// The instances at the other ends, as object paths.
inline std::vector<std::string> Associators(const InstancePtr& instance,
                                            const AssociatorFilters& filters = {}) {
  return Paths([&](const TEnumCallback<ICIMInstance>& callback) {
    instance->EnumerateAssociatedInstances(callback, filters.associationClass, filters.resultClass,
                                           filters.role, filters.resultRole, {});
  });
}

}  // namespace havtest

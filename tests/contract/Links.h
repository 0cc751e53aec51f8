// Links: association classes and instances with short paths: an association instance is
// named by its key "Id" alone, so that any number of them can join the same ends.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/Instances.h"

namespace havtest {

using Names = std::vector<std::string>;

// A registered association class with the key "Id" and these references, in this order.
inline ClassPtr LinkClass(const Repository& repository, const std::string& name,
                          const std::vector<std::pair<std::string, ClassPtr>>& roles,
                          const ClassPtr& superclass = {}) {
  auto cls = repository.Allocate(name, superclass, {{"Association", TCIMValue(true)}});
  if (!superclass) repository.Key(cls, "Id");
  for (const auto& [role, referenced] : roles) repository.Reference(cls, role, referenced);
  cls->AddToNamespace({});
  return cls;
}

// A stored instance of the class with the key "Name".
inline InstancePtr Thing(const Repository& repository, const ClassPtr& cls,
                         const std::string& name) {
  return repository.Instance(cls, {{"Name", TCIMValue(name)}});
}

// A stored association instance that joins these ends.
inline InstancePtr Join(const Repository& repository, const ClassPtr& association,
                        const std::string& id,
                        const std::vector<std::pair<std::string, InstancePtr>>& ends) {
  std::vector<std::pair<std::string, TCIMValue>> values{{"Id", TCIMValue(id)}};
  for (const auto& [role, end] : ends) values.emplace_back(role, end->GetReference({}));
  return repository.Instance(association, values);
}

// System "s", disk "d" and the association classes that the traversal tests start from.
struct LinkedModel {
  Repository repository;
  ClassPtr system = repository.Class("System");
  ClassPtr disk = repository.Class("Disk");
  ClassPtr link = LinkClass(repository, "Link", {{"Group", system}, {"Part", disk}});
  InstancePtr s = Thing(repository, system, "s");
  InstancePtr d = Thing(repository, disk, "d");

  InstancePtr Link(const std::string& id) const {
    return Join(repository, link, id, {{"Group", s}, {"Part", d}});
  }
};

// One class "Node" and an association "Edge" of nodes with nodes.
struct SelfModel {
  Repository repository;
  ClassPtr node = repository.Class("Node");
  ClassPtr edge = LinkClass(repository, "Edge", {{"First", node}, {"Second", node}});
  InstancePtr a = Thing(repository, node, "a");
  InstancePtr b = Thing(repository, node, "b");
};

}  // namespace havtest

// LinkedModel: a small namespace full of links of every shape, and what the association
// queries of CIM have to answer on it, found by looking at every link for every question.
//
// Ownership: owns the namespace.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "havcore/client/Associations.h"
#include "support/Repository.h"
#include "support/Walks.h"

namespace havtest {

using hav::client::TAssociatorFilter;
using hav::client::TReferenceFilter;

class LinkedModel {
 public:
  // The same seed gives the same links everywhere. Among them are objects linked with
  // themselves, references by a role to a subclass, and ends that are not there any more.
  explicit LinkedModel(std::uint32_t seed);

  const std::vector<std::string>& ObjectClasses() const { return m_objectClasses; }
  const std::vector<std::string>& AssociationClasses() const { return m_associationClasses; }
  const std::vector<std::string>& Roles() const { return m_roles; }
  std::size_t ObjectCount() const { return m_objects.size(); }
  InstancePtr Object(std::size_t object) const { return m_objects[object].instance; }
  ClassPtr Class(const std::string& name) const { return m_repository.ns->GetClass(name, {}); }

  // The answers as paths and class names, sorted.
  Names References(std::size_t object, const TReferenceFilter& filter) const;
  Names Associators(std::size_t object, const TAssociatorFilter& filter) const;
  Names References(const std::string& cls, const TReferenceFilter& filter) const;
  Names Associators(const std::string& cls, const TAssociatorFilter& filter) const;

 private:
  using TRoles = std::map<std::string, std::string>;  // the class that each role refers to
  struct TObject {
    std::string cls;
    InstancePtr instance;
    bool stored = true;
  };
  struct TLink {
    std::string cls;
    std::map<std::string, std::size_t> ends;
    std::string path;
  };

  void AddObjectClass(const std::string& name, const std::string& superclass);
  void AddAssociationClass(const std::string& name, const TRoles& roles,
                           const std::string& superclass = {});
  void AddLink(const std::string& cls, const std::map<std::string, std::size_t>& ends);
  bool Derives(const std::string& cls, const std::string& ancestor) const;
  bool Passes(const std::string& cls, const std::string& filter) const;

  Repository m_repository;
  std::vector<std::string> m_objectClasses, m_associationClasses, m_roles;
  std::map<std::string, std::string> m_superclasses;
  std::map<std::string, TRoles> m_declared;
  std::vector<TObject> m_objects;
  std::vector<TLink> m_links;
};

}  // namespace havtest

// Repository: a namespace with the usual qualifier declarations, and short ways to fill it.
// Everything goes through the contract.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"
#include "support/Plugin.h"
#include "support/RecordingLogger.h"
#include "support/Status.h"

namespace havtest {

using namespace NORVHAV20;

using NamespacePtr = boost::shared_ptr<ICIMNamespace>;
using ClassPtr = boost::shared_ptr<ICIMClass>;
using InstancePtr = boost::shared_ptr<ICIMInstance>;
using PropertyPtr = boost::shared_ptr<ICIMProperty>;
using PropertyDeclPtr = boost::shared_ptr<ICIMPropertyDecl>;
using MethodDeclPtr = boost::shared_ptr<ICIMMethodDecl>;
using ParameterDeclPtr = boost::shared_ptr<ICIMParameterDecl>;
using QualifierPtr = boost::shared_ptr<ICIMQualifier>;
using QualifierDeclPtr = boost::shared_ptr<ICIMQualifierDecl>;

using Qualifiers = std::vector<std::pair<std::string, TCIMValue>>;

inline NamespacePtr NewNamespace(bool redefinitionAllowed = false) {
  return Provider()->AllocateNamespace(TOptions(), redefinitionAllowed, "root/test");
}

class Repository {
 public:
  explicit Repository(bool redefinitionAllowed = false) : ns(NewNamespace(redefinitionAllowed)) {}
  explicit Repository(NamespacePtr existing) : ns(std::move(existing)) {}

  // The declaration of a qualifier; made on first use from the type of `example`, with no
  // default, any scope, and overridable and propagating to subclasses.
  QualifierDeclPtr Declaration(
      const std::string& name, const TCIMValue& example = TCIMValue(true),
      ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorOverridable |
                                          ICIMQualifierDecl::kFlavorToSubclass) const {
    if (auto known = ns->GetQualifierDecl(name, {})) return known;
    return ns->AllocateQualifierDecl(name, TCIMValue::Null(example.GetType()),
                                     ICIMQualifierDecl::kScopeAny, flavor, {});
  }

  template <class Element>
  void Qualify(Element& element, const Qualifiers& qualifiers) const {
    for (const auto& [name, value] : qualifiers)
      element.AllocateQualifier(Declaration(name, value), value, TOptions());
  }

  // An allocated class with its qualifiers, not yet registered.
  ClassPtr Allocate(const std::string& name, const ClassPtr& superclass = {},
                    const Qualifiers& qualifiers = {}) const {
    auto cls = ns->AllocateClass(name, superclass, {});
    Qualify(*cls, qualifiers);
    return cls;
  }

  // Declares a property of `cls` and returns what the class then has under the name.
  PropertyDeclPtr Property(const ClassPtr& cls, const std::string& name,
                           const TCIMValue& defaultValue, const Qualifiers& qualifiers = {}) const {
    auto decl = cls->AllocatePropertyDecl(name, defaultValue, {});
    Qualify(*decl, qualifiers);
    decl->AddToClass({});
    return cls->GetPropertyDecl(name, {});
  }
  PropertyDeclPtr Key(const ClassPtr& cls, const std::string& name,
                      const TCIMValue& defaultValue = TCIMValue::Null(kCIMString)) const {
    return Property(cls, name, defaultValue, {{"Key", TCIMValue(true)}});
  }
  PropertyDeclPtr Reference(const ClassPtr& cls, const std::string& name,
                            const ClassPtr& referenced, const Qualifiers& qualifiers = {}) const {
#if defined(FOREIGN_CORE_HOST)
    // What a host does whose core the plug-in cannot ask for a NULL reference.
    auto decl = cls->AllocatePropertyDecl(name, TCIMValue::NullReference(referenced), {});
#else
    auto decl = cls->AllocateReferenceDecl(name, referenced, {});
#endif
    Qualify(*decl, qualifiers);
    decl->AddToClass({});
    return cls->GetPropertyDecl(name, {});
  }

  // A registered class with the string key "Name".
  ClassPtr Class(const std::string& name, const ClassPtr& superclass = {},
                 const Qualifiers& qualifiers = {}) const {
    auto cls = Allocate(name, superclass, qualifiers);
    if (!superclass) Key(cls, "Name");
    cls->AddToNamespace({});
    return cls;
  }

  // A registered association class whose two references are its keys.
  ClassPtr Association(const std::string& name, const std::string& role1, const ClassPtr& class1,
                       const std::string& role2, const ClassPtr& class2,
                       const ClassPtr& superclass = {}) const {
    auto cls = Allocate(name, superclass, {{"Association", TCIMValue(true)}});
    Reference(cls, role1, class1, {{"Key", TCIMValue(true)}});
    Reference(cls, role2, class2, {{"Key", TCIMValue(true)}});
    cls->AddToNamespace({});
    return cls;
  }

  // A stored instance with these property values.
  InstancePtr Instance(const ClassPtr& cls,
                       const std::vector<std::pair<std::string, TCIMValue>>& values) const {
    auto instance = cls->AllocateInstance({});
    for (const auto& [name, value] : values) instance->SetPropertyValue(name, value, {});
    instance->AddToNamespace({});
    return instance;
  }
  InstancePtr Link(const ClassPtr& association, const std::string& role1, const InstancePtr& end1,
                   const std::string& role2, const InstancePtr& end2) const {
    return Instance(association, {{role1, TCIMValue(end1->GetReference({}))},
                                  {role2, TCIMValue(end2->GetReference({}))}});
  }

  NamespacePtr ns;
};

// What an enumeration visits, as names, in its order.
template <class Enumerate>
std::vector<std::string> ClassNames(Enumerate&& enumerate) {
  std::vector<std::string> names;
  enumerate(TEnumCallback<ICIMClass>([&](ClassPtr cls) {
    names.push_back(cls->GetName({}));
    return true;
  }));
  return names;
}

// What an enumeration visits, as object paths, in its order.
template <class Enumerate>
std::vector<std::string> Paths(Enumerate&& enumerate) {
  std::vector<std::string> paths;
  enumerate(TEnumCallback<ICIMInstance>([&](InstancePtr instance) {
    paths.push_back(instance->GetReference({}).GetPath());
    return true;
  }));
  return paths;
}

}  // namespace havtest

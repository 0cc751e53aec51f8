// Walks: what the enumerations of the contract visit, as names in their order.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "support/Repository.h"

namespace havtest {

using Names = std::vector<std::string>;

// The names of the elements that `enumerate` gives to its callback.
template <class Element, class Enumerate>
Names NamesOf(Enumerate&& enumerate) {
  Names names;
  enumerate(TEnumCallback<Element>([&](boost::shared_ptr<Element> element) {
    names.push_back(element->GetName({}));
    return true;
  }));
  return names;
}

template <class Owner>
Names QualifierNames(const boost::shared_ptr<Owner>& owner) {
  return NamesOf<ICIMQualifier>([&](auto callback) { owner->EnumerateQualifiers(callback, {}); });
}
inline Names QualifierDeclNames(const NamespacePtr& ns) {
  return NamesOf<ICIMQualifierDecl>(
      [&](auto callback) { ns->EnumerateQualifierDecls(callback, {}); });
}
inline Names RootClassNames(const NamespacePtr& ns) {
  return NamesOf<ICIMClass>([&](auto callback) { ns->EnumerateRootClasses(callback, {}); });
}
inline Names SubclassNames(const ClassPtr& cls) {
  return NamesOf<ICIMClass>([&](auto callback) { cls->EnumerateSubclasses(callback, {}); });
}
inline Names PropertyNames(const ClassPtr& cls) {
  return NamesOf<ICIMPropertyDecl>(
      [&](auto callback) { cls->EnumeratePropertyDecls(callback, {}); });
}
inline Names ReferenceNames(const ClassPtr& cls) {
  return NamesOf<ICIMPropertyDecl>(
      [&](auto callback) { cls->EnumerateReferenceDecls(callback, {}); });
}
inline Names MethodNames(const ClassPtr& cls) {
  return NamesOf<ICIMMethodDecl>([&](auto callback) { cls->EnumerateMethodDecls(callback, {}); });
}
inline Names ParameterNames(const MethodDeclPtr& method) {
  return NamesOf<ICIMParameterDecl>(
      [&](auto callback) { method->EnumerateParameters(callback, {}); });
}
inline Names KeyNames(const ClassPtr& cls) {
  Names names;
  cls->EnumerateKeyNames(
      [&](const std::string* name) {
        names.push_back(*name);
        return true;
      },
      {});
  return names;
}

// The walks over associations promise no order: sorted by name.
inline Names Sorted(Names names) {
  std::sort(names.begin(), names.end());
  return names;
}
inline Names AssociationNames(const ClassPtr& cls, const std::string& resultClass = "",
                              const std::string& role = "") {
  return Sorted(NamesOf<ICIMClass>(
      [&](auto callback) { cls->EnumerateAssociationClasses(callback, resultClass, role, {}); }));
}

// The four filters of the query for the classes at the other ends; empty matches all.
struct ClassFilters {
  std::string associationClass = {};
  std::string resultClass = {};
  std::string role = {};
  std::string resultRole = {};
};
inline Names AssociatedNames(const ClassPtr& cls, const ClassFilters& filters = {}) {
  return Sorted(NamesOf<ICIMClass>([&](auto callback) {
    cls->EnumerateAssociatedClasses(callback, filters.associationClass, filters.resultClass,
                                    filters.role, filters.resultRole, {});
  }));
}

}  // namespace havtest

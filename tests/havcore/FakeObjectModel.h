// FakeObjectModel: a namespace with a few classes and instances, just enough for an object
// path to be bound and resolved. What a path never asks for is not supported: status 1.
#pragma once

#include <cctype>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/havcore.h"

namespace havtest {

using namespace NORVHAV20;

using QualifierPtr = boost::shared_ptr<ICIMQualifier>;
using QualifierDeclPtr = boost::shared_ptr<ICIMQualifierDecl>;
using ClassPtr = boost::shared_ptr<ICIMClass>;
using InstancePtr = boost::shared_ptr<ICIMInstance>;
using PropertyDeclPtr = boost::shared_ptr<ICIMPropertyDecl>;
using MethodDeclPtr = boost::shared_ptr<ICIMMethodDecl>;
using NamespacePtr = boost::shared_ptr<ICIMNamespace>;

[[noreturn]] inline void NotSupported() { throw THAVException(kHAVNotSupported); }

inline std::string LowerCase(std::string name) {
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

// The qualifiers of an element that has none.
template <class Element>
class Unqualified : public Element {
 public:
  void AddQualifier(QualifierPtr, TOptions) override { NotSupported(); }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, ICIMQualifierDecl::EFlavor,
                                 TOptions) override {
    NotSupported();
  }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, TOptions) override {
    NotSupported();
  }
  QualifierPtr FindQualifier(const std::string&, bool&, TOptions) override { NotSupported(); }
  QualifierPtr GetQualifier(const std::string&, TOptions) override { NotSupported(); }
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>&, TOptions) override {
    NotSupported();
  }
};

class FakePropertyDecl : public Unqualified<ICIMPropertyDecl> {
 public:
  FakePropertyDecl(std::string name, ECIMType type)
      : m_name(std::move(name)), m_default(TCIMValue::Null(type)) {}

  const std::string& GetName(TOptions) const override { return m_name; }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_default.GetType(); }
  bool IsArray(TOptions) const override { return m_default.IsArray(); }
  const TCIMValue& GetDefaultValue(TOptions) const override { return m_default; }

  void Validate(TOptions) override { NotSupported(); }
  void AddToClass(TOptions) override { NotSupported(); }
  void Delete(TOptions) override { NotSupported(); }
  ClassPtr GetClass(TOptions) const override { NotSupported(); }
  void SetDefaultValue(const TCIMValue&, TOptions) override { NotSupported(); }
  bool operator==(const ICIMPropertyDecl&) const override { NotSupported(); }
  bool operator<(const ICIMPropertyDecl&) const override { NotSupported(); }
  ICIMPropertyDecl& operator=(const ICIMPropertyDecl&) override { return *this; }

 private:
  std::string m_name;
  TCIMValue m_default;
};

class FakeClass : public Unqualified<ICIMClass> {
 public:
  // The names of the declarations that were looked for, in order.
  mutable std::vector<std::string> asked;

  FakeClass(std::string name, NamespacePtr home, const std::map<std::string, ECIMType>& keys)
      : m_name(std::move(name)), m_home(home) {
    for (const auto& [key, type] : keys)
      m_decls[LowerCase(key)] = boost::make_shared<FakePropertyDecl>(key, type);
  }

  const std::string& GetName(TOptions) const override { return m_name; }
  NamespacePtr GetNamespace(TOptions) const override { return m_home.lock(); }
  PropertyDeclPtr GetPropertyDecl(const std::string& name, TOptions) const override {
    asked.push_back(name);
    const auto decl = m_decls.find(LowerCase(name));
    if (decl == m_decls.end()) throw THAVException(kHAVNotFound);
    return decl->second;
  }

  void Validate(TOptions) const override { NotSupported(); }
  void AddToNamespace(TOptions) override { NotSupported(); }
  void Delete(TOptions) override { NotSupported(); }
  void ModifyInstance(InstancePtr, TOptions) override { NotSupported(); }
  bool IsAssociation(TOptions) const override { NotSupported(); }
  bool IsAbstract(TOptions) const override { NotSupported(); }
  bool IsIndication(TOptions) const override { NotSupported(); }
  ClassPtr GetSuperClass(TOptions) const override { NotSupported(); }
  void EnumerateSubclasses(const TEnumCallback<ICIMClass>&, TOptions) const override {
    NotSupported();
  }
  bool IsA(ClassPtr, TOptions) const override { NotSupported(); }
  void EnumerateAssociatedClasses(const TEnumCallback<ICIMClass>&, const std::string&,
                                  const std::string&, const std::string&, const std::string&,
                                  TOptions) const override {
    NotSupported();
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>&, const std::string&,
                                   const std::string&, TOptions) const override {
    NotSupported();
  }
  void EnumerateKeyNames(const boost::function<bool(const std::string*)>&,
                         TOptions) const override {
    NotSupported();
  }
  PropertyDeclPtr AllocatePropertyDecl(const std::string&, const TCIMValue&, TOptions) override {
    NotSupported();
  }
  void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>&, TOptions) const override {
    NotSupported();
  }
  PropertyDeclPtr AllocateReferenceDecl(const std::string&, ClassPtr, TOptions) override {
    NotSupported();
  }
  PropertyDeclPtr GetReferenceDecl(const std::string&, TOptions) const override { NotSupported(); }
  void EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>&, TOptions) const override {
    NotSupported();
  }
  InstancePtr AllocateInstance(TOptions) override { NotSupported(); }
  void EnumerateInstances(const TEnumCallback<ICIMInstance>&, bool, TOptions) override {
    NotSupported();
  }
  MethodDeclPtr AllocateMethodDecl(const std::string&, TCIMValue::TCIMType, TOptions) override {
    NotSupported();
  }
  MethodDeclPtr GetMethodDecl(const std::string&, TOptions) const override { NotSupported(); }
  void EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>&, TOptions) const override {
    NotSupported();
  }
  TCIMValue InvokeMethod(const std::string&, std::map<std::string, TCIMValue>&, TOptions) override {
    NotSupported();
  }
  bool operator==(const ICIMClass&) const override { NotSupported(); }
  bool operator<(const ICIMClass&) const override { NotSupported(); }
  ICIMClass& operator=(const ICIMClass&) override { return *this; }
  bool IsHostMarked(TOptions) const override { NotSupported(); }
  void SetHostMarked(TOptions) override { NotSupported(); }
  void AddSubclass(ClassPtr, TOptions) override { NotSupported(); }
  void RemoveSubclass(ClassPtr, TOptions) override { NotSupported(); }
  void AddInstance(InstancePtr, TOptions) override { NotSupported(); }
  void RemoveInstance(InstancePtr, TOptions) override { NotSupported(); }
  void AddAssociation(ClassPtr, TOptions) override { NotSupported(); }
  void RemoveAssociation(ClassPtr, TOptions) override { NotSupported(); }
  void AddPropertyDecl(PropertyDeclPtr, TOptions) override { NotSupported(); }
  void RemovePropertyDecl(PropertyDeclPtr, TOptions) override { NotSupported(); }
  void AddMethodDecl(MethodDeclPtr, TOptions) override { NotSupported(); }
  void RemoveMethodDecl(MethodDeclPtr, TOptions) override { NotSupported(); }

 private:
  std::string m_name;
  boost::weak_ptr<ICIMNamespace> m_home;
  std::map<std::string, PropertyDeclPtr> m_decls;  // by lower-case name
};

class FakeInstance : public ICIMInstance {
 public:
  void Validate(TOptions) const override { NotSupported(); }
  void AddToNamespace(TOptions) override { NotSupported(); }
  void ModifyInstance(InstancePtr, TOptions) override { NotSupported(); }
  void Delete(TOptions) override { NotSupported(); }
  TCIMReference GetReference(TOptions) const override { NotSupported(); }
  TCIMReference GetInstanceReference(TOptions) override { NotSupported(); }
  ClassPtr GetClass(TOptions) const override { NotSupported(); }
  std::string GetPegasusNSPStr() const override { NotSupported(); }
  void EnumerateAssociatedInstances(const TEnumCallback<ICIMInstance>&, const std::string&,
                                    const std::string&, const std::string&, const std::string&,
                                    TOptions) override {
    NotSupported();
  }
  void EnumerateAssociationInstances(const TEnumCallback<ICIMInstance>&, const std::string&,
                                     const std::string&, TOptions) override {
    NotSupported();
  }
  boost::shared_ptr<ICIMProperty> GetProperty(const std::string&, TOptions) const override {
    NotSupported();
  }
  void SetPropertyValue(const std::string&, const TCIMValue&, TOptions) override { NotSupported(); }
  void EnumerateProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>&,
                           TOptions) override {
    NotSupported();
  }
  TCIMValue InvokeMethod(const std::string&, std::map<std::string, TCIMValue>&, TOptions) override {
    NotSupported();
  }
  bool operator==(ICIMInstance&) const override { NotSupported(); }
  bool operator<(ICIMInstance&) const override { NotSupported(); }
  ICIMInstance& operator=(const ICIMInstance&) override { return *this; }
};

// Finds classes by lower-case name and instances by the text of GetPath, as a repository does.
class FakeNamespace : public ICIMNamespace, public boost::enable_shared_from_this<FakeNamespace> {
 public:
  ClassPtr AddClass(const std::string& name, const std::map<std::string, ECIMType>& keys = {}) {
    return classes[LowerCase(name)] = boost::make_shared<FakeClass>(name, shared_from_this(), keys);
  }
  InstancePtr AddInstance(const std::string& path) {
    return instances[path] = boost::make_shared<FakeInstance>();
  }

  // Status that the next look-ups of a class or an instance throw; 0: none.
  unsigned classFailure = 0;
  unsigned instanceFailure = 0;
  std::map<std::string, ClassPtr> classes;
  std::map<std::string, InstancePtr> instances;

  ClassPtr GetClass(const std::string& name, TOptions) override {
    ThrowIf(classFailure);
    const auto cls = classes.find(LowerCase(name));
    if (cls == classes.end()) throw THAVException(kHAVNotFound);
    return cls->second;
  }
  InstancePtr GetInstance(const TCIMReference& path, TOptions) const override {
    ThrowIf(instanceFailure);
    if (classes.count(LowerCase(path.GetClassName())) == 0) throw THAVException(kHAVNotFound);
    const auto instance = instances.find(path.GetPath());
    return instance == instances.end() ? InstancePtr() : instance->second;
  }

  boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TOptions) const override {
    NotSupported();
  }
  void SetUpcallNamespace(NamespacePtr, TOptions) override { NotSupported(); }
  void AddUnderlyingNamespace(NamespacePtr, TOptions) override { NotSupported(); }
  ClassPtr AllocateClass(const std::string&, ClassPtr, TOptions) override { NotSupported(); }
  void EnumerateRootClasses(const TEnumCallback<ICIMClass>&, TOptions) override { NotSupported(); }
  void EnumerateProviders(const TEnumCallback<IProvider>&, TOptions) override { NotSupported(); }
  QualifierDeclPtr AllocateQualifierDecl(const std::string&, const TCIMValue&,
                                         ICIMQualifierDecl::EScope, ICIMQualifierDecl::EFlavor,
                                         TOptions) override {
    NotSupported();
  }
  QualifierDeclPtr GetQualifierDecl(const std::string&, TOptions) const override { NotSupported(); }
  void EnumerateQualifierDecls(const TEnumCallback<ICIMQualifierDecl>&, TOptions) const override {
    NotSupported();
  }
  void Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TEnumCallback<ICIMInstance>&,
                 TOptions) override {
    NotSupported();
  }
  void DeleteInstance(const TCIMReference&, TOptions) override { NotSupported(); }
  void ModifyInstance(const TCIMReference&, TOptions, TOptions) override { NotSupported(); }
  void ExecuteQuery(const TEnumCallback<ICIMInstance>&, std::string&,
                    const TEnumCallback<ICIMInstance>&, TOptions) override {
    NotSupported();
  }
  void ClearInstances() override { NotSupported(); }
  ICIMNamespace& operator=(ICIMNamespace&) override { return *this; }

 private:
  static void ThrowIf(unsigned status) {
    if (status != 0) throw THAVException(static_cast<EHAVStatusCode>(status));
  }
};

}  // namespace havtest

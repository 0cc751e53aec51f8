// ForeignClass: a class that is not the plug-in's own: a host's wrapper around one of its
// classes. What it shows is the wrapped class's; what changes a class reaches that class.
//
// Ownership: shares the class behind it.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "support/ForeignDecls.h"

namespace havtest {

class ForeignClass : public ICIMClass {
 public:
  explicit ForeignClass(ClassPtr behind) : m_behind(std::move(behind)) {}

  const std::string& GetName(TOptions o) const override { return m_behind->GetName(o); }
  NamespacePtr GetNamespace(TOptions o) const override { return m_behind->GetNamespace(o); }
  bool IsAssociation(TOptions o) const override { return m_behind->IsAssociation(o); }
  bool IsAbstract(TOptions o) const override { return m_behind->IsAbstract(o); }
  bool IsIndication(TOptions o) const override { return m_behind->IsIndication(o); }
  ClassPtr GetSuperClass(TOptions o) const override { return m_behind->GetSuperClass(o); }
  bool IsA(ClassPtr other, TOptions o) const override { return m_behind->IsA(other, o); }
  bool IsHostMarked(TOptions o) const override { return m_behind->IsHostMarked(o); }
  QualifierPtr FindQualifier(const std::string& name, bool& found, TOptions o) override {
    return m_behind->FindQualifier(name, found, o);
  }
  QualifierPtr GetQualifier(const std::string& name, TOptions o) override {
    return m_behind->GetQualifier(name, o);
  }
  PropertyDeclPtr GetPropertyDecl(const std::string& name, TOptions o) const override {
    return m_behind->GetPropertyDecl(name, o);
  }
  PropertyDeclPtr GetReferenceDecl(const std::string& name, TOptions o) const override {
    return m_behind->GetReferenceDecl(name, o);
  }
  MethodDeclPtr GetMethodDecl(const std::string& name, TOptions o) const override {
    return m_behind->GetMethodDecl(name, o);
  }

  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback, TOptions o) override {
    m_behind->EnumerateQualifiers(callback, o);
  }
  void EnumerateSubclasses(const TEnumCallback<ICIMClass>& callback, TOptions o) const override {
    m_behind->EnumerateSubclasses(callback, o);
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions o) const override {
    m_behind->EnumerateAssociationClasses(callback, resultClass, role, o);
  }
  void EnumerateAssociatedClasses(const TEnumCallback<ICIMClass>& callback,
                                  const std::string& associationClass,
                                  const std::string& resultClass, const std::string& role,
                                  const std::string& resultRole, TOptions o) const override {
    m_behind->EnumerateAssociatedClasses(callback, associationClass, resultClass, role, resultRole,
                                         o);
  }
  void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                         TOptions o) const override {
    m_behind->EnumerateKeyNames(callback, o);
  }
  void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                              TOptions o) const override {
    m_behind->EnumeratePropertyDecls(callback, o);
  }
  void EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                               TOptions o) const override {
    m_behind->EnumerateReferenceDecls(callback, o);
  }
  void EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>& callback,
                            TOptions o) const override {
    m_behind->EnumerateMethodDecls(callback, o);
  }
  void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                          TOptions o) override {
    m_behind->EnumerateInstances(callback, deep, o);
  }

  void AddSubclass(ClassPtr subclass, TOptions o) override { m_behind->AddSubclass(subclass, o); }
  void RemoveSubclass(ClassPtr subclass, TOptions o) override {
    m_behind->RemoveSubclass(subclass, o);
  }
  void AddAssociation(ClassPtr association, TOptions o) override {
    m_behind->AddAssociation(association, o);
  }
  void RemoveAssociation(ClassPtr association, TOptions o) override {
    m_behind->RemoveAssociation(association, o);
  }
  bool operator==(const ICIMClass& other) const override { return *m_behind == other; }
  bool operator<(const ICIMClass& other) const override { return *m_behind < other; }
  ICIMClass& operator=(const ICIMClass&) override { return *this; }

  void Validate(TOptions) const override { NotForTheRepository(); }
  void AddToNamespace(TOptions) override { NotForTheRepository(); }
  void Delete(TOptions) override { NotForTheRepository(); }
  void ModifyInstance(InstancePtr, TOptions) override { NotForTheRepository(); }
  void AddQualifier(QualifierPtr, TOptions) override { NotForTheRepository(); }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, ICIMQualifierDecl::EFlavor,
                                 TOptions) override {
    NotForTheRepository();
  }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, TOptions) override {
    NotForTheRepository();
  }
  PropertyDeclPtr AllocatePropertyDecl(const std::string&, const TCIMValue&, TOptions) override {
    NotForTheRepository();
  }
  PropertyDeclPtr AllocateReferenceDecl(const std::string&, ClassPtr, TOptions) override {
    NotForTheRepository();
  }
  InstancePtr AllocateInstance(TOptions) override { NotForTheRepository(); }
  MethodDeclPtr AllocateMethodDecl(const std::string&, TCIMValue::TCIMType, TOptions) override {
    NotForTheRepository();
  }
  TCIMValue InvokeMethod(const std::string&, std::map<std::string, TCIMValue>&, TOptions) override {
    NotForTheRepository();
  }
  void SetHostMarked(TOptions) override { NotForTheRepository(); }
  void AddInstance(InstancePtr, TOptions) override { NotForTheRepository(); }
  void RemoveInstance(InstancePtr, TOptions) override { NotForTheRepository(); }
  void AddPropertyDecl(PropertyDeclPtr, TOptions) override { NotForTheRepository(); }
  void RemovePropertyDecl(PropertyDeclPtr, TOptions) override { NotForTheRepository(); }
  void AddMethodDecl(MethodDeclPtr, TOptions) override { NotForTheRepository(); }
  void RemoveMethodDecl(MethodDeclPtr, TOptions) override { NotForTheRepository(); }

 private:
  ClassPtr m_behind;
};

}  // namespace havtest

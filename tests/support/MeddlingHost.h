// MeddlingHost: elements of a host's making, each of whose operations may do anything at all to
// the model in the middle of an operation of the repository.
//
// Ownership: as the foreign elements that they derive from.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "support/ForeignClass.h"
#include "support/ForeignInstance.h"
#include "support/ForeignQualifier.h"

namespace havtest {

// Runs the act at one of the calls that reach the host's elements.
class Meddler {
 public:
  static void At(int call, std::function<void()> act) {
    s_left = call;
    s_act = std::move(act);
  }
  static void Called() {
    if (s_left < 0 || s_left-- != 0) return;
    const auto act = std::move(s_act);
    act();
  }
  // Whether it came to that; nothing is run any more.
  static bool Rest() {
    const bool ran = s_left < 0;
    s_left = -1;
    s_act = nullptr;
    return ran;
  }

 private:
  static inline int s_left = -1;
  static inline std::function<void()> s_act;
};

// A member that makes the end of an element one of those calls. It may do anything but throw.
class MeddlesAtItsEnd {
 public:
  MeddlesAtItsEnd() = default;
  MeddlesAtItsEnd(const MeddlesAtItsEnd&) = delete;
  MeddlesAtItsEnd& operator=(const MeddlesAtItsEnd&) = delete;
  ~MeddlesAtItsEnd() {
    try {
      Meddler::Called();
    } catch (...) {
    }
  }
};

template <class Result>
Result Meddled(Result result) {
  Meddler::Called();
  return result;
}

class MeddlingDecl : public ForeignPropertyDecl {
 public:
  using ForeignPropertyDecl::ForeignPropertyDecl;

  const std::string& GetName(TOptions o) const override {
    Meddler::Called();
    return ForeignPropertyDecl::GetName(o);
  }
  ClassPtr GetClass(TOptions o) const override { return Meddled(ForeignPropertyDecl::GetClass(o)); }
  TCIMValue::TCIMType GetType(TOptions o) const override {
    return Meddled(ForeignPropertyDecl::GetType(o));
  }
  bool IsArray(TOptions o) const override { return Meddled(ForeignPropertyDecl::IsArray(o)); }
  const TCIMValue& GetDefaultValue(TOptions o) const override {
    Meddler::Called();
    return ForeignPropertyDecl::GetDefaultValue(o);
  }
  QualifierPtr GetQualifier(const std::string& name, TOptions o) override {
    Meddler::Called();
    return ForeignPropertyDecl::GetQualifier(name, o);
  }

 private:
  MeddlesAtItsEnd m_end;
};

class MeddlingMethodDecl : public ForeignMethodDecl {
 public:
  using ForeignMethodDecl::ForeignMethodDecl;

  const std::string& GetName(TOptions o) const override {
    Meddler::Called();
    return ForeignMethodDecl::GetName(o);
  }
  ClassPtr GetClass(TOptions o) const override { return Meddled(ForeignMethodDecl::GetClass(o)); }
  TCIMValue::TCIMType GetType(TOptions o) const override {
    return Meddled(ForeignMethodDecl::GetType(o));
  }
  QualifierPtr GetQualifier(const std::string& name, TOptions o) override {
    Meddler::Called();
    return ForeignMethodDecl::GetQualifier(name, o);
  }

 private:
  MeddlesAtItsEnd m_end;
};

class MeddlingQualifier : public ForeignQualifier {
 public:
  using ForeignQualifier::ForeignQualifier;

  const std::string& GetName(TOptions o) const override {
    Meddler::Called();
    return ForeignQualifier::GetName(o);
  }
  QualifierDeclPtr GetQualifierDecl(TOptions o) const override {
    return Meddled(ForeignQualifier::GetQualifierDecl(o));
  }
  const TCIMValue& GetValue(TOptions o) const override {
    Meddler::Called();
    return ForeignQualifier::GetValue(o);
  }
  ICIMQualifierDecl::EFlavor GetFlavor(TOptions o) const override {
    return Meddled(ForeignQualifier::GetFlavor(o));
  }
  bool IsPropagated(TOptions o) const override {
    return Meddled(ForeignQualifier::IsPropagated(o));
  }

 private:
  MeddlesAtItsEnd m_end;
};

class MeddlingClass : public ForeignClass {
 public:
  using ForeignClass::ForeignClass;

  const std::string& GetName(TOptions o) const override {
    Meddler::Called();
    return ForeignClass::GetName(o);
  }
  NamespacePtr GetNamespace(TOptions o) const override {
    return Meddled(ForeignClass::GetNamespace(o));
  }
  ClassPtr GetSuperClass(TOptions o) const override {
    return Meddled(ForeignClass::GetSuperClass(o));
  }
  bool IsA(ClassPtr other, TOptions o) const override {
    return Meddled(ForeignClass::IsA(other, o));
  }
  bool IsAssociation(TOptions o) const override { return Meddled(ForeignClass::IsAssociation(o)); }
  PropertyDeclPtr GetPropertyDecl(const std::string& name, TOptions o) const override {
    return Meddled(ForeignClass::GetPropertyDecl(name, o));
  }
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback, TOptions o) override {
    Meddler::Called();
    ForeignClass::EnumerateQualifiers(callback, o);
  }
  void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                              TOptions o) const override {
    Meddler::Called();
    ForeignClass::EnumeratePropertyDecls(callback, o);
  }
  void EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                               TOptions o) const override {
    Meddler::Called();
    ForeignClass::EnumerateReferenceDecls(callback, o);
  }
  void EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>& callback,
                            TOptions o) const override {
    Meddler::Called();
    ForeignClass::EnumerateMethodDecls(callback, o);
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions o) const override {
    Meddler::Called();
    ForeignClass::EnumerateAssociationClasses(callback, resultClass, role, o);
  }
  void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                          TOptions o) override {
    Meddler::Called();
    ForeignClass::EnumerateInstances(callback, deep, o);
  }
  void AddSubclass(ClassPtr subclass, TOptions o) override {
    Meddler::Called();
    ForeignClass::AddSubclass(subclass, o);
  }
  void RemoveSubclass(ClassPtr subclass, TOptions o) override {
    Meddler::Called();
    ForeignClass::RemoveSubclass(subclass, o);
  }
  void AddAssociation(ClassPtr association, TOptions o) override {
    Meddler::Called();
    ForeignClass::AddAssociation(association, o);
  }
  void RemoveAssociation(ClassPtr association, TOptions o) override {
    Meddler::Called();
    ForeignClass::RemoveAssociation(association, o);
  }

 private:
  MeddlesAtItsEnd m_end;
};

class MeddlingInstance : public ForeignInstance {
 public:
  using ForeignInstance::ForeignInstance;

  TCIMReference GetReference(TOptions o) const override {
    return Meddled(ForeignInstance::GetReference(o));
  }
  ClassPtr GetClass(TOptions o) const override { return Meddled(ForeignInstance::GetClass(o)); }
  PropertyPtr GetProperty(const std::string& name, TOptions o) const override {
    return Meddled(ForeignInstance::GetProperty(name, o));
  }
  void EnumerateProperties(const boost::function<bool(PropertyPtr)>& callback,
                           TOptions o) override {
    Meddler::Called();
    ForeignInstance::EnumerateProperties(callback, o);
  }

 private:
  MeddlesAtItsEnd m_end;
};

}  // namespace havtest

// ForeignDecls: declarations that a host has made itself, to stand before the repository's
// rules: their names need not be CIM names, and looking up their qualifiers may fail.
//
// Ownership: as the contract has it; a foreign declaration holds nothing else.
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/Repository.h"

namespace havtest {

// What the repository has no reason to call.
[[noreturn]] inline void NotForTheRepository() {
  throw std::logic_error("the repository does not call this");
}

// The qualifiers of a foreign element: none. The look-up throws 15, except for names that a
// test lets fail with another status, or with an exception of another kind.
class ForeignQualifiers {
 public:
  void FailsWith(const std::string& name, unsigned status) { m_failures[name] = status; }
  void FailsStrangely(const std::string& name) { m_strange.insert(name); }

  QualifierPtr Get(const std::string& name) const {
    if (m_strange.count(name) != 0) throw std::runtime_error("no qualifiers today");
    const auto failure = m_failures.find(name);
    if (failure != m_failures.end())
      throw THAVException(static_cast<EHAVStatusCode>(failure->second));
    throw THAVException(kHAVNotFound);
  }

 private:
  std::map<std::string, unsigned> m_failures;
  std::set<std::string> m_strange;
};

// The named-element part of a foreign declaration of the interface `Interface`.
template <class Interface>
class ForeignElement : public Interface {
 public:
  ForeignQualifiers qualifiers;

  QualifierPtr GetQualifier(const std::string& name, TOptions) override {
    return qualifiers.Get(name);
  }
  void AddQualifier(QualifierPtr, TOptions) override { NotForTheRepository(); }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, ICIMQualifierDecl::EFlavor,
                                 TOptions) override {
    NotForTheRepository();
  }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, TOptions) override {
    NotForTheRepository();
  }
  QualifierPtr FindQualifier(const std::string&, bool&, TOptions) override {
    NotForTheRepository();
  }
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>&, TOptions) override {}
};

class ForeignPropertyDecl : public ForeignElement<ICIMPropertyDecl> {
 public:
  ForeignPropertyDecl(ClassPtr origin, std::string name, TCIMValue value)
      : m_origin(origin), m_name(std::move(name)), m_value(std::move(value)) {}

  const std::string& GetName(TOptions) const override { return m_name; }
  ClassPtr GetClass(TOptions) const override { return m_origin.lock(); }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_value.GetType(); }
  bool IsArray(TOptions) const override { return m_value.IsArray(); }
  const TCIMValue& GetDefaultValue(TOptions) const override { return m_value; }

  void Validate(TOptions) override {}
  void AddToClass(TOptions) override { NotForTheRepository(); }
  void Delete(TOptions) override { NotForTheRepository(); }
  void SetDefaultValue(const TCIMValue&, TOptions) override { NotForTheRepository(); }
  bool operator==(const ICIMPropertyDecl&) const override { NotForTheRepository(); }
  bool operator<(const ICIMPropertyDecl&) const override { NotForTheRepository(); }
  ICIMPropertyDecl& operator=(const ICIMPropertyDecl&) override { return *this; }

 private:
  boost::weak_ptr<ICIMClass> m_origin;
  std::string m_name;
  TCIMValue m_value;
};

class ForeignMethodDecl : public ForeignElement<ICIMMethodDecl> {
 public:
  ForeignMethodDecl(ClassPtr origin, std::string name, TCIMValue::TCIMType type)
      : m_origin(origin), m_name(std::move(name)), m_type(type) {}

  const std::string& GetName(TOptions) const override { return m_name; }
  ClassPtr GetClass(TOptions) const override { return m_origin.lock(); }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_type; }

  void Validate(TOptions) override {}
  void AddToClass(TOptions) override { NotForTheRepository(); }
  ParameterDeclPtr AllocateParameter(const std::string&, const TCIMValue&, TOptions) override {
    NotForTheRepository();
  }
  ParameterDeclPtr GetParameter(const std::string&, TOptions) const override {
    NotForTheRepository();
  }
  void EnumerateParameters(const TEnumCallback<ICIMParameterDecl>&, TOptions) const override {}
  bool operator==(const ICIMMethodDecl&) const override { NotForTheRepository(); }
  bool operator<(const ICIMMethodDecl&) const override { NotForTheRepository(); }
  ICIMMethodDecl& operator=(const ICIMMethodDecl&) override { return *this; }

 private:
  boost::weak_ptr<ICIMClass> m_origin;
  std::string m_name;
  TCIMValue::TCIMType m_type;
};

// A qualifier declaration under any name, of no namespace, overridable and propagating.
class ForeignQualifierDecl : public ICIMQualifierDecl {
 public:
  explicit ForeignQualifierDecl(std::string name) : m_name(std::move(name)) {}

  const std::string& GetName(TOptions) const override { return m_name; }
  NamespacePtr GetNamespace(TOptions) const override { return {}; }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_default.GetType(); }
  bool IsArray(TOptions) const override { return m_default.IsArray(); }
  const TCIMValue& GetDefaultValue(TOptions) const override { return m_default; }
  EScope GetScope(TOptions) const override { return kScopeAny; }
  EFlavor GetFlavor(TOptions) const override { return kFlavorOverridable | kFlavorToSubclass; }

  void Validate(TOptions) override {}
  void AddToNamespace(TOptions) override { NotForTheRepository(); }
  void Delete(TOptions) override { NotForTheRepository(); }
  void SetDefaultValue(const TCIMValue&, TOptions) override { NotForTheRepository(); }
  void AddFlavor(EFlavor, TOptions) override { NotForTheRepository(); }
  void RemoveFlavor(EFlavor, TOptions) override { NotForTheRepository(); }
  bool operator==(const ICIMQualifierDecl&) const override { NotForTheRepository(); }
  bool operator<(const ICIMQualifierDecl&) const override { NotForTheRepository(); }
  ICIMQualifierDecl& operator=(const ICIMQualifierDecl&) override { return *this; }

 private:
  std::string m_name;
  TCIMValue m_default = TCIMValue(true);
};

}  // namespace havtest

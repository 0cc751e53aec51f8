// FakeDecl: a property declaration made of a type and a list of qualifiers, which can fail a
// look-up with any status and tells which qualifiers were asked for, in order. Names are
// compared byte by byte, so a look-up has to spell them as people know them.
//
// Ownership: stands on its own; hands out a fresh qualifier at every look-up.
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "havcore/havcore.h"

namespace havtest {

using namespace NORVHAV20;

using Strings = std::vector<std::string>;

// An array of strings.
inline TCIMValue Texts(const Strings& texts) {
  return {kCIMString, std::vector<TCIMValue>(texts.begin(), texts.end())};
}

// NULL of a type, as a qualifier has it that stands there without a value.
inline TCIMValue Null(ECIMType type) { return TCIMValue::Null(type); }

class FakeQualifier : public ICIMQualifier {
 public:
  FakeQualifier(std::string name, TCIMValue value)
      : m_name(std::move(name)), m_value(std::move(value)) {}

  const std::string& GetName(TOptions) const override { return m_name; }
  const TCIMValue& GetValue(TOptions) const override { return m_value; }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_value.GetType(); }
  bool IsArray(TOptions) const override { return m_value.IsArray(); }
  ICIMQualifierDecl::EFlavor GetFlavor(TOptions) const override {
    return ICIMQualifierDecl::kFlavorNone;
  }
  bool IsPropagated(TOptions) const override { return false; }
  boost::shared_ptr<ICIMNamedElement> GetElement(TOptions) const override { return {}; }
  boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(TOptions) const override { return {}; }

  void Validate(TOptions) override {}
  void AddToElement(TOptions) override { NotForDisplay(); }
  void Delete(TOptions) override { NotForDisplay(); }
  void SetValue(const TCIMValue&, TOptions) override { NotForDisplay(); }
  void AddFlavor(ICIMQualifierDecl::EFlavor, TOptions) override { NotForDisplay(); }
  void RemoveFlavor(ICIMQualifierDecl::EFlavor, TOptions) override { NotForDisplay(); }
  bool operator==(const ICIMQualifier&) const override { NotForDisplay(); }
  bool operator<(const ICIMQualifier&) const override { NotForDisplay(); }
  ICIMQualifier& operator=(const ICIMQualifier&) override { return *this; }

  [[noreturn]] static void NotForDisplay() {
    throw std::logic_error("display text does not call this");
  }

 private:
  std::string m_name;
  TCIMValue m_value;
};

class FakeDecl : public ICIMPropertyDecl {
 public:
  // A property of `type`.
  explicit FakeDecl(ECIMType type) : m_default(TCIMValue::Null(type)) {}
  FakeDecl(const FakeDecl& other)
      : ICIMPropertyDecl(),
        m_default(other.m_default),
        m_values(other.m_values),
        m_failures(other.m_failures),
        m_lookups(other.m_lookups) {}

  FakeDecl& With(const std::string& name, const TCIMValue& value) {
    m_values[name] = value;
    return *this;
  }
  FakeDecl& Without(const std::string& name) {
    m_values.erase(name);
    return *this;
  }
  // The look-up of `name` throws `status`.
  FakeDecl& Failing(const std::string& name, unsigned status) {
    m_failures[name] = status;
    return *this;
  }

  // What was asked for, in order.
  const Strings& Lookups() const { return m_lookups; }

  boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TOptions) override {
    m_lookups.push_back(name);
    const auto failure = m_failures.find(name);
    if (failure != m_failures.end())
      throw THAVException(static_cast<EHAVStatusCode>(failure->second));
    const auto value = m_values.find(name);
    if (value == m_values.end()) throw THAVException(kHAVNotFound);
    return boost::make_shared<FakeQualifier>(name, value->second);
  }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_default.GetType(); }
  bool IsArray(TOptions) const override { return m_default.IsArray(); }

  void AddQualifier(boost::shared_ptr<ICIMQualifier>, TOptions) override { NotForDisplay(); }
  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl>,
                                                     const TCIMValue&, ICIMQualifierDecl::EFlavor,
                                                     TOptions) override {
    NotForDisplay();
  }
  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl>,
                                                     const TCIMValue&, TOptions) override {
    NotForDisplay();
  }
  boost::shared_ptr<ICIMQualifier> FindQualifier(const std::string&, bool&, TOptions) override {
    NotForDisplay();
  }
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>&, TOptions) override {
    NotForDisplay();
  }
  void Validate(TOptions) override { NotForDisplay(); }
  void AddToClass(TOptions) override { NotForDisplay(); }
  void Delete(TOptions) override { NotForDisplay(); }
  const std::string& GetName(TOptions) const override { NotForDisplay(); }
  boost::shared_ptr<ICIMClass> GetClass(TOptions) const override { NotForDisplay(); }
  const TCIMValue& GetDefaultValue(TOptions) const override { NotForDisplay(); }
  void SetDefaultValue(const TCIMValue&, TOptions) override { NotForDisplay(); }
  bool operator==(const ICIMPropertyDecl&) const override { NotForDisplay(); }
  bool operator<(const ICIMPropertyDecl&) const override { NotForDisplay(); }
  ICIMPropertyDecl& operator=(const ICIMPropertyDecl&) override { return *this; }

 private:
  [[noreturn]] static void NotForDisplay() { FakeQualifier::NotForDisplay(); }

  TCIMValue m_default;
  std::map<std::string, TCIMValue> m_values;
  std::map<std::string, unsigned> m_failures;
  Strings m_lookups;
};

}  // namespace havtest

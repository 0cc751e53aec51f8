// ForeignQualifier: a qualifier that a host has made itself, and that may do anything while it
// is asked: each of the hooks that is set runs once, at the first question of its kind.
//
// Ownership: shares its declaration.
#pragma once

#include <functional>
#include <utility>

#include "support/ForeignDecls.h"

namespace havtest {

// Runs a hook that is set, once.
inline void RunOnce(std::function<void()>& hook) {
  std::function<void()> now;
  now.swap(hook);
  if (now) now();
}

class ForeignQualifier : public ICIMQualifier {
 public:
  ForeignQualifier(QualifierDeclPtr decl, TCIMValue value)
      : m_decl(std::move(decl)), m_value(std::move(value)) {}
  ~ForeignQualifier() override { RunOnce(whenDestroyed); }

  mutable std::function<void()> whenAskedForValue;
  mutable std::function<void()> whenAskedForFlavor;
  mutable std::function<void()> whenAskedWhetherPropagated;
  std::function<void()> whenDestroyed;

  // The host changes the value of its own accord.
  void Become(TCIMValue value) { m_value = std::move(value); }

  const std::string& GetName(TOptions) const override { return m_decl->GetName({}); }
  QualifierDeclPtr GetQualifierDecl(TOptions) const override { return m_decl; }
  boost::shared_ptr<ICIMNamedElement> GetElement(TOptions) const override { return {}; }
  TCIMValue::TCIMType GetType(TOptions) const override { return m_value.GetType(); }
  bool IsArray(TOptions) const override { return m_value.IsArray(); }
  const TCIMValue& GetValue(TOptions) const override {
    RunOnce(whenAskedForValue);
    return m_value;
  }
  ICIMQualifierDecl::EFlavor GetFlavor(TOptions) const override {
    RunOnce(whenAskedForFlavor);
    return m_decl->GetFlavor({});
  }
  bool IsPropagated(TOptions) const override {
    RunOnce(whenAskedWhetherPropagated);
    return false;
  }

  void Validate(TOptions) override {}
  void AddToElement(TOptions) override { NotForTheRepository(); }
  void Delete(TOptions) override { NotForTheRepository(); }
  void SetValue(const TCIMValue&, TOptions) override { NotForTheRepository(); }
  void AddFlavor(ICIMQualifierDecl::EFlavor, TOptions) override { NotForTheRepository(); }
  void RemoveFlavor(ICIMQualifierDecl::EFlavor, TOptions) override { NotForTheRepository(); }
  bool operator==(const ICIMQualifier&) const override { NotForTheRepository(); }
  bool operator<(const ICIMQualifier&) const override { NotForTheRepository(); }
  ICIMQualifier& operator=(const ICIMQualifier&) override { return *this; }

 private:
  QualifierDeclPtr m_decl;
  TCIMValue m_value;
};

}  // namespace havtest

// The override rules: when a declaration may stand in place of the one that a class has.
// Properties are treated with tolerance and methods are not; the difference is intended.

#include <utility>

#include "havcore/THAVException.h"
#include "inmem/model/QualifierQueries.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

namespace {

bool Holds(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// Throws what forbids `decl` to override `existing`, empty when the class has none. What it
// throws is told apart from the declaration's own failures by nobody: the status decides.
template <class TDecl>
void RequireOverridable(const char* kind, const TDecl& decl,
                        const boost::shared_ptr<TDecl>& existing, const std::string& className) {
  const std::string attempt = std::string("Inmem: Attempt to override ") + kind + " " +
                              decl.GetName(TOptions()) + " in class " + className + ": ";
  if (!existing) {
    LogError(attempt + kind + " doesn't exist in base class");
    Throw(kHAVNotFound);
  }
  if (static_cast<ECIMType>(decl.GetType(TOptions())) !=
      static_cast<ECIMType>(existing->GetType(TOptions()))) {
    LogError(attempt + "different types");
    Throw(kHAVTypesDiffer);
  }
}

// A property that has no "OVERRIDE" replaces what the class has all the same when it is one
// of the port properties, which collectors have always redeclared, or a key.
bool ReplacesWithoutOverride(ICIMPropertyDecl& decl) {
  const std::string& name = decl.GetName(TOptions());
  if (Holds(name, "PortType") || Holds(name, "speedDuplex")) return true;
  try {
    return HasQualifier(decl, "Key");
  } catch (const THAVException&) {
    return false;
  }
}

// Whether the table gets `decl`.
bool IsPropertyDeclared(ICIMPropertyDecl& decl, const std::string& key,
                        const boost::shared_ptr<ICIMPropertyDecl>& existing, const ICIMClass& cls) {
  const auto withoutOverride = [&] { return !existing || ReplacesWithoutOverride(decl); };
  try {
    if (!HasQualifier(decl, "OVERRIDE")) return withoutOverride();
    if (!existing && Holds(key, "porttype")) return true;
    RequireOverridable("property", decl, existing, cls.GetName(TOptions()));
    // The first definition in a class wins.
    return existing->GetClass(TOptions()).get() != &cls;
  } catch (const THAVException& failure) {
    return failure.GetStatusCode() == kHAVNotFound && withoutOverride();
  }
}

void RequireMethodOverridable(ICIMMethodDecl& decl,
                              const boost::shared_ptr<ICIMMethodDecl>& existing,
                              const ICIMClass& cls) {
  RequireOverridable("method", decl, existing, cls.GetName(TOptions()));
  if (existing->GetClass(TOptions()).get() != &cls) return;
  LogError("Inmem: Attempt to override method " + decl.GetName(TOptions()) + " in class " +
           cls.GetName(TOptions()) + ": original was defined in this class");
  Throw(kHAVAlreadyDefined);
}

void RequireMethodDeclared(ICIMMethodDecl& decl, const boost::shared_ptr<ICIMMethodDecl>& existing,
                           const ICIMClass& cls) {
  try {
    if (HasQualifier(decl, "OVERRIDE")) return RequireMethodOverridable(decl, existing, cls);
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) {
      LogError("Inmem: Attempt define method " + decl.GetName(TOptions()) + " in class " +
               cls.GetName(TOptions()) + "failed. Reason = " + failure.what());
      throw;
    }
  }
  if (existing) Throw(kHAVAlreadyDefined);
}

// Takes the declaration of that name out and returns what stood there, which ends when the table
// is whole again. Throws 15 when there is none.
template <class TDecl>
boost::shared_ptr<TDecl> TakeOut(TDeclTable<TDecl>& table, const TDecl& decl) {
  const CimName name(decl.GetName(TOptions()));
  auto removed = table.Find(name.Folded());
  if (!removed) Throw(kHAVNotFound);
  table.Remove(name.Folded());
  return removed;
}

}  // namespace

void TInmemClass::AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl, TOptions) {
  Declare(decl);
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::Declare(
    const boost::shared_ptr<ICIMPropertyDecl>& decl) {
  const auto self = Self();
  if (Require(decl)->GetType(TOptions()) == kCIMReference && !IsAssociation(TOptions())) {
    LogError("Inmem: Attempt to add reference property " + decl->GetName(TOptions()) +
             " to non-association class " + m_name);
    Throw(kHAVReferenceOutsideAssociation);
  }
  std::string key = NormalizeCimName(decl->GetName(TOptions()));
  auto existing = m_properties.Find(key);
  if (!IsPropertyDeclared(*decl, key, existing, *this)) return existing;
  m_properties.Set(new TPropertyTable::TEntry(std::move(key), decl, m_number));
  if (existing) NoteSpelling(*existing, decl.get());
  PropertiesChanged();
  return decl;
}

void TInmemClass::RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl, TOptions) {
  const auto self = Self();
  const auto removed = TakeOut(m_properties, *Require(decl));
  NoteSpelling(*removed, nullptr);
  PropertiesChanged();
}

void TInmemClass::AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl, TOptions) {
  const auto self = Self();
  std::string key = NormalizeCimName(Require(decl)->GetName(TOptions()));
  const auto existing = m_methods.Find(key);
  RequireMethodDeclared(*decl, existing, *this);
  m_methods.Set(new TMethodTable::TEntry(std::move(key), decl, m_number));
}

void TInmemClass::RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl, TOptions) {
  const auto self = Self();
  TakeOut(m_methods, *Require(decl));
}

}  // namespace NORVHAV20

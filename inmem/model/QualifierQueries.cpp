#include "inmem/model/QualifierQueries.h"

#include "havcore/ICIMQualifier.h"
#include "havcore/THAVException.h"
#include "inmem/model/TInmemPropertyDecl.h"
#include "inmem/model/TInmemQualifier.h"
#include "inmem/values/IQualifierFinder.h"

namespace NORVHAV20 {

namespace {

// Declarations of our own are asked without an exception for the usual answer.
boost::shared_ptr<ICIMQualifier> FindOrNull(ICIMNamedElement& element, const std::string& name) {
  if (const auto* finder = dynamic_cast<const IQualifierFinder*>(&element))
    return finder->FindOrNull(name);
  try {
    return element.GetQualifier(name, TOptions());
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw THAVException(failure.GetStatus());
    return {};
  }
}

}  // namespace

bool HasQualifier(ICIMNamedElement& element, const std::string& name) {
  return FindOrNull(element, name) != nullptr;
}

bool IsKey(ICIMPropertyDecl& decl) {
  const auto key = FindOrNull(decl, "KEY");
  if (!key) return false;
  const TCIMValue& value = key->GetValue(TOptions());
  return !value.IsNull() && static_cast<bool>(value);
}

bool IsAnswerOurs(ICIMPropertyDecl& decl) {
  const auto* own = dynamic_cast<const TInmemPropertyDecl*>(&decl);
  if (!own) return false;
  const auto key = own->Qualifiers().FindFolded("key");
  return !key || dynamic_cast<const TInmemQualifier*>(key.get());
}

}  // namespace NORVHAV20

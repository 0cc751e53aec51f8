#include "model/QualifierQueries.h"

#include "havcore/ICIMQualifier.h"
#include "havcore/THAVException.h"
#include "model/TInmemPropertyDecl.h"
#include "model/TInmemQualifier.h"

namespace NORVHAV20 {

namespace {

boost::shared_ptr<ICIMQualifier> FindKey(ICIMPropertyDecl& decl) {
  // Our own declarations are asked without an exception for the usual answer.
  if (const auto* own = dynamic_cast<const TInmemPropertyDecl*>(&decl))
    return own->Qualifiers().FindFolded("key");
  try {
    return decl.GetQualifier("KEY", TOptions());
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw THAVException(failure.GetStatus());
    return {};
  }
}

}  // namespace

bool IsKey(ICIMPropertyDecl& decl) {
  const auto key = FindKey(decl);
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

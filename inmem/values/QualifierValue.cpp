#include "inmem/values/QualifierValue.h"

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/ICIMQualifier.h"
#include "havcore/THAVException.h"
#include "inmem/values/Failure.h"
#include "inmem/values/IQualifierFinder.h"

namespace NORVHAV20 {

namespace {

boost::shared_ptr<ICIMQualifier> Find(ICIMPropertyDecl& decl, const std::string& name) {
  const auto* const finder = dynamic_cast<const IQualifierFinder*>(&decl);
  return finder ? finder->FindOrNull(name) : decl.GetQualifier(name, TOptions());
}

}  // namespace

TCIMValue RequiredQualifierValue(ICIMPropertyDecl& decl, const std::string& name) {
  return Require(decl.GetQualifier(name, TOptions()))->GetValue(TOptions());
}

std::optional<TCIMValue> QualifierValue(ICIMPropertyDecl& decl, const std::string& name) {
  try {
    const auto qualifier = Find(decl, name);
    if (!qualifier) return std::nullopt;
    return qualifier->GetValue(TOptions());
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return std::nullopt;
  }
}

THeldText<TCIMValue> TextOf(const TCIMValue& value) {
  if (value.IsNull() || value.GetType() != kCIMString) return {};
  return HeldText(value);
}

}  // namespace NORVHAV20

#include "values/QualifierValue.h"

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/ICIMQualifier.h"
#include "havcore/THAVException.h"
#include "values/Failure.h"

namespace NORVHAV20 {

TCIMValue RequiredQualifierValue(ICIMPropertyDecl& decl, const std::string& name) {
  return Require(decl.GetQualifier(name, TOptions()))->GetValue(TOptions());
}

std::optional<TCIMValue> QualifierValue(ICIMPropertyDecl& decl, const std::string& name) {
  try {
    return RequiredQualifierValue(decl, name);
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return std::nullopt;
  }
}

std::string_view TextOf(const TCIMValue& value) {
  if (value.IsNull() || value.GetType() != kCIMString) return {};
  return static_cast<const std::string&>(value);
}

}  // namespace NORVHAV20

#include "wbem/ParameterReference.h"

#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {
constexpr char kQualifier[] = "ReferenceClass";
}

// A model may declare a qualifier of that name for itself, and then it belongs to a namespace.
bool IsParameterReference(const ICIMQualifier& qualifier) {
  if (!SameName(qualifier.GetName({}), kQualifier)) return false;
  const auto decl = qualifier.GetQualifierDecl({});
  return decl && !decl->GetNamespace({});
}

std::string ReferencedClassOf(ICIMParameterDecl& parameter) {
  for (const auto& qualifier : Collect<ICIMQualifier>(
           [&](const auto& callback) { parameter.EnumerateQualifiers(callback, {}); }))
    if (IsParameterReference(*qualifier) && !qualifier->GetValue({}).IsNull())
      return qualifier->GetValue({}).ToString(10);
  return {};
}

void SetReferencedClass(ICIMNamespace& home, ICIMParameterDecl& parameter,
                        const std::string& name) {
  // The namespace of the declaration is gone when this returns.
  const auto aside = home.GetNamespaceProvider({})->AllocateNamespace({}, false, {});
  const auto decl = aside->AllocateQualifierDecl(kQualifier, TCIMValue::Null(kCIMString),
                                                 ICIMQualifierDecl::kScopeParameter,
                                                 ICIMQualifierDecl::kFlavorOverridable, {});
  parameter.AllocateQualifier(decl, TCIMValue(name), TOptions());
}

}  // namespace hav::wbem

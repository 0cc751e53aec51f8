#include "wbem/ParameterReference.h"

#include "havcore/client/Declared.h"

namespace hav::wbem {

using namespace NORVHAV20;

bool IsParameterReference(const ICIMQualifier& qualifier) {
  return client::IsReserved(qualifier.GetName({}));
}

std::string ReferencedClassOf(ICIMParameterDecl& parameter) {
  return client::ReferencedClassOf(parameter);
}

void SetReferencedClass(ICIMNamespace& home, ICIMParameterDecl& parameter,
                        const std::string& name) {
  client::TDeclaredKeeper(*home.GetNamespaceProvider({})).KeepReferencedClass(parameter, name);
}

}  // namespace hav::wbem

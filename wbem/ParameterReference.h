// ParameterReference: the class that a parameter of type reference refers to. The contract has
// no place for it; who declares such a parameter keeps the name in a qualifier of it, which is
// not one of the model's own.
#pragma once

#include <string>

#include "havcore/havcore.h"

namespace hav::wbem {

bool IsParameterReference(const NORVHAV20::ICIMQualifier& qualifier);
// Empty when none is known.
std::string ReferencedClassOf(NORVHAV20::ICIMParameterDecl& parameter);
// `home` is any namespace; the qualifier does not become part of it.
void SetReferencedClass(NORVHAV20::ICIMNamespace& home, NORVHAV20::ICIMParameterDecl& parameter,
                        const std::string& name);

}  // namespace hav::wbem

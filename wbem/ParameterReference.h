// ParameterReference: the class that a parameter of type reference refers to. The contract has
// no place for it; who declares such a parameter keeps the name as havcore/client/Declared.h
// says.
#pragma once

#include <string>

#include "havcore/havcore.h"

namespace hav::wbem {

// Whether a qualifier keeps what the contract has no place for, and is none of the model's own.
bool IsParameterReference(const NORVHAV20::ICIMQualifier& qualifier);
// Empty when none is known.
std::string ReferencedClassOf(NORVHAV20::ICIMParameterDecl& parameter);
// `home` is any namespace; the qualifier does not become part of it.
void SetReferencedClass(NORVHAV20::ICIMNamespace& home, NORVHAV20::ICIMParameterDecl& parameter,
                        const std::string& name);

}  // namespace hav::wbem

// QualifierQueries: questions about the qualifiers of a declaration of any make.
//
// Errors: a declaration answers the look-up of an absent qualifier with 15, which is an
//         answer here; every other status that it throws is thrown on.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMPropertyDecl.h"

namespace NORVHAV20 {

// Returns true when the element has a qualifier of the name.
bool HasQualifier(ICIMNamedElement& element, const std::string& name);

// Returns true when the property has the qualifier "KEY" with a value that is true.
bool IsKey(ICIMPropertyDecl& decl);

// Whether that answer can change only by what turns the model clock on.
bool IsAnswerOurs(ICIMPropertyDecl& decl);

}  // namespace NORVHAV20

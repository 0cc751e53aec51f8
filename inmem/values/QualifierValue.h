// QualifierValue: reading one qualifier of a property declaration.
//
// Ownership: the value returned shares its content with the qualifier's, and stays as it is
//            when the qualifier changes.
// Errors:    THAVException: whatever the declaration throws.
#pragma once

#include <optional>
#include <string>

#include "havcore/TCIMValue.h"
#include "inmem/values/HostServices.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;

// Returns the value of the qualifier `name`. Throws 15 when the declaration has none.
TCIMValue RequiredQualifierValue(ICIMPropertyDecl& decl, const std::string& name);
// The same, but returns nothing where that throws 15.
std::optional<TCIMValue> QualifierValue(ICIMPropertyDecl& decl, const std::string& name);

// Returns the text of a value of type string, to be kept in a variable of its own type while
// it is looked at; empty when the value is NULL or of another type.
THeldText<TCIMValue> TextOf(const TCIMValue& value);

}  // namespace NORVHAV20

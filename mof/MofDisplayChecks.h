// MofDisplayChecks: what the display of values makes of the qualifiers of a declaration, where
// that is not what they look like. Only what the declaration itself says is reported, at the
// place where it says it; what it inherits was reported there.
//
// Errors: those of the elements pass through.
#pragma once

#include "havcore/havcore.h"
#include "mof/MofSyntax.h"
#include "mof/TMofReport.h"

namespace hav::mof {

// A declaration: what its author says, and what was made of it.
struct TMofDisplayed {
  const TMofFile& file;
  const TMofName& name;
  const TMofQualifiers& qualifiers;
  NORVHAV20::ECIMType type;
  NORVHAV20::ICIMNamedElement& made;
};

// Values and ValueMap: their sizes, and the patterns, which have to read as numbers of the type.
void CheckValueMap(const TMofDisplayed& displayed, TMofReport& report);
// Of a property: the type that Values needs, UNITS and the qualifiers that they need, BASE.
void CheckDisplay(const TMofDisplayed& displayed, TMofReport& report);

}  // namespace hav::mof

// DisplayText: what people see in place of a property's value. The qualifiers of the
// property's declaration decide: "Values" and "ValueMap" give names to numbers, "UNITS" with
// "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS" and "DISPLAYCPUTIME" make quantities of them, "BASE"
// gives the radix of a plain number, and "NULLDISPLAY" what stands for NULL. They can change
// at any time, and are asked at every call; a value map that was read before is used while they
// are equal to what they were then. A qualifier of a host's making may change the model while
// it is asked: values are held by value.
//
// Errors: THAVException: what a look-up of a qualifier throws, but for 15, which says that it
//         is absent; and the statuses given below.
#pragma once

#include <string>
#include <vector>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;

// Returns the text of `value`, an array's as a whole. Throws what LookupValueMap throws for a
// property that has a value map, and what FormatValue throws otherwise.
std::string DisplayText(ICIMPropertyDecl& decl, TCIMValue value);

// Returns the texts of the elements of an array, or the one text of a scalar, which its value
// map does not name. Throws what LookupValueMap throws for an array that has a value map.
// Whatever goes wrong otherwise is hidden: the list is then the text of "NULLDISPLAY" alone,
// or the texts made so far when that is NULL; 15 when it is absent.
std::vector<std::string> DisplayTexts(ICIMPropertyDecl& decl, TCIMValue value);

// Returns the text without value map: quantities with their units, and NULL. Throws 14 for a
// duration that is longer than an interval can be.
std::string FormatValue(ICIMPropertyDecl& decl, const TCIMValue& value);

// Returns the text in the radix of "BASE", without units.
std::string FormatNumber(ICIMPropertyDecl& decl, const TCIMValue& value);

}  // namespace NORVHAV20

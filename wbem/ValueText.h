// ValueText: CIM types and values as the text that stands in messages.
//
// Threads: pure functions; no locale.
// Errors:  TCimError; kTypeMismatch for text that is no value of the type.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "havcore/TCIMValue.h"

namespace hav::wbem {

// The name of a scalar type, "uint32"; of an array type the name of its element.
std::string TypeName(NORVHAV20::ECIMType type);
// The type of that name (case folded), nothing when there is none.
std::optional<NORVHAV20::ECIMType> FindType(std::string_view name);

// A scalar that is not NULL and no reference. Reads back to the same value.
std::string ValueText(const NORVHAV20::TCIMValue& value);

// Reads a scalar of `type`, which is none of reference and none. Blanks around anything but
// strings and characters do not count.
NORVHAV20::TCIMValue ParseValue(NORVHAV20::ECIMType type, std::string_view text);
// TRUE or FALSE in any case.
bool ParseBoolean(std::string_view text);

}  // namespace hav::wbem

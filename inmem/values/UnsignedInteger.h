// UnsignedInteger: the unsigned integer types of CIM as one.
#pragma once

#include <cstdint>
#include <optional>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

// Returns the number of a uint8, uint16, uint32 or uint64, nothing for every other type.
// Throws 14 when a value of one of these types is NULL.
std::optional<std::uint64_t> UnsignedInteger(const TCIMValue& value);

}  // namespace NORVHAV20

// Quantity: a number together with the unit that the qualifier "UNITS" names, as text for
// people: "1.5 Kilobytes", "3 MB/s", "2 day(s) 03:00:00".
//
// Errors: THAVException: what the declaration throws, other than 15; 14 for a duration that
//         is longer than an interval can be.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace NORVHAV20 {

class ICIMPropertyDecl;

// Returns the quantity, nothing when it is shown as a plain number: its unit is not known
// here, or a qualifier that takes part is absent. Bytes and bits, also per second, take
// "UNITS", "DISPLAYFIXEDUNITS" and "ABBREVIATEUNITS"; seconds take "UNITS" and
// "DISPLAYCPUTIME".
std::optional<std::string> FormatQuantity(ICIMPropertyDecl& decl, std::uint64_t number);

}  // namespace NORVHAV20

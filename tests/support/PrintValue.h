// PrintValue: how a failed expectation shows CIM values: the type and the text.
#pragma once

#include <ostream>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

inline void PrintTo(const TCIMValue& value, std::ostream* out) {
  *out << value.GetType() << " " << value.ToString(10);
}

}  // namespace NORVHAV20

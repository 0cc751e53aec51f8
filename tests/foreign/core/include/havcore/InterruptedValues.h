// InterruptedValues: values of the foreign core that refuse to be used, as values of any host may.
//
// Threads: one at a time.
#pragma once

#include "havcore/Export.h"

namespace NORVHAV20 {

// The use of a value after the next `allowed` ones (its making, copying or reading; never its end)
// throws std::runtime_error, once. Negative: none does.
HAVCORE_API void InterruptValues(long allowed);
// Whether it came to that since.
HAVCORE_API bool AreInterrupted();

}  // namespace NORVHAV20

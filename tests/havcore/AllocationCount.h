// AllocationCount: how often this program has asked operator new for memory, and how many blocks
// it has. The suite replaces operator new to know it.
#pragma once

#include <cstddef>

namespace havtest {

std::size_t AllocationCount() noexcept;
long LiveAllocations() noexcept;

}  // namespace havtest

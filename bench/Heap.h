// Heap: what this process has allocated with `new`, in all its libraries.
#pragma once

#include <cstddef>

namespace havbench {

struct Heap {
  std::size_t calls;  // of operator new, since the process began
  std::size_t bytes;  // in use now, as the allocator rounds them
};

Heap HeapNow() noexcept;

}  // namespace havbench

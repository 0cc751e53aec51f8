// Heap: what the calling thread has allocated with `new`, in all the libraries of the process.
#pragma once

#include <cstddef>

namespace havbench {

struct Heap {
  std::size_t calls;  // of operator new, since the thread began
  std::size_t bytes;  // in use now, as the allocator rounds them
};

Heap HeapNow() noexcept;

// The most bytes that were in use at once since ForgetHeapPeak.
std::size_t HeapPeak() noexcept;
void ForgetHeapPeak() noexcept;

}  // namespace havbench

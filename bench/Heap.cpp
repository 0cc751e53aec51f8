#include "bench/Heap.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

// By thread, so that counting is no contention of its own.
thread_local std::size_t t_calls = 0;
thread_local std::size_t t_bytes = 0;
thread_local std::size_t t_peak = 0;

// What the allocator keeps beside each block.
constexpr std::size_t kOverhead = sizeof(void*);

void* Allocate(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (!block) throw std::bad_alloc();
  ++t_calls;
  t_bytes += malloc_usable_size(block) + kOverhead;
  if (t_bytes > t_peak) t_peak = t_bytes;
  return block;
}

void Release(void* block) noexcept {
  if (!block) return;
  t_bytes -= malloc_usable_size(block) + kOverhead;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }

namespace havbench {

Heap HeapNow() noexcept { return {t_calls, t_bytes}; }

std::size_t HeapPeak() noexcept { return t_peak; }
void ForgetHeapPeak() noexcept { t_peak = t_bytes; }

}  // namespace havbench

#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<long> live{0};

void Free(void* memory) noexcept {
  if (memory) --live;
  std::free(memory);
}

}  // namespace

namespace havtest {
std::size_t AllocationCount() noexcept { return allocations; }
long LiveAllocations() noexcept { return live; }
}  // namespace havtest

void* operator new(std::size_t size) {
  ++allocations;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (!memory) throw std::bad_alloc();
  ++live;
  return memory;
}

void operator delete(void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }

#include "bench/Heap.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_calls{0};
std::atomic<std::size_t> g_bytes{0};

// What the allocator keeps beside each block.
constexpr std::size_t kOverhead = sizeof(void*);

void* Allocate(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (!block) throw std::bad_alloc();
  g_calls.fetch_add(1, std::memory_order_relaxed);
  g_bytes.fetch_add(malloc_usable_size(block) + kOverhead, std::memory_order_relaxed);
  return block;
}

void Release(void* block) noexcept {
  if (!block) return;
  g_bytes.fetch_sub(malloc_usable_size(block) + kOverhead, std::memory_order_relaxed);
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

Heap HeapNow() noexcept {
  return {g_calls.load(std::memory_order_relaxed), g_bytes.load(std::memory_order_relaxed)};
}

}  // namespace havbench

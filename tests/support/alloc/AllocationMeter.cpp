#include "support/AllocationMeter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_count{0};
std::atomic<std::size_t> g_bytes{0};
std::atomic<std::size_t> g_held{0};
std::atomic<std::size_t> g_peak{0};

std::size_t SizeOf(void* block) noexcept {
#if defined(_WIN32)
  return _msize(block);
#else
  return malloc_usable_size(block);
#endif
}

void* AllocateOrNull(std::size_t size) noexcept {
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (!block) return nullptr;
  const auto held = g_held += SizeOf(block);
  auto peak = g_peak.load();
  while (held > peak && !g_peak.compare_exchange_weak(peak, held)) {
  }
  return block;
}

void* Allocate(std::size_t size) {
  g_count.fetch_add(1, std::memory_order_relaxed);
  g_bytes.fetch_add(size, std::memory_order_relaxed);
  if (void* block = AllocateOrNull(size)) return block;
  throw std::bad_alloc();
}

void Free(void* block) noexcept {
  if (block) g_held -= SizeOf(block);
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }

namespace havtest {

AllocationMeter::AllocationMeter() noexcept : m_count(g_count), m_bytes(g_bytes), m_held(g_held) {
  g_peak = m_held;
}

std::size_t AllocationMeter::Count() const noexcept { return g_count - m_count; }

std::size_t AllocationMeter::Bytes() const noexcept { return g_bytes - m_bytes; }

std::size_t AllocationMeter::Held() const noexcept { return g_held - m_held; }

std::size_t AllocationMeter::Peak() const noexcept { return g_peak - m_held; }

}  // namespace havtest

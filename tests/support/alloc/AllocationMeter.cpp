#include "support/AllocationMeter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_count{0};
std::atomic<std::size_t> g_bytes{0};

void* Allocate(std::size_t size) {
  g_count.fetch_add(1, std::memory_order_relaxed);
  g_bytes.fetch_add(size, std::memory_order_relaxed);
  if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace havtest {

AllocationMeter::AllocationMeter() noexcept : m_count(g_count), m_bytes(g_bytes) {}

std::size_t AllocationMeter::Count() const noexcept { return g_count - m_count; }

std::size_t AllocationMeter::Bytes() const noexcept { return g_bytes - m_bytes; }

}  // namespace havtest

#include "support/FailingAllocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Counts down to the failure; negative when none is due.
long g_left = -1;
bool g_failed = false;
bool g_goOn = false;
int g_paused = 0;
std::atomic<long> g_live{0};

bool Fails() noexcept {
  if (g_paused != 0) return false;
  if (g_failed) return g_goOn;
  if (g_left < 0 || g_left-- != 0) return false;
  g_failed = true;
  return true;
}

void* AllocateOrNull(std::size_t size) noexcept {
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block) ++g_live;
  return block;
}

void* Allocate(std::size_t size) {
  if (Fails()) throw std::bad_alloc();
  if (void* block = AllocateOrNull(size)) return block;
  throw std::bad_alloc();
}

void Free(void* block) noexcept {
  if (block) --g_live;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
// Who asks for it can do without: that is no failure to be told of.
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

long LiveAllocations() noexcept { return g_live; }

FailingAllocation::FailingAllocation(std::size_t allowed, ELength length) noexcept
    : m_allowed(allowed) {
  g_failed = false;
  g_goOn = length == kFromThenOn;
  g_left = static_cast<long>(allowed);
}

FailingAllocation::~FailingAllocation() {
  g_left = -1;
  g_failed = g_goOn = false;
}

bool FailingAllocation::HasFailed() const noexcept { return g_failed; }

std::size_t FailingAllocation::Count() const noexcept {
  return g_failed ? m_allowed : m_allowed - static_cast<std::size_t>(g_left);
}

UnfailingAllocations::UnfailingAllocations() noexcept { ++g_paused; }

UnfailingAllocations::~UnfailingAllocations() { --g_paused; }

}  // namespace havtest

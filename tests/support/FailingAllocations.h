// FailingAllocations: makes allocations of this program fail. A suite that wants it links
// failing_allocations, which replaces operator new for the whole of it.
#pragma once

#include <cstddef>

namespace havtest {

// How many blocks of memory there are now.
long LiveAllocations() noexcept;

// While it lives, the allocation after the next `allowed` ones throws std::bad_alloc. The ones
// after that succeed again, so that undoing may allocate; or, with kFromThenOn, they fail too.
class FailingAllocation {
 public:
  enum ELength { kOnce, kFromThenOn };

  explicit FailingAllocation(std::size_t allowed, ELength length = kOnce) noexcept;
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // Whether it came to that.
  bool HasFailed() const noexcept;
  // The number of those that succeeded before it.
  std::size_t Count() const noexcept;

 private:
  std::size_t m_allowed;
};

// While it lives, allocations neither fail nor count: for what a test does within the operation
// that it tests.
class UnfailingAllocations {
 public:
  UnfailingAllocations() noexcept;
  ~UnfailingAllocations();
  UnfailingAllocations(const UnfailingAllocations&) = delete;
  UnfailingAllocations& operator=(const UnfailingAllocations&) = delete;
};

}  // namespace havtest

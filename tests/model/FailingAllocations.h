// FailingAllocations: makes one allocation of this program fail. The suite replaces operator
// new for it.
#pragma once

#include <cstddef>

namespace havtest {

// While it lives, the allocation after the next `allowed` ones throws std::bad_alloc; the ones
// after that succeed again, so that undoing may allocate.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t allowed) noexcept;
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // Whether it came to that.
  bool HasFailed() const noexcept;
};

}  // namespace havtest

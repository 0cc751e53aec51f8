// AllocationMeter: what a part of a test asks of operator new. A suite that wants it links
// metered_allocations, which replaces operator new for the whole of it.
#pragma once

#include <cstddef>

namespace havtest {

// What was asked for since it was made; of all threads.
class AllocationMeter {
 public:
  AllocationMeter() noexcept;

  std::size_t Count() const noexcept;
  std::size_t Bytes() const noexcept;

 private:
  std::size_t m_count;
  std::size_t m_bytes;
};

}  // namespace havtest

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

  // What of it is in use now, and was at most; the meter that was made last knows the most. On
  // Windows each library has operators of its own, so that these are of no use there.
  std::size_t Held() const noexcept;
  std::size_t Peak() const noexcept;

 private:
  std::size_t m_count;
  std::size_t m_bytes;
  std::size_t m_held;
};

}  // namespace havtest

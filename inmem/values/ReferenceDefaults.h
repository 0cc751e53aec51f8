// ReferenceDefaults: counts the changes of the defaults of references, which are seldom and
// concern every instance that has no value of its own. Counts are process-wide and only ever
// compared for equality.
//
// Threads: any; namespaces may be used from different threads.
#pragma once

#include <atomic>
#include <cstdint>

namespace NORVHAV20 {

class ReferenceDefaults {
 public:
  // Defaults that are, or were, references to something or to nothing.
  static std::uint64_t Changed() noexcept { return s_changed.load(std::memory_order_relaxed); }
  // Those that were not and are, or were and are not.
  static std::uint64_t Retyped() noexcept { return s_retyped.load(std::memory_order_relaxed); }
  // To be called for each change of a default, with whether it was a reference and is one.
  static void Count(bool was, bool is) noexcept {
    if (was || is) s_changed.fetch_add(1, std::memory_order_relaxed);
    if (was != is) s_retyped.fetch_add(1, std::memory_order_relaxed);
  }

 private:
  static std::atomic<std::uint64_t> s_changed;
  static std::atomic<std::uint64_t> s_retyped;
};

}  // namespace NORVHAV20

// ModelClock: counts the changes that may make a property a key, or none, without a change of any
// class: a qualifier is added to a declaration, or assigned. What is derived from that is kept
// while the count stands. It is process-wide, because classes of several namespaces can share a
// declaration, and only ever compared for equality: while a schema is built, other namespaces may
// renew what they keep without need. Nothing that is done with instances turns it on.
//
// Threads: any; namespaces may be used from different threads.
#pragma once

#include <atomic>
#include <cstdint>

namespace NORVHAV20 {

class ModelClock {
 public:
  static std::uint64_t Qualifiers() noexcept {
    return s_qualifiers.load(std::memory_order_relaxed);
  }
  static void QualifiersChanged() noexcept { s_qualifiers.fetch_add(1, std::memory_order_relaxed); }

 private:
  static std::atomic<std::uint64_t> s_qualifiers;
};

}  // namespace NORVHAV20

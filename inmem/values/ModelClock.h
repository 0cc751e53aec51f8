// ModelClock: counts the changes that what is derived from the model depends on, so that it
// can be kept until one happens. Counts are process-wide and only ever compared for equality:
// a change in one namespace may cost another a needless renewal, and nothing else.
//
// Threads: any; namespaces may be used from different threads.
#pragma once

#include <atomic>
#include <cstdint>

namespace NORVHAV20 {

class ModelClock {
 public:
  // Classes, declarations, qualifiers, and namespaces coming and going.
  static std::uint64_t Schema() noexcept { return s_schema.load(std::memory_order_relaxed); }
  static void SchemaChanged() noexcept { s_schema.fetch_add(1, std::memory_order_relaxed); }
  // What seldom happens and may make a path lead elsewhere although the instance that it led to
  // stands where it stood: a class gets another's name, a class or namespace goes, a key is
  // spelt otherwise.
  static std::uint64_t Paths() noexcept { return s_paths.load(std::memory_order_relaxed); }
  static void PathsChanged() noexcept { s_paths.fetch_add(1, std::memory_order_relaxed); }

 private:
  static std::atomic<std::uint64_t> s_schema;
  static std::atomic<std::uint64_t> s_paths;
};

}  // namespace NORVHAV20

// Prefetch: tells the processor of memory that is about to be read, so that several places are
// on their way at once. It changes nothing else, also where the address is no good.
#pragma once

#include <cstddef>

namespace NORVHAV20 {

inline void Prefetch(const void* address) noexcept {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

// All of an object that is there and is not large.
inline void Prefetch(const void* object, std::size_t size) noexcept {
  Prefetch(object);
  Prefetch(static_cast<const char*>(object) + size - 1);
}

}  // namespace NORVHAV20

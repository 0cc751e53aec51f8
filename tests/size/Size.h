// What the tests of size share: models as large as anybody makes them, on a stack of a thread's
// size, and what they cost in memory asked for, never in time.
#pragma once

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "support/AllocationMeter.h"
#include "support/LoggedRepository.h"
#include "support/SmallStack.h"

namespace havtest {

// The sanitizers take ten times as long, and as much memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kShare = 10;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int kShare = 10;
#else
constexpr int kShare = 1;
#endif
#else
constexpr int kShare = 1;
#endif

// Runs `work(size)` on a small stack, at a tenth of `size` and at all of it: ten times as much
// may ask for eleven times the memory, which leaves room for tables that double.
template <class Work>
void ExpectLinear(int size, Work&& work) {
  const auto bytes = [&](int at) {
    const AllocationMeter meter;
    OnSmallStack([&] { work(at); });
    return meter.Bytes();
  };
  const int large = size / kShare;
  const std::size_t few = bytes(large / 10);
  const std::size_t many = bytes(large);
  EXPECT_LT(static_cast<double>(many), 14.0 * static_cast<double>(few))
      << few << " bytes for " << large / 10 << ", " << many << " for " << large;
}

}  // namespace havtest

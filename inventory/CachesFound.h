// CachesFound: which cache levels the inventory holds, as the plug-in's three cache switches
// are written.
//
// Threads: one thread at a time per namespace.
// Errors:  a namespace without the class of caches answers as one without caches.
#pragma once

#include <array>
#include <cstdint>

#include "havcore/ICIMNamespace.h"

namespace hav::inventory {

// For levels 1 to 3, first to last: 1 when there is a cache of that level, 0 when there are
// caches and none of that level, -1 when nothing is known of any cache.
using TCacheSwitches = std::array<std::int32_t, 3>;

TCacheSwitches CachesFound(NORVHAV20::ICIMNamespace& inventory);

}  // namespace hav::inventory

// CacheSwitches: the process-wide switches of the processor rule: 0 the cache level is
// disabled, 1 it is enabled, anything else (-1 at start) nobody knows. The plug-in only
// reads them.
#pragma once

#include <cstdint>

#include "havcore/Export.h"

extern "C" {
INMEM_API extern std::int32_t g_L1Enabled;
INMEM_API extern std::int32_t g_L2Enabled;
INMEM_API extern std::int32_t g_L3Enabled;
}

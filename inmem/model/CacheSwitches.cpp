#include "inmem/model/CacheSwitches.h"

std::int32_t g_L1Enabled = -1;
std::int32_t g_L2Enabled = -1;
std::int32_t g_L3Enabled = -1;

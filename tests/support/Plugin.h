// Plugin: the plug-in under test, reached as a host reaches it. Linked suites bind to the
// objects, loaded suites go through the operating system's loader; the tests do not know.
#pragma once

#include <cstdint>
#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"

namespace havtest {

// The provider that the plug-in's entry point registered. Initialised on first use.
boost::shared_ptr<NORVHAV20::INamespaceProvider> Provider();

// Calls the entry point once more, with whatever provider manager the host has set.
NORVHAV20::THAVStatusCode CallEntryPoint();

// The exported switch g_L1Enabled, g_L2Enabled or g_L3Enabled (`level` 1 to 3).
std::int32_t& CacheSwitch(int level);

// "linked" or "loaded".
std::string HowThePluginIsReached();

}  // namespace havtest

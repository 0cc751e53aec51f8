// The plug-in as objects of this executable.
#include <stdexcept>

#include "inmem/model/CacheSwitches.h"
#include "inmem/provider/TInmemNamespaceProvider.h"
#include "support/Plugin.h"
#include "support/plugin/RegisteredProvider.h"

namespace havtest {

boost::shared_ptr<NORVHAV20::INamespaceProvider> Provider() {
  static const auto provider = RegisteredProvider(&NORVHAV20::TInmemNamespaceProvider::Initialize);
  return provider;
}

NORVHAV20::THAVStatusCode CallEntryPoint() {
  return NORVHAV20::TInmemNamespaceProvider::Initialize();
}

std::int32_t& CacheSwitch(int level) {
  switch (level) {
    case 1: return g_L1Enabled;
    case 2: return g_L2Enabled;
    case 3: return g_L3Enabled;
    default: throw std::out_of_range("cache levels are 1 to 3");
  }
}

std::string HowThePluginIsReached() { return "linked"; }

}  // namespace havtest

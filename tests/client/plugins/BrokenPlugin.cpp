// A plug-in with the entry point of the real one that is broken in the way that it is built
// for.
#include <cstdint>
#include <stdexcept>

#include "havcore/Export.h"
#include "havcore/THAVException.h"
#include "havcore/THAVStatusCode.h"

#if !defined(PLUGIN_HAS_NO_SWITCHES)
extern "C" {
HAV_EXPORT std::int32_t g_L1Enabled = -1;
HAV_EXPORT std::int32_t g_L2Enabled = -1;
HAV_EXPORT std::int32_t g_L3Enabled = -1;
}
#endif

namespace NORVHAV20 {

class HAV_TYPE TInmemNamespaceProvider {
 public:
  HAV_EXPORT static THAVStatusCode Initialize();
};

THAVStatusCode TInmemNamespaceProvider::Initialize() {
#if defined(PLUGIN_REFUSES)
  return kHAVNotSupported;
#elif defined(PLUGIN_THROWS)
  throw THAVException(kHAVAlreadyDefined);
#elif defined(PLUGIN_THROWS_ANYTHING)
  throw 42;
#else
  return kHAVSuccess;
#endif
}

}  // namespace NORVHAV20

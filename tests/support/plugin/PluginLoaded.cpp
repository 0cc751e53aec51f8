// The plug-in as a library, reached through the operating system's loader: the one of this
// build, or that of another which the environment variable HAV_INMEM_LIBRARY names.
#include <cstdlib>
#include <stdexcept>
#include <string>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/shared_library.hpp>

#include "support/Plugin.h"
#include "support/plugin/RegisteredProvider.h"

namespace havtest {
namespace {

// The decorated name of `static THAVStatusCode TInmemNamespaceProvider::Initialize()`.
#if defined(_MSC_VER)
constexpr char kInitialize[] =
    "?Initialize@TInmemNamespaceProvider@NORVHAV20@@SA?AVTHAVStatusCode@2@XZ";
#else
constexpr char kInitialize[] = "_ZN9NORVHAV2023TInmemNamespaceProvider10InitializeEv";
#endif

// Never unloaded: namespaces that tests keep in statics live as long as the process, and
// LeakSanitizer names the frames of loaded libraries only.
boost::dll::shared_library& Library() {
  static auto* const library = [] {
    const char* const other = std::getenv("HAV_INMEM_LIBRARY");
    return new boost::dll::shared_library(other ? other : INMEM_LIBRARY);
  }();
  return *library;
}

}  // namespace

boost::shared_ptr<NORVHAV20::INamespaceProvider> Provider() {
  static const auto provider =
      RegisteredProvider(Library().get<NORVHAV20::THAVStatusCode()>(kInitialize));
  return provider;
}

NORVHAV20::THAVStatusCode CallEntryPoint() {
  return Library().get<NORVHAV20::THAVStatusCode()>(kInitialize)();
}

std::int32_t& CacheSwitch(int level) {
  if (level < 1 || level > 3) throw std::out_of_range("cache levels are 1 to 3");
  return Library().get<std::int32_t>("g_L" + std::to_string(level) + "Enabled");
}

std::string HowThePluginIsReached() { return "loaded"; }

}  // namespace havtest

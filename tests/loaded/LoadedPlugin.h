// LoadedPlugin: a plug-in that is loaded, initialised, and unloaded with this object.
//
// Ownership: owns the library and shares its provider. Everything that came out of it must be
//            gone before.
// Threads:   one thread at a time.
// Errors:    boost::system::system_error when the library cannot be loaded or lacks a symbol;
//            what the entry point throws.
#pragma once

#include <cstdint>
#include <string>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/shared_library.hpp>

#include "havcore/havcore.h"
#include "support/Repository.h"

namespace havtest {

// Whether other libraries that are loaded later see the symbols of this one.
enum class Symbols { kLocal, kGlobal };

// The class whose static operation Initialize is the entry point.
constexpr char kInmem[] = "TInmemNamespaceProvider";
constexpr char kOther[] = "TOtherNamespaceProvider";

class LoadedPlugin {
 public:
  // Loads `path` and calls its entry point, which registers with a manager of this object.
  explicit LoadedPlugin(const std::string& path, const std::string& entryClass = kInmem,
                        Symbols symbols = Symbols::kLocal);
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;

  // Calls the entry point once more, with the given manager in the host's place.
  THAVStatusCode Initialize(const boost::shared_ptr<INamespaceProviderManager>& manager);

  // The provider that the entry point registered under this name, empty when it is none.
  boost::shared_ptr<INamespaceProvider> Provider(const std::string& name = "inmem") const {
    return m_manager->FindNamespaceProvider(name);
  }
  NamespacePtr NewNamespace() const { return Provider()->AllocateNamespace({}, false, "root/x"); }

  // The exported switch of the caches of `level`, 1 to 3.
  std::int32_t& CacheSwitch(int level);

  // Forgets the provider; the library stays.
  void ReleaseProvider() { m_manager->Clear(); }

 private:
  boost::dll::shared_library m_library;
  std::string m_initialize;
  boost::shared_ptr<TNamespaceProviderManager> m_manager;
};

}  // namespace havtest

// TPlugin: a namespace provider plug-in, loaded through the operating system's loader and
// initialised.
//
// Ownership: owns the library and the provider. Whatever came out of the plug-in, namespaces,
//            values that hold references and exceptions included, must be gone before the
//            TPlugin is: its code is unloaded with it.
// Threads:   one thread at a time.
// Errors:    THostError, with the path of the library and what failed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/INamespaceProvider.h"
#include "havcore/TNamespaceProviderManager.h"
#include "havhost/SharedLibrary.h"

namespace havhost {

class TPlugin {
 public:
  // Loads `library`, calls its entry point and takes the provider "inmem" that it registers.
  explicit TPlugin(const std::filesystem::path& library);
  TPlugin(const TPlugin&) = delete;
  TPlugin& operator=(const TPlugin&) = delete;

  const NORVHAV20::INamespaceProvider& GetProvider() const { return *m_provider; }

  // The plug-in's switch for the caches of `level` (1 to 3): 1 enabled, 0 disabled, any other
  // value unknown. The plug-in reads it whenever it enumerates processors.
  std::int32_t& CacheSwitch(int level);

 private:
  void Load();
  void Initialize();
  [[noreturn]] void Fail(const std::string& what) const;

  // In this order, so that the library is unloaded after all that came out of it is gone.
  std::filesystem::path m_path;
  TSharedLibrary m_library;
  boost::shared_ptr<NORVHAV20::TNamespaceProviderManager> m_manager;
  boost::shared_ptr<NORVHAV20::INamespaceProvider> m_provider;
};

}  // namespace havhost

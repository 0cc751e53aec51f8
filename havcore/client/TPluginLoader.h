// TPluginLoader: a namespace provider plug-in, loaded through the operating system's loader and
// initialised, on every platform in the same way.
//
//   hav::client::TPluginLoader plugin("/opt/inmem/lib/libinmem.so");
//   const auto ns = plugin.GetProvider().AllocateNamespace({}, false, "root/cimv2");
//
// Ownership: owns the library and shares its provider. Whatever came out of the plug-in must
//            be gone before the loader is, because its code is unloaded with it: namespaces,
//            classes, instances and all other elements, references that are bound to them,
//            callbacks that hold them, and exceptions that were caught.
// Threads:   one thread at a time for each; several may be made and used at once.
// Errors:    TPluginError, with the path of the library and what failed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "havcore/INamespaceProvider.h"

namespace hav::client {

// "cannot load the plug-in PATH: WHY"
class TPluginError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TPluginLoader {
 public:
  // The name that the plug-in registers its provider under.
  static constexpr char kProviderName[] = "inmem";

  // Loads `library`, calls its entry point, `TInmemNamespaceProvider::Initialize`, and takes
  // the provider that it registers. The manager of the process's host is as it was afterwards.
  explicit TPluginLoader(const std::filesystem::path& library);
  ~TPluginLoader();
  TPluginLoader(const TPluginLoader&) = delete;
  TPluginLoader& operator=(const TPluginLoader&) = delete;

  const NORVHAV20::INamespaceProvider& GetProvider() const { return *m_provider; }

  // The plug-in's switch for the caches of `level` (1 to 3): 1 enabled, 0 disabled, any other
  // value unknown. The plug-in reads it whenever it enumerates processors.
  std::int32_t& CacheSwitch(int level);

 private:
  class TLibrary;

  void Load();
  void Initialize();
  [[noreturn]] void Fail(const std::string& what) const;

  // In this order, so that the library is unloaded after all that came out of it is gone.
  std::filesystem::path m_path;
  std::unique_ptr<TLibrary> m_library;
  boost::shared_ptr<NORVHAV20::INamespaceProvider> m_provider;
};

}  // namespace hav::client

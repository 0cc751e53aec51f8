#include "havhost/Paths.h"

#include <initializer_list>
#include <system_error>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/runtime_symbol_info.hpp>

namespace havhost {

namespace {

std::filesystem::path ProgramFolder() {
  std::error_code unknown;
  const auto program = boost::dll::program_location(unknown);
  return unknown ? std::filesystem::path(".") : program.parent_path();
}

}  // namespace

std::filesystem::path InstalledPlugin() {
  const auto folder = ProgramFolder();
  const auto beside = folder / HAVHOST_PLUGIN_NAME;
  for (const auto& candidate : {beside, folder / HAVHOST_BUILT_LIBRARIES / HAVHOST_PLUGIN_NAME,
                                folder / HAVHOST_INSTALLED_LIBRARIES / HAVHOST_PLUGIN_NAME}) {
    std::error_code missing;
    if (std::filesystem::exists(candidate, missing)) return candidate.lexically_normal();
  }
  return beside;
}

std::filesystem::path InstalledSchema() {
  return (ProgramFolder() / HAVHOST_INSTALLED_SCHEMA).lexically_normal();
}

}  // namespace havhost

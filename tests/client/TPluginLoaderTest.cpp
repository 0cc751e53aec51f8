// Loading a plug-in, and what is said when it is none.
#include "havcore/client/TPluginLoader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "havcore/client/Utf8.h"
#include "havcore/havcore.h"
#include "loaded/ProcessUse.h"

namespace havtest {
namespace {

using hav::client::TPluginError;
using hav::client::TPluginLoader;

std::string LoadError(const std::string& path) {
  try {
    TPluginLoader plugin(hav::client::PathOf(path));
  } catch (const TPluginError& failure) {
    return failure.what();
  }
  return "loaded";
}

// What is said of a library that is there and broken.
std::string Says(const char* path, const std::string& what) {
  return std::string("cannot load the plug-in ") + path + ": " + what;
}

TEST(TPluginLoader, GivesTheProviderThatItRegisters) {
  TPluginLoader plugin(INMEM_PLUGIN);
  EXPECT_EQ(plugin.GetProvider().GetName({}), "inmem");
  EXPECT_EQ(plugin.GetProvider().GetType({}), 2u);
}

TEST(TPluginLoader, LeavesTheHostsManagerAsItWas) {
  const auto before = NORVHAV20::TRootObject::GetNamespaceProviderManager();
  TPluginLoader plugin(INMEM_PLUGIN);
  EXPECT_EQ(NORVHAV20::TRootObject::GetNamespaceProviderManager(), before);
}

TEST(TPluginLoader, CanBeLoadedAgainAndTwiceAtOnce) {
  for (int i = 0; i < 3; ++i) {
    TPluginLoader first(INMEM_PLUGIN);
    TPluginLoader second(INMEM_PLUGIN);
    const auto ns = first.GetProvider().AllocateNamespace({}, false, "root/test");
    EXPECT_EQ(ns->GetClass("<root>", {})->GetName({}), "<root>");
  }
}

TEST(TPluginLoader, CacheSwitchesAreThePluginsOwn) {
  TPluginLoader plugin(INMEM_PLUGIN);
  for (int level = 1; level <= 3; ++level) {
    auto& cache = plugin.CacheSwitch(level);
    const auto before = cache;
    cache = level;
    EXPECT_EQ(plugin.CacheSwitch(level), level);
    cache = before;
  }
  EXPECT_NE(&plugin.CacheSwitch(1), &plugin.CacheSwitch(2));
}

TEST(TPluginLoader, MissingFileIsNamed) {
  EXPECT_EQ(LoadError("nowhere/plugin.so"),
            "cannot load the plug-in nowhere/plugin.so: there is no such file");
}

TEST(TPluginLoader, FileThatIsNoLibraryIsRefusedInTheSystemsWords) {
  const auto file = std::filesystem::temp_directory_path() / "havcore-client-text.so";
  std::ofstream(file) << "no library";
  const auto path = file.string();
  const auto error = LoadError(path);
  std::filesystem::remove(file);
  EXPECT_EQ(error.rfind("cannot load the plug-in " + path + ": ", 0), 0u) << error;
  EXPECT_EQ(error.find("boost"), std::string::npos) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos) << error;
}

TEST(TPluginLoader, LibraryWithoutTheEntryPointIsNoPlugin) {
  EXPECT_EQ(LoadError(NO_PLUGIN),
            Says(NO_PLUGIN, "it is no plug-in: it exports no TInmemNamespaceProvider::Initialize"));
}

TEST(TPluginLoader, LibraryWithoutTheSwitchesIsRefused) {
  EXPECT_EQ(LoadError(INMEM_PLUGIN_HAS_NO_SWITCHES),
            Says(INMEM_PLUGIN_HAS_NO_SWITCHES, "it exports no g_L1Enabled"));
}

TEST(TPluginLoader, StatusOfAFailedInitialisationIsASentence) {
  const auto sentence =
      NORVHAV20::THAVStatusCode(NORVHAV20::kHAVNotSupported).TranslateStatusCode();
  EXPECT_EQ(LoadError(INMEM_PLUGIN_REFUSES),
            Says(INMEM_PLUGIN_REFUSES, "its initialisation failed: " + sentence));
}

TEST(TPluginLoader, ExceptionsOfItsInitialisationAreASentence) {
  const auto sentence =
      NORVHAV20::THAVStatusCode(NORVHAV20::kHAVAlreadyDefined).TranslateStatusCode();
  EXPECT_EQ(LoadError(INMEM_PLUGIN_THROWS),
            Says(INMEM_PLUGIN_THROWS, "its initialisation failed: " + sentence));
  EXPECT_EQ(LoadError(INMEM_PLUGIN_THROWS_ANYTHING),
            Says(INMEM_PLUGIN_THROWS_ANYTHING,
                 "its initialisation failed: it threw what is no standard exception"));
}

TEST(TPluginLoader, HasToRegisterAProvider) {
  EXPECT_EQ(LoadError(INMEM_PLUGIN_REGISTERS_NOTHING),
            Says(INMEM_PLUGIN_REGISTERS_NOTHING,
                 "its initialisation failed: it registered no provider \"inmem\""));
}

TEST(TPluginLoader, ACacheLevelThatIsNoneIsRefused) {
  TPluginLoader plugin(INMEM_PLUGIN);
  EXPECT_THROW(plugin.CacheSwitch(0), std::out_of_range);
  EXPECT_THROW(plugin.CacheSwitch(4), std::out_of_range);
}

TEST(TPluginLoader, UnloadsTheLibraryAfterAllThatCameOutOfIt) {
  const auto folder = std::filesystem::temp_directory_path() / "havcore-client-unload";
  const auto copy =
      folder / ("unloaded" + std::filesystem::path(INMEM_PLUGIN).extension().string());
  std::filesystem::create_directories(folder);
  std::filesystem::copy_file(INMEM_PLUGIN, copy, std::filesystem::copy_options::overwrite_existing);
  {
    TPluginLoader plugin(copy);
    const auto ns = plugin.GetProvider().AllocateNamespace({}, false, "root/test");
    ns->AllocateClass("T_Disk", {}, {})->AddToNamespace({});
    EXPECT_TRUE(IsLoaded(copy.filename().string()));
  }
  EXPECT_FALSE(IsLoaded(copy.filename().string()));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace havtest

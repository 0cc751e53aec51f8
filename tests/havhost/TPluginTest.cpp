// Loading a plug-in, and what is said when it is none.
#include "havhost/TPlugin.h"

#include <gtest/gtest.h>

#include "havcore/client/Utf8.h"
#include "havcore/havcore.h"
#include "havhost/Paths.h"
#include "havhost/THostError.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using havhost::TPlugin;

std::string LoadError(const std::string& path) {
  try {
    TPlugin plugin(hav::client::PathOf(path));
  } catch (const havhost::THostError& failure) {
    return failure.what();
  }
  return "loaded";
}

// What is said of a library that is there and broken.
std::string Says(const char* path, const std::string& what) {
  return std::string("cannot load the plug-in ") + path + ": " + what;
}

TEST(TPlugin, GivesTheProviderThatItRegisters) {
  TPlugin plugin(HAVHOST_PLUGIN);
  EXPECT_EQ(plugin.GetProvider().GetName({}), "inmem");
  EXPECT_EQ(plugin.GetProvider().GetType({}), 2u);
}

TEST(TPlugin, LeavesTheHostsManagerAsItWas) {
  const auto before = NORVHAV20::TRootObject::GetNamespaceProviderManager();
  TPlugin plugin(HAVHOST_PLUGIN);
  EXPECT_EQ(NORVHAV20::TRootObject::GetNamespaceProviderManager(), before);
}

TEST(TPlugin, CanBeLoadedAgainAndTwiceAtOnce) {
  for (int i = 0; i < 3; ++i) {
    TPlugin first(HAVHOST_PLUGIN);
    TPlugin second(HAVHOST_PLUGIN);
    const auto ns = first.GetProvider().AllocateNamespace({}, false, "root/test");
    EXPECT_EQ(ns->GetClass("<root>", {})->GetName({}), "<root>");
  }
}

TEST(TPlugin, CacheSwitchesAreThePluginsOwn) {
  TPlugin plugin(HAVHOST_PLUGIN);
  for (int level = 1; level <= 3; ++level) {
    auto& cache = plugin.CacheSwitch(level);
    const auto before = cache;
    cache = level;
    EXPECT_EQ(plugin.CacheSwitch(level), level);
    cache = before;
  }
  EXPECT_NE(&plugin.CacheSwitch(1), &plugin.CacheSwitch(2));
}

TEST(TPlugin, MissingFileIsNamed) {
  EXPECT_EQ(LoadError("nowhere/plugin.so"),
            "cannot load the plug-in nowhere/plugin.so: there is no such file");
}

TEST(TPlugin, FileThatIsNoLibraryIsRefusedInTheSystemsWords) {
  const TemporaryFolder folder;
  const auto path = folder.File("text.so", "no library");
  const auto error = LoadError(path);
  EXPECT_EQ(error.rfind("cannot load the plug-in " + path + ": ", 0), 0u) << error;
  EXPECT_EQ(error.find("boost"), std::string::npos) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos) << error;
}

TEST(TPlugin, LibraryWithoutTheEntryPointIsNoPlugin) {
  EXPECT_EQ(LoadError(HAVHOST_NO_PLUGIN),
            Says(HAVHOST_NO_PLUGIN,
                 "it is no plug-in: it exports no TInmemNamespaceProvider::Initialize"));
}

TEST(TPlugin, LibraryWithoutTheSwitchesIsRefused) {
  EXPECT_EQ(LoadError(HAVHOST_PLUGIN_HAS_NO_SWITCHES),
            Says(HAVHOST_PLUGIN_HAS_NO_SWITCHES, "it exports no g_L1Enabled"));
}

TEST(TPlugin, StatusOfAFailedInitialisationIsASentence) {
  const auto sentence =
      NORVHAV20::THAVStatusCode(NORVHAV20::kHAVNotSupported).TranslateStatusCode();
  EXPECT_EQ(LoadError(HAVHOST_PLUGIN_REFUSES),
            Says(HAVHOST_PLUGIN_REFUSES, "its initialisation failed: " + sentence));
}

TEST(TPlugin, ExceptionsOfItsInitialisationAreASentence) {
  const auto sentence =
      NORVHAV20::THAVStatusCode(NORVHAV20::kHAVAlreadyDefined).TranslateStatusCode();
  EXPECT_EQ(LoadError(HAVHOST_PLUGIN_THROWS),
            Says(HAVHOST_PLUGIN_THROWS, "its initialisation failed: " + sentence));
  EXPECT_EQ(LoadError(HAVHOST_PLUGIN_THROWS_ANYTHING),
            Says(HAVHOST_PLUGIN_THROWS_ANYTHING,
                 "its initialisation failed: it threw what is no standard exception"));
}

TEST(TPlugin, HasToRegisterAProvider) {
  EXPECT_EQ(LoadError(HAVHOST_PLUGIN_REGISTERS_NOTHING),
            Says(HAVHOST_PLUGIN_REGISTERS_NOTHING,
                 "its initialisation failed: it registered no provider \"inmem\""));
}

TEST(TPlugin, IsFoundBesideTheProgramThatWasBuiltWithIt) {
  EXPECT_TRUE(std::filesystem::equivalent(havhost::InstalledPlugin(), HAVHOST_PLUGIN));
}

TEST(TPlugin, FailureToLoadItFailsTheCommand) {
  const auto outcome = RunPlain({"classes", "--plugin", "nowhere.so"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "havhost: cannot load the plug-in nowhere.so: there is no such file\n");
}

}  // namespace
}  // namespace havtest

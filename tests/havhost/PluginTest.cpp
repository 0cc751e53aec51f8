// The plug-in as the program finds it and fails without it.
#include <gtest/gtest.h>

#include <filesystem>

#include "havhost/Paths.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

TEST(Plugin, IsFoundBesideTheProgramThatWasBuiltWithIt) {
  EXPECT_TRUE(std::filesystem::equivalent(havhost::InstalledPlugin(), HAVHOST_PLUGIN));
}

TEST(Plugin, FailureToLoadItFailsTheCommand) {
  const auto outcome = RunPlain({"classes", "--plugin", "nowhere.so"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "havhost: cannot load the plug-in nowhere.so: there is no such file\n");
}

}  // namespace
}  // namespace havtest

// The instrument itself: growth that it did not see would prove nothing.
#include <fstream>
#include <iostream>
#include <vector>

#include <gtest/gtest.h>

#include "loaded/LoadedPlugin.h"
#include "loaded/ProcessUse.h"

namespace havtest {
namespace {

TEST(ProcessUse, SeesMemoryThatIsTaken) {
  constexpr std::size_t kSize = 16 * 1024 * 1024;
  const auto before = ProcessUse::Now();
  const std::vector<char> taken(kSize, 'x');
  EXPECT_GE(ProcessUse::Now().memoryBytes, before.memoryBytes + kSize / 2);
  EXPECT_EQ(taken.back(), 'x');
}

TEST(ProcessUse, SeesALibraryThatIsLoaded) {
  const auto before = ProcessUse::Now();
  const LoadedPlugin plugin(INMEM_LIBRARY);
  EXPECT_GT(ProcessUse::Now().mappings, before.mappings);
}

TEST(ProcessUse, SeesAFileThatIsOpen) {
  const auto before = ProcessUse::Now();
  const std::ifstream open(INMEM_LIBRARY);
  ASSERT_TRUE(open.is_open());
  if (before.handles == 0)
    std::cout << "this system does not count the handles of a process\n";
  else
    EXPECT_GT(ProcessUse::Now().handles, before.handles);
}

}  // namespace
}  // namespace havtest

// What the collectors find on the system that the tests run on.
#include <gtest/gtest.h>
#include <windows.h>

#include "inventory/Inventory.h"
#include "tests/inventory/CollectionText.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(ThisMachine, HasWhatTheSystemSays) {
  const auto found = GatherInventory(TMachine());
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem").size(), 1U);
  EXPECT_EQ(Names(found, "ORVSG_OperatingSystem").size(), 1U);
  EXPECT_EQ(Links(found, "ORVSG_RunningOS").size(), 1U);

  std::uint32_t threads = 0;
  for (const auto& name : Names(found, "ORVSG_Processor"))
    threads += static_cast<std::uint32_t>(
        Element(found, "ORVSG_Processor", name).Get("NumberOfLogicalProcessors"));
  EXPECT_EQ(threads, GetActiveProcessorCount(ALL_PROCESSOR_GROUPS));

  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof(memory);
  ASSERT_TRUE(GlobalMemoryStatusEx(&memory));
  EXPECT_EQ(static_cast<std::uint64_t>(Element(found, "ORVSG_Memory", "Memory").Get("TotalSize")),
            memory.ullTotalPhys);

  const auto system = Element(found, "ORVSG_FileSystem", "C:\\");
  EXPECT_GT(static_cast<std::uint64_t>(system.Get("FileSystemSize")), 0U);
}

TEST(ThisMachine, DevicesBelongToTheSystem) {
  const auto found = GatherInventory(TMachine());
  std::size_t devices = 0;
  for (const auto* const cls : {"ORVSG_Processor", "ORVSG_Memory", "ORVSG_DiskDrive",
                                "ORVSG_NetworkPort", "ORVSG_PhysicalNetworkPort"})
    devices += Names(found, cls).size();
  EXPECT_EQ(Links(found, "ORVSG_SystemDevice").size(), devices);
  EXPECT_GE(devices, 2U);
}

TEST(OtherMachine, IsRefused) {
  const auto found = GatherInventory(TMachine("/another"));
  EXPECT_EQ(found.Elements().size(), 0U);
  EXPECT_EQ(Failures(found),
            Texts{"machine: /another: another machine's folder can be read on Linux only"});
}

}  // namespace
}  // namespace havtest

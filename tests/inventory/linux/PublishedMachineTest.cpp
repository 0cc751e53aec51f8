// A machine's inventory in a namespace of the plug-in.
#include <gtest/gtest.h>

#include <algorithm>

#include "inventory/CachesFound.h"
#include "tests/inventory/FakeMachine.h"
#include "tests/inventory/Published.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST_F(Published, EveryElementHasAReadablePath) {
  Publish(FullMachine().Machine());
  EXPECT_EQ(failures, Texts{});
  const Texts expected{"ORVSG_ComputerSystem.Name=\"server1\"",
                       R"(ORVSG_OperatingSystem.Name="Example \"Server\" Linux 12")",
                       "ORVSG_FileSystem.Name=\"/\"",
                       "ORVSG_FileSystem.Name=\"/boot\"",
                       "ORVSG_FileSystem.Name=\"/mnt/share\"",
                       "ORVSG_FileSystem.Name=\"/srv/my data\"",
                       "ORVSG_Processor.Name=\"CPU0\"",
                       "ORVSG_Processor.Name=\"CPU1\"",
                       "ORVSG_CacheMemory.Name=\"CPU0 L1 data cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU0 L1 instruction cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU0 L2 cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU0 L3 cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU1 L1 data cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU1 L1 instruction cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU1 L2 cache\"",
                       "ORVSG_CacheMemory.Name=\"CPU1 L3 cache\"",
                       "ORVSG_Memory.Name=\"Memory\"",
                       "ORVSG_DiskDrive.Name=\"/dev/nvme0n1\"",
                       "ORVSG_DiskDrive.Name=\"/dev/sda\"",
                       "ORVSG_DiskDrive.Name=\"/dev/sr0\"",
                       "ORVSG_DiskPartition.Name=\"/dev/nvme0n1p1\"",
                       "ORVSG_DiskPartition.Name=\"/dev/sda1\"",
                       "ORVSG_DiskPartition.Name=\"/dev/sda2\"",
                       "ORVSG_StorageVolume.Name=\"/dev/mapper/secret\"",
                       "ORVSG_NetworkPort.Name=\"docker0\"",
                       "ORVSG_NetworkPort.Name=\"lo\"",
                       "ORVSG_PhysicalNetworkPort.Name=\"eth0\"",
                       "ORVSG_PhysicalNetworkPort.Name=\"wlan0\""};
  auto paths = PathsOf("ORVSG_ManagedElement", true);
  EXPECT_TRUE(std::is_permutation(paths.begin(), paths.end(), expected.begin(), expected.end()))
      << testing::PrintToString(paths);
}

TEST_F(Published, AssociationsAreFollowed) {
  Publish(FullMachine().Machine());
  EXPECT_EQ(
      Associated("ORVSG_DiskDrive.Name=\"/dev/sda\"", "ORVSG_PartitionOnDisk"),
      (Texts{"ORVSG_DiskPartition.Name=\"/dev/sda1\"", "ORVSG_DiskPartition.Name=\"/dev/sda2\""}));
  EXPECT_EQ(Associated("ORVSG_DiskPartition.Name=\"/dev/sda2\"", "ORVSG_VolumeOnExtent"),
            Texts{"ORVSG_StorageVolume.Name=\"/dev/mapper/secret\""});
  EXPECT_EQ(Associated("ORVSG_FileSystem.Name=\"/boot\"", "ORVSG_FileSystemOnPartition"),
            Texts{"ORVSG_DiskPartition.Name=\"/dev/sda1\""});
  EXPECT_EQ(Associated("ORVSG_Processor.Name=\"CPU1\"", "ORVSG_ProcessorCache"),
            (Texts{"ORVSG_CacheMemory.Name=\"CPU1 L1 data cache\"",
                   "ORVSG_CacheMemory.Name=\"CPU1 L1 instruction cache\"",
                   "ORVSG_CacheMemory.Name=\"CPU1 L2 cache\"",
                   "ORVSG_CacheMemory.Name=\"CPU1 L3 cache\""}));
  EXPECT_EQ(Associated("ORVSG_ComputerSystem.Name=\"server1\"", "ORVSG_SystemDevice").size(), 11U);
  EXPECT_EQ(PathsOf("ORVSG_RunningOS").size(), 1U);
  EXPECT_EQ(PathsOf("ORVSG_HostedFileSystem"),
            Texts{"ORVSG_HostedFileSystem."
                  R"(GroupComponent="ORVSG_ComputerSystem.Name=\"server1\"",)"
                  R"(PartComponent="ORVSG_FileSystem.Name=\"/mnt/share\"")"});
}

TEST_F(Published, ValuesAreShownForPeople) {
  Publish(FullMachine().Machine());
  const std::string system = "ORVSG_ComputerSystem.Name=\"server1\"";
  const std::string os = R"(ORVSG_OperatingSystem.Name="Example \"Server\" Linux 12")";
  const std::string processor = "ORVSG_Processor.Name=\"CPU0\"";
  const std::string disk = "ORVSG_DiskDrive.Name=\"/dev/sda\"";
  const std::string port = "ORVSG_PhysicalNetworkPort.Name=\"wlan0\"";
  EXPECT_EQ(Shown(system, "ChassisType"), "Rack mount");
  EXPECT_EQ(Shown(os, "UpTime"), "1 day 02:03:04");
  EXPECT_EQ(Shown(os, "LastBootUpTime"), "20231114221320.000000+000");
  EXPECT_EQ(Shown(processor, "CPUStatus"), "CPU Enabled");
  EXPECT_EQ(Shown(processor, "L1Enabled"), "Enabled");
  EXPECT_EQ(Shown(processor, "MicrocodeRevision"), "5003302");
  EXPECT_EQ(Shown("ORVSG_CacheMemory.Name=\"CPU0 L2 cache\"", "TotalSize"), "2 MB");
  EXPECT_EQ(Shown("ORVSG_CacheMemory.Name=\"CPU0 L2 cache\"", "CacheType"), "Unified");
  EXPECT_EQ(Shown("ORVSG_Memory.Name=\"Memory\"", "TotalSize"), "31.2 GB");
  EXPECT_EQ(Shown(disk, "Size"), "1.8 TB");
  EXPECT_EQ(Shown(disk, "MediaType"), "Hard disk");
  EXPECT_EQ(Shown(disk, "Manufacturer"), "Unknown");
  EXPECT_EQ(Shown("ORVSG_FileSystem.Name=\"/\"", "UUID"), "Unknown");
  EXPECT_EQ(Shown("ORVSG_FileSystem.Name=\"/mnt/share\"", "FileSystemSize"), "Unknown");
  EXPECT_EQ(Shown("ORVSG_PhysicalNetworkPort.Name=\"eth0\"", "Speed"), "10 Gbps");
  EXPECT_EQ(Shown(port, "Speed"), "Unknown");
  EXPECT_EQ(Shown(port, "speedDuplex"), "Unknown");
  EXPECT_EQ(Shown(port, "LinkStatus"), "Dormant");
  EXPECT_EQ(Shown(port, "PortType"), "Wireless LAN");
}

TEST_F(Published, ElementsSayWhenTheyWereCollected) {
  Publish(FullMachine().Machine());
  ns->GetClass("ORVSG_ManagedElement", {})
      ->EnumerateInstances(
          [](const InstancePtr& instance) {
            EXPECT_FALSE(instance->GetProperty("DateTimeOfCollection", {})->GetValue({}).IsNull())
                << instance->GetReference({}).GetPath();
            return true;
          },
          true, {});
}

TEST_F(Published, CachesFoundAreTheSwitchesOfTheLevels) {
  EXPECT_EQ(CachesFound(*ns), (TCacheSwitches{-1, -1, -1}));
  FullMachine machine;
  for (const auto* const thread : {"0", "1", "2", "3", "4", "5", "6", "7"})
    machine.Remove(std::string("/sys/devices/system/cpu/cpu") + thread + "/cache/index3");
  Publish(machine.Machine());
  EXPECT_EQ(CachesFound(*ns), (TCacheSwitches{1, 1, 0}));
  EXPECT_EQ(CachesFound(*NewNamespace()), (TCacheSwitches{-1, -1, -1}));
}

TEST_F(Published, EmptyMachineLeavesTheNamespaceEmpty) {
  Publish(FakeMachine().Machine());
  EXPECT_EQ(failures.size(), 7U);
  EXPECT_EQ(PathsOf("ORVSG_ManagedElement", true), Texts{});
}

TEST_F(Published, AComputerWithoutANameIsLocalhost) {
  FullMachine machine;
  machine.Remove("/proc/sys/kernel/hostname");
  Publish(machine.Machine());
  EXPECT_EQ(failures,
            Texts{"computer system: /proc/sys/kernel/hostname: the computer has no name"});
  EXPECT_EQ(PathsOf("ORVSG_ComputerSystem"), Texts{"ORVSG_ComputerSystem.Name=\"localhost\""});
  EXPECT_EQ(Associated("ORVSG_ComputerSystem.Name=\"localhost\"", "ORVSG_SystemDevice").size(),
            11U);
}

}  // namespace
}  // namespace havtest

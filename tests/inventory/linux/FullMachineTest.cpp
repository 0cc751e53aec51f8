// What the collectors gather from a machine that shows everything.
#include <gtest/gtest.h>

#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"

namespace havtest {
namespace {

// Gathered once, since nothing here changes it.
const hav::inventory::TCollection& Found() {
  static const hav::inventory::TCollection found = FullMachine().Gather();
  return found;
}

TEST(FullMachine, ReportsNoFailure) { EXPECT_EQ(Failures(Found()), Texts{}); }

TEST(FullMachine, ComputerSystem) {
  EXPECT_EQ(Values(Element(Found(), "ORVSG_ComputerSystem", "server1")),
            (Texts{"Name=server1", "Caption=server1, Example Computers Rack 2000",
                   "Manufacturer=Example Computers", "Model=Rack 2000", "SerialNumber=SN-0042",
                   "UUID=4c4c4544-0042-3510-8052-b4c04f4a3532", "ChassisType=23",
                   "FirmwareManufacturer=Example Firmware", "FirmwareVersion=2.4.1",
                   "FirmwareDate=03/14/2024", "HypervisorPresent=FALSE"}));
}

TEST(FullMachine, OperatingSystem) {
  const std::string name = "Example \"Server\" Linux 12";
  EXPECT_EQ(
      Values(Element(Found(), "ORVSG_OperatingSystem", name)),
      (Texts{"Name=" + name, "Caption=" + name + ", Linux 6.1.0-18-amd64", "Distribution=example",
             "Version=12", "KernelName=Linux", "KernelVersion=6.1.0-18-amd64",
             "Architecture=x86_64", "LastBootUpTime=20231114221320.000000+000", "UpTime=93784"}));
  EXPECT_EQ(Links(Found(), "ORVSG_RunningOS"), Texts{name + " -> server1"});
}

TEST(FullMachine, EachSocketIsAProcessor) {
  EXPECT_EQ(Names(Found(), "ORVSG_Processor"), (Texts{"CPU0", "CPU1"}));
  EXPECT_EQ(
      Values(Element(Found(), "ORVSG_Processor", "CPU1")),
      (Texts{"Name=CPU1", "Caption=CPU1, Example Processor 9000", "Manufacturer=GenuineIntel",
             "SocketNumber=1", "CPUStatus=1", "NumberOfCores=2", "NumberOfLogicalProcessors=4",
             "FamilyNumber=6", "ModelNumber=85", "Stepping=7", "MaxClockSpeedMHz=3600",
             "CurrentClockSpeedMHz=2400", "MicrocodeRevision=83899138", "L1Enabled=TRUE",
             "L2Enabled=TRUE", "L3Enabled=TRUE"}));
}

TEST(FullMachine, CachesOfOneKindAreOneElement) {
  EXPECT_EQ(
      Names(Found(), "ORVSG_CacheMemory"),
      (Texts{"CPU0 L1 instruction cache", "CPU0 L1 data cache", "CPU0 L2 cache", "CPU0 L3 cache",
             "CPU1 L1 instruction cache", "CPU1 L1 data cache", "CPU1 L2 cache", "CPU1 L3 cache"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_CacheMemory", "CPU0 L1 data cache")),
            (Texts{"Name=CPU0 L1 data cache", "Level=1", "CacheType=3", "NumberOfCaches=2",
                   "Size=32768", "TotalSize=65536", "LineSize=64", "Associativity=8"}));
  EXPECT_EQ(Element(Found(), "ORVSG_CacheMemory", "CPU1 L3 cache").Get("NumberOfCaches"),
            NORVHAV20::TCIMValue(std::uint32_t{1}));
  EXPECT_EQ(
      Links(Found(), "ORVSG_ProcessorCache"),
      (Texts{"CPU0 L1 instruction cache -> CPU0", "CPU0 L1 data cache -> CPU0",
             "CPU0 L2 cache -> CPU0", "CPU0 L3 cache -> CPU0", "CPU1 L1 instruction cache -> CPU1",
             "CPU1 L1 data cache -> CPU1", "CPU1 L2 cache -> CPU1", "CPU1 L3 cache -> CPU1"}));
}

TEST(FullMachine, Memory) {
  EXPECT_EQ(Values(Element(Found(), "ORVSG_Memory", "Memory")),
            (Texts{"Name=Memory", "TotalSize=33554432000", "AvailableSize=16777216000",
                   "FreeSize=1048576000", "SwapSize=2147483648", "SwapFreeSize=2147479552"}));
}

TEST(FullMachine, DisksWithoutLoopDevices) {
  EXPECT_EQ(Names(Found(), "ORVSG_DiskDrive"), (Texts{"/dev/nvme0n1", "/dev/sda", "/dev/sr0"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_DiskDrive", "/dev/sda")),
            (Texts{"Name=/dev/sda", "Size=2000398934016", "ReadOnly=FALSE",
                   "Caption=/dev/sda, EXAMPLE HDD 2000", "Model=EXAMPLE HDD 2000",
                   "SerialNumber=WD-77", "FirmwareRevision=1A01", "BusType=ata", "MediaType=3",
                   "Removable=FALSE", "LogicalBlockSize=512", "PhysicalBlockSize=4096"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_DiskDrive", "/dev/nvme0n1")),
            (Texts{"Name=/dev/nvme0n1", "Size=512110190592", "ReadOnly=FALSE",
                   "Caption=/dev/nvme0n1, Example SSD", "Model=Example SSD", "SerialNumber=S4EV",
                   "FirmwareRevision=2B2Q", "MediaType=4"}));
}

TEST(FullMachine, PartitionsAndVolumes) {
  EXPECT_EQ(Values(Element(Found(), "ORVSG_DiskPartition", "/dev/sda1")),
            (Texts{"Name=/dev/sda1", "Size=536870912", "ReadOnly=FALSE", "PartitionNumber=1",
                   "StartingOffset=1048576", "Label=boot area", "UUID=aa-01"}));
  EXPECT_EQ(
      Links(Found(), "ORVSG_PartitionOnDisk"),
      (Texts{"/dev/nvme0n1 -> /dev/nvme0n1p1", "/dev/sda -> /dev/sda1", "/dev/sda -> /dev/sda2"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_StorageVolume", "/dev/mapper/secret")),
            (Texts{"Name=/dev/mapper/secret", "Size=1999844147200", "ReadOnly=FALSE",
                   "VolumeType=CRYPT"}));
  EXPECT_EQ(Links(Found(), "ORVSG_VolumeOnExtent"), Texts{"/dev/sda2 -> /dev/mapper/secret"});
}

TEST(FullMachine, OneFileSystemInManyPlacesIsOneElement) {
  EXPECT_EQ(Names(Found(), "ORVSG_FileSystem"),
            (Texts{"/", "/boot", "/srv/my data", "/mnt/share"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_FileSystem", "/")),
            (Texts{"Name=/", "Caption=/, ext4 on /dev/mapper/secret", "FileSystemType=ext4",
                   "Source=/dev/mapper/secret", "MountPoints={/, /mnt/log}", "ReadOnly=FALSE",
                   "FileSystemSize=1999844147200", "AvailableSpace=999922073600"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_FileSystem", "/boot")),
            (Texts{"Name=/boot", "Caption=/boot, vfat on /dev/sda1", "FileSystemType=vfat",
                   "Source=/dev/sda1", "MountPoints={/boot}", "ReadOnly=TRUE", "Label=boot",
                   "UUID=1234-ABCD", "FileSystemSize=536870912", "AvailableSpace=268435456"}));
  EXPECT_EQ(Element(Found(), "ORVSG_FileSystem", "/srv/my data").Get("MountPoints").ToString(10),
            "{/srv/my data, /home}");
}

TEST(FullMachine, FileSystemsHangOnWhatHoldsThem) {
  EXPECT_EQ(
      Links(Found(), "ORVSG_FileSystemOnPartition"),
      (Texts{"/dev/mapper/secret -> /", "/dev/sda1 -> /boot", "/dev/nvme0n1p1 -> /srv/my data"}));
  EXPECT_EQ(Links(Found(), "ORVSG_HostedFileSystem"), Texts{"server1 -> /mnt/share"});
}

TEST(FullMachine, PortsWithADeviceArePhysical) {
  EXPECT_EQ(Names(Found(), "ORVSG_NetworkPort"), (Texts{"docker0", "lo"}));
  EXPECT_EQ(Names(Found(), "ORVSG_PhysicalNetworkPort"), (Texts{"eth0", "wlan0"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_PhysicalNetworkPort", "eth0")),
            (Texts{"Name=eth0", "MACAddress=52:54:00:12:34:56",
                   "NetworkAddresses={192.0.2.10, 2001:db8::10}", "LinkStatus=1",
                   "MaximumTransmissionUnit=1500", "PortType=2", "Manufacturer=Example Networks",
                   "Model=Ten Gigabit", "Driver=ixgbe", "Speed=10000000000", "FullDuplex=TRUE",
                   "speedDuplex=10000 Mbps full duplex"}));
  EXPECT_EQ(Values(Element(Found(), "ORVSG_PhysicalNetworkPort", "wlan0")),
            (Texts{"Name=wlan0", "MACAddress=52:54:00:12:34:57", "LinkStatus=5",
                   "MaximumTransmissionUnit=1500", "PortType=11"}));
}

TEST(FullMachine, DevicesBelongToTheSystem) {
  EXPECT_EQ(Links(Found(), "ORVSG_SystemDevice"),
            (Texts{"server1 -> CPU0", "server1 -> CPU1", "server1 -> Memory",
                   "server1 -> /dev/mapper/secret", "server1 -> /dev/nvme0n1",
                   "server1 -> /dev/sda", "server1 -> /dev/sr0", "server1 -> docker0",
                   "server1 -> eth0", "server1 -> lo", "server1 -> wlan0"}));
}

}  // namespace
}  // namespace havtest

// Machines of other kinds: containers, boards without DMI, unlike cores, this machine.
#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "inventory/Inventory.h"
#include "inventory/linux/TRecordedCalls.h"
#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(Container, HasAnOverlayRootAndNoDisks) {
  FakeMachine container;
  container.File("/proc/sys/kernel/hostname", "c0ffee\n");
  container.File("/proc/filesystems", "nodev\tproc\nnodev\toverlay\n\text4\n");
  container.File("/proc/self/mountinfo",
                 "500 400 0:60 / / rw,relatime - overlay overlay rw,lowerdir=/l,upperdir=/u\n"
                 "501 500 0:61 / /proc rw - proc proc rw\n"
                 "502 500 259:3 /docker/c0ffee/hostname /etc/hostname rw - ext4 /dev/root rw\n"
                 "503 500 259:3 /docker/c0ffee/hosts /etc/hosts rw - ext4 /dev/root rw\n");
  container.Folder("/sys/block");
  container.File("/sys/class/net/eth0/type", "1\n");
  container.File("/sys/class/net/eth0/ifindex", "12\n");
  container.File("/sys/class/net/eth0/operstate", "up\n");
  const auto found = container.Gather();
  EXPECT_EQ(Values(Element(found, "ORVSG_ComputerSystem", "c0ffee")), Texts{"Name=c0ffee"});
  EXPECT_EQ(Names(found, "ORVSG_FileSystem"), (Texts{"/", "/etc/hostname"}));
  EXPECT_EQ(Element(found, "ORVSG_FileSystem", "/etc/hostname").Get("MountPoints").ToString(10),
            "{/etc/hostname, /etc/hosts}");
  EXPECT_EQ(Links(found, "ORVSG_HostedFileSystem"),
            (Texts{"c0ffee -> /", "c0ffee -> /etc/hostname"}));
  EXPECT_EQ(Names(found, "ORVSG_NetworkPort"), Texts{"eth0"});
  EXPECT_EQ(Names(found, "ORVSG_PhysicalNetworkPort"), Texts{});
}

TEST(RootInMemory, IsAFileSystemAllTheSame) {
  FakeMachine machine;
  machine.File("/proc/filesystems", "nodev\ttmpfs\n");
  machine.File("/proc/self/mountinfo",
               "1 0 0:1 / / rw - tmpfs none rw\n2 1 0:2 / /tmp rw - tmpfs none rw\n");
  EXPECT_EQ(Names(machine.Gather(), "ORVSG_FileSystem"), Texts{"/"});
}

TEST(BoardWithoutDmi, IsDescribedByItsDeviceTree) {
  FakeMachine board;
  board.File("/etc/hostname", "board\n");
  board.File("/proc/device-tree/model", std::string("Example Board 4\0", 16));
  board.File("/proc/device-tree/serial-number", std::string("1000\0", 5));
  EXPECT_EQ(Values(Element(board.Gather(), "ORVSG_ComputerSystem", "board")),
            (Texts{"Name=board", "Caption=board, Example Board 4", "Model=Example Board 4",
                   "SerialNumber=1000"}));
}

TEST(VirtualMachine, SaysThatThereIsAHypervisorAndNotWhatItsDisksAreMadeOf) {
  FakeMachine machine;
  machine.File("/proc/sys/kernel/hostname", "vm\n");
  machine.File("/proc/cpuinfo", "processor\t: 0\nflags\t\t: fpu hypervisor sse\n\n");
  const std::string device = "devices/pci0000:00/0000:00:02.0/virtio1/block/vda";
  machine.File("/sys/" + device + "/dev", "254:0\n");
  machine.File("/sys/" + device + "/size", "2048\n");
  machine.File("/sys/" + device + "/queue/rotational", "1\n");
  machine.File("/sys/" + device + "/device/vendor", "0x1af4\n");
  machine.Link("/sys/block/vda", "../" + device);
  const auto found = machine.Gather();
  EXPECT_EQ(Element(found, "ORVSG_ComputerSystem", "vm").Get("HypervisorPresent").ToString(10),
            "TRUE");
  EXPECT_EQ(Values(Element(found, "ORVSG_DiskDrive", "/dev/vda")),
            (Texts{"Name=/dev/vda", "Size=1048576", "BusType=virtio"}));
}

TEST(UnlikeCores, HaveACacheElementForEachSize) {
  FakeMachine machine;
  machine.Processors(1, 2);
  for (const auto* const thread : {"2", "3"})
    machine.File(std::string("/sys/devices/system/cpu/cpu") + thread + "/cache/index2/size",
                 "512K\n");
  const auto found = machine.Gather();
  EXPECT_EQ(Names(found, "ORVSG_CacheMemory"),
            (Texts{"CPU0 L1 instruction cache", "CPU0 L1 data cache", "CPU0 L2 cache",
                   "CPU0 L2 cache 2", "CPU0 L3 cache"}));
  EXPECT_EQ(Element(found, "ORVSG_CacheMemory", "CPU0 L2 cache").Get("Size").ToString(10),
            "524288");
}

TEST(MissingCacheLevel, IsNotEnabled) {
  FakeMachine machine;
  machine.Processors(1, 1);
  for (const auto* const thread : {"0", "1"})
    machine.Remove(std::string("/sys/devices/system/cpu/cpu") + thread + "/cache/index3");
  const auto processor = Element(machine.Gather(), "ORVSG_Processor", "CPU0");
  EXPECT_EQ(processor.Get("L2Enabled").ToString(10), "TRUE");
  EXPECT_EQ(processor.Get("L3Enabled").ToString(10), "FALSE");
}

TEST(UnknownCaches, AreNeitherEnabledNorDisabled) {
  FakeMachine machine;
  machine.Processors(1, 1);
  for (const auto* const thread : {"0", "1"})
    machine.Remove(std::string("/sys/devices/system/cpu/cpu") + thread + "/cache");
  const auto found = machine.Gather();
  EXPECT_TRUE(Element(found, "ORVSG_Processor", "CPU0").Get("L1Enabled").IsNull());
  EXPECT_EQ(Names(found, "ORVSG_CacheMemory"), Texts{});
}

// Another machine's folder never shows this machine.
TEST(OtherMachine, LeavesTheEnvironmentAsItWas) {
  FakeMachine machine;
  machine.Processors(1, 1);
  ASSERT_EQ(::setenv("HWLOC_FSROOT", "/elsewhere", 1), 0);
  machine.Gather();
  EXPECT_STREQ(std::getenv("HWLOC_FSROOT"), "/elsewhere");
  ::unsetenv("HWLOC_FSROOT");
  machine.Gather();
  EXPECT_EQ(std::getenv("HWLOC_FSROOT"), nullptr);
  EXPECT_EQ(std::getenv("HWLOC_COMPONENTS"), nullptr);
}

// As a container sees its host: the kernel's own files, and the file systems that are mounted.
TEST(OtherRootOfThisKernel, HasTheSizesAndTheArchitectureThatTheKernelSays) {
  FakeMachine host;
  host.Link("/all", "/");
  const auto here = GatherInventory(TMachine());
  const auto there = GatherInventory(TMachine(host.Path("/all").string()));
  const auto system = Names(here, "ORVSG_OperatingSystem");
  ASSERT_EQ(Names(there, "ORVSG_OperatingSystem"), system);
  EXPECT_EQ(Element(there, "ORVSG_OperatingSystem", system[0]).Get("Architecture"),
            Element(here, "ORVSG_OperatingSystem", system[0]).Get("Architecture"));
  EXPECT_EQ(Element(there, "ORVSG_FileSystem", "/").Get("FileSystemSize"),
            Element(here, "ORVSG_FileSystem", "/").Get("FileSystemSize"));
  EXPECT_FALSE(Element(there, "ORVSG_FileSystem", "/").Get("FileSystemSize").IsNull());
  for (const auto* const property : {"Manufacturer", "FamilyNumber", "ModelNumber", "Stepping"})
    EXPECT_EQ(Element(there, "ORVSG_Processor", "CPU0").Get(property),
              Element(here, "ORVSG_Processor", "CPU0").Get(property))
        << property;
}

TEST(OtherRootOfThisKernel, HasNoSizeForWhatIsNotMountedThere) {
  FakeMachine host;
  host.Link("/proc", "/proc");
  TCollection failures;
  EXPECT_FALSE(TRecordedCalls(host.Machine()).FileSystemUsage("/", "0:0", failures));
  EXPECT_EQ(Failures(failures), Texts{});
}

TEST(ThisMachine, HasWhatTheSystemSays) {
  const auto found = GatherInventory(TMachine());
  utsname names{};
  ASSERT_EQ(::uname(&names), 0);
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem"), Texts{names.nodename});
  const auto systems = Names(found, "ORVSG_OperatingSystem");
  ASSERT_EQ(systems.size(), 1U);
  const auto system = Element(found, "ORVSG_OperatingSystem", systems[0]);
  EXPECT_EQ(system.Get("KernelVersion").ToString(10), names.release);
  EXPECT_EQ(system.Get("Architecture").ToString(10), names.machine);

  std::uint32_t threads = 0;
  for (const auto& name : Names(found, "ORVSG_Processor"))
    threads += static_cast<std::uint32_t>(
        Element(found, "ORVSG_Processor", name).Get("NumberOfLogicalProcessors"));
  EXPECT_EQ(threads, static_cast<std::uint32_t>(::sysconf(_SC_NPROCESSORS_ONLN)));

  const auto memory = Element(found, "ORVSG_Memory", "Memory");
  EXPECT_GT(static_cast<std::uint64_t>(memory.Get("TotalSize")), 0U);
  const auto fileSystems = Names(found, "ORVSG_FileSystem");
  EXPECT_NE(std::find(fileSystems.begin(), fileSystems.end(), "/"), fileSystems.end());
}

}  // namespace
}  // namespace havtest

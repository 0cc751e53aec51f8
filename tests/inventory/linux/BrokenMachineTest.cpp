// Machines whose files are missing, broken or hostile: the inventory loses what it cannot
// read, says so, and nothing else.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "inventory/Inventory.h"
#include "inventory/Text.h"
#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(EmptyMachine, HasNoElementsAndEveryCollectorSaysWhy) {
  const auto found = FakeMachine().Gather();
  EXPECT_EQ(found.Elements().size(), 0U);
  EXPECT_EQ(Failures(found),
            (Texts{"computer system: /proc/sys/kernel/hostname: the computer has no name",
                   "operating system: /etc/os-release: the operating system has no name",
                   "processors: /sys/devices/system/cpu: tells of no processor",
                   "memory: /proc/meminfo: is not there", "disks: /sys/block: is not there",
                   "file systems: /proc/self/mountinfo: is not there",
                   "network ports: /sys/class/net: is not there"}));
}

TEST(EmptyMachine, IsNotThisMachine) {
  EXPECT_FALSE(TMachine("").Root().empty());
  EXPECT_TRUE(TMachine("").IsThisMachine());
  EXPECT_TRUE(TMachine("//").IsThisMachine());
  EXPECT_FALSE(TMachine("/machine/").IsThisMachine());
  EXPECT_EQ(TMachine("/machine/").Root(), "/machine");
}

class BrokenFile : public testing::Test {
 protected:
  // The failures of a machine that is whole but for one file.
  Texts FailuresWith(const std::string& path, const std::string& text) {
    machine.File(path, text);
    found = machine.Gather();
    return Failures(found);
  }

  FullMachine machine;
  TCollection found;
};

TEST_F(BrokenFile, NumberThatIsNone) {
  EXPECT_EQ(FailuresWith("/sys/block/sda/size", "12 apples\n"),
            Texts{"disks: /sys/block/sda/size: \"12 apples\" is no number that fits"});
  EXPECT_TRUE(Element(found, "ORVSG_DiskDrive", "/dev/sda").Get("Size").IsNull());
}

TEST_F(BrokenFile, NumberThatDoesNotFit) {
  EXPECT_EQ(FailuresWith("/sys/class/net/eth0/mtu", "4294967296\n"),
            Texts{"network ports: /sys/class/net/eth0/mtu: \"4294967296\" is no number that fits"});
  // 2^60 sectors are 2^69 bytes.
  EXPECT_EQ(FailuresWith("/sys/block/sda/size", "1152921504606846976\n").size(), 1U);
  EXPECT_TRUE(Element(found, "ORVSG_DiskDrive", "/dev/sda").Get("Size").IsNull());
}

TEST_F(BrokenFile, BinaryName) {
  EXPECT_EQ(FailuresWith("/sys/class/dmi/id/sys_vendor", "\x01\x02\xFF\xFE"),
            Texts{"computer system: /sys/class/dmi/id/sys_vendor: is not a line of readable text"});
  EXPECT_EQ(Element(found, "ORVSG_ComputerSystem", "server1").Get("Caption").ToString(10),
            "server1, Rack 2000");
}

TEST_F(BrokenFile, PlaceholderOfTheBoardMaker) {
  EXPECT_EQ(FailuresWith("/sys/class/dmi/id/product_serial", "To Be Filled By O.E.M.\n"), Texts{});
  const auto system = Element(found, "ORVSG_ComputerSystem", "server1");
  EXPECT_TRUE(system.Get("SerialNumber").IsNull());
}

TEST_F(BrokenFile, LargerThanAnyFileShouldBe) {
  EXPECT_EQ(FailuresWith("/proc/meminfo", std::string(5U << 20U, 'x')),
            Texts{"memory: /proc/meminfo: is larger than 4 MiB"});
}

TEST_F(BrokenFile, FolderInPlaceOfAFile) {
  machine.Remove("/proc/uptime");
  machine.Folder("/proc/uptime");
  EXPECT_EQ(Failures(machine.Gather()), Texts{"operating system: /proc/uptime: is not a file"});
}

TEST_F(BrokenFile, PipeThatNobodyWritesTo) {
  machine.Remove("/proc/uptime");
  ASSERT_EQ(::mkfifo(machine.Path("/proc/uptime").c_str(), 0600), 0);
  EXPECT_EQ(Failures(machine.Gather()), Texts{"operating system: /proc/uptime: is not a file"});
}

TEST_F(BrokenFile, LinkToItself) {
  machine.Remove("/etc/os-release");
  machine.Link("/etc/os-release", "os-release");
  const auto failures = Failures(machine.Gather());
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].rfind("operating system: /etc/os-release: ", 0), 0U) << failures[0];
}

TEST_F(BrokenFile, MountsThatAreNone) {
  EXPECT_EQ(FailuresWith("/proc/self/mountinfo",
                         "garbage\n"
                         "26 1 253:0 / / rw,noatime - ext4\n"
                         "27 26 8:1 / /boot rw,relatime - vfat /dev/sda1 rw\n"
                         "28 26 x:y / /x rw,relatime - vfat /dev/sda1 rw\n"),
            (Texts{"file systems: /proc/self/mountinfo: line 1 does not describe a mount",
                   "file systems: /proc/self/mountinfo: line 2 does not describe a mount",
                   "file systems: /proc/self/mountinfo: line 4 does not describe a mount"}));
  EXPECT_EQ(Names(found, "ORVSG_FileSystem"), Texts{"/boot"});
}

TEST_F(BrokenFile, LaterMountHidesTheEarlierOne) {
  machine.File("/proc/self/mountinfo",
               "26 1 253:0 / / rw - ext4 /dev/mapper/secret rw\n"
               "27 26 8:1 / /boot rw - vfat /dev/sda1 rw\n"
               "28 27 0:50 / /boot rw - overlay overlay rw\n");
  found = machine.Gather();
  EXPECT_EQ(Names(found, "ORVSG_FileSystem"), (Texts{"/", "/boot"}));
  EXPECT_EQ(Element(found, "ORVSG_FileSystem", "/boot").Get("FileSystemType").ToString(10),
            "overlay");
}

TEST_F(BrokenFile, DeviceNumberThatIsNone) {
  EXPECT_EQ(FailuresWith("/sys/block/sda/dev", "../../../etc\n"),
            Texts{"disks: /sys/block/sda/dev: does not hold a device number"});
  EXPECT_EQ(Names(found, "ORVSG_DiskDrive"), (Texts{"/dev/nvme0n1", "/dev/sr0"}));
  EXPECT_EQ(Links(found, "ORVSG_FileSystemOnPartition"),
            (Texts{"/dev/mapper/secret -> /", "/dev/nvme0n1p1 -> /srv/my data"}));
}

TEST_F(BrokenFile, BootTimeBeyondTheCalendar) {
  EXPECT_EQ(FailuresWith("/proc/stat", "btime 9223372036854775807\n"),
            Texts{"operating system: /proc/stat: does not say when the system was started"});
}

// The elements that a collector found, as text.
std::map<std::string, Texts> ByClass(const TCollection& found) {
  std::map<std::string, Texts> classes;
  for (const auto& element : found.Elements()) {
    auto& texts = classes[element.className];
    for (const auto& text : Values(element)) texts.push_back(text);
  }
  return classes;
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// What may change when one file of this path is broken.
bool MayConcern(const std::string& path, const std::string& className) {
  const bool processors = className == "ORVSG_Processor" || className == "ORVSG_CacheMemory";
  const bool system = className == "ORVSG_ComputerSystem";
  const bool operatingSystem = className == "ORVSG_OperatingSystem";
  const bool port = className == "ORVSG_NetworkPort" || className == "ORVSG_PhysicalNetworkPort";
  if (path == "/proc/cpuinfo") return processors || system;
  if (path == "/proc/hwloc-nofile-info") return processors || operatingSystem;
  if (path == "/proc/sys/kernel/hostname") return system;
  if (StartsWith(path, "/sys/devices/system/cpu/")) return processors;
  if (path == "/proc/meminfo") return className == "ORVSG_Memory";
  if (StartsWith(path, "/sys/class/dmi/")) return system;
  if (StartsWith(path, "/sys/class/net/") || path == "/run/udev/data/n2" ||
      path == "/calls/addresses")
    return port;
  if (path == "/proc/self/mountinfo" || path == "/proc/filesystems" || path == "/calls/filesystems")
    return className == "ORVSG_FileSystem";
  if (StartsWith(path, "/sys/block/") || StartsWith(path, "/run/udev/data/b"))
    return className == "ORVSG_DiskDrive" || className == "ORVSG_DiskPartition" ||
           className == "ORVSG_StorageVolume" || className == "ORVSG_FileSystem";
  return operatingSystem;
}

std::string Read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Texts FilesOf(const FakeMachine& machine) {
  Texts paths;
  const auto root = machine.Path("");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
    if (!entry.is_symlink() && entry.is_regular_file())
      paths.push_back(entry.path().string().substr(root.string().size()));
  std::sort(paths.begin(), paths.end());
  return paths;
}

// Every file of a machine is broken in every way, one at a time.
TEST(EveryFileBroken, CostsOnlyWhatComesFromIt) {
  FullMachine machine;
  machine.Remove("/sys/devices/system/cpu");
  machine.Processors(1, 1);
  const auto whole = ByClass(machine.Gather());
  const auto paths = FilesOf(machine);
  ASSERT_GT(paths.size(), 100U);
  const std::string zeros(4096, '\0');
  std::size_t reported = 0;
  for (const auto& path : paths) {
    const auto text = Read(machine.Path(path));
    const Texts broken{"",
                       "\n",
                       text.substr(0, text.size() / 2),
                       zeros,
                       "\xFF\xFE\x01 \x80=\x81:",
                       "-1\n",
                       "18446744073709551615\n",
                       "99999999999999999999999999\n",
                       ": - : = \"\n\n:=\n",
                       text + text};
    for (const auto& instead : broken) {
      machine.File(path, instead);
      const auto found = machine.Gather();
      SCOPED_TRACE(path + " holds " + testing::PrintToString(instead.substr(0, 60)));
      reported += found.Failures().size();
      auto classes = ByClass(found);
      for (const auto& [className, texts] : whole)
        EXPECT_TRUE(MayConcern(path, className) || classes[className] == texts) << className;
      for (const auto& [className, texts] : classes)
        for (const auto& shown : texts) EXPECT_TRUE(IsReadable(shown)) << className << shown;
    }
    machine.File(path, text);
  }
  EXPECT_GT(reported, paths.size());
  EXPECT_EQ(ByClass(machine.Gather()), whole);
}

// A collector that fails in the middle.
class TThrowingCollector : public ICollector {
 public:
  const char* Name() const override { return "doubtful things"; }
  void Collect(TCollection& collection) override {
    collection.Add("first", "ORVSG_Memory", "First");
    throw std::runtime_error("out of order");
  }
};

class TWorkingCollector : public ICollector {
 public:
  const char* Name() const override { return "sound things"; }
  void Collect(TCollection& collection) override {
    collection.Add("second", "ORVSG_Memory", "Second");
  }
};

TEST(Collectors, OneThatThrowsCostsItsOwnRestOnly) {
  std::vector<std::unique_ptr<ICollector>> collectors;
  collectors.push_back(std::make_unique<TThrowingCollector>());
  collectors.push_back(std::make_unique<TWorkingCollector>());
  const auto found = GatherInventory(collectors);
  EXPECT_EQ(Names(found, "ORVSG_Memory"), (Texts{"First", "Second"}));
  EXPECT_EQ(Failures(found), Texts{"doubtful things: collector: out of order"});
}

}  // namespace
}  // namespace havtest

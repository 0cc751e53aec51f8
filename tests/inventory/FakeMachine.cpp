#include "tests/inventory/FakeMachine.h"

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include "inventory/Inventory.h"

using namespace hav::inventory;

namespace havtest {
namespace {

// "0000000f": threads `first` up to but without `end`.
std::string Mask(unsigned first, unsigned end) {
  std::ostringstream text;
  text << std::hex << std::setw(8) << std::setfill('0')
       << ((1ULL << end) - 1ULL - ((1ULL << first) - 1ULL));
  return text.str() + "\n";
}

}  // namespace

FakeMachine::FakeMachine() {
  auto pattern = (std::filesystem::temp_directory_path() / "machine-XXXXXX").string();
  if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
  m_root = pattern;
}

FakeMachine::~FakeMachine() {
  std::error_code ignored;
  std::filesystem::remove_all(m_root, ignored);
}

std::filesystem::path FakeMachine::Path(const std::string& path) const {
  return m_root.string() + path;
}

void FakeMachine::File(const std::string& path, const std::string& text) {
  std::filesystem::create_directories(Path(path).parent_path());
  std::ofstream file(Path(path), std::ios::binary | std::ios::trunc);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

void FakeMachine::Folder(const std::string& path) {
  std::filesystem::create_directories(Path(path));
}

void FakeMachine::Link(const std::string& path, const std::string& target) {
  std::filesystem::create_directories(Path(path).parent_path());
  std::filesystem::create_symlink(target, Path(path));
}

void FakeMachine::Remove(const std::string& path) { std::filesystem::remove_all(Path(path)); }

TCollection FakeMachine::Gather() const { return GatherInventory(Machine()); }

void FakeMachine::Processors(unsigned sockets, unsigned cores) {
  struct Cache {
    const char* index;
    const char* level;
    const char* type;
    const char* size;
    const char* sets;
  };
  constexpr Cache kCaches[] = {{"index0", "1", "Data", "32K", "64"},
                               {"index1", "1", "Instruction", "32K", "64"},
                               {"index2", "2", "Unified", "1024K", "1024"},
                               {"index3", "3", "Unified", "16384K", "16384"}};
  const std::string folder = "/sys/devices/system/cpu/";
  const unsigned inSocket = cores * 2, all = sockets * inSocket;
  File(folder + "online", "0-" + std::to_string(all - 1) + "\n");
  std::string info;
  for (unsigned thread = 0; thread < all; ++thread) {
    const unsigned socket = thread / inSocket, core = thread / 2;
    const auto socketMask = Mask(socket * inSocket, (socket + 1) * inSocket);
    const auto coreMask = Mask(core * 2, core * 2 + 2);
    const auto cpu = folder + "cpu" + std::to_string(thread) + "/";
    File(cpu + "topology/physical_package_id", std::to_string(socket) + "\n");
    File(cpu + "topology/core_id", std::to_string(core % cores) + "\n");
    File(cpu + "topology/package_cpus", socketMask);
    File(cpu + "topology/core_siblings", socketMask);
    File(cpu + "topology/core_cpus", coreMask);
    File(cpu + "topology/thread_siblings", coreMask);
    File(cpu + "cpufreq/cpuinfo_max_freq", "3600000\n");
    for (const auto& cache : kCaches) {
      const auto place = cpu + "cache/" + cache.index + "/";
      File(place + "level", std::string(cache.level) + "\n");
      File(place + "type", std::string(cache.type) + "\n");
      File(place + "size", std::string(cache.size) + "\n");
      File(place + "coherency_line_size", "64\n");
      File(place + "physical_line_partition", "1\n");
      File(place + "number_of_sets", std::string(cache.sets) + "\n");
      File(place + "shared_cpu_map", cache.level == std::string("3") ? socketMask : coreMask);
    }
    info += "processor\t: " + std::to_string(thread) +
            "\nvendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 85\n"
            "model name\t: Example Processor 9000\nstepping\t: 7\nmicrocode\t: 0x5003302\n"
            "cpu MHz\t\t: 2400.125\nphysical id\t: " +
            std::to_string(socket) + "\nflags\t\t: fpu vme sse sse2 ht\n\n";
  }
  File("/proc/cpuinfo", info);
}

void FakeMachine::BlockDevice(const std::string& place, const std::string& number,
                              const std::string& sectors) {
  const auto path = "/sys/block/" + place + "/";
  File(path + "dev", number + "\n");
  File(path + "size", sectors + "\n");
  File(path + "ro", "0\n");
  const auto name = place.substr(place.rfind('/') + 1);
  Link("/sys/class/block/" + name, "../../block/" + place);
}

FullMachine::FullMachine() {
  System();
  Processors(2, 2);
  Disks();
  FileSystems();
  Ports();
}

void FullMachine::System() {
  File("/proc/sys/kernel/hostname", "server1\n");
  File("/proc/sys/kernel/ostype", "Linux\n");
  File("/proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
  File("/proc/hwloc-nofile-info", "OSName: Linux\nArchitecture: x86_64\n");
  File("/etc/os-release",
       "PRETTY_NAME=\"Example \\\"Server\\\" Linux 12\"\nNAME='Example Linux'\nID=example\n"
       "VERSION_ID=\"12\"\n");
  File("/proc/stat", "cpu  1 2 3 4\nbtime 1700000000\nprocesses 7\n");
  File("/proc/uptime", "93784.55 180000.10\n");
  File("/proc/meminfo",
       "MemTotal:       32768000 kB\nMemFree:        1024000 kB\nMemAvailable:   16384000 kB\n"
       "SwapTotal:       2097152 kB\nSwapFree:        2097148 kB\n");
  const std::string dmi = "/sys/class/dmi/id/";
  File(dmi + "sys_vendor", "Example Computers\n");
  File(dmi + "product_name", "Rack 2000\n");
  File(dmi + "product_serial", "SN-0042\n");
  File(dmi + "product_uuid", "4c4c4544-0042-3510-8052-b4c04f4a3532\n");
  File(dmi + "chassis_type", "23\n");
  File(dmi + "bios_vendor", "Example Firmware\n");
  File(dmi + "bios_version", "2.4.1\n");
  File(dmi + "bios_date", "03/14/2024\n");
}

void FullMachine::Disks() {
  BlockDevice("sda", "8:0", "3907029168");
  File("/sys/block/sda/removable", "0\n");
  File("/sys/block/sda/queue/rotational", "1\n");
  File("/sys/block/sda/queue/logical_block_size", "512\n");
  File("/sys/block/sda/queue/physical_block_size", "4096\n");
  File("/sys/block/sda/device/vendor", "ATA     \n");
  File("/sys/block/sda/device/model", "EXAMPLE HDD 2000\n");
  File("/sys/block/sda/device/rev", "1A01\n");
  File("/run/udev/data/b8:0", "S:disk/by-id/x\nE:ID_BUS=ata\nE:ID_SERIAL_SHORT=WD-77\n");
  BlockDevice("sda/sda1", "8:1", "1048576");
  File("/sys/block/sda/sda1/partition", "1\n");
  File("/sys/block/sda/sda1/start", "2048\n");
  File("/run/udev/data/b8:1",
       "E:ID_PART_ENTRY_NAME=boot\\x20area\nE:ID_PART_ENTRY_UUID=aa-01\nE:ID_FS_LABEL=boot\n"
       "E:ID_FS_UUID=1234-ABCD\n");
  BlockDevice("sda/sda2", "8:2", "3905978368");
  File("/sys/block/sda/sda2/partition", "2\n");
  File("/sys/block/sda/sda2/start", "1050624\n");

  BlockDevice("nvme0n1", "259:0", "1000215216");
  File("/sys/block/nvme0n1/queue/rotational", "0\n");
  File("/sys/block/nvme0n1/device/model", "Example SSD\n");
  File("/sys/block/nvme0n1/device/serial", "S4EV  \n");
  File("/sys/block/nvme0n1/device/firmware_rev", "2B2Q\n");
  BlockDevice("nvme0n1/nvme0n1p1", "259:1", "1000212480");
  File("/sys/block/nvme0n1/nvme0n1p1/partition", "1\n");

  BlockDevice("dm-0", "253:0", "3905945600");
  File("/sys/block/dm-0/dm/name", "secret\n");
  File("/sys/block/dm-0/dm/uuid", "CRYPT-LUKS2-00ff-secret\n");
  Link("/sys/block/dm-0/slaves/sda2", "../../sda/sda2");

  BlockDevice("loop0", "7:0", "800");
  BlockDevice("sr0", "11:0", "0");
}

void FullMachine::FileSystems() {
  File("/proc/filesystems",
       "nodev\tsysfs\nnodev\ttmpfs\nnodev\tproc\nnodev\toverlay\nnodev\tnfs4\n\text4\n\tbtrfs\n");
  File("/proc/self/mountinfo",
       "21 26 0:20 / /proc rw,relatime - proc proc rw\n"
       "26 1 253:0 / / rw,noatime shared:1 - ext4 /dev/mapper/secret rw\n"
       "27 26 8:1 / /boot ro,relatime shared:2 - vfat /dev/sda1 rw\n"
       "28 26 0:35 /@data /srv/my\\040data rw shared:3 - btrfs /dev/nvme0n1p1 rw,subvol=/@data\n"
       "29 26 0:35 /@home /home rw shared:4 - btrfs /dev/nvme0n1p1 rw,subvol=/@home\n"
       "30 26 0:40 / /mnt/share rw - nfs4 files:/share rw\n"
       "31 26 0:41 / /tmp rw - tmpfs tmpfs rw\n"
       "32 26 253:0 /var/log /mnt/log rw shared:1 - ext4 /dev/mapper/secret rw\n");
  File("/calls/filesystems", "1999844147200 999922073600 /\n536870912 268435456 /boot\n");
}

void FullMachine::Ports() {
  const auto port = [this](const std::string& name, const std::string& index,
                           const std::string& address) {
    const auto path = "/sys/class/net/" + name + "/";
    File(path + "type", "1\n");
    File(path + "ifindex", index + "\n");
    File(path + "address", address + "\n");
    File(path + "operstate", "up\n");
    File(path + "mtu", "1500\n");
    return path;
  };
  const auto eth0 = port("eth0", "2", "52:54:00:12:34:56");
  File(eth0 + "speed", "10000\n");
  File(eth0 + "duplex", "full\n");
  Link(eth0 + "device/driver", "../../../../bus/pci/drivers/ixgbe");
  File("/run/udev/data/n2",
       "E:ID_VENDOR_FROM_DATABASE=Example Networks\nE:ID_MODEL_FROM_DATABASE=Ten Gigabit\n");
  const auto wlan0 = port("wlan0", "3", "52:54:00:12:34:57");
  File(wlan0 + "operstate", "dormant\n");
  File(wlan0 + "speed", "-1\n");
  File(wlan0 + "duplex", "unknown\n");
  Folder(wlan0 + "wireless");
  Folder(wlan0 + "device");
  port("docker0", "4", "02:42:00:00:00:01");
  File(port("lo", "1", "00:00:00:00:00:00") + "type", "772\n");
  File("/sys/class/net/bonding_masters", "\n");
  File("/calls/addresses", "eth0 192.0.2.10\neth0 2001:db8::10\ndocker0 172.17.0.1\n");
}

}  // namespace havtest

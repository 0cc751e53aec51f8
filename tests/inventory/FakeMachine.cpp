#include "tests/inventory/FakeMachine.h"

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "inventory/Inventory.h"

using namespace hav::inventory;

namespace havtest {
namespace {

using Threads = std::set<unsigned>;

// "00000001,0000000f": words of 32 threads, the highest first.
std::string Mask(const Threads& threads) {
  const unsigned highest = threads.empty() ? 0 : *threads.rbegin();
  std::vector<std::uint32_t> words(highest / 32 + 1);
  for (const unsigned thread : threads) words[thread / 32] |= 1U << thread % 32;
  std::ostringstream text;
  for (auto word = words.rbegin(); word != words.rend(); ++word)
    text << (word == words.rbegin() ? "" : ",") << std::hex << std::setw(8) << std::setfill('0')
         << *word;
  return text.str() + "\n";
}

// "0-3,8-11"
std::string List(const Threads& threads) {
  std::string text;
  for (auto first = threads.begin(); first != threads.end();) {
    auto last = first;
    while (std::next(last) != threads.end() && *std::next(last) == *last + 1) ++last;
    text += (text.empty() ? "" : ",") + std::to_string(*first);
    if (last != first) text += "-" + std::to_string(*last);
    first = std::next(last);
  }
  return text + "\n";
}

// The threads from `first` up to but without `end` that are online.
Threads Online(unsigned first, unsigned end, const Threads& offline) {
  Threads threads;
  for (unsigned thread = first; thread < end; ++thread)
    if (offline.count(thread) == 0) threads.insert(thread);
  return threads;
}

// What the kernel says of one thread of a processor of that kind.
std::string CpuInfo(ProcessorPlan::EKind kind, unsigned thread, unsigned socket) {
  const auto number = "processor\t: " + std::to_string(thread) + "\n";
  switch (kind) {
    case ProcessorPlan::kArm:
      return number +
             "BogoMIPS\t: 50.00\nFeatures\t: fp asimd aes\nCPU implementer\t: 0x41\n"
             "CPU architecture: 8\nCPU variant\t: 0x3\nCPU part\t: 0xd0c\nCPU revision\t: 1\n\n";
    case ProcessorPlan::kPower:
      return number +
             "cpu\t\t: POWER9 (architected), altivec supported\nclock\t\t: 3800.000000MHz\n"
             "revision\t: 2.2 (pvr 004e 0202)\n\n";
    default:
      return number +
             "vendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 85\n"
             "model name\t: Example Processor 9000\nstepping\t: 7\nmicrocode\t: 0x5003302\n"
             "cpu MHz\t\t: 2400.125\nphysical id\t: " +
             std::to_string(socket) + "\nflags\t\t: fpu vme lm sse sse2 ht\n\n";
  }
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
  ProcessorPlan plan;
  plan.sockets = sockets;
  plan.cores = cores;
  Processors(plan);
}

void FakeMachine::Processors(const ProcessorPlan& plan) {
  const std::string folder = "/sys/devices/system/cpu/";
  const unsigned inSocket = plan.cores * plan.threads, all = plan.sockets * inSocket;
  File(folder + "online", List(Online(0, all, plan.offline)));
  File(folder + "possible", List(Online(0, all, {})));
  std::string info;
  for (unsigned thread = 0; thread < all; ++thread) {
    const auto cpu = folder + "cpu" + std::to_string(thread) + "/";
    const bool isOnline = plan.offline.count(thread) == 0;
    File(cpu + "online", isOnline ? "1\n" : "0\n");
    if (!isOnline) continue;
    const unsigned socket = thread / inSocket, core = thread / plan.threads;
    const auto ofSocket = Mask(Online(socket * inSocket, (socket + 1) * inSocket, plan.offline));
    const auto ofCore = Mask(Online(core * plan.threads, (core + 1) * plan.threads, plan.offline));
    File(cpu + "topology/physical_package_id", std::to_string(socket) + "\n");
    File(cpu + "topology/core_id", std::to_string(core % plan.cores) + "\n");
    File(cpu + "topology/package_cpus", ofSocket);
    File(cpu + "topology/core_siblings", ofSocket);
    File(cpu + "topology/core_cpus", ofCore);
    File(cpu + "topology/thread_siblings", ofCore);
    File(cpu + "cpufreq/cpuinfo_max_freq", "3600000\n");
    Caches(cpu + "cache/", ofCore, ofSocket);
    info += CpuInfo(plan.kind, thread, socket);
  }
  File("/proc/cpuinfo", info);
}

void FakeMachine::Caches(const std::string& folder, const std::string& ofCore,
                         const std::string& ofSocket) {
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
  for (const auto& cache : kCaches) {
    const auto place = folder + cache.index + "/";
    File(place + "level", std::string(cache.level) + "\n");
    File(place + "type", std::string(cache.type) + "\n");
    File(place + "size", std::string(cache.size) + "\n");
    File(place + "coherency_line_size", "64\n");
    File(place + "physical_line_partition", "1\n");
    File(place + "number_of_sets", std::string(cache.sets) + "\n");
    File(place + "shared_cpu_map", cache.level == std::string("3") ? ofSocket : ofCore);
  }
}

void FakeMachine::NumaNodes(const ProcessorPlan& plan) {
  const unsigned inNode = plan.cores * plan.threads;
  Threads nodes;
  for (unsigned node = 0; node < plan.sockets; ++node) nodes.insert(node);
  const std::string folder = "/sys/devices/system/node/";
  File(folder + "online", List(nodes));
  File(folder + "possible", List(nodes));
  for (const unsigned node : nodes) {
    const auto place = folder + "node" + std::to_string(node) + "/";
    const auto threads = Online(node * inNode, (node + 1) * inNode, plan.offline);
    const auto start = "Node " + std::to_string(node) + " ";
    File(place + "cpulist", List(threads));
    File(place + "cpumap", Mask(threads));
    File(place + "meminfo",
         start + "MemTotal:       16384 kB\n" + start + "MemFree:        1024 kB\n");
    std::string distances;
    for (const unsigned other : nodes)
      distances += (distances.empty() ? "" : " ") + std::string(other == node ? "10" : "21");
    File(place + "distance", distances + "\n");
  }
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

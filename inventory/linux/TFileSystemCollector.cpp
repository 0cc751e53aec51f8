#include "inventory/linux/TFileSystemCollector.h"

#include <algorithm>
#include <array>

#include "inventory/linux/DeviceNumber.h"
#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

constexpr const char* kMounts = "/proc/self/mountinfo";

template <std::size_t N>
bool IsOneOf(std::string_view text, const std::array<std::string_view, N>& list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

bool IsOfAServer(std::string_view type) {
  return IsOneOf<7>(type, {"nfs", "nfs4", "cifs", "smb3", "ceph", "afs", "fuse.sshfs"});
}

// Types that the kernel lists as without a device and that hold data all the same.
bool HoldsDataWithoutDevice(std::string_view type) {
  return IsOfAServer(type) ||
         IsOneOf<6>(type, {"overlay", "aufs", "zfs", "9p", "virtiofs", "ubifs"});
}

struct TMount {
  std::string deviceNumber;
  std::string part;  // of the file system, that is mounted; "/" is the whole
  std::string point;
  std::string options;
  std::string type;
  std::string source;
};

// The table of mounts writes blanks and the like as \040.
std::string DecodeMountText(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = text[i] == '\\' && i + 4 <= text.size()
                          ? ParseNumber<unsigned char>(text.substr(i + 1, 3), 8)
                          : std::optional<unsigned char>();
    decoded += byte ? static_cast<char>(*byte) : text[i];
    if (byte) i += 3;
  }
  return decoded;
}

// "36 35 98:0 /part /point rw,noatime master:1 - ext4 /dev/sda1 rw,errors=continue"
std::optional<TMount> ParseMount(std::string_view line) {
  const auto words = Words(line);
  const auto dash = std::find(words.begin(), words.end(), "-");
  if (dash - words.begin() < 6 || words.end() - dash < 3 || !IsDeviceNumber(words[2]))
    return std::nullopt;
  TMount mount{std::string(words[2]), DecodeMountText(words[3]), DecodeMountText(words[4]),
               std::string(words[5]), std::string(dash[1]),      DecodeMountText(dash[2])};
  if (!IsReadable(mount.point) || !IsReadable(mount.source) || !IsReadable(mount.type))
    return std::nullopt;
  return mount;
}

std::vector<TMount> ReadMounts(TSystemFiles& files) {
  std::vector<TMount> mounts;
  const auto text = files.Text(kMounts);
  std::size_t number = 0;
  for (const auto& line : Lines(text.value_or(""))) {
    ++number;
    const auto mount = ParseMount(line);
    if (!mount) {
      files.Fail(kMounts, "line " + std::to_string(number) + " does not describe a mount");
      continue;
    }
    // What is mounted later on the same place hides what was there.
    const auto hidden = std::find_if(mounts.begin(), mounts.end(), [&](const TMount& other) {
      return other.point == mount->point;
    });
    if (hidden != mounts.end()) mounts.erase(hidden);
    mounts.push_back(*mount);
  }
  return mounts;
}

bool IsReadOnly(const std::string& options) {
  return options == "ro" || options.compare(0, 3, "ro,") == 0;
}

// Collects the file systems of one machine.
class TFileSystems {
 public:
  TFileSystems(const TMachine& machine, TCollection& collection)
      : m_files(machine, collection), m_calls(MakeSystemCalls(machine)), m_collection(collection) {}

  void Collect() {
    if (!m_files.Require(kMounts)) return;
    ReadTypesWithoutDevice();
    std::vector<std::string> done;
    const auto mounts = ReadMounts(m_files);
    for (const auto& mount : mounts) {
      const auto& number = mount.deviceNumber;
      if (!HoldsData(mount) || std::find(done.begin(), done.end(), number) != done.end()) continue;
      done.push_back(number);
      std::vector<TMount> same;
      std::copy_if(mounts.begin(), mounts.end(), std::back_inserter(same),
                   [&](const TMount& other) { return other.deviceNumber == number; });
      Add(same);
    }
  }

 private:
  void ReadTypesWithoutDevice() {
    const auto text = m_files.Text("/proc/filesystems");
    m_knowsTypes = text.has_value();
    for (const auto& line : Lines(text.value_or(""))) {
      const auto words = Words(line);
      if (words.size() == 2 && words[0] == "nodev") m_typesWithoutDevice.emplace_back(words[1]);
    }
  }

  // Whatever the root is, the system runs from it.
  bool HoldsData(const TMount& mount) const {
    if (mount.point == "/" || HoldsDataWithoutDevice(mount.type)) return true;
    // Without the list of types, one that is on no device is taken for the kernel's own.
    if (!m_knowsTypes)
      return mount.deviceNumber.compare(0, 2, "0:") != 0 ||
             mount.source.compare(0, 5, "/dev/") == 0;
    return std::find(m_typesWithoutDevice.begin(), m_typesWithoutDevice.end(), mount.type) ==
           m_typesWithoutDevice.end();
  }

  // Adds one file system that is mounted in one or more places.
  void Add(const std::vector<TMount>& mounts) {
    const auto whole = std::find_if(mounts.begin(), mounts.end(),
                                    [](const TMount& mount) { return mount.part == "/"; });
    const TMount& mount = whole == mounts.end() ? mounts.front() : *whole;
    std::vector<std::string> points;
    for (const auto& each : mounts) points.push_back(each.point);

    const std::string id = "filesystem:" + mount.deviceNumber;
    const std::string device = DeviceNumber(mount);
    const auto known = m_calls->DeviceProperties("b" + device, m_collection);
    auto& fileSystem = m_collection.Add(id, "ORVSG_FileSystem", mount.point);
    fileSystem.Describe(mount.type + " on " + mount.source)
        .Set("FileSystemType", std::optional(mount.type))
        .Set("Source", std::optional(mount.source))
        .Set("MountPoints", points)
        .Set("ReadOnly", std::optional(IsReadOnly(mount.options)))
        .Set("Label", PropertyOf(known, "ID_FS_LABEL"))
        .Set("UUID", PropertyOf(known, "ID_FS_UUID"));
    SetUsage(fileSystem, mount);

    if (m_collection.Find(BlockId(device)))
      m_collection.Link("ORVSG_FileSystemOnPartition", BlockId(device), id);
    else
      m_collection.Link("ORVSG_HostedFileSystem", {"GroupComponent", TCollection::kSystem},
                        {"PartComponent", id});
  }

  void SetUsage(TElement& fileSystem, const TMount& mount) {
    if (IsOfAServer(mount.type)) return;
    const auto usage = m_calls->FileSystemUsage(mount.point, mount.deviceNumber, m_collection);
    if (!usage) return;
    fileSystem.Set("FileSystemSize", std::optional(usage->size))
        .Set("AvailableSpace", std::optional(usage->available));
  }

  // The number of the device that holds the file system. Some file systems, that can span
  // devices, have a number of their own with major 0; those name the device.
  std::string DeviceNumber(const TMount& mount) {
    if (mount.deviceNumber.compare(0, 2, "0:") != 0) return mount.deviceNumber;
    const auto name =
        m_files.LinkName(mount.source).value_or(mount.source.substr(mount.source.rfind('/') + 1));
    const bool device = mount.source.compare(0, 5, "/dev/") == 0 && !name.empty();
    const auto number = device ? m_files.Line("/sys/class/block/" + name + "/dev") : std::nullopt;
    return number && IsDeviceNumber(*number) ? *number : mount.deviceNumber;
  }

  TSystemFiles m_files;
  std::unique_ptr<ISystemCalls> m_calls;
  TCollection& m_collection;
  std::vector<std::string> m_typesWithoutDevice;
  bool m_knowsTypes = false;
};

}  // namespace

void TFileSystemCollector::Collect(TCollection& collection) {
  TFileSystems(m_machine, collection).Collect();
}

}  // namespace hav::inventory

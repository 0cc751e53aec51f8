#include "inventory/linux/TDiskCollector.h"

#include <algorithm>
#include <array>
#include <utility>

#include "inventory/linux/DeviceNumber.h"
#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

// The kernel counts sizes and places in sectors of 512 bytes whatever the blocks of a disk.
constexpr std::uint64_t kSectorSize = 512;

// Media, as the schema numbers them.
constexpr std::uint16_t kHardDisk = 3, kSolidState = 4, kOpticalDisc = 5;

bool StartsWith(const std::string& text, std::string_view start) {
  return text.compare(0, start.size(), start) == 0;
}

// Collects all block devices of one machine.
class TBlockDevices {
 public:
  TBlockDevices(const TMachine& machine, TCollection& collection)
      : m_files(machine, collection), m_calls(MakeSystemCalls(machine)), m_collection(collection) {}

  void Collect() {
    if (!m_files.Require("/sys/block")) return;
    for (const auto& name : m_files.Folder("/sys/block")) {
      const std::string path = "/sys/block/" + name + "/";
      const bool optical = IsOptical(name, path);
      const auto sectors = Sectors(path);
      if ((sectors == std::uint64_t{0} && !optical) || IsInMemory(name)) continue;
      const auto id = DeviceId(path);
      if (!id) continue;
      if (m_files.Exists(path + "dm") || m_files.Exists(path + "md"))
        AddVolume(*id, name, path, sectors);
      else
        AddDisk(*id, name, path, optical && !HasMedium(path, sectors) ? std::nullopt : sectors);
      AddPartitions(*id, path);
    }
  }

 private:
  static bool IsInMemory(const std::string& name) {
    return StartsWith(name, "loop") || StartsWith(name, "ram") || StartsWith(name, "zram");
  }

  // A SCSI device of this type is a drive for discs.
  bool IsOptical(const std::string& name, const std::string& path) {
    return StartsWith(name, "sr") || m_files.Line(path + "device/type") == "5";
  }

  // An empty drive still has the size that the kernel begins with, or none.
  bool HasMedium(const std::string& path, std::optional<std::uint64_t> sectors) {
    constexpr std::uint64_t kBeforeAnyMedium = 0x1FFFFF;
    if (PropertyOf(Properties(path), "ID_CDROM_MEDIA")) return true;
    return sectors && *sectors != 0 && *sectors != kBeforeAnyMedium;
  }

  // Without a number, nothing can be associated with the device, and it is left out.
  std::optional<std::string> DeviceId(const std::string& path) {
    const auto number = m_files.Line(path + "dev");
    if (number && IsDeviceNumber(*number)) return BlockId(*number);
    m_files.Fail(path + "dev", "does not hold a device number");
    return std::nullopt;
  }

  ISystemCalls::TProperties Properties(const std::string& path) {
    const auto number = m_files.Line(path + "dev");
    return m_calls->DeviceProperties("b" + number.value_or(""), m_collection);
  }

  // The kernel writes a slash in a name as "!".
  static std::string DeviceName(std::string name) {
    std::replace(name.begin(), name.end(), '!', '/');
    return "/dev/" + name;
  }

  std::optional<std::uint64_t> Sectors(const std::string& path) {
    return m_files.Number<std::uint64_t>(path + "size");
  }

  void SetExtent(TElement& extent, const std::string& path, std::optional<std::uint64_t> sectors) {
    extent.Set("Size", Times(sectors, kSectorSize)).Set("ReadOnly", m_files.Flag(path + "ro"));
  }

  void AddDisk(const std::string& id, const std::string& name, const std::string& path,
               std::optional<std::uint64_t> sectors) {
    auto& disk = m_collection.AddSystemDevice(id, "ORVSG_DiskDrive", DeviceName(name));
    SetExtent(disk, path, sectors);
    const auto known = Properties(path);
    const auto model = FirstOf(m_files.Line(path + "device/model"), PropertyOf(known, "ID_MODEL"));
    const auto bus = BusType(path, known);
    disk.Describe(model)
        .Set("Manufacturer", Manufacturer(path, known))
        .Set("Model", model)
        .Set("SerialNumber", SerialNumber(path, known))
        .Set("FirmwareRevision", FirmwareRevision(path, known))
        .Set("BusType", bus)
        .Set("MediaType",
             IsOptical(name, path) ? std::optional(kOpticalDisc) : MediaType(path, bus))
        .Set("Removable", m_files.Flag(path + "removable"))
        .Set("LogicalBlockSize", m_files.Number<std::uint32_t>(path + "queue/logical_block_size"))
        .Set("PhysicalBlockSize",
             m_files.Number<std::uint32_t>(path + "queue/physical_block_size"));
  }

  static std::optional<std::string> FirstOf(std::optional<std::string> first,
                                            std::optional<std::string> second) {
    return first ? std::move(first) : std::move(second);
  }

  // SCSI gives a name; virtio and PCI devices a number, and ATA disks just "ATA".
  std::optional<std::string> Manufacturer(const std::string& path,
                                          const ISystemCalls::TProperties& known) {
    const auto vendor =
        FirstOf(m_files.Line(path + "device/vendor"), PropertyOf(known, "ID_VENDOR"));
    if (!vendor || StartsWith(*vendor, "0x") || *vendor == "ATA") return std::nullopt;
    return vendor;
  }

  std::optional<std::string> SerialNumber(const std::string& path,
                                          const ISystemCalls::TProperties& known) {
    const auto serial =
        FirstOf(m_files.Line(path + "device/serial"), m_files.Line(path + "serial"));
    return FirstOf(serial, PropertyOf(known, "ID_SERIAL_SHORT"));
  }

  std::optional<std::string> FirmwareRevision(const std::string& path,
                                              const ISystemCalls::TProperties& known) {
    const auto revision =
        FirstOf(m_files.Line(path + "device/firmware_rev"), m_files.Line(path + "device/rev"));
    return FirstOf(revision, PropertyOf(known, "ID_REVISION"));
  }

  // The way to the device leads over its bus; the most particular name comes first.
  std::optional<std::string> BusType(const std::string& path,
                                     const ISystemCalls::TProperties& known) {
    constexpr std::array<std::pair<std::string_view, const char*>, 6> kBuses{{{"/usb", "USB"},
                                                                              {"/nvme", "NVMe"},
                                                                              {"/virtio", "virtio"},
                                                                              {"/ata", "ATA"},
                                                                              {"/mmc", "MMC"},
                                                                              {"/host", "SCSI"}}};
    const auto way = m_files.LinkTarget(path.substr(0, path.size() - 1)).value_or("");
    for (const auto& [part, name] : kBuses)
      if (way.find(part) != std::string::npos) return std::string(name);
    return PropertyOf(known, "ID_BUS");
  }

  // Virtual disks claim to rotate, which says nothing of what is behind them.
  std::optional<std::uint16_t> MediaType(const std::string& path,
                                         const std::optional<std::string>& bus) {
    const auto rotates = m_files.Flag(path + "queue/rotational");
    if (!rotates || bus == "virtio") return std::nullopt;
    return *rotates ? kHardDisk : kSolidState;
  }

  void AddVolume(const std::string& id, const std::string& name, const std::string& path,
                 std::optional<std::uint64_t> sectors) {
    const auto given = m_files.Line(path + "dm/name");
    auto& volume = m_collection.AddSystemDevice(id, "ORVSG_StorageVolume",
                                                given ? "/dev/mapper/" + *given : DeviceName(name));
    SetExtent(volume, path, sectors);
    // "LVM-…", "CRYPT-LUKS2-…": what stands before the first dash made the volume.
    auto type = m_files.Line(path + "dm/uuid");
    if (type) type->erase(std::min(type->find('-'), type->size()));
    if (!type) type = m_files.Line(path + "md/level");
    volume.Set("VolumeType", type);
    for (const auto& part : m_files.Folder(path + "slaves")) {
      const auto number = m_files.Line("/sys/class/block/" + part + "/dev");
      if (number && IsDeviceNumber(*number))
        m_collection.Link("ORVSG_VolumeOnExtent", BlockId(*number), id);
    }
  }

  void AddPartitions(const std::string& diskId, const std::string& diskPath) {
    for (const auto& name : m_files.Folder(diskPath)) {
      const std::string path = diskPath + name + "/";
      if (!m_files.Exists(path + "partition")) continue;
      const auto id = DeviceId(path);
      if (!id) continue;
      const auto known = Properties(path);
      auto& partition = m_collection.Add(*id, "ORVSG_DiskPartition", DeviceName(name));
      SetExtent(partition, path, Sectors(path));
      partition.Set("PartitionNumber", m_files.Number<std::uint32_t>(path + "partition"))
          .Set("StartingOffset", Times(m_files.Number<std::uint64_t>(path + "start"), kSectorSize))
          .Set("Label", PropertyOf(known, "ID_PART_ENTRY_NAME"))
          .Set("UUID", PropertyOf(known, "ID_PART_ENTRY_UUID"));
      m_collection.Link("ORVSG_PartitionOnDisk", diskId, *id);
    }
  }

  TSystemFiles m_files;
  std::unique_ptr<ISystemCalls> m_calls;
  TCollection& m_collection;
};

}  // namespace

void TDiskCollector::Collect(TCollection& collection) {
  TBlockDevices(m_machine, collection).Collect();
}

}  // namespace hav::inventory

#include "inventory/windows/TDiskCollector.h"

#include <windows.h>
#include <winioctl.h>

#include <array>
#include <cstddef>

#include "inventory/Text.h"
#include "inventory/windows/DiskId.h"
#include "inventory/windows/TDevice.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

// Numbers of drives have gaps where one was taken out, but not as wide as this.
constexpr unsigned long kMaximumDrives = 64;

STORAGE_PROPERTY_QUERY QueryFor(STORAGE_PROPERTY_ID property) {
  STORAGE_PROPERTY_QUERY query{};
  query.PropertyId = property;
  query.QueryType = PropertyStandardQuery;
  return query;
}

std::optional<std::string> BusName(STORAGE_BUS_TYPE bus) {
  switch (bus) {
    case BusTypeScsi: return "SCSI";
    case BusTypeAta: return "ATA";
    case BusTypeSata: return "SATA";
    case BusTypeSas: return "SAS";
    case BusTypeUsb: return "USB";
    case BusTypeNvme: return "NVMe";
    case BusTypeRAID: return "RAID";
    case BusTypeiScsi: return "iSCSI";
    case BusTypeFibre: return "Fibre Channel";
    case BusTypeSd: return "SD";
    case BusTypeMmc: return "MMC";
    case BusTypeVirtual: return "virtual";
    default: return std::nullopt;
  }
}

// The text at an offset of a descriptor; 0 is how it says that there is none.
std::optional<std::string> TextAt(const std::vector<char>& descriptor, DWORD offset) {
  if (offset == 0 || offset >= descriptor.size()) return std::nullopt;
  const std::string_view rest(descriptor.data() + offset, descriptor.size() - offset);
  const auto text = Trim(rest.substr(0, rest.find('\0')));
  if (text.empty() || !IsReadable(text)) return std::nullopt;
  return std::string(text);
}

void SetDescription(TElement& disk, const TDevice& device) {
  const auto query = QueryFor(StorageDeviceProperty);
  const auto bytes = device.Ask(IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof(query));
  if (bytes.size() < offsetof(STORAGE_DEVICE_DESCRIPTOR, RawDeviceProperties)) return;
  const auto& about = *reinterpret_cast<const STORAGE_DEVICE_DESCRIPTOR*>(bytes.data());
  const auto model = TextAt(bytes, about.ProductIdOffset);
  disk.Describe(model)
      .Set("Manufacturer", TextAt(bytes, about.VendorIdOffset))
      .Set("Model", model)
      .Set("SerialNumber", TextAt(bytes, about.SerialNumberOffset))
      .Set("FirmwareRevision", TextAt(bytes, about.ProductRevisionOffset))
      .Set("BusType", BusName(about.BusType))
      .Set("Removable", std::optional<bool>(about.RemovableMedia != FALSE));
}

void SetMeasures(TElement& disk, const TDevice& device) {
  constexpr std::uint16_t kHardDisk = 3, kSolidState = 4;
  const auto seek = QueryFor(StorageDeviceSeekPenaltyProperty);
  const auto penalty = device.AskFor<DEVICE_SEEK_PENALTY_DESCRIPTOR>(IOCTL_STORAGE_QUERY_PROPERTY,
                                                                     &seek, sizeof(seek));
  if (penalty)
    disk.Set("MediaType", std::optional(penalty->IncursSeekPenalty ? kHardDisk : kSolidState));
  const auto alignment = QueryFor(StorageAccessAlignmentProperty);
  const auto blocks = device.AskFor<STORAGE_ACCESS_ALIGNMENT_DESCRIPTOR>(
      IOCTL_STORAGE_QUERY_PROPERTY, &alignment, sizeof(alignment));
  if (!blocks) return;
  disk.Set("LogicalBlockSize", std::optional<std::uint32_t>(blocks->BytesPerLogicalSector))
      .Set("PhysicalBlockSize", std::optional<std::uint32_t>(blocks->BytesPerPhysicalSector));
}

// Without the partitions that follow it.
constexpr std::size_t kLayoutHead = offsetof(DRIVE_LAYOUT_INFORMATION_EX, PartitionEntry);

void AddPartition(TCollection& collection, unsigned long disk, const std::string& diskName,
                  const PARTITION_INFORMATION_EX& about) {
  const bool isGpt = about.PartitionStyle == PARTITION_STYLE_GPT;
  // Entries of a table that are not in use have no number.
  if (about.PartitionNumber == 0) return;
  const auto id = PartitionId(disk, about.StartingOffset.QuadPart);
  auto& partition = collection.Add(id, "ORVSG_DiskPartition",
                                   diskName + " Partition" + std::to_string(about.PartitionNumber));
  const auto bytes = [](LARGE_INTEGER number) {
    return std::optional(static_cast<std::uint64_t>(number.QuadPart));
  };
  partition.Set("Size", bytes(about.PartitionLength))
      .Set("PartitionNumber", std::optional<std::uint32_t>(about.PartitionNumber))
      .Set("StartingOffset", bytes(about.StartingOffset));
  if (isGpt) {
    std::array<wchar_t, 37> label{};  // the name in the table may fill its 36 places
    for (std::size_t i = 0; i + 1 < label.size(); ++i) label[i] = about.Gpt.Name[i];
    partition.Set("Label", ReadableText(label.data()));
  }
  collection.Link("ORVSG_PartitionOnDisk", DiskId(disk), id);
}

void AddPartitions(TCollection& collection, const TDevice& device, unsigned long disk,
                   const std::string& diskName) {
  const auto bytes = device.Ask(IOCTL_DISK_GET_DRIVE_LAYOUT_EX);
  if (bytes.size() < kLayoutHead)
    return collection.Fail("IOCTL_DISK_GET_DRIVE_LAYOUT_EX of " + diskName,
                           ErrorText(GetLastError()));
  const auto& layout = *reinterpret_cast<const DRIVE_LAYOUT_INFORMATION_EX*>(bytes.data());
  const std::size_t room = (bytes.size() - kLayoutHead) / sizeof(PARTITION_INFORMATION_EX);
  for (std::size_t i = 0; i < layout.PartitionCount && i < room; ++i)
    AddPartition(collection, disk, diskName, layout.PartitionEntry[i]);
}

}  // namespace

void TDiskCollector::Collect(TCollection& collection) {
  for (unsigned long number = 0; number < kMaximumDrives; ++number) {
    const auto name = "PhysicalDrive" + std::to_string(number);
    const auto path = L"\\\\.\\PhysicalDrive" + std::to_wstring(number);
    const TDevice device(path.c_str());
    if (!device.IsOpen()) {
      const auto error = GetLastError();
      if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND)
        collection.Fail(name, ErrorText(error));
      continue;
    }
    auto& disk = collection.AddSystemDevice(DiskId(number), "ORVSG_DiskDrive", name);
    if (const auto geometry = device.AskFor<DISK_GEOMETRY_EX>(IOCTL_DISK_GET_DRIVE_GEOMETRY_EX))
      disk.Set("Size", std::optional(static_cast<std::uint64_t>(geometry->DiskSize.QuadPart)));
    SetDescription(disk, device);
    SetMeasures(disk, device);
    AddPartitions(collection, device, number, name);
  }
}

}  // namespace hav::inventory

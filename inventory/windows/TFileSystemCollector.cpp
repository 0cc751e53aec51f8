#include "inventory/windows/TFileSystemCollector.h"

#include <windows.h>
#include <winioctl.h>

#include <array>
#include <cstddef>
#include <cwchar>

#include "inventory/windows/DiskId.h"
#include "inventory/windows/TDevice.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

// Room for a name of the form \\?\Volume{GUID}\.
using TVolumeName = std::array<wchar_t, MAX_PATH + 1>;

// The places where a volume is mounted.
std::vector<std::wstring> MountPoints(const wchar_t* volume) {
  DWORD length = 0;
  GetVolumePathNamesForVolumeNameW(volume, nullptr, 0, &length);
  std::vector<wchar_t> names(length + 2U, L'\0');
  if (!GetVolumePathNamesForVolumeNameW(volume, names.data(), length, &length)) return {};
  std::vector<std::wstring> points;
  for (const wchar_t* name = names.data(); *name; name += std::wcslen(name) + 1)
    points.emplace_back(name);
  return points;
}

// The partition that holds the volume; empty when it spans several, or none is known.
std::optional<std::string> PartitionOf(std::wstring volume) {
  // With the backslash at its end the name means the root folder, and not the device.
  if (!volume.empty() && volume.back() == L'\\') volume.pop_back();
  const TDevice device(volume.c_str());
  if (!device.IsOpen()) return std::nullopt;
  const auto extents = device.AskFor<VOLUME_DISK_EXTENTS>(IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS);
  if (!extents || extents->NumberOfDiskExtents != 1) return std::nullopt;
  const auto& extent = extents->Extents[0];
  return PartitionId(extent.DiskNumber, extent.StartingOffset.QuadPart);
}

void SetUsage(TCollection& collection, TElement& fileSystem, const std::wstring& point) {
  ULARGE_INTEGER available{}, size{};
  if (!GetDiskFreeSpaceExW(point.c_str(), &available, &size, nullptr))
    return collection.Fail("GetDiskFreeSpaceExW " + Utf8Of(point.c_str()),
                           ErrorText(GetLastError()));
  fileSystem.Set("FileSystemSize", std::optional<std::uint64_t>(size.QuadPart))
      .Set("AvailableSpace", std::optional<std::uint64_t>(available.QuadPart));
}

void AddVolume(TCollection& collection, const wchar_t* volume) {
  const auto points = MountPoints(volume);
  if (points.empty()) return;
  TVolumeName label{}, type{};
  DWORD serial = 0, flags = 0;
  // A drive without a medium has a place and no file system.
  if (!GetVolumeInformationW(volume, label.data(), static_cast<DWORD>(label.size()), &serial,
                             nullptr, &flags, type.data(), static_cast<DWORD>(type.size()))) {
    if (GetLastError() != ERROR_NOT_READY)
      collection.Fail("GetVolumeInformationW " + Utf8Of(points[0].c_str()),
                      ErrorText(GetLastError()));
    return;
  }
  const auto name = Utf8Of(points[0].c_str());
  const auto id = "filesystem:" + name;
  std::vector<std::string> places;
  for (const auto& point : points) places.push_back(Utf8Of(point.c_str()));
  auto& fileSystem = collection.Add(id, "ORVSG_FileSystem", name);
  fileSystem.Describe(ReadableText(type.data()))
      .Set("FileSystemType", ReadableText(type.data()))
      .Set("Source", ReadableText(volume))
      .Set("MountPoints", places)
      .Set("ReadOnly", std::optional<bool>((flags & FILE_READ_ONLY_VOLUME) != 0))
      .Set("Label", ReadableText(label.data()));
  SetUsage(collection, fileSystem, points[0]);

  const auto partition = PartitionOf(volume);
  if (partition && collection.Find(*partition))
    collection.Link("ORVSG_FileSystemOnPartition", *partition, id);
  else
    collection.Link("ORVSG_HostedFileSystem", {"GroupComponent", TCollection::kSystem},
                    {"PartComponent", id});
}

}  // namespace

void TFileSystemCollector::Collect(TCollection& collection) {
  TVolumeName volume{};
  const auto search = FindFirstVolumeW(volume.data(), static_cast<DWORD>(volume.size()));
  if (search == INVALID_HANDLE_VALUE)
    return collection.Fail("FindFirstVolumeW", ErrorText(GetLastError()));
  do {
    AddVolume(collection, volume.data());
  } while (FindNextVolumeW(search, volume.data(), static_cast<DWORD>(volume.size())));
  FindVolumeClose(search);
}

}  // namespace hav::inventory

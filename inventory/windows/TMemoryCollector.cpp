#include "inventory/windows/TMemoryCollector.h"

#include <windows.h>

#include <string>

#include "inventory/Smbios.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

// The structures of the System Management BIOS; empty where there are none.
std::string FirmwareTable() {
  constexpr DWORD kSmbios = 0x52534D42;  // "RSMB"
  constexpr std::size_t kHeader = 8;     // of what Windows puts before the structures
  std::string table(GetSystemFirmwareTable(kSmbios, 0, nullptr, 0), '\0');
  const auto size = static_cast<DWORD>(table.size());
  if (GetSystemFirmwareTable(kSmbios, 0, table.data(), size) != size || size < kHeader) return {};
  return table.substr(kHeader);
}

}  // namespace

void TMemoryCollector::Collect(TCollection& collection) {
  MEMORYSTATUSEX about{};
  about.dwLength = sizeof(about);
  if (!GlobalMemoryStatusEx(&about))
    return collection.Fail("GlobalMemoryStatusEx", ErrorText(GetLastError()));
  const auto bytes = [](DWORDLONG number) { return std::optional<std::uint64_t>(number); };
  auto& memory = collection.AddSystemDevice("memory", "ORVSG_Memory", "Memory")
                     .Set("TotalSize", bytes(about.ullTotalPhys))
                     .Set("AvailableSize", bytes(about.ullAvailPhys));
  // Windows counts main memory and page files in one.
  if (about.ullTotalPageFile >= about.ullTotalPhys)
    memory.Set("SwapSize", bytes(about.ullTotalPageFile - about.ullTotalPhys));
  AddMemoryModules(MemoryModules(FirmwareTable()), collection);
}

}  // namespace hav::inventory

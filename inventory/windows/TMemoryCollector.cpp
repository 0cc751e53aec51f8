#include "inventory/windows/TMemoryCollector.h"

#include <windows.h>

#include "inventory/windows/WindowsText.h"

namespace hav::inventory {

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
}

}  // namespace hav::inventory

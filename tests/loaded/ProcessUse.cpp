#include "loaded/ProcessUse.h"

#if defined(_WIN32)
#define PSAPI_VERSION 2
#include <windows.h>
// After windows.h.
#include <psapi.h>
#else
#include <dirent.h>
#include <unistd.h>

#include <fstream>
#endif

// AddressSanitizer keeps a record of the globals of every load, which is no growth of ours.
#if defined(__SANITIZE_ADDRESS__)
#define HAV_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HAV_ADDRESS_SANITIZER
#endif
#endif
#if defined(HAV_ADDRESS_SANITIZER)
#include <sanitizer/allocator_interface.h>
#endif

namespace havtest {

#if defined(_WIN32)

ProcessUse ProcessUse::Now() {
  const HANDLE self = GetCurrentProcess();
  PROCESS_MEMORY_COUNTERS memory = {};
  GetProcessMemoryInfo(self, &memory, sizeof(memory));
  DWORD bytes = 0;
  EnumProcessModules(self, nullptr, 0, &bytes);
  DWORD handles = 0;
  GetProcessHandleCount(self, &handles);
  return {memory.WorkingSetSize, bytes / sizeof(HMODULE), handles};
}

bool IsLoaded(const std::string& fileName) { return GetModuleHandleA(fileName.c_str()) != nullptr; }

#else

namespace {

std::size_t MemoryBytes() {
#if defined(HAV_ADDRESS_SANITIZER)
  return __sanitizer_get_current_allocated_bytes();
#else
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}

std::size_t CountEntries(const char* folder) {
  DIR* const open = opendir(folder);
  std::size_t count = 0;
  if (open != nullptr) {
    while (readdir(open) != nullptr) ++count;
    closedir(open);
  }
  return count;
}

}  // namespace

ProcessUse ProcessUse::Now() {
  std::size_t mappings = 0;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) ++mappings;
  return {MemoryBytes(), mappings, CountEntries("/proc/self/fd")};
}

bool IsLoaded(const std::string& fileName) {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    const auto folder = line.rfind('/');
    if (folder != std::string::npos && line.compare(folder + 1, line.npos, fileName) == 0)
      return true;
  }
  return false;
}

#endif

}  // namespace havtest

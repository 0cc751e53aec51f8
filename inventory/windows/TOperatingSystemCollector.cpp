#include "inventory/windows/TOperatingSystemCollector.h"

#include <windows.h>

#include "havcore/TCIMDateTime.h"
#include "inventory/windows/WindowsText.h"

using NORVHAV20::TCIMDateTime;

namespace hav::inventory {
namespace {

constexpr std::uint64_t kTicksInAMillisecond = 10000;  // a tick is 100 nanoseconds

std::optional<std::string> Version(TCollection& collection) {
  using TGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto ntdll = GetModuleHandleW(L"ntdll.dll");
  const auto address = ntdll ? GetProcAddress(ntdll, "RtlGetVersion") : nullptr;
  // A function pointer of one type becomes one of another only by way of an untyped one.
  const auto getVersion = reinterpret_cast<TGetVersion>(reinterpret_cast<void*>(address));
  OSVERSIONINFOW about{};
  about.dwOSVersionInfoSize = sizeof(about);
  if (!getVersion || getVersion(&about) != 0) {
    collection.Fail("RtlGetVersion", "does not say the version");
    return std::nullopt;
  }
  return std::to_string(about.dwMajorVersion) + "." + std::to_string(about.dwMinorVersion) + "." +
         std::to_string(about.dwBuildNumber);
}

std::optional<std::string> Architecture() {
  SYSTEM_INFO about{};
  GetNativeSystemInfo(&about);
  switch (about.wProcessorArchitecture) {
    case PROCESSOR_ARCHITECTURE_AMD64: return "x86_64";
    case PROCESSOR_ARCHITECTURE_INTEL: return "x86";
    case PROCESSOR_ARCHITECTURE_ARM64: return "aarch64";
    default: return std::nullopt;
  }
}

std::optional<TCIMDateTime> BootTime(std::uint64_t upTimeMilliseconds) {
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  ULARGE_INTEGER ticks{};
  ticks.LowPart = now.dwLowDateTime;
  ticks.HighPart = now.dwHighDateTime;
  ticks.QuadPart -= upTimeMilliseconds * kTicksInAMillisecond;
  const FILETIME then{ticks.LowPart, ticks.HighPart};
  SYSTEMTIME utc{};
  if (!FileTimeToSystemTime(&then, &utc)) return std::nullopt;
  return TCIMDateTime::Timestamp(utc.wYear, utc.wMonth, utc.wDay, utc.wHour, utc.wMinute,
                                 utc.wSecond, 0, 0);
}

}  // namespace

void TOperatingSystemCollector::Collect(TCollection& collection) {
  const auto version = Version(collection);
  const auto product =
      RegistryText(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion", L"ProductName");
  const auto name = product.value_or("Windows");
  const std::uint64_t upTime = GetTickCount64();
  auto& system = collection.Add("os", "ORVSG_OperatingSystem", name);
  if (version) system.Describe("version " + *version);
  system.Set("Distribution", product)
      .Set("Version", version)
      .Set("KernelName", std::optional<std::string>("Windows NT"))
      .Set("KernelVersion", version)
      .Set("Architecture", Architecture())
      .Set("LastBootUpTime", BootTime(upTime))
      .Set("UpTime", std::optional(upTime / 1000));
  collection.Link("ORVSG_RunningOS", "os", TCollection::kSystem);
}

}  // namespace hav::inventory

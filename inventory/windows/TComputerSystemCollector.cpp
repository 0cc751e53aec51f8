#include "inventory/windows/TComputerSystemCollector.h"

#include <windows.h>

#include <array>

#include "inventory/Text.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

std::optional<std::string> FirmwareText(const wchar_t* name) {
  const auto text = RegistryText(L"HARDWARE\\DESCRIPTION\\System\\BIOS", name);
  return text && !IsPlaceholder(*text) ? text : std::nullopt;
}

}  // namespace

void TComputerSystemCollector::Collect(TCollection& collection) {
  std::array<wchar_t, 256> name{};
  DWORD size = static_cast<DWORD>(name.size());
  if (!GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size))
    return collection.Fail("GetComputerNameExW", ErrorText(GetLastError()));
  const auto readable = ReadableText(name.data());
  if (!readable) return collection.Fail("GetComputerNameExW", "the computer has no name");

  const auto manufacturer = FirmwareText(L"SystemManufacturer");
  const auto model = FirmwareText(L"SystemProductName");
  auto& system = collection.Add(TCollection::kSystem, "ORVSG_ComputerSystem", *readable);
  if (manufacturer && model) system.Describe(*manufacturer + " " + *model);
  system.Set("Manufacturer", manufacturer)
      .Set("Model", model)
      .Set("FirmwareManufacturer", FirmwareText(L"BIOSVendor"))
      .Set("FirmwareVersion", FirmwareText(L"BIOSVersion"))
      .Set("FirmwareDate", FirmwareText(L"BIOSReleaseDate"));
}

}  // namespace hav::inventory

#include "host/collectors/windows/TComputerSystemCollector.h"

#include <windows.h>

#include <array>

#include "host/collectors/windows/WindowsText.h"

namespace havhost {

void TComputerSystemCollector::Collect(TCollection& collection) {
  std::array<wchar_t, 256> name{};
  DWORD size = static_cast<DWORD>(name.size());
  if (!GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size))
    return collection.Fail("GetComputerNameExW", ErrorText(GetLastError()));
  const auto readable = ReadableText(name.data());
  if (!readable) return collection.Fail("GetComputerNameExW", "the computer has no name");

  const auto* const key = L"HARDWARE\\DESCRIPTION\\System\\BIOS";
  const auto manufacturer = RegistryText(key, L"SystemManufacturer");
  const auto model = RegistryText(key, L"SystemProductName");
  auto& system = collection.Add(TCollection::kSystem, "ORVSG_ComputerSystem", *readable);
  if (manufacturer && model)
    system.Set("Caption", std::optional(*manufacturer + " " + *model));
  system.Set("Manufacturer", manufacturer)
      .Set("Model", model)
      .Set("FirmwareManufacturer", RegistryText(key, L"BIOSVendor"))
      .Set("FirmwareVersion", RegistryText(key, L"BIOSVersion"))
      .Set("FirmwareDate", RegistryText(key, L"BIOSReleaseDate"));
}

}  // namespace havhost

#include "inventory/windows/TPciCollector.h"

#include "inventory/DeviceIds.h"
#include "inventory/windows/TPresentDevices.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

constexpr std::uint8_t kDisplay = 0x03;

// By its place on the bus, where Windows tells it.
std::string NameOf(const TPresentDevices& devices) {
  const auto bus = devices.Number(SPDRP_BUSNUMBER);
  const auto address = devices.Number(SPDRP_ADDRESS);
  return bus && address ? PciName(*bus, *address) : devices.InstanceId();
}

void AddDevice(const TPresentDevices& devices, TCollection& collection) {
  const auto ids = ReadPciIds(devices.Ids());
  const auto name = NameOf(devices);
  const auto maker = devices.Text(SPDRP_MFG);
  const auto model = devices.Text(SPDRP_DEVICEDESC);
  auto& device = collection.AddSystemDevice(
      "pci:" + name, ids.deviceClass == kDisplay ? "ORVSG_GraphicsController" : "ORVSG_PCIDevice",
      name);
  device.Describe(model)
      .Set("Manufacturer", maker && IsMakersName(*maker) ? maker : std::nullopt)
      .Set("Model", model)
      .Set("DeviceClass", ids.deviceClass)
      .Set("VendorID", ids.vendor)
      .Set("DeviceID", ids.device)
      .Set("SubsystemVendorID", ids.subsystemVendor)
      .Set("SubsystemID", ids.subsystem)
      .Set("Revision", ids.revision)
      .Set("Driver", devices.Text(SPDRP_SERVICE))
      .Set("NumaNode", devices.NumaNode());
}

}  // namespace

// Many machines have no such bus.
void TPciCollector::Collect(TCollection& collection) {
  TPresentDevices devices(L"PCI");
  if (!devices.IsOpen()) return collection.Fail("SetupDiGetClassDevsW", ErrorText(GetLastError()));
  while (devices.Next()) AddDevice(devices, collection);
}

}  // namespace hav::inventory

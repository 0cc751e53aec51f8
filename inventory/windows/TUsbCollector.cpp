#include "inventory/windows/TUsbCollector.h"

#include "inventory/DeviceIds.h"
#include "inventory/windows/TPresentDevices.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

std::string UsbId(const std::string& instanceId) { return "usb:" + instanceId; }

// A root hub hangs on its controller, which is on another bus.
std::optional<std::string> HubOf(const TPresentDevices& devices) {
  auto parent = devices.ParentId();
  return parent && parent->compare(0, 4, "USB\\") == 0 ? parent : std::nullopt;
}

void AddDevice(const TPresentDevices& devices, const std::string& name, TCollection& collection) {
  const auto ids = ReadUsbIds(devices.Ids());
  const auto maker = devices.Text(SPDRP_MFG);
  const auto own = devices.OwnDescription();
  const auto model = own ? own : devices.Text(SPDRP_DEVICEDESC);
  const auto hub = HubOf(devices);
  auto& device = hub ? collection.Add(UsbId(name), "ORVSG_USBDevice", name)
                     : collection.AddSystemDevice(UsbId(name), "ORVSG_USBDevice", name);
  device.Describe(model)
      .Set("Manufacturer", maker && IsMakersName(*maker) ? maker : std::nullopt)
      .Set("Model", model)
      .Set("SerialNumber", UsbSerialNumber(name))
      .Set("DeviceClass", ids.deviceClass)
      .Set("VendorID", ids.vendor)
      .Set("ProductID", ids.product);
  if (hub) collection.Link("ORVSG_USBDeviceOnHub", UsbId(*hub), UsbId(name));
}

}  // namespace

// Many machines have no such bus.
void TUsbCollector::Collect(TCollection& collection) {
  TPresentDevices devices(L"USB");
  if (!devices.IsOpen()) return collection.Fail("SetupDiGetClassDevsW", ErrorText(GetLastError()));
  while (devices.Next()) {
    const auto name = devices.InstanceId();
    if (!name.empty() && !IsUsbInterface(name)) AddDevice(devices, name, collection);
  }
}

}  // namespace hav::inventory

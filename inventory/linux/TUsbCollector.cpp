#include "inventory/linux/TUsbCollector.h"

#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

std::string UsbId(const std::string& name) { return "usb:" + name; }

// "1-4.2" is plugged into "1-4", and that into the hub at the root of bus 1.
std::optional<std::string> HubOf(const std::string& name) {
  const auto dash = name.find('-');
  if (dash == std::string::npos) return std::nullopt;
  const auto point = name.rfind('.');
  return point == std::string::npos ? "usb" + name.substr(0, dash) : name.substr(0, point);
}

// In megabits per second; the slowest devices have 1.5 of them.
std::optional<std::uint64_t> Speed(TSystemFiles& files, const std::string& path) {
  const auto line = files.Line(path);
  if (!line || *line == "unknown") return std::nullopt;
  if (*line == "1.5") return 1500000;
  const auto megabits = ParseNumber<std::uint64_t>(*line);
  if (!megabits) files.Fail(path, "\"" + *line + "\" is no speed");
  return Times(megabits, 1000000);
}

void AddDevice(TSystemFiles& files, const ISystemCalls& calls, const std::string& name,
               TCollection& collection) {
  const std::string path = "/sys/bus/usb/devices/" + name + "/";
  const auto kind = files.Line(path + "modalias");
  const auto text = [&](const char* file, const char* property) {
    const auto own = files.Line(path + file);
    return own ? own : KnownText(calls, "+usb:" + name, kind, property, collection);
  };
  const auto model = text("product", "ID_MODEL_FROM_DATABASE");
  const auto hub = HubOf(name);
  auto& device = hub ? collection.Add(UsbId(name), "ORVSG_USBDevice", name)
                     : collection.AddSystemDevice(UsbId(name), "ORVSG_USBDevice", name);
  device.Describe(model)
      .Set("Manufacturer", text("manufacturer", "ID_VENDOR_FROM_DATABASE"))
      .Set("Model", model)
      .Set("SerialNumber", files.Line(path + "serial"))
      .Set("DeviceClass", files.Number<std::uint8_t>(path + "bDeviceClass", 16))
      .Set("VendorID", files.Number<std::uint16_t>(path + "idVendor", 16))
      .Set("ProductID", files.Number<std::uint16_t>(path + "idProduct", 16))
      .Set("Speed", Speed(files, path + "speed"));
  if (hub) collection.Link("ORVSG_USBDeviceOnHub", UsbId(*hub), UsbId(name));
}

}  // namespace

// Many machines have no such bus. A name with a colon is an interface of a device.
void TUsbCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  const auto calls = MakeSystemCalls(m_machine);
  for (const auto& name : files.Folder("/sys/bus/usb/devices"))
    if (name.find(':') == std::string::npos) AddDevice(files, *calls, name, collection);
}

}  // namespace hav::inventory

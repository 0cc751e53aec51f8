#include "inventory/linux/TPciCollector.h"

#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

constexpr std::uint32_t kDisplay = 0x03;

// "Maker Model", as far as it is known.
std::optional<std::string> Description(const std::optional<std::string>& manufacturer,
                                       const std::optional<std::string>& model) {
  if (manufacturer && model) return *manufacturer + " " + *model;
  return model ? model : manufacturer;
}

void AddDevice(TSystemFiles& files, const ISystemCalls& calls, const std::string& name,
               TCollection& collection) {
  const std::string path = "/sys/bus/pci/devices/" + name + "/";
  const auto number = [&](const char* file) {
    return files.Number<std::uint16_t>(path + file, 16);
  };
  // The class is the highest of three bytes.
  const auto classes = files.Number<std::uint32_t>(path + "class", 16);
  const auto kind = files.Line(path + "modalias");
  const auto text = [&](const char* property) {
    return KnownText(calls, "+pci:" + name, kind, property, collection);
  };
  const auto manufacturer = text("ID_VENDOR_FROM_DATABASE");
  const auto model = text("ID_MODEL_FROM_DATABASE");
  const bool isDisplay = classes && *classes >> 16U == kDisplay;
  auto& device = collection.AddSystemDevice(
      "pci:" + name, isDisplay ? "ORVSG_GraphicsController" : "ORVSG_PCIDevice", name);
  device.Describe(Description(manufacturer, model))
      .Set("Manufacturer", manufacturer)
      .Set("Model", model)
      .Set("VendorID", number("vendor"))
      .Set("DeviceID", number("device"))
      .Set("SubsystemVendorID", number("subsystem_vendor"))
      .Set("SubsystemID", number("subsystem_device"))
      .Set("Revision", files.Number<std::uint8_t>(path + "revision", 16))
      .Set("Driver", files.LinkName(path + "driver"))
      .Set("NumaNode", files.Number<std::uint32_t>(path + "numa_node"));
  if (classes) device.Set("DeviceClass", std::optional(static_cast<std::uint8_t>(*classes >> 16U)));
}

}  // namespace

// Many machines have no such bus.
void TPciCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  const auto calls = MakeSystemCalls(m_machine);
  for (const auto& name : files.Folder("/sys/bus/pci/devices"))
    AddDevice(files, *calls, name, collection);
}

}  // namespace hav::inventory

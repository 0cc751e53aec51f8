#include "inventory/linux/TComputerSystemCollector.h"

#include <algorithm>

#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

std::optional<std::string> FirmwareText(TSystemFiles& files, const std::string& name) {
  const auto text = files.Line("/sys/class/dmi/id/" + name);
  return text && !IsPlaceholder(*text) ? text : std::nullopt;
}

// Only x86 lists "flags"; other processors do not say.
std::optional<bool> HypervisorPresent(TSystemFiles& files) {
  const auto text = files.Text("/proc/cpuinfo");
  const auto entries = KeyValues(text.value_or(""), ':');
  const auto flags = entries.find("flags");
  if (flags == entries.end()) return std::nullopt;
  const auto words = Words(flags->second);
  return std::find(words.begin(), words.end(), "hypervisor") != words.end();
}

}  // namespace

void TComputerSystemCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  auto name = files.Line("/proc/sys/kernel/hostname");
  if (!name) name = files.Line("/etc/hostname");
  if (!name) return files.Fail("/proc/sys/kernel/hostname", "the computer has no name");

  auto manufacturer = FirmwareText(files, "sys_vendor");
  auto model = FirmwareText(files, "product_name");
  auto serial = FirmwareText(files, "product_serial");
  if (!model) model = files.Line("/proc/device-tree/model");
  if (!serial) serial = files.Line("/proc/device-tree/serial-number");

  auto& system = collection.Add(TCollection::kSystem, "ORVSG_ComputerSystem", *name);
  if (manufacturer && model)
    system.Describe(*manufacturer + " " + *model);
  else
    system.Describe(manufacturer ? manufacturer : model);
  system.Set("Manufacturer", manufacturer)
      .Set("Model", model)
      .Set("SerialNumber", serial)
      .Set("UUID", FirmwareText(files, "product_uuid"))
      .Set("ChassisType", files.Number<std::uint16_t>("/sys/class/dmi/id/chassis_type"))
      .Set("FirmwareManufacturer", FirmwareText(files, "bios_vendor"))
      .Set("FirmwareVersion", FirmwareText(files, "bios_version"))
      .Set("FirmwareDate", FirmwareText(files, "bios_date"))
      .Set("HypervisorPresent", HypervisorPresent(files));
}

}  // namespace hav::inventory

#include "inventory/linux/TComputerSystemCollector.h"

#include <algorithm>
#include <array>
#include <utility>

#include "inventory/linux/ISystemCalls.h"
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

using THint = std::pair<std::string_view, const char*>;

template <std::size_t N>
std::optional<std::string> NameFor(const std::optional<std::string>& text,
                                   const std::array<THint, N>& hints) {
  for (const auto& [part, name] : hints)
    if (text && text->find(part) != std::string::npos) return std::string(name);
  return std::nullopt;
}

// What hypervisors have the processors call them.
std::optional<std::string> BySignature(const std::optional<std::string>& signature) {
  return NameFor<8>(signature, {{{"KVMKVMKVM", "KVM"},
                                 {"Microsoft Hv", "Hyper-V"},
                                 {"VMwareVMware", "VMware"},
                                 {"XenVMMXenVMM", "Xen"},
                                 {"TCGTCGTCGTCG", "QEMU"},
                                 {"VBoxVBoxVBox", "VirtualBox"},
                                 {"bhyve bhyve", "bhyve"},
                                 {"ACRNACRNACRN", "ACRN"}}});
}

// Who makes computers that are not there.
std::optional<std::string> ByManufacturer(const std::optional<std::string>& manufacturer,
                                          const std::optional<std::string>& model) {
  // This one makes real ones, too.
  if (manufacturer == "Microsoft Corporation")
    return model == "Virtual Machine" ? std::optional<std::string>("Hyper-V") : std::nullopt;
  return NameFor<5>(manufacturer, {{{"QEMU", "QEMU"},
                                    {"VMware", "VMware"},
                                    {"innotek", "VirtualBox"},
                                    {"Xen", "Xen"},
                                    {"Parallels", "Parallels"}}});
}

// Where there is no DMI: the device tree, POWER's entry of the machine, the mainframe's table.
std::optional<std::string> ByPlatform(TSystemFiles& files) {
  if (auto tree = NameFor<2>(files.Line("/proc/device-tree/hypervisor/compatible"),
                             {{{"linux,kvm", "KVM"}, {"xen", "Xen"}}}))
    return tree;
  if (auto power = NameFor<1>(files.Text("/proc/cpuinfo"), {{{"emulated by qemu", "QEMU"}}}))
    return power;
  if (files.Exists("/proc/ppc64/lparcfg")) return "PowerVM";
  return NameFor<2>(files.Text("/proc/sysinfo"), {{{"KVM/Linux", "KVM"}, {"z/VM", "z/VM"}}});
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

  auto hypervisor = BySignature(MakeSystemCalls(m_machine)->HypervisorSignature(collection));
  if (!hypervisor) hypervisor = NameFor<1>(files.Line("/sys/hypervisor/type"), {{{"xen", "Xen"}}});
  if (!hypervisor) hypervisor = ByManufacturer(manufacturer, model);
  if (!hypervisor) hypervisor = ByPlatform(files);

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
      .Set("Hypervisor", hypervisor)
      .Set("HypervisorPresent", hypervisor ? std::optional(true) : HypervisorPresent(files));
}

}  // namespace hav::inventory

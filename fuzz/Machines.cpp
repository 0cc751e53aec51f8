// Files of a machine that is whole but for them: "@PATH" in a line says which, what follows up to
// the next such line is what the file holds. The inventory is taken: all text in it can be read
// by people, a second look finds nothing changed, and the namespace takes all of it.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "inventory/Refresh.h"
#include "inventory/Text.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "tests/inventory/FakeMachine.h"

namespace {

using namespace havtest;
using namespace hav::inventory;
using havfuzz::Require;

// The files that may be others, with what they hold otherwise; empty: they are not there.
const char* const kPaths[] = {"/proc/sys/kernel/hostname",
                              "/proc/sys/kernel/osrelease",
                              "/etc/os-release",
                              "/proc/stat",
                              "/proc/uptime",
                              "/proc/meminfo",
                              "/proc/cpuinfo",
                              "/proc/filesystems",
                              "/proc/self/mountinfo",
                              "/proc/hwloc-nofile-info",
                              "/calls/filesystems",
                              "/calls/addresses",
                              "/calls/hypervisor",
                              "/calls/hardware",
                              "/run/udev/data/b8:0",
                              "/run/udev/data/b8:1",
                              "/run/udev/data/n2",
                              "/run/udev/data/+pci:0000:00:01.0",
                              "/sys/block/sda/size",
                              "/sys/block/sda/dev",
                              "/sys/block/sda/ro",
                              "/sys/block/sda/removable",
                              "/sys/block/sda/device/model",
                              "/sys/block/sda/sda1/partition",
                              "/sys/block/sda/sda1/start",
                              "/sys/block/dm-0/dm/name",
                              "/sys/block/dm-0/dm/uuid",
                              "/sys/class/dmi/id/sys_vendor",
                              "/sys/class/dmi/id/chassis_type",
                              "/sys/class/dmi/id/product_uuid",
                              "/sys/class/dmi/id/bios_date",
                              "/sys/class/net/eth0/address",
                              "/sys/class/net/eth0/speed",
                              "/sys/class/net/eth0/duplex",
                              "/sys/class/net/eth0/operstate",
                              "/sys/class/net/eth0/mtu",
                              "/sys/class/net/eth0/type",
                              "/sys/bus/pci/devices/0000:00:01.0/class",
                              "/sys/bus/pci/devices/0000:00:01.0/vendor",
                              "/sys/bus/usb/devices/1-1/product",
                              "/sys/bus/usb/devices/1-1/bDeviceClass",
                              "/sys/bus/usb/devices/1-1/idVendor",
                              "/sys/firmware/dmi/tables/DMI",
                              "/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq",
                              "/sys/devices/system/node/node0/meminfo"};

class TWorld {
 public:
  TWorld() {
    machine.Remove("/sys/devices/system/cpu");
    machine.Processors(1, 1);
    for (const char* const path : kPaths)
      if (std::filesystem::exists(machine.Path(path))) m_whole[path] = Read(path);
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(HAV_INVENTORY_SCHEMA_FOLDER))
      if (entry.path().extension() == ".mof") files.push_back(entry.path().string());
    m_schema = files;
  }

  NamespacePtr LoadSchema() const {
    hav::mof::TMofFolderSource source;
    hav::mof::TMofReport report;
    return hav::mof::TMofLoader(*Provider(), source).Load(m_schema, report);
  }

  void Put(const std::string& path, const std::string& text) {
    machine.File(path, text);
    m_changed.push_back(path);
  }
  void Restore() {
    for (const auto& path : m_changed) {
      const auto whole = m_whole.find(path);
      if (whole == m_whole.end())
        machine.Remove(path);
      else
        machine.File(path, whole->second);
    }
    m_changed.clear();
  }

  FullMachine machine;

 private:
  std::string Read(const std::string& path) const {
    std::ifstream file(machine.Path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::map<std::string, std::string> m_whole;
  std::vector<std::string> m_changed, m_schema;
};

std::string PathOf(std::string_view named) {
  unsigned sum = 0;
  for (const char c : named) sum = sum * 31 + static_cast<unsigned char>(c);
  for (const char* const path : kPaths)
    if (named == path) return path;
  return kPaths[sum % std::size(kPaths)];
}

// Puts the files of the input in their places.
void Change(TWorld& world, havfuzz::TInput& input) {
  std::string path, text;
  const auto put = [&] {
    if (!path.empty()) world.Put(path, text);
    text.clear();
  };
  while (!input.IsAtEnd()) {
    const auto line = input.Until('\n');
    if (!line.empty() && line[0] == '@') {
      put();
      path = PathOf(line.substr(1));
    } else {
      text += std::string(line) + '\n';
    }
  }
  put();
}

void CheckValue(const TElement& element, const std::string& property, const TCIMValue& value) {
  if (value.IsNull()) return;
  if (value.IsArray()) {
    for (const auto& one : static_cast<const std::vector<TCIMValue>&>(value))
      CheckValue(element, property, one);
  } else if (value.GetType() == kCIMString && !IsReadable(value.ToString(10))) {
    havfuzz::Fail(element.className, '.', property, " cannot be read: ", value.ToString(10));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static TWorld world;
  static const auto target = world.LoadSchema();
  const RecordingLogger log;
  havfuzz::TInput input(data, size);
  Change(world, input);
  const auto found = GatherInventory(world.machine.Machine());
  for (const auto& element : found.Elements())
    for (const auto& [property, value] : element.values) CheckValue(element, property, value);
  for (const auto& failure : found.Failures())
    Require(!failure.collector.empty() && !failure.source.empty() && !failure.reason.empty(),
            "a failure does not say what it is");
  target->ClearInstances();
  for (const auto& refused : PublishInventory(found, *target))
    havfuzz::Fail("the namespace refuses ", refused.ToString());
  Require(RefreshInventory(*target, found, {}).empty(), "the same inventory is another");
  world.Restore();
  return 0;
}

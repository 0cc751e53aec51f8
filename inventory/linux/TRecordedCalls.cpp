#include "inventory/linux/TRecordedCalls.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>

#include "inventory/Text.h"
#include "inventory/linux/TSystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

constexpr const char* kGathered = "/proc/hwloc-nofile-info";

using TCpuInfo = std::map<std::string, std::string, std::less<>>;

// What the processors' own entries leave no doubt about.
std::optional<std::string> ArchitectureOf(const TCpuInfo& cpu) {
  const auto text = [&cpu](const char* key) {
    const auto found = cpu.find(key);
    return found == cpu.end() ? std::string() : found->second;
  };
  const auto flags = text("flags");
  const auto words = Words(flags);
  if (std::find(words.begin(), words.end(), "lm") != words.end()) return "x86_64";
  if (text("CPU architecture") == "8") return "aarch64";
  if (text("isa").compare(0, 4, "rv64") == 0) return "riscv64";
  if (text("vendor_id") == "IBM/S390") return "s390x";
  return std::nullopt;
}

}  // namespace

std::optional<ISystemCalls::TUsage> TRecordedCalls::FileSystemUsage(const std::string& mountPoint,
                                                                    const std::string& deviceNumber,
                                                                    TCollection& failures) const {
  const auto text = TSystemFiles(m_machine, failures).Text("/calls/filesystems");
  for (const auto& line : Lines(text.value_or(""))) {
    const auto words = Words(line);
    if (words.size() < 3 || words[2] != mountPoint) continue;
    const auto size = ParseNumber<std::uint64_t>(words[0]);
    const auto available = ParseNumber<std::uint64_t>(words[1]);
    if (size && available) return TUsage{*size, *available};
    failures.Fail("/calls/filesystems", "\"" + line + "\" does not give two sizes");
  }
  // What is mounted there may not be mounted here, or something else may be.
  const auto path = m_machine.Root() + mountPoint;
  struct stat about {};
  if (!ShowsThisKernel() || ::stat(path.c_str(), &about) != 0 ||
      std::to_string(major(about.st_dev)) + ":" + std::to_string(minor(about.st_dev)) !=
          deviceNumber)
    return std::nullopt;
  return UsageOf(path, failures);
}

bool TRecordedCalls::ShowsThisKernel() const {
  struct statfs about {};
  const auto path = m_machine.Root() + "/proc";
  return ::statfs(path.c_str(), &about) == 0 && about.f_type == PROC_SUPER_MAGIC;
}

ISystemCalls::TProperties TRecordedCalls::DeviceProperties(const std::string& device,
                                                           TCollection& failures) const {
  TProperties properties;
  const auto text = TSystemFiles(m_machine, failures).Text("/run/udev/data/" + device);
  for (const auto& [key, value] : KeyValues(text.value_or(""), '='))
    if (key.compare(0, 2, "E:") == 0) properties.emplace(key.substr(2), DecodeDatabaseText(value));
  return properties;
}

ISystemCalls::TAddresses TRecordedCalls::NetworkAddresses(TCollection& failures) const {
  TAddresses addresses;
  const auto text = TSystemFiles(m_machine, failures).Text("/calls/addresses");
  for (const auto& line : Lines(text.value_or(""))) {
    const auto words = Words(line);
    if (words.size() == 2 && IsReadable(words[1]))
      addresses[std::string(words[0])].emplace_back(words[1]);
  }
  return addresses;
}

ISystemCalls::TProperties TRecordedCalls::HardwareProperties(const std::string& kind,
                                                             TCollection& failures) const {
  TProperties properties;
  const auto text = TSystemFiles(m_machine, failures).Text("/calls/hardware");
  for (const auto& line : Lines(text.value_or(""))) {
    if (line.compare(0, kind.size() + 1, kind + " ") != 0) continue;
    const auto equals = line.find('=');
    if (equals != line.npos)
      properties.emplace(
          std::string(Trim(std::string_view(line).substr(kind.size(), equals - kind.size()))),
          line.substr(equals + 1));
  }
  return properties;
}

std::optional<std::string> TRecordedCalls::HypervisorSignature(TCollection& failures) const {
  return TSystemFiles(m_machine, failures).Line("/calls/hypervisor");
}

std::optional<std::string> TRecordedCalls::Architecture(TCollection& failures) const {
  TSystemFiles files(m_machine, failures);
  const auto entries = KeyValues(files.Text(kGathered).value_or(""), ':');
  const auto found = entries.find("Architecture");
  if (found != entries.end()) return files.Readable(kGathered, found->second);
  if (auto kernels = files.Line("/proc/sys/kernel/arch")) return kernels;
  if (ShowsThisKernel()) return TSystemCalls().Architecture(failures);
  return ArchitectureOf(KeyValues(files.Text("/proc/cpuinfo").value_or(""), ':'));
}

}  // namespace hav::inventory

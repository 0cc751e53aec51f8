#include "inventory/linux/TRecordedCalls.h"

#include "inventory/Text.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

constexpr const char* kGathered = "/proc/hwloc-nofile-info";

}  // namespace

std::optional<ISystemCalls::TUsage> TRecordedCalls::FileSystemUsage(const std::string& mountPoint,
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
  return std::nullopt;
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

std::optional<std::string> TRecordedCalls::Architecture(TCollection& failures) const {
  TSystemFiles files(m_machine, failures);
  const auto entries = KeyValues(files.Text(kGathered).value_or(""), ':');
  const auto found = entries.find("Architecture");
  return found == entries.end() ? std::nullopt : files.Readable(kGathered, found->second);
}

}  // namespace hav::inventory

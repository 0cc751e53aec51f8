#include "inventory/linux/TNetworkPortCollector.h"

#include <array>
#include <utility>

#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

// Link-layer types, as the kernel numbers them.
constexpr std::uint32_t kEthernet = 1;
constexpr std::uint32_t kInfiniBand = 32;

std::optional<std::uint16_t> LinkStatus(TSystemFiles& files, const std::string& path) {
  constexpr std::array<std::pair<std::string_view, std::uint16_t>, 6> kStates{
      {{"up", 1},
       {"down", 2},
       {"testing", 3},
       {"dormant", 5},
       {"notpresent", 6},
       {"lowerlayerdown", 7}}};
  const auto text = files.Line(path + "operstate");
  if (!text || *text == "unknown") return std::nullopt;
  for (const auto& [name, number] : kStates)
    if (*text == name) return number;
  files.Fail(path + "operstate", "\"" + *text + "\" is no state of a link");
  return std::nullopt;
}

std::optional<std::uint16_t> PortType(TSystemFiles& files, const std::string& path,
                                      std::optional<std::uint32_t> type) {
  constexpr std::uint16_t kTypeEthernet = 2, kTypeInfiniBand = 3, kTypeWireless = 11;
  if (type == kEthernet)
    return files.Exists(path + "wireless") || files.Exists(path + "phy80211") ? kTypeWireless
                                                                              : kTypeEthernet;
  if (type == kInfiniBand) return kTypeInfiniBand;
  return std::nullopt;
}

std::optional<bool> FullDuplex(TSystemFiles& files, const std::string& path) {
  const auto text = files.Line(path + "duplex");
  if (!text || *text == "unknown") return std::nullopt;
  if (*text == "full" || *text == "half") return *text == "full";
  files.Fail(path + "duplex", "\"" + *text + "\" is no duplex mode");
  return std::nullopt;
}

// "1000 Mbps full duplex", as far as it is known.
std::optional<std::string> SpeedDuplex(std::optional<std::uint64_t> megabits,
                                       std::optional<bool> fullDuplex) {
  std::string text;
  if (megabits) text = std::to_string(*megabits) + " Mbps";
  if (megabits && fullDuplex) text += ' ';
  if (fullDuplex) text += *fullDuplex ? "full duplex" : "half duplex";
  return text.empty() ? std::nullopt : std::optional(text);
}

template <class TextOf>
void AddPhysicalProperties(TElement& port, TSystemFiles& files, const std::string& path,
                           TextOf&& textOf) {
  auto megabits = files.Number<std::uint64_t>(path + "speed");
  if (megabits == std::uint64_t{0xFFFFFFFF}) megabits.reset();  // -1 of older kernels
  const auto fullDuplex = FullDuplex(files, path);
  port.Set("Manufacturer", textOf("ID_VENDOR_FROM_DATABASE"))
      .Set("Model", textOf("ID_MODEL_FROM_DATABASE"))
      .Set("Driver", files.LinkName(path + "device/driver"))
      .Set("Speed", Times(megabits, 1000000))
      .Set("FullDuplex", fullDuplex)
      .Set("speedDuplex", SpeedDuplex(megabits, fullDuplex));
}

}  // namespace

void TNetworkPortCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  if (!files.Require("/sys/class/net")) return;
  const auto calls = MakeSystemCalls(m_machine);
  const auto addresses = calls->NetworkAddresses(collection);
  for (const auto& name : files.Folder("/sys/class/net")) {
    const std::string path = "/sys/class/net/" + name + "/";
    const auto type = files.Number<std::uint32_t>(path + "type");
    // The folder also holds files of drivers, which are no ports.
    if (!files.Exists(path + "ifindex")) continue;
    const bool physical = files.Exists(path + "device");
    auto& port = collection.AddSystemDevice(
        "port:" + name, physical ? "ORVSG_PhysicalNetworkPort" : "ORVSG_NetworkPort", name);
    const auto found = addresses.find(name);
    port.Set("MACAddress", files.Line(path + "address"))
        .Set("NetworkAddresses",
             found == addresses.end() ? std::vector<std::string>() : found->second)
        .Set("LinkStatus", LinkStatus(files, path))
        .Set("MaximumTransmissionUnit", files.Number<std::uint32_t>(path + "mtu"));
    if (!physical) continue;
    const auto index = files.Number<std::uint32_t>(path + "ifindex");
    const auto kind = files.Line(path + "device/modalias");
    const auto textOf = [&](const char* property) {
      return KnownText(*calls, "n" + std::to_string(index.value_or(0)), kind, property, collection);
    };
    port.Set("PortType", PortType(files, path, type));
    AddPhysicalProperties(port, files, path, textOf);
  }
}

}  // namespace hav::inventory

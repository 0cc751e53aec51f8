#include "inventory/windows/TNetworkPortCollector.h"

// Two blocks, because the second needs the first.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>
#include <netioapi.h>

#include <array>
#include <vector>

#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

std::optional<std::string> MacAddress(const IP_ADAPTER_ADDRESSES& port) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (ULONG i = 0; i < port.PhysicalAddressLength; ++i) {
    const auto byte = port.PhysicalAddress[i];
    if (!text.empty()) text += ':';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
  }
  return text.empty() ? std::nullopt : std::optional(text);
}

std::vector<std::string> NetworkAddresses(const IP_ADAPTER_ADDRESSES& port) {
  std::vector<std::string> addresses;
  for (auto* entry = port.FirstUnicastAddress; entry; entry = entry->Next) {
    std::array<wchar_t, 64> text{};
    if (GetNameInfoW(entry->Address.lpSockaddr, entry->Address.iSockaddrLength, text.data(),
                     static_cast<DWORD>(text.size()), nullptr, 0, NI_NUMERICHOST) != 0)
      continue;
    const auto address = Utf8Of(text.data());
    // A link-local address names its port after a percent sign.
    addresses.push_back(address.substr(0, address.find('%')));
  }
  return addresses;
}

// Windows and the schema number the states of a link alike.
std::optional<std::uint16_t> LinkStatus(const IP_ADAPTER_ADDRESSES& port) {
  if (port.OperStatus == IfOperStatusUnknown) return std::nullopt;
  return static_cast<std::uint16_t>(port.OperStatus);
}

std::optional<std::uint16_t> PortType(const IP_ADAPTER_ADDRESSES& port) {
  constexpr std::uint16_t kEthernet = 2, kWireless = 11;
  if (port.IfType == IF_TYPE_ETHERNET_CSMACD) return kEthernet;
  if (port.IfType == IF_TYPE_IEEE80211) return kWireless;
  return std::nullopt;
}

bool HasHardware(const IP_ADAPTER_ADDRESSES& port) {
  MIB_IF_ROW2 row{};
  row.InterfaceLuid = port.Luid;
  return GetIfEntry2(&row) == NO_ERROR && row.InterfaceAndOperStatusFlags.HardwareInterface;
}

std::optional<std::uint64_t> Speed(const IP_ADAPTER_ADDRESSES& port) {
  constexpr ULONG64 kUnknown = ~ULONG64{0};
  if (port.TransmitLinkSpeed == kUnknown || port.TransmitLinkSpeed == 0) return std::nullopt;
  return port.TransmitLinkSpeed;
}

void AddPort(TCollection& collection, const IP_ADAPTER_ADDRESSES& about) {
  const auto name = ReadableText(about.FriendlyName);
  if (about.IfType == IF_TYPE_SOFTWARE_LOOPBACK || !name) return;
  const bool physical = HasHardware(about);
  auto& port = collection.AddSystemDevice(
      "port:" + *name, physical ? "ORVSG_PhysicalNetworkPort" : "ORVSG_NetworkPort", *name);
  const auto description = ReadableText(about.Description);
  port.Describe(description)
      .Set("MACAddress", MacAddress(about))
      .Set("NetworkAddresses", NetworkAddresses(about))
      .Set("LinkStatus", LinkStatus(about))
      .Set("MaximumTransmissionUnit", std::optional<std::uint32_t>(about.Mtu));
  if (!physical) return;
  const auto speed = Speed(about);
  port.Set("Model", description).Set("PortType", PortType(about)).Set("Speed", speed);
  if (speed) port.Set("speedDuplex", std::optional(std::to_string(*speed / 1000000) + " Mbps"));
}

}  // namespace

void TNetworkPortCollector::Collect(TCollection& collection) {
  ULONG size = 16U * 1024U;
  std::vector<char> bytes;
  ULONG result = ERROR_BUFFER_OVERFLOW;
  // The list can grow between the two calls.
  for (int attempt = 0; attempt < 4 && result == ERROR_BUFFER_OVERFLOW; ++attempt) {
    bytes.resize(size);
    result =
        GetAdaptersAddresses(AF_UNSPEC, GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST, nullptr,
                             reinterpret_cast<IP_ADAPTER_ADDRESSES*>(bytes.data()), &size);
  }
  if (result == ERROR_NO_DATA) return;
  if (result != NO_ERROR) return collection.Fail("GetAdaptersAddresses", ErrorText(result));
  const auto* port = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(bytes.data());
  for (; port; port = port->Next) AddPort(collection, *port);
}

}  // namespace hav::inventory

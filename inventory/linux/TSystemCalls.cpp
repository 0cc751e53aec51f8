#include "inventory/linux/TSystemCalls.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <libudev.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/statvfs.h>
#include <sys/utsname.h>
#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>

#include "inventory/Text.h"

namespace hav::inventory {
namespace {

struct TRelease {
  void operator()(udev* library) const { udev_unref(library); }
  void operator()(udev_hwdb* database) const { udev_hwdb_unref(database); }
  void operator()(udev_device* device) const { udev_device_unref(device); }
  void operator()(ifaddrs* addresses) const { ::freeifaddrs(addresses); }
};

std::string Reason(int error) { return std::generic_category().message(error); }

std::optional<std::string> AddressText(const sockaddr* address) {
  if (!address) return std::nullopt;
  const void* bytes = nullptr;
  if (address->sa_family == AF_INET)
    bytes = &reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
  else if (address->sa_family == AF_INET6)
    bytes = &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (!bytes || !::inet_ntop(address->sa_family, bytes, text.data(), text.size()))
    return std::nullopt;
  return std::string(text.data());
}

ISystemCalls::TProperties ToProperties(udev_list_entry* entry) {
  ISystemCalls::TProperties properties;
  for (; entry; entry = udev_list_entry_get_next(entry)) {
    const char* const value = udev_list_entry_get_value(entry);
    properties.emplace(udev_list_entry_get_name(entry), DecodeDatabaseText(value ? value : ""));
  }
  return properties;
}

}  // namespace

std::optional<ISystemCalls::TUsage> UsageOf(const std::string& path, TCollection& failures) {
  struct statvfs about {};
  if (::statvfs(path.c_str(), &about) != 0) {
    failures.Fail("statvfs " + path, Reason(errno));
    return std::nullopt;
  }
  const auto size = Times(about.f_blocks, about.f_frsize);
  const auto available = Times(about.f_bavail, about.f_frsize);
  // A file system that does not count its blocks says 0.
  if (!size || !available || *size == 0) return std::nullopt;
  return ISystemCalls::TUsage{*size, *available};
}

std::optional<ISystemCalls::TUsage> TSystemCalls::FileSystemUsage(const std::string& mountPoint,
                                                                  const std::string&,
                                                                  TCollection& failures) const {
  return UsageOf(mountPoint, failures);
}

ISystemCalls::TProperties TSystemCalls::DeviceProperties(const std::string& device,
                                                         TCollection& failures) const {
  const std::unique_ptr<udev, TRelease> library(udev_new());
  if (!library) {
    failures.Fail("libudev", Reason(errno));
    return {};
  }
  const std::unique_ptr<udev_device, TRelease> known(
      udev_device_new_from_device_id(library.get(), device.c_str()));
  // A device that has just been taken out, or that a container does not show.
  if (!known) return {};
  return ToProperties(udev_device_get_properties_list_entry(known.get()));
}

ISystemCalls::TProperties TSystemCalls::HardwareProperties(const std::string& kind,
                                                           TCollection& failures) const {
  const std::unique_ptr<udev, TRelease> library(udev_new());
  if (!library) {
    failures.Fail("libudev", Reason(errno));
    return {};
  }
  // Small systems come without the database.
  const std::unique_ptr<udev_hwdb, TRelease> database(udev_hwdb_new(library.get()));
  if (!database) return {};
  return ToProperties(udev_hwdb_get_properties_list_entry(database.get(), kind.c_str(), 0));
}

ISystemCalls::TAddresses TSystemCalls::NetworkAddresses(TCollection& failures) const {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) != 0) {
    failures.Fail("getifaddrs", Reason(errno));
    return {};
  }
  const std::unique_ptr<ifaddrs, TRelease> owner(first);
  TAddresses addresses;
  for (const auto* entry = first; entry; entry = entry->ifa_next) {
    const auto text = AddressText(entry->ifa_addr);
    if (!text) continue;
    // A second address may stand under a label of its own: "eth0:1" is port eth0.
    const std::string name(entry->ifa_name);
    addresses[name.substr(0, name.find(':'))].push_back(*text);
  }
  return addresses;
}

std::optional<std::string> TSystemCalls::Architecture(TCollection& failures) const {
  utsname names{};
  if (::uname(&names) == 0) return std::string(names.machine);
  failures.Fail("uname", Reason(errno));
  return std::nullopt;
}

std::optional<std::string> TSystemCalls::HypervisorSignature(TCollection&) const {
#if defined(__x86_64__) || defined(__i386__)
  constexpr unsigned kFeatures = 1, kHypervisor = 0x40000000, kHypervisorBit = 1U << 31U;
  unsigned highest = 0, words[3] = {}, features = 0, unused = 0;
  if (!__get_cpuid(kFeatures, &unused, &unused, &features, &unused)) return std::nullopt;
  if ((features & kHypervisorBit) == 0) return std::nullopt;
  __cpuid(kHypervisor, highest, words[0], words[1], words[2]);
  std::string signature(sizeof(words), '\0');
  std::memcpy(signature.data(), words, sizeof(words));
  return signature;
#else
  return std::nullopt;
#endif
}

}  // namespace hav::inventory

#include "inventory/DeviceIds.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "inventory/Text.h"

namespace hav::inventory {
namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

bool BeginsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() &&
         std::equal(start.begin(), start.end(), text.begin(),
                    [](char a, char b) { return Upper(a) == Upper(b); });
}

// The parts of an identifier behind its bus: all that is between '\' and '&'.
std::vector<std::string_view> Parts(std::string_view id) {
  std::vector<std::string_view> parts;
  while (!id.empty()) {
    const auto end = std::min(id.find_first_of("\\&"), id.size());
    parts.push_back(id.substr(0, end));
    id.remove_prefix(std::min(end + 1, id.size()));
  }
  return parts;
}

// The number behind `key` in the first id that has it with that many digits or more.
template <class T>
std::optional<T> Number(const std::vector<std::string>& ids, std::string_view key,
                        std::size_t digits, std::size_t from = 0) {
  for (const auto& id : ids)
    for (const auto part : Parts(id))
      if (BeginsWith(part, key) && part.size() >= key.size() + from + digits)
        if (const auto number = ParseNumber<T>(part.substr(key.size() + from, digits), 16))
          return number;
  return std::nullopt;
}

// A root hub has its numbers without a line before them.
template <class T>
std::optional<T> UsbNumber(const std::vector<std::string>& ids, const char* key,
                           const char* ofRootHub) {
  const auto number = Number<T>(ids, key, 4);
  return number ? number : Number<T>(ids, ofRootHub, 4);
}

}  // namespace

TPciIds ReadPciIds(const std::vector<std::string>& ids) {
  TPciIds read;
  read.vendor = Number<std::uint16_t>(ids, "VEN_", 4);
  read.device = Number<std::uint16_t>(ids, "DEV_", 4);
  read.subsystem = Number<std::uint16_t>(ids, "SUBSYS_", 4);
  read.subsystemVendor = Number<std::uint16_t>(ids, "SUBSYS_", 4, 4);
  read.revision = Number<std::uint8_t>(ids, "REV_", 2);
  read.deviceClass = Number<std::uint8_t>(ids, "CC_", 2);
  // Bridges and the like have none, which is zero on the bus and absent elsewhere.
  if (read.subsystem == std::uint16_t{0} && read.subsystemVendor == std::uint16_t{0})
    read.subsystem = read.subsystemVendor = std::nullopt;
  return read;
}

TUsbIds ReadUsbIds(const std::vector<std::string>& ids) {
  TUsbIds read;
  read.vendor = UsbNumber<std::uint16_t>(ids, "VID_", "VID");
  read.product = UsbNumber<std::uint16_t>(ids, "PID_", "PID");
  read.deviceClass = Number<std::uint8_t>(ids, "Class_", 2);
  if (!read.deviceClass) read.deviceClass = Number<std::uint8_t>(ids, "DevClass_", 2);
  return read;
}

std::string PciName(std::uint32_t bus, std::uint32_t address) {
  std::array<char, 40> name{};
  std::snprintf(name.data(), name.size(), "%04x:%02x:%02x.%x", static_cast<unsigned>(bus >> 8U),
                static_cast<unsigned>(bus & 0xFFU), static_cast<unsigned>(address >> 16U),
                static_cast<unsigned>(address & 0xFFFFU));
  return name.data();
}

std::optional<std::string> UsbSerialNumber(std::string_view instanceId) {
  const auto last = instanceId.rfind('\\');
  if (last == std::string_view::npos || std::count(instanceId.begin(), instanceId.end(), '\\') != 2)
    return std::nullopt;
  const auto number = instanceId.substr(last + 1);
  // What the system makes up has its places between '&'.
  if (number.empty() || number.find('&') != std::string_view::npos || !IsReadable(number))
    return std::nullopt;
  return std::string(number);
}

bool IsUsbInterface(std::string_view instanceId) {
  const auto parts = Parts(instanceId.substr(0, instanceId.rfind('\\')));
  return std::any_of(parts.begin(), parts.end(), [](std::string_view part) {
    return part.size() == 5 && BeginsWith(part, "MI_");
  });
}

bool IsMakersName(std::string_view text) {
  return !text.empty() && text.front() != '(' && !IsPlaceholder(text);
}

std::string ProcessorList(std::uint64_t mask, std::uint32_t first) {
  std::string list;
  for (std::uint32_t bit = 0; bit < 64; ++bit) {
    if ((mask >> bit & 1U) == 0) continue;
    auto last = bit;
    while (last + 1 < 64 && (mask >> (last + 1) & 1U) != 0) ++last;
    if (!list.empty()) list += ',';
    list += std::to_string(first + bit);
    if (last != bit) list += '-' + std::to_string(first + last);
    bit = last;
  }
  return list;
}

}  // namespace hav::inventory

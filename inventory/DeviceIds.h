// DeviceIds: what the identifiers say that Windows gives devices, such as
// PCI\VEN_8086&DEV_1237&SUBSYS_11001AF4&REV_02 and USB\VID_1D6B&PID_0002\5&2A&0&1.
//
// Identifiers come from firmware and drivers and can be any text: what cannot be read is left out.
//
// Threads: pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hav::inventory {

struct TPciIds {
  std::optional<std::uint16_t> vendor, device, subsystemVendor, subsystem;
  std::optional<std::uint8_t> revision;
  std::optional<std::uint8_t> deviceClass;  // the highest of the three bytes of the class code
};

struct TUsbIds {
  std::optional<std::uint16_t> vendor, product;
  std::optional<std::uint8_t> deviceClass;
};

// What the hardware ids and compatible ids of a device say together.
TPciIds ReadPciIds(const std::vector<std::string>& ids);
TUsbIds ReadUsbIds(const std::vector<std::string>& ids);

// "SSSS:BB:DD.F", as a PCI device is named everywhere else; `bus` has the segment above its lowest
// byte, `address` the number of the device above its lower 16 bits, and there the function.
std::string PciName(std::uint32_t bus, std::uint32_t address);

// The number that the device itself has: the last part of its instance id, where the system did not
// have to make one up.
std::optional<std::string> UsbSerialNumber(std::string_view instanceId);
// Whether the instance is a function of a device, and no device.
bool IsUsbInterface(std::string_view instanceId);

// Windows puts names of its own for what has none in brackets.
bool IsMakersName(std::string_view text);

// "0-3,8", as processors are listed everywhere else: those whose bits are set, beginning with
// number `first`.
std::string ProcessorList(std::uint64_t mask, std::uint32_t first);

}  // namespace hav::inventory

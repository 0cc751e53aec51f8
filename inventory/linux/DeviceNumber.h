// DeviceNumber: block devices by their number "MAJOR:MINOR", which file systems and disks
// have in common.
//
// Threads: pure functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "inventory/Text.h"

namespace hav::inventory {

inline bool IsDeviceNumber(std::string_view text) {
  const auto colon = text.find(':');
  return colon != std::string_view::npos && ParseNumber<std::uint32_t>(text.substr(0, colon)) &&
         ParseNumber<std::uint32_t>(text.substr(colon + 1));
}

// The id of the element of a block device.
inline std::string BlockId(const std::string& deviceNumber) { return "block:" + deviceNumber; }

}  // namespace hav::inventory

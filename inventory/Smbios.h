// Smbios: what the firmware's table of the System Management BIOS lists.
//
// Tables come from firmware and may be cut off, lie about their lengths, or name texts that
// are not there: what cannot be read is left out.
//
// Threads: pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/TCollection.h"

namespace hav::inventory {

// One memory module that is there; empty sockets are none.
struct TMemoryModule {
  std::string locator;
  std::optional<std::string> bank;
  std::optional<std::uint64_t> size;  // bytes
  std::optional<std::uint8_t> formFactor;
  std::optional<std::uint8_t> type;
  std::optional<std::uint32_t> speed, configuredSpeed;  // megatransfers per second
  std::optional<std::string> manufacturer, partNumber, serialNumber;
};

// `table`: the structures, one behind the other, without the entry point.
std::vector<TMemoryModule> MemoryModules(std::string_view table);

// Adds an element for each module, linked with the memory that they are.
void AddMemoryModules(const std::vector<TMemoryModule>& modules, TCollection& collection);

}  // namespace hav::inventory

#include "inventory/Smbios.h"

#include <algorithm>
#include <map>
#include <set>

#include "inventory/Text.h"

namespace hav::inventory {
namespace {

constexpr std::uint8_t kMemoryDevice = 17, kEndOfTable = 127;

// One structure: fields at fixed places, then texts that the fields name by number.
class TStructure {
 public:
  explicit TStructure(std::string_view fields, std::string_view texts)
      : m_fields(fields), m_texts(texts) {}

  std::uint8_t Type() const { return static_cast<std::uint8_t>(m_fields[0]); }

  // The field of `bytes` bytes, least first; empty beyond the structure.
  std::optional<std::uint32_t> Number(std::size_t at, std::size_t bytes) const {
    if (at + bytes > m_fields.size()) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = bytes; i-- > 0;)
      number = number << 8U | static_cast<unsigned char>(m_fields[at + i]);
    return number;
  }

  std::optional<std::uint8_t> Code(std::size_t at) const {
    const auto number = Number(at, 1);
    if (!number || *number == 0) return std::nullopt;
    return static_cast<std::uint8_t>(*number);
  }

  // What boards say whose maker did not fill the field in is none.
  std::optional<std::string> Text(std::size_t at) const {
    const auto number = Number(at, 1).value_or(0);
    auto rest = m_texts;
    for (std::uint32_t i = 1; i < number && !rest.empty(); ++i)
      rest.remove_prefix(std::min(rest.find('\0'), rest.size() - 1) + 1);
    const auto text = Trim(rest.substr(0, rest.find('\0')));
    if (number == 0 || text.empty() || !IsReadable(text) || IsPlaceholder(text))
      return std::nullopt;
    return std::string(text);
  }

 private:
  std::string_view m_fields, m_texts;
};

std::vector<TStructure> Structures(std::string_view table) {
  constexpr std::size_t kHeader = 4;
  std::vector<TStructure> structures;
  while (table.size() >= kHeader) {
    const std::size_t length = static_cast<unsigned char>(table[1]);
    // Texts end with an empty one.
    const auto end = table.find(std::string_view("\0\0", 2), length);
    if (length < kHeader || length > table.size()) break;
    const auto stop = end == table.npos ? table.size() : end;
    structures.emplace_back(table.substr(0, length), table.substr(length, stop - length));
    if (structures.back().Type() == kEndOfTable || end == table.npos) break;
    table.remove_prefix(end + 2);
  }
  return structures;
}

// In megabytes, or with the highest bit in kilobytes; larger ones in a field of their own. No
// module that is there has none: 0 is not known.
std::optional<std::uint64_t> SizeOf(const TStructure& device) {
  constexpr std::uint32_t kUnknown = 0xFFFF, kExtended = 0x7FFF, kKilobytes = 0x8000;
  constexpr std::uint64_t kKilo = 1024;
  const auto size = device.Number(0x0C, 2);
  if (!size || *size == kUnknown) return std::nullopt;
  const bool isInKilobytes = *size != kExtended && (*size & kKilobytes) != 0;
  const auto number = *size == kExtended ? device.Number(0x1C, 4).value_or(0) : *size & ~kKilobytes;
  if (number == 0) return std::nullopt;
  return number * (isInKilobytes ? kKilo : kKilo * kKilo);
}

std::optional<std::uint32_t> SpeedOf(const TStructure& device, std::size_t at) {
  const auto speed = device.Number(at, 2);
  return speed && *speed != 0 && *speed != 0xFFFF ? speed : std::nullopt;
}

// Names that modules do not have in common.
class TNames {
 public:
  std::string Take(const TMemoryModule& module) {
    auto name = module.locator;
    // Boards with several processors like to call the sockets of each the same.
    if (m_taken.count(name) != 0 && module.bank) name += ", " + *module.bank;
    int& number = m_numbers[name];
    for (;;) {
      auto numbered = ++number == 1 ? name : name + " " + std::to_string(number);
      if (m_taken.insert(numbered).second) return numbered;
    }
  }

 private:
  std::set<std::string> m_taken;
  std::map<std::string, int> m_numbers;  // the one that a name was given last
};

}  // namespace

std::vector<TMemoryModule> MemoryModules(std::string_view table) {
  std::vector<TMemoryModule> modules;
  for (const auto& device : Structures(table)) {
    if (device.Type() != kMemoryDevice || device.Number(0x0C, 2).value_or(0) == 0) continue;
    auto locator = device.Text(0x10);
    modules.push_back({locator ? *locator : "Module " + std::to_string(modules.size()),
                       device.Text(0x11), SizeOf(device), device.Code(0x0E), device.Code(0x12),
                       SpeedOf(device, 0x15), SpeedOf(device, 0x20), device.Text(0x17),
                       device.Text(0x1A), device.Text(0x18)});
  }
  return modules;
}

void AddMemoryModules(const std::vector<TMemoryModule>& modules, TCollection& collection) {
  TNames names;
  for (const auto& module : modules) {
    const auto name = names.Take(module);
    const std::string id = "module:" + name;
    collection.Add(id, "ORVSG_MemoryModule", name)
        .Describe(module.partNumber)
        .Set("BankLocator", module.bank)
        .Set("Size", module.size)
        .Set("FormFactor", module.formFactor)
        .Set("MemoryType", module.type)
        .Set("Speed", module.speed)
        .Set("ConfiguredSpeed", module.configuredSpeed)
        .Set("Manufacturer", module.manufacturer)
        .Set("PartNumber", module.partNumber)
        .Set("SerialNumber", module.serialNumber);
    collection.Link("ORVSG_RealizesMemory", id, "memory");
  }
}

}  // namespace hav::inventory

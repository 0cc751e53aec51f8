#include "inventory/linux/ISystemCalls.h"

#include "inventory/Text.h"
#include "inventory/linux/TRecordedCalls.h"
#include "inventory/linux/TSystemCalls.h"

namespace hav::inventory {

std::unique_ptr<ISystemCalls> MakeSystemCalls(const TMachine& machine) {
  if (machine.IsThisMachine()) return std::make_unique<TSystemCalls>();
  return std::make_unique<TRecordedCalls>(machine);
}

std::optional<std::string> KnownText(const ISystemCalls& calls, const std::string& device,
                                     const std::optional<std::string>& kind, const char* property,
                                     TCollection& failures) {
  if (auto text = PropertyOf(calls.DeviceProperties(device, failures), property)) return text;
  return kind ? PropertyOf(calls.HardwareProperties(*kind, failures), property) : std::nullopt;
}

std::optional<std::string> PropertyOf(const ISystemCalls::TProperties& properties,
                                      const char* name) {
  const auto found = properties.find(name);
  if (found == properties.end()) return std::nullopt;
  const auto text = Trim(found->second);
  if (text.empty() || !IsReadable(text)) return std::nullopt;
  return std::string(text);
}

std::string DecodeDatabaseText(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text.compare(i, 2, "\\x") == 0 && i + 4 <= text.size();
    const auto byte = escape ? ParseNumber<unsigned char>(text.substr(i + 2, 2), 16)
                             : std::optional<unsigned char>();
    decoded += byte ? static_cast<char>(*byte) : text[i];
    if (byte) i += 3;
  }
  return decoded;
}

}  // namespace hav::inventory

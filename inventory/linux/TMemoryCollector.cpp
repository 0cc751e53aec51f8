#include "inventory/linux/TMemoryCollector.h"

#include "inventory/Smbios.h"
#include "inventory/linux/TSystemFiles.h"

namespace hav::inventory {
namespace {

constexpr const char* kPath = "/proc/meminfo";
constexpr const char* kModules = "/sys/firmware/dmi/tables/DMI";

// "24684096 kB" in bytes.
std::optional<std::uint64_t> Bytes(TSystemFiles& files, const std::string& text) {
  const auto words = Words(text);
  if (words.size() == 2 && words[1] == "kB")
    if (const auto bytes = Times(ParseNumber<std::uint64_t>(words[0]), 1024)) return bytes;
  if (files.Readable(kPath, text)) files.Fail(kPath, "\"" + text + "\" is no size in kB");
  return std::nullopt;
}

void AddMemory(TSystemFiles& files, TCollection& collection) {
  if (!files.Require(kPath)) return;
  const auto text = files.Text(kPath);
  if (!text) return;
  const auto entries = KeyValues(*text, ':');
  if (entries.count("MemTotal") == 0) return files.Fail(kPath, "has no MemTotal");

  const auto bytes = [&](const char* key) -> std::optional<std::uint64_t> {
    const auto found = entries.find(key);
    if (found == entries.end()) return std::nullopt;
    return Bytes(files, found->second);
  };
  collection.AddSystemDevice("memory", "ORVSG_Memory", "Memory")
      .Set("TotalSize", bytes("MemTotal"))
      .Set("AvailableSize", bytes("MemAvailable"))
      .Set("FreeSize", bytes("MemFree"))
      .Set("SwapSize", bytes("SwapTotal"))
      .Set("SwapFreeSize", bytes("SwapFree"));
}

}  // namespace

void TMemoryCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  AddMemory(files, collection);
  if (const auto table = files.Text(kModules)) AddMemoryModules(MemoryModules(*table), collection);
}

}  // namespace hav::inventory

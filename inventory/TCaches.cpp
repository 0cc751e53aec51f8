#include "inventory/TCaches.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "inventory/Text.h"

namespace hav::inventory {
namespace {

// "CPU0 L1 data cache", "CPU0+CPU1 L3 cache"
std::string CacheName(const TCaches::TKind& kind) {
  std::string name;
  for (const auto index : kind.processors) name += (name.empty() ? "" : "+") + ProcessorName(index);
  name += " L" + std::to_string(kind.level);
  if (kind.type == TCaches::kData) name += " data";
  if (kind.type == TCaches::kInstruction) name += " instruction";
  return name + " cache";
}

template <class T>
std::optional<T> Known(T number) {
  return number == 0 ? std::nullopt : std::optional<T>(number);
}

}  // namespace

std::string ProcessorName(unsigned index) { return "CPU" + std::to_string(index); }
std::string ProcessorId(unsigned index) { return "processor:" + std::to_string(index); }

bool TCaches::TOrder::operator()(const TKind& a, const TKind& b) const {
  const auto fields = [](const TKind& kind) {
    return std::tie(kind.processors, kind.level, kind.type, kind.size, kind.lineSize, kind.ways);
  };
  return fields(a) < fields(b);
}

void TCaches::SetLevels(TElement& processor, unsigned index) const {
  constexpr std::array<const char*, 3> kLevels{"L1Enabled", "L2Enabled", "L3Enabled"};
  std::array<bool, kLevels.size()> found{};
  bool any = false;
  for (const auto& [kind, count] : m_caches) {
    const auto& users = kind.processors;
    if (std::find(users.begin(), users.end(), index) == users.end()) continue;
    any = true;
    if (kind.level >= 1 && kind.level <= found.size()) found[kind.level - 1U] = true;
  }
  for (std::size_t i = 0; any && i < found.size(); ++i)
    processor.Set(kLevels[i], std::optional<bool>(found[i]));
}

void TCaches::AddTo(TCollection& collection) const {
  std::map<std::string, int> names;
  for (const auto& [kind, count] : m_caches) {
    auto name = CacheName(kind);
    // Processors with unlike cores have unlike caches of one level.
    if (const int number = ++names[name]; number > 1) name += " " + std::to_string(number);
    const std::string id = "cache:" + name;
    collection.Add(id, "ORVSG_CacheMemory", name)
        .Set("Level", std::optional(static_cast<std::uint16_t>(kind.level)))
        .Set("CacheType", std::optional(static_cast<std::uint16_t>(kind.type)))
        .Set("NumberOfCaches", std::optional(count))
        .Set("Size", Known(kind.size))
        .Set("TotalSize", Times(Known(kind.size), count))
        .Set("LineSize", Known(kind.lineSize))
        .Set("Associativity", kind.ways);
    for (const auto index : kind.processors)
      collection.Link("ORVSG_ProcessorCache", id, ProcessorId(index));
  }
}

}  // namespace hav::inventory

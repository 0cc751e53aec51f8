#include "inventory/windows/TProcessorCollector.h"

#include <windows.h>

#include <cstring>
#include <vector>

#include "inventory/TCaches.h"
#include "inventory/Text.h"
#include "inventory/windows/ProcessorRelations.h"
#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

constexpr const wchar_t* kRegistryKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

using TAffinities = std::vector<GROUP_AFFINITY>;

bool Intersect(const TAffinities& a, const TAffinities& b) {
  for (const auto& x : a)
    for (const auto& y : b)
      if (x.Group == y.Group && (x.Mask & y.Mask) != 0) return true;
  return false;
}

std::uint32_t CountThreads(const TAffinities& affinities) {
  std::uint32_t count = 0;
  for (const auto& affinity : affinities)
    for (auto mask = affinity.Mask; mask != 0; mask &= mask - 1) ++count;
  return count;
}

TCaches::EType TypeOf(PROCESSOR_CACHE_TYPE type) {
  switch (type) {
    case CacheUnified: return TCaches::kUnified;
    case CacheInstruction: return TCaches::kInstruction;
    case CacheData: return TCaches::kData;
    default: return TCaches::kOther;
  }
}

// The number that follows `word` in "Intel64 Family 6 Model 85 Stepping 7".
std::optional<std::uint32_t> NumberAfter(const std::optional<std::string>& identifier,
                                         std::string_view word) {
  const auto words = Words(identifier ? std::string_view(*identifier) : std::string_view());
  for (std::size_t i = 0; i + 1 < words.size(); ++i)
    if (words[i] == word) return ParseNumber<std::uint32_t>(words[i + 1]);
  return std::nullopt;
}

class TProcessorList {
 public:
  // False, with a failure added, when Windows does not give it.
  bool Read(TCollection& collection) {
    return ForEachProcessorRelation(RelationAll, collection,
                                    [this](const auto& entry) { Note(entry); });
  }

  std::vector<TAffinities> packages;
  std::vector<TAffinities> cores;
  std::vector<CACHE_RELATIONSHIP> caches;

 private:
  void Note(const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX& entry) {
    if (entry.Relationship == RelationCache) caches.push_back(entry.Cache);
    if (entry.Relationship == RelationProcessorCore) cores.push_back(AffinitiesOf(entry.Processor));
    if (entry.Relationship == RelationProcessorPackage)
      packages.push_back(AffinitiesOf(entry.Processor));
  }

  static TAffinities AffinitiesOf(const PROCESSOR_RELATIONSHIP& processor) {
    return TAffinities(processor.GroupMask, processor.GroupMask + processor.GroupCount);
  }
};

void NoteCaches(const TProcessorList& list, TCaches& caches) {
  for (const auto& cache : list.caches) {
    TCaches::TKind kind{{}, cache.Level, TypeOf(cache.Type), cache.CacheSize, cache.LineSize, {}};
    for (unsigned index = 0; index < list.packages.size(); ++index)
      if (Intersect({cache.GroupMask}, list.packages[index])) kind.processors.push_back(index);
    if (cache.Associativity == CACHE_FULLY_ASSOCIATIVE)
      kind.ways = 0;
    else if (cache.Associativity != 0)
      kind.ways = cache.Associativity;
    caches.Add(kind);
  }
}

void AddProcessor(TCollection& collection, const TProcessorList& list, const TCaches& caches,
                  unsigned index) {
  constexpr std::uint16_t kEnabled = 1;
  const auto& package = list.packages[index];
  std::uint32_t cores = 0;
  for (const auto& core : list.cores) cores += Intersect(core, package) ? 1 : 0;
  const auto identifier = RegistryText(kRegistryKey, L"Identifier");
  const auto megahertz = RegistryNumber(kRegistryKey, L"~MHz");
  auto& processor =
      collection.AddSystemDevice(ProcessorId(index), "ORVSG_Processor", ProcessorName(index));
  processor.Describe(RegistryText(kRegistryKey, L"ProcessorNameString"))
      .Set("Manufacturer", RegistryText(kRegistryKey, L"VendorIdentifier"))
      .Set("SocketNumber", std::optional(static_cast<std::uint32_t>(index)))
      .Set("CPUStatus", std::optional(kEnabled))
      .Set("NumberOfCores", cores == 0 ? std::nullopt : std::optional(cores))
      .Set("NumberOfLogicalProcessors", std::optional(CountThreads(package)))
      .Set("FamilyNumber", NumberAfter(identifier, "Family"))
      .Set("ModelNumber", NumberAfter(identifier, "Model"))
      .Set("Stepping", NumberAfter(identifier, "Stepping"));
  if (megahertz)
    processor.Set("MaxClockSpeedMHz", std::optional(static_cast<std::uint32_t>(*megahertz)));
  caches.SetLevels(processor, index);
}

}  // namespace

void TProcessorCollector::Collect(TCollection& collection) {
  TProcessorList list;
  if (!list.Read(collection)) return;
  TCaches caches;
  NoteCaches(list, caches);
  for (unsigned index = 0; index < list.packages.size(); ++index)
    AddProcessor(collection, list, caches, index);
  caches.AddTo(collection);
}

}  // namespace hav::inventory

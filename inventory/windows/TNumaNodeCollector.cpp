#include "inventory/windows/TNumaNodeCollector.h"

#include <windows.h>

#include <vector>

#include "inventory/DeviceIds.h"
#include "inventory/windows/ProcessorRelations.h"

namespace hav::inventory {
namespace {

// Processors are counted group by group.
std::uint32_t FirstOfGroup(WORD group) {
  std::uint32_t first = 0;
  for (WORD before = 0; before < group; ++before) first += GetActiveProcessorCount(before);
  return first;
}

void AddNode(const NUMA_NODE_RELATIONSHIP& about, TCollection& collection) {
  const auto number = std::to_string(about.NodeNumber);
  const auto& group = about.GroupMask;
  const auto processors = ProcessorList(group.Mask, FirstOfGroup(group.Group));
  ULONGLONG free = 0;
  const bool isKnown =
      GetNumaAvailableMemoryNodeEx(static_cast<USHORT>(about.NodeNumber), &free) != FALSE;
  collection.AddSystemDevice("node:" + number, "ORVSG_NumaNode", "Node " + number)
      .Set("NodeNumber", std::optional<std::uint32_t>(about.NodeNumber))
      .Set("LogicalProcessors", processors.empty() ? std::nullopt : std::optional(processors))
      .Set("FreeSize", isKnown ? std::optional<std::uint64_t>(free) : std::nullopt);
}

}  // namespace

void TNumaNodeCollector::Collect(TCollection& collection) {
  ForEachProcessorRelation(RelationNumaNode, collection,
                           [&](const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX& entry) {
                             AddNode(entry.NumaNode, collection);
                           });
}

}  // namespace hav::inventory

// TNumaNodeCollector: the NUMA nodes.
//
// Calls: GetLogicalProcessorInformationEx  nodes and their processors
//        GetNumaAvailableMemoryNodeEx      free memory
//        GetActiveProcessorCount           where the numbers of a group of processors begin
//
// Windows tells neither all the memory of a node nor how far it is from others.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TNumaNodeCollector : public ICollector {
 public:
  const char* Name() const override { return "NUMA nodes"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

// TNumaNodeCollector: the NUMA nodes.
//
// Reads: /sys/devices/system/node/nodeN/*  processors, memory, distances
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TNumaNodeCollector : public ICollector {
 public:
  explicit TNumaNodeCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "NUMA nodes"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

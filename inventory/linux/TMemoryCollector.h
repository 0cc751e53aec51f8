// TMemoryCollector: main memory and swap space, and the modules that the memory is made of.
//
// Reads: /proc/meminfo                  sizes
//        /sys/firmware/dmi/tables/DMI   modules; for root only
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TMemoryCollector : public ICollector {
 public:
  explicit TMemoryCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "memory"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

// TMemoryCollector: main memory and page files, and the modules that the memory is made of.
//
// Calls: GlobalMemoryStatusEx, GetSystemFirmwareTable
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TMemoryCollector : public ICollector {
 public:
  const char* Name() const override { return "memory"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

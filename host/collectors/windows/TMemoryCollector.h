// TMemoryCollector: main memory and page files.
//
// Calls: GlobalMemoryStatusEx
#pragma once

#include "host/collectors/ICollector.h"

namespace havhost {

class TMemoryCollector : public ICollector {
 public:
  const char* Name() const override { return "memory"; }
  void Collect(TCollection& collection) override;
};

}  // namespace havhost

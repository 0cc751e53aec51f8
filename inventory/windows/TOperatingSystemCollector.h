// TOperatingSystemCollector: the operating system.
//
// Calls: RtlGetVersion         the version, which the documented calls hide from programs that
//                              do not name it in their manifest
//        GetNativeSystemInfo   the architecture
//        GetTickCount64, GetSystemTimeAsFileTime  when the system was started
// Reads: registry, SOFTWARE\Microsoft\Windows NT\CurrentVersion  the name of the product
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TOperatingSystemCollector : public ICollector {
 public:
  const char* Name() const override { return "operating system"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

// TProcessorCollector: processor packages and their caches.
//
// Calls: GetLogicalProcessorInformationEx  packages, cores, threads, caches
// Reads: registry, HARDWARE\DESCRIPTION\System\CentralProcessor\0  names and clock speed; the
//        registry does not say which thread is in which package, so all packages are taken to
//        be of the kind of the first
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TProcessorCollector : public ICollector {
 public:
  const char* Name() const override { return "processors"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

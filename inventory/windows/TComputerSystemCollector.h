// TComputerSystemCollector: the computer as a whole.
//
// Calls: GetComputerNameExW                      the name
// Reads: registry, HARDWARE\DESCRIPTION\System\BIOS  maker, model and firmware
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TComputerSystemCollector : public ICollector {
 public:
  const char* Name() const override { return "computer system"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

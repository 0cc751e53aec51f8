// TPciCollector: the devices on PCI buses.
//
// Calls: SetupDiGetClassDevsW and what goes with it  the devices that are there, their ids and
// names
//
// The maker's name is that of the driver's maker, where the driver is not one of Windows itself.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TPciCollector : public ICollector {
 public:
  const char* Name() const override { return "PCI devices"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

// TUsbCollector: the devices on USB buses, and which hub each is plugged into.
//
// Calls: SetupDiGetClassDevsW and what goes with it  the devices that are there, their ids and
// names
//        CM_Get_Parent, CM_Get_Device_IDW            the hub
//
// A device's own name is its model; the driver's stands in where it says none. The speed of a link
// is told by hubs to administrators only, and left out.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TUsbCollector : public ICollector {
 public:
  const char* Name() const override { return "USB devices"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

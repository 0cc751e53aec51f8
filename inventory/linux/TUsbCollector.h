// TUsbCollector: the devices on USB buses, and which hub each is plugged into.
//
// Reads: /sys/bus/usb/devices/DEVICE/*  numbers, class, speed, what the device says of itself
// Uses:  libudev                        names of maker and model where it says nothing
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TUsbCollector : public ICollector {
 public:
  explicit TUsbCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "USB devices"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

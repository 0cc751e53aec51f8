// TPciCollector: the devices on PCI buses.
//
// Reads: /sys/bus/pci/devices/DEVICE/*  numbers, class, driver, NUMA node
// Uses:  libudev                        names of maker and model
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TPciCollector : public ICollector {
 public:
  explicit TPciCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "PCI devices"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

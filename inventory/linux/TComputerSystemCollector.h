// TComputerSystemCollector: the computer as a whole.
//
// Reads: /proc/sys/kernel/hostname, else /etc/hostname  the name, without which there is no
//                                                       computer system in the inventory
//        /sys/class/dmi/id/*                            maker, model, numbers, firmware
//        /proc/device-tree/model, serial-number         the same on machines without DMI
//        /proc/cpuinfo                                  whether there is a hypervisor
//        /sys/hypervisor/type, /proc/device-tree/hypervisor/compatible, /proc/ppc64/lparcfg,
//        /proc/sysinfo                                  which one there is
// Calls: cpuid                                          the same
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TComputerSystemCollector : public ICollector {
 public:
  explicit TComputerSystemCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "computer system"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

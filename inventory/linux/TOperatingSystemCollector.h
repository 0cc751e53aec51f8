// TOperatingSystemCollector: the operating system.
//
// Reads: /etc/os-release, else /usr/lib/os-release  name and version of the distribution
//        /proc/sys/kernel/ostype, osrelease         the kernel
//        /proc/stat, /proc/uptime                   when the system was started
// Calls: uname                                      the architecture
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TOperatingSystemCollector : public ICollector {
 public:
  explicit TOperatingSystemCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "operating system"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

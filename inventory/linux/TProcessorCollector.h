// TProcessorCollector: processor packages and their caches.
//
// Uses:  hwloc       packages, cores, threads, caches, names and numbers of the model
// Reads: /sys/devices/system/cpu/cpuN/cpufreq/*  clock speeds
//        /proc/cpuinfo                           clock speed where there is no cpufreq;
//                                                microcode
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TProcessorCollector : public ICollector {
 public:
  explicit TProcessorCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "processors"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

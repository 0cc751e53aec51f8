// TTopology: the processors, caches and threads of a machine, as hwloc finds them.
//
// Ownership: owns the hwloc topology; what hwloc hands out lives as long as this.
// Threads:   loading another machine's folder changes the environment of the process for
//            that time, since hwloc takes a root folder in no other way.
// Errors:    std::runtime_error when the topology cannot be read.
#pragma once

#include <hwloc.h>

#include "inventory/TMachine.h"

namespace hav::inventory {

class TTopology {
 public:
  explicit TTopology(const TMachine& machine);
  ~TTopology();
  TTopology(const TTopology&) = delete;
  TTopology& operator=(const TTopology&) = delete;

  hwloc_topology_t Get() const { return m_topology; }

 private:
  hwloc_topology_t m_topology = nullptr;
};

}  // namespace hav::inventory

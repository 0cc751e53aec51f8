// TNetworkPortCollector: network ports.
//
// Reads: /sys/class/net/PORT/*  address, state, speed, driver
// Calls: getifaddrs             network addresses
// Uses:  libudev                names of maker and model
//
// A port with a device behind it is a physical one.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TNetworkPortCollector : public ICollector {
 public:
  explicit TNetworkPortCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "network ports"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

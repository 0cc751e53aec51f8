// TNetworkPortCollector: network ports.
//
// Calls: GetAdaptersAddresses  names, addresses, state and speed
//        GetIfEntry2           whether there is hardware behind the port
//
// The loopback port is left out.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TNetworkPortCollector : public ICollector {
 public:
  const char* Name() const override { return "network ports"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

// TSystemCalls: asks the system that the program runs on.
//
// Calls: statvfs, getifaddrs, uname, the processor's own instruction for its identity, and
//        libudev for the databases of devices and of hardware.
#pragma once

#include "inventory/linux/ISystemCalls.h"

namespace hav::inventory {

class TSystemCalls : public ISystemCalls {
 public:
  std::optional<TUsage> FileSystemUsage(const std::string& mountPoint,
                                        TCollection& failures) const override;
  TProperties DeviceProperties(const std::string& device, TCollection& failures) const override;
  TAddresses NetworkAddresses(TCollection& failures) const override;
  TProperties HardwareProperties(const std::string& kind, TCollection& failures) const override;
  std::optional<std::string> Architecture(TCollection& failures) const override;
  std::optional<std::string> HypervisorSignature(TCollection& failures) const override;
};

}  // namespace hav::inventory

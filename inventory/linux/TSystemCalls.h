// TSystemCalls: asks the system that the program runs on.
//
// Calls: statvfs, getifaddrs, uname, the processor's own instruction for its identity, and
//        libudev for the databases of devices and of hardware.
#pragma once

#include "inventory/linux/ISystemCalls.h"

namespace hav::inventory {

// How large the file system is that holds `path`.
std::optional<ISystemCalls::TUsage> UsageOf(const std::string& path, TCollection& failures);

class TSystemCalls : public ISystemCalls {
 public:
  std::optional<TUsage> FileSystemUsage(const std::string& mountPoint,
                                        const std::string& deviceNumber,
                                        TCollection& failures) const override;
  TProperties DeviceProperties(const std::string& device, TCollection& failures) const override;
  TAddresses NetworkAddresses(TCollection& failures) const override;
  TProperties HardwareProperties(const std::string& kind, TCollection& failures) const override;
  std::optional<std::string> Architecture(TCollection& failures) const override;
  std::optional<std::string> HypervisorSignature(TCollection& failures) const override;
};

}  // namespace hav::inventory

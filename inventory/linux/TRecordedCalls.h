// TRecordedCalls: the answers of another machine, from files of its folder. Where a file is
// not there, nothing is known; but where the folder shows the kernel that the program runs on,
// as a container sees its host, that kernel is asked.
//
// Reads: /run/udev/data/DEVICE    the device database as it is on a running system
//        /calls/filesystems       "SIZE AVAILABLE MOUNTPOINT" for each file system, in bytes
//        /calls/addresses         "PORT ADDRESS" for each network address
//        /calls/hardware          "KIND PROPERTY=TEXT" for each text of the hardware database
//        /calls/hypervisor        the signature of the hypervisor
//        /proc/hwloc-nofile-info  "Architecture: NAME", as hwloc-gather-topology writes it;
//                                 else /proc/sys/kernel/arch, else what /proc/cpuinfo shows
// Calls: statfs, stat, statvfs, uname
#pragma once

#include "inventory/linux/ISystemCalls.h"

namespace hav::inventory {

class TRecordedCalls : public ISystemCalls {
 public:
  explicit TRecordedCalls(const TMachine& machine) : m_machine(machine) {}

  std::optional<TUsage> FileSystemUsage(const std::string& mountPoint,
                                        const std::string& deviceNumber,
                                        TCollection& failures) const override;
  TProperties DeviceProperties(const std::string& device, TCollection& failures) const override;
  TAddresses NetworkAddresses(TCollection& failures) const override;
  TProperties HardwareProperties(const std::string& kind, TCollection& failures) const override;
  std::optional<std::string> Architecture(TCollection& failures) const override;
  std::optional<std::string> HypervisorSignature(TCollection& failures) const override;

 private:
  bool ShowsThisKernel() const;

  TMachine m_machine;
};

}  // namespace hav::inventory

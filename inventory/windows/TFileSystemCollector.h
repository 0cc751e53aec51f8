// TFileSystemCollector: the volumes with a file system that are mounted somewhere.
//
// Calls: FindFirstVolumeW, GetVolumePathNamesForVolumeNameW  volumes and their places
//        GetVolumeInformationW, GetDiskFreeSpaceExW          format, label and size
//        IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS                the partition beneath
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TFileSystemCollector : public ICollector {
 public:
  const char* Name() const override { return "file systems"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

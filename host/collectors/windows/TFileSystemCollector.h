// TFileSystemCollector: the volumes with a file system that are mounted somewhere.
//
// Calls: FindFirstVolumeW, GetVolumePathNamesForVolumeNameW  volumes and their places
//        GetVolumeInformationW, GetDiskFreeSpaceExW          format, label and size
//        IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS                the partition beneath
#pragma once

#include "host/collectors/ICollector.h"

namespace havhost {

class TFileSystemCollector : public ICollector {
 public:
  const char* Name() const override { return "file systems"; }
  void Collect(TCollection& collection) override;
};

}  // namespace havhost

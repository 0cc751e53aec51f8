// TDiskCollector: disks and their partitions.
//
// Calls: DeviceIoControl on \\.\PhysicalDriveN, which needs no rights for these:
//          IOCTL_STORAGE_QUERY_PROPERTY        names, numbers, bus, medium, block sizes
//          IOCTL_DISK_GET_DRIVE_GEOMETRY_EX    size
//          IOCTL_DISK_GET_DRIVE_LAYOUT_EX      partitions
//
// Ids are those of DiskId.h.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TDiskCollector : public ICollector {
 public:
  const char* Name() const override { return "disks"; }
  void Collect(TCollection& collection) override;
};

}  // namespace hav::inventory

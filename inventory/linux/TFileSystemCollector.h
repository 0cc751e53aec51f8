// TFileSystemCollector: the file systems that are mounted and hold data.
//
// Reads: /proc/self/mountinfo         what is mounted where
//        /proc/filesystems            which types have no device and so hold no data
//        /sys/class/block/DEVICE/dev  the device of a file system with a number of its own
// Calls: statvfs                      size and free space
// Uses:  libudev                      label and identifier
//
// One file system may be mounted in many places; it is one element, named after the place
// where the whole of it is mounted, or the first. A file system of a server has no size: to
// ask a server that is gone would wait for ever.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TFileSystemCollector : public ICollector {
 public:
  explicit TFileSystemCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "file systems"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

// TDiskCollector: disks, partitions, and volumes made of them.
//
// Reads: /sys/block/DISK/*            size, blocks, model and numbers of each disk
//        /sys/block/DISK/PARTITION/*  number, place and size of each partition
//        /sys/block/VOLUME/dm, md, slaves  how a volume is made
// Uses:  libudev                      names and numbers that only the device database has
//
// An element here has the id "block:MAJOR:MINOR". RAM disks, loop devices, and disk drives
// without a medium are left out; an optical drive without a disc has no size.
#pragma once

#include "inventory/ICollector.h"

namespace hav::inventory {

class TDiskCollector : public ICollector {
 public:
  explicit TDiskCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "disks"; }
  void Collect(TCollection& collection) override;

 private:
  TMachine m_machine;
};

}  // namespace hav::inventory

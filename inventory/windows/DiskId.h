// DiskId: the ids of disks and partitions, which volumes and disks have in common. A
// partition is known by where it starts, since its number can change.
//
// Threads: pure functions.
#pragma once

#include <cstdint>
#include <string>

namespace hav::inventory {

inline std::string DiskId(unsigned long disk) { return "disk:" + std::to_string(disk); }

inline std::string PartitionId(unsigned long disk, std::int64_t offset) {
  return "partition:" + std::to_string(disk) + ":" + std::to_string(offset);
}

}  // namespace hav::inventory

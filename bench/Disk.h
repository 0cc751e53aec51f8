// Disk: the object that all subjects store: twelve properties, two of them string keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace havbench {

struct Disk {
  std::string systemName;  // key
  std::string deviceId;    // key
  std::string caption;
  std::string vendor;
  std::string model;
  std::uint64_t size;
  std::uint64_t freeSpace;
  std::uint32_t blockSize;
  std::uint32_t sectors;
  std::uint32_t cylinders;
  bool removable;
  bool healthy;

  // The object path, which the alternatives use as their key.
  std::string Path() const {
    return "Bench_Disk.DeviceID=\"" + deviceId + "\",SystemName=\"" + systemName + "\"";
  }
};

inline Disk DiskNumber(std::size_t i) {
  const std::string number = std::to_string(i);
  return {"system-" + std::to_string(i % 97),
          "disk-" + number,
          "Disk number " + number,
          "Vendor " + std::to_string(i % 13),
          "Model " + std::to_string(i % 101),
          std::uint64_t{1000000007} * i,
          std::uint64_t{500000003} * i,
          static_cast<std::uint32_t>(512 << (i % 4)),
          static_cast<std::uint32_t>(i * 63),
          static_cast<std::uint32_t>(i % 1024),
          i % 3 == 0,
          i % 7 != 0};
}

// Numbers in an order that no cache foresees: every i below n, once.
inline std::size_t Shuffled(std::size_t i, std::size_t n) {
  return static_cast<std::size_t>((std::uint64_t{i} * 2654435761ULL + 12345) % n);
}

}  // namespace havbench

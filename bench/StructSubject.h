// StructSubject: what is left when everything is known in advance: a C++ struct of the same
// properties in a hash map by path. No general store can be faster or smaller by much; it is
// the line that the others are measured against.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/Disk.h"

namespace havbench {

class StructSubject {
 public:
  static constexpr const char* kName = "struct";

  void Make(const Disk& disk);
  void Prepare(const std::vector<std::size_t>& numbers);
  bool Get(std::size_t place) const;
  std::uint64_t GetAndRead(std::size_t place) const;
  std::uint64_t SizeOf(std::size_t place) const;
  std::size_t Enumerate() const;
  std::uint64_t TotalSize() const;

 private:
  std::unordered_map<std::string, std::shared_ptr<const Disk>> m_disks;
  std::vector<std::string> m_paths;
  std::vector<std::shared_ptr<const Disk>> m_prepared;
};

}  // namespace havbench

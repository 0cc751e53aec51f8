#include "bench/StructSubject.h"

namespace havbench {

void StructSubject::Make(const Disk& disk) {
  m_disks[disk.Path()] = std::make_shared<const Disk>(disk);
}

void StructSubject::Prepare(const std::vector<std::size_t>& numbers) {
  for (const std::size_t number : numbers) {
    m_paths.push_back(DiskNumber(number).Path());
    m_prepared.push_back(m_disks.at(m_paths.back()));
  }
}

bool StructSubject::Get(std::size_t place) const {
  return m_disks.find(m_paths[place]) != m_disks.end();
}

std::uint64_t StructSubject::GetAndRead(std::size_t place) const {
  const std::shared_ptr<const Disk> disk = m_disks.find(m_paths[place])->second;
  return disk->size;
}

std::uint64_t StructSubject::SizeOf(std::size_t place) const { return m_prepared[place]->size; }

std::size_t StructSubject::Enumerate() const {
  std::size_t visited = 0;
  for (const auto& entry : m_disks) visited += entry.second != nullptr;
  return visited;
}

std::uint64_t StructSubject::TotalSize() const {
  std::uint64_t total = 0;
  for (const auto& entry : m_disks) total += entry.second->size;
  return total;
}

}  // namespace havbench

#include "model/TInstanceStore.h"

#include <utility>

#include "model/Snapshot.h"

namespace NORVHAV20 {

void TInstanceStore::Add(std::string path, const boost::shared_ptr<ICIMInstance>& instance) {
  // Both new nodes are made before anything is removed.
  TMap made;
  made.emplace(std::move(path), instance);
  const auto known = m_entries.find(instance.get());
  if (known == m_entries.end()) {
    m_entries.emplace(instance.get(), m_instances.end());
  } else {
    const auto keep = instance;
    m_instances.erase(known->second);
    known->second = m_instances.end();
  }
  const auto standing = m_instances.find(made.begin()->first);
  if (standing != m_instances.end()) Erase(standing);
  m_entries.find(instance.get())->second =
      m_instances.insert(made.extract(made.begin())).position;
}

void TInstanceStore::Remove(const std::string& path, const ICIMInstance& instance) {
  const auto known = m_entries.find(&instance);
  if (known != m_entries.end()) Erase(known->second);
  const auto standing = m_instances.find(path);
  if (standing != m_instances.end()) Erase(standing);
}

boost::shared_ptr<ICIMInstance> TInstanceStore::Find(const std::string& path) const {
  const auto found = m_instances.find(path);
  return found == m_instances.end() ? nullptr : found->second;
}

TInstanceStore::TInstances TInstanceStore::All() const { return Snapshot(m_instances); }

void TInstanceStore::Swap(TInstanceStore& other) noexcept {
  m_instances.swap(other.m_instances);
  m_entries.swap(other.m_entries);
}

// The instance goes last, when both tables are whole again: its end may call back.
void TInstanceStore::Erase(TMap::iterator entry) {
  const auto last = std::move(entry->second);
  m_entries.erase(last.get());
  m_instances.erase(entry);
}

}  // namespace NORVHAV20

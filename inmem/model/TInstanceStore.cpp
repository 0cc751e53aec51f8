#include "inmem/model/TInstanceStore.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <utility>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

// One stored instance, with the text of its path behind it in the same block of memory. It
// has no instance any more once it is erased.
struct TInstanceStore::TEntry {
  boost::shared_ptr<ICIMInstance> instance;
  std::size_t hash;
  std::uint32_t length;
  // In the order of the paths, when that was last put right.
  std::uint32_t place = 0;

  std::string_view Path() const noexcept {
    return {reinterpret_cast<const char*>(this + 1), length};
  }

  static TEntry* Make(std::string_view path, std::size_t hash,
                      const boost::shared_ptr<ICIMInstance>& instance) {
    void* memory = ::operator new(sizeof(TEntry) + path.size());
    auto* entry = new (memory) TEntry{instance, hash, static_cast<std::uint32_t>(path.size())};
    if (!path.empty()) std::memcpy(static_cast<void*>(entry + 1), path.data(), path.size());
    return entry;
  }
  static void Destroy(TEntry* entry) noexcept {
    entry->~TEntry();
    ::operator delete(entry);
  }
};

namespace {

constexpr std::size_t kSmallestTable = 8;

std::size_t HashOf(std::string_view path) { return std::hash<std::string_view>()(path); }

}  // namespace

TInstanceStore::~TInstanceStore() {
  for (TEntry* entry : m_order) {
    if (entry->instance)
      if (auto* own = TInmemInstance::Own(*entry->instance)) own->ForgetStoreEntry(entry);
    TEntry::Destroy(entry);
  }
}

// Instances are let go when the store is whole again: their end may call back.
void TInstanceStore::Add(std::string_view path, const boost::shared_ptr<ICIMInstance>& instance) {
  const std::size_t hash = HashOf(path);
  // Everything that can fail comes first.
  if (4 * (m_size + 1) > 3 * m_table.size()) GrowTable();
  if (m_order.size() == m_order.capacity()) m_order.reserve(2 * m_order.size() + 8);
  std::unique_ptr<TEntry, void (*)(TEntry*)> made(TEntry::Make(path, hash, instance),
                                                  &TEntry::Destroy);
  auto* own = TInmemInstance::Own(*instance);
  TEntry* const before = EntryOf(*instance);
  const bool remembered = own && (!own->StoreEntry() || own->StoreEntry() == before);
  if (!remembered) m_others[instance.get()] = made.get();

  TEntry* const entry = made.release();
  const auto former = before ? Erase(*before) : nullptr;
  TEntry* const standing = FindEntry(path, hash);
  const auto displaced = standing ? Erase(*standing) : nullptr;
  if (remembered) own->RememberStoreEntry(entry);
  Enter(entry);
  const auto all = std::move(m_all);
}

void TInstanceStore::Remove(std::string_view path, ICIMInstance& instance) {
  const auto removed = RemoveEntryOf(instance);
  TEntry* const standing = FindEntry(path, HashOf(path));
  const auto displaced = standing ? Erase(*standing) : nullptr;
  const auto all = std::move(m_all);
}

bool TInstanceStore::Remove(ICIMInstance& instance) noexcept {
  const auto removed = RemoveEntryOf(instance);
  const auto all = std::move(m_all);
  return removed != nullptr;
}

boost::shared_ptr<ICIMInstance> TInstanceStore::RemoveEntryOf(ICIMInstance& instance) noexcept {
  TEntry* const stored = EntryOf(instance);
  return stored ? Erase(*stored) : nullptr;
}

boost::shared_ptr<ICIMInstance> TInstanceStore::Find(std::string_view path) const {
  const TEntry* entry = FindEntry(path, HashOf(path));
  return entry ? entry->instance : nullptr;
}

boost::shared_ptr<const TInstanceStore::TInstances> TInstanceStore::All() const {
  if (!m_all) {
    PutInOrder();
    auto all = boost::make_shared<TInstances>();
    all->reserve(m_order.size());
    for (TEntry* entry : m_order) {
      entry->place = static_cast<std::uint32_t>(all->size());
      all->push_back(entry->instance);
    }
    m_all = std::move(all);
  }
  return m_all;
}

std::size_t TInstanceStore::PlaceIn(const TInstances& all,
                                    const TInmemInstance& instance) noexcept {
  const TEntry* entry = instance.StoreEntry();
  return entry && entry->place < all.size() ? entry->place : all.size();
}

void TInstanceStore::Swap(TInstanceStore& other) noexcept {
  ModelClock::LinksChanged();
  m_table.swap(other.m_table);
  std::swap(m_size, other.m_size);
  m_order.swap(other.m_order);
  std::swap(m_ordered, other.m_ordered);
  std::swap(m_erased, other.m_erased);
  m_all.swap(other.m_all);
  m_others.swap(other.m_others);
}

TInstanceStore::TEntry* TInstanceStore::FindEntry(std::string_view path,
                                                  std::size_t hash) const noexcept {
  if (m_table.empty()) return nullptr;
  const std::size_t mask = m_table.size() - 1;
  for (std::size_t slot = hash & mask; m_table[slot]; slot = (slot + 1) & mask)
    if (m_table[slot]->hash == hash && m_table[slot]->Path() == path) return m_table[slot];
  return nullptr;
}

// What an instance remembers may be its entry in another class's store, so it is looked up.
TInstanceStore::TEntry* TInstanceStore::EntryOf(ICIMInstance& instance) const noexcept {
  if (const auto* own = TInmemInstance::Own(instance))
    if (TEntry* entry = own->StoreEntry())
      if (FindEntry(entry->Path(), entry->hash) == entry) return entry;
  if (m_others.empty()) return nullptr;
  const auto found = m_others.find(&instance);
  return found == m_others.end() ? nullptr : found->second;
}

std::size_t TInstanceStore::SlotOf(const TEntry& entry) const noexcept {
  const std::size_t mask = m_table.size() - 1;
  std::size_t slot = entry.hash & mask;
  while (m_table[slot] != &entry) slot = (slot + 1) & mask;
  return slot;
}

void TInstanceStore::GrowTable() {
  TEntries table(std::max(kSmallestTable, 2 * m_table.size()), nullptr);
  const std::size_t mask = table.size() - 1;
  for (TEntry* entry : m_table) {
    if (!entry) continue;
    std::size_t slot = entry->hash & mask;
    while (table[slot]) slot = (slot + 1) & mask;
    table[slot] = entry;
  }
  m_table.swap(table);
}

// Into the table, and into the order, where a path above all others is in its place at once.
void TInstanceStore::Enter(TEntry* entry) noexcept {
  const std::size_t mask = m_table.size() - 1;
  std::size_t slot = entry->hash & mask;
  while (m_table[slot]) slot = (slot + 1) & mask;
  m_table[slot] = entry;
  ++m_size;
  const bool last =
      m_ordered == m_order.size() && (m_order.empty() || m_order.back()->Path() < entry->Path());
  m_order.push_back(entry);
  if (last) ++m_ordered;
  ModelClock::LinksChanged();
}

// The entry stays in the order until that is put right.
boost::shared_ptr<ICIMInstance> TInstanceStore::Erase(TEntry& entry) noexcept {
  const std::size_t mask = m_table.size() - 1;
  std::size_t hole = SlotOf(entry);
  for (std::size_t next = (hole + 1) & mask; m_table[next]; next = (next + 1) & mask) {
    const std::size_t home = m_table[next]->hash & mask;
    // An entry may move up into the hole only if that is not before its home.
    if (((next - home) & mask) < ((next - hole) & mask)) continue;
    m_table[hole] = m_table[next];
    hole = next;
  }
  m_table[hole] = nullptr;
  --m_size;
  ++m_erased;
  ModelClock::LinksChanged();
  auto last = std::move(entry.instance);
  if (auto* own = TInmemInstance::Own(*last)) own->ForgetStoreEntry(&entry);
  const auto other = m_others.find(last.get());
  if (other != m_others.end() && other->second == &entry) m_others.erase(other);
  if (m_erased > 64 && m_erased > m_order.size() / 2) PutInOrder();
  return last;
}

void TInstanceStore::PutInOrder() const {
  const auto before = [](const TEntry* a, const TEntry* b) { return a->Path() < b->Path(); };
  auto kept = m_order.begin();
  auto ordered = m_order.begin();
  const auto end = m_order.begin() + static_cast<std::ptrdiff_t>(m_ordered);
  for (auto entry = m_order.begin(); entry != m_order.end(); ++entry) {
    if (entry == end) ordered = kept;
    if ((*entry)->instance)
      *kept++ = *entry;
    else
      TEntry::Destroy(*entry);
  }
  if (end == m_order.end()) ordered = kept;
  m_order.erase(kept, m_order.end());
  m_erased = 0;
  if (ordered != m_order.end()) {
    std::sort(ordered, m_order.end(), before);
    std::inplace_merge(m_order.begin(), ordered, m_order.end(), before);
  }
  m_ordered = m_order.size();
}

}  // namespace NORVHAV20

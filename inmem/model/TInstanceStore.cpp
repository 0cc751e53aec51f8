#include "inmem/model/TInstanceStore.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TLinkIndex.h"

namespace NORVHAV20 {

// One stored instance, with the text of its path behind it in the same block of memory.
struct TInstanceStore::TEntry {
  boost::shared_ptr<ICIMInstance> instance;
  std::uint32_t hash;
  std::uint32_t length;
  std::uint32_t pending;  // its place among those that no walk has seen yet, or kInOrder
  // Here the text begins, in what would be padding.

  static constexpr std::size_t kTextAt =
      sizeof(boost::shared_ptr<ICIMInstance>) + 3 * sizeof(std::uint32_t);
  static constexpr std::uint32_t kInOrder = static_cast<std::uint32_t>(-1);

  const char* Text() const noexcept { return reinterpret_cast<const char*>(this) + kTextAt; }
  std::string_view Path() const noexcept { return {Text(), length}; }

  static TEntry* Make(std::string_view path, std::uint32_t hash,
                      const boost::shared_ptr<ICIMInstance>& instance) {
    if (path.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    void* memory = ::operator new(std::max(sizeof(TEntry), kTextAt + path.size()));
    auto* entry =
        new (memory) TEntry{instance, hash, static_cast<std::uint32_t>(path.size()), kInOrder};
    std::copy(path.begin(), path.end(), static_cast<char*>(memory) + kTextAt);
    return entry;
  }
  static void Destroy(TEntry* entry) noexcept {
    entry->~TEntry();
    ::operator delete(entry);
  }
};

namespace {

constexpr std::size_t kSmallestTable = 8;

std::uint32_t HashOf(std::string_view path) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(path));
}

// In the order of the paths.
constexpr auto kIsBefore = [](const void* a, const void* b) {
  using TEntry = TInstanceStore::TEntry;
  return static_cast<const TEntry*>(a)->Path() < static_cast<const TEntry*>(b)->Path();
};

}  // namespace

// In the order of the addresses, which is about that in which the instances were made: going
// through memory as it comes, dropping a large store takes a fraction of the time.
TInstanceStore::~TInstanceStore() {
  m_table.erase(std::remove(m_table.begin(), m_table.end(), nullptr), m_table.end());
  std::sort(m_table.begin(), m_table.end(), std::less<>());
  for (TEntry* entry : m_table) {
    if (auto* own = TInmemInstance::Own(*entry->instance)) own->ForgetStoreEntry(entry);
    TEntry::Destroy(entry);
  }
}

// Instances are let go when the store is whole again: their end may call back.
void TInstanceStore::Add(std::string_view path, const boost::shared_ptr<ICIMInstance>& instance) {
  const std::uint32_t hash = HashOf(path);
  if (m_links) m_links->BeforeChange();
  // Everything that can fail comes first.
  if (4 * (m_size + 1) > 3 * m_table.size()) GrowTable();
  if (m_all && m_pending.size() == m_pending.capacity())
    m_pending.reserve(2 * m_pending.size() + 8);
  std::unique_ptr<TEntry, void (*)(TEntry*)> made(TEntry::Make(path, hash, instance),
                                                  &TEntry::Destroy);
  auto* own = TInmemInstance::Own(*instance);
  TEntry* const before = EntryOf(*instance);
  const bool remembered = own && own->StoreEntry() == before;
  if (!remembered) m_others[instance.get()] = made.get();
  if (own && !remembered) own->Stray();

  TEntry* const entry = made.release();
  const auto former = before ? Erase(*before) : nullptr;
  TEntry* const standing = FindEntry(path, hash);
  const auto displaced = standing ? Erase(*standing) : nullptr;
  if (remembered) own->RememberStoreEntry(entry);
  Enter(entry);
}

void TInstanceStore::Remove(std::string_view path, ICIMInstance& instance) {
  if (m_links) m_links->BeforeChange();
  const auto removed = RemoveEntryOf(instance);
  TEntry* const standing = FindEntry(path, HashOf(path));
  const auto displaced = standing ? Erase(*standing) : nullptr;
}

bool TInstanceStore::Remove(ICIMInstance& instance) noexcept {
  if (m_links) m_links->BeforeChange();
  const auto removed = RemoveEntryOf(instance);
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
  if (!m_all)
    MakeOrder();
  else if (!m_pending.empty())
    PutPendingInOrder();
  return m_all;
}

const boost::shared_ptr<ICIMInstance>& TInstanceStore::InstanceOf(const TEntry& entry) noexcept {
  return entry.instance;
}

std::string_view TInstanceStore::PathOf(const TEntry& entry) noexcept { return entry.Path(); }

void TInstanceStore::Swap(TInstanceStore& other) noexcept {
  m_table.swap(other.m_table);
  std::swap(m_size, other.m_size);
  m_all.swap(other.m_all);
  m_pending.swap(other.m_pending);
  m_others.swap(other.m_others);
}

TInstanceStore::TEntry* TInstanceStore::FindEntry(std::string_view path,
                                                  std::uint32_t hash) const noexcept {
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

void TInstanceStore::Enter(TEntry* entry) noexcept {
  const std::size_t mask = m_table.size() - 1;
  std::size_t slot = entry->hash & mask;
  while (m_table[slot]) slot = (slot + 1) & mask;
  m_table[slot] = entry;
  ++m_size;
  if (m_all) {
    entry->pending = static_cast<std::uint32_t>(m_pending.size());
    m_pending.push_back(entry);
  }
  ++m_moves;
  if (m_links) m_links->Entered(*entry);
}

boost::shared_ptr<ICIMInstance> TInstanceStore::Erase(TEntry& entry) noexcept {
  if (m_links) m_links->Leaving(entry);
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
  LeaveOrder(entry);
  auto last = std::move(entry.instance);
  if (auto* own = TInmemInstance::Own(*last)) own->ForgetStoreEntry(&entry);
  const auto other = m_others.find(last.get());
  if (other != m_others.end() && other->second == &entry) m_others.erase(other);
  TEntry::Destroy(&entry);
  return last;
}

// Where there is no memory to keep a walk apart from this, the next one makes the order anew.
void TInstanceStore::LeaveOrder(TEntry& entry) noexcept {
  if (!m_all) return;
  if (entry.pending != TEntry::kInOrder) {
    m_pending.back()->pending = entry.pending;
    m_pending[entry.pending] = m_pending.back();
    m_pending.pop_back();
    return;
  }
  try {
    if (m_all.use_count() > 1) m_all = boost::make_shared<TInstanceList>(*m_all);
    m_all->Remove(&entry, kIsBefore);
  } catch (const std::bad_alloc&) {
    m_all.reset();
    m_pending.clear();
  }
}

void TInstanceStore::MakeOrder() const {
  TEntries entries;
  entries.reserve(m_size);
  std::copy_if(m_table.begin(), m_table.end(), std::back_inserter(entries),
               [](const TEntry* entry) { return entry != nullptr; });
  std::sort(entries.begin(), entries.end(), kIsBefore);
  auto all = boost::make_shared<TInstanceList>();
  for (TEntry* entry : entries) all->Append({entry, entry->instance});
  for (TEntry* entry : entries) entry->pending = TEntry::kInOrder;
  m_all = std::move(all);
}

// Where much was added it is cheaper to begin again.
void TInstanceStore::PutPendingInOrder() const {
  if (m_pending.size() > 64 + m_all->Size() / 4) {
    MakeOrder();
    m_pending.clear();
    return;
  }
  if (m_all.use_count() > 1) m_all = boost::make_shared<TInstanceList>(*m_all);
  for (; !m_pending.empty(); m_pending.pop_back()) {
    TEntry* const entry = m_pending.back();
    m_all->Insert({entry, entry->instance}, kIsBefore);
    entry->pending = TEntry::kInOrder;
  }
}

}  // namespace NORVHAV20

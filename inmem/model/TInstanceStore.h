// TInstanceStore: the instances of one class, by the text of their object paths.
//
// Look-ups go through a hash table. The order of the paths is needed by walks alone: it is
// made by the first one, and kept from then on; what has come since the last walk is put in
// its place by the next. A walk goes over a list that it shares with the store: whichever
// part of it the store then changes, it changes in a copy, so that nothing that happens
// during the walk reaches it.
//
// An instance whose key changed after it was stored is still found under the path that it
// was stored with; taking it out, or storing it again, removes that entry.
//
// Ownership: shares the instances.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "inmem/model/TInstanceList.h"

namespace NORVHAV20 {

class TInmemInstance;
class TLinkIndex;

class TInstanceStore {
 public:
  using TInstances = TInstanceList;
  struct TEntry;

  TInstanceStore() = default;
  ~TInstanceStore();
  TInstanceStore(const TInstanceStore&) = delete;
  TInstanceStore& operator=(const TInstanceStore&) = delete;

  // Stores an instance under `path`, in place of what stands there and of the entry it had.
  // On failure nothing has changed. Complexity: O(1) on average.
  void Add(std::string_view path, const boost::shared_ptr<ICIMInstance>& instance);
  // Removes the entry of `path`, whichever instance it holds, and the entry that `instance`
  // was stored under. Complexity: O(1) on average.
  void Remove(std::string_view path, ICIMInstance& instance);
  // Removes the entry that `instance` was stored under; false when there is none.
  bool Remove(ICIMInstance& instance) noexcept;
  // Returns the instance stored under `path`, empty when there is none. Complexity: O(1) on
  // average.
  boost::shared_ptr<ICIMInstance> Find(std::string_view path) const;
  // Returns the instances in the order of their paths. Complexity: O(1) when nothing was added
  // since the last time, else O(log n) for each that was; the first time O(n log n).
  boost::shared_ptr<const TInstances> All() const;
  std::size_t Size() const noexcept { return m_size; }
  // How often an instance has come.
  std::uint64_t Moves() const noexcept { return m_moves; }
  // Whom to tell of every change from now on; null: nobody.
  void Tell(TLinkIndex* links) noexcept { m_links = links; }
  // In the order of the paths.
  template <class Visit>
  void ForEachEntry(Visit&& visit) const {
    const auto all = All();
    all->ForEachItem(
        [&](const TInstanceList::TItem& item) { visit(*static_cast<const TEntry*>(item.entry)); });
  }
  static const boost::shared_ptr<ICIMInstance>& InstanceOf(const TEntry& entry) noexcept;
  // Returns the path that an entry stands under.
  static std::string_view PathOf(const TEntry& entry) noexcept;
  void Swap(TInstanceStore& other) noexcept;

 private:
  using TEntries = std::vector<TEntry*>;

  std::size_t SlotOf(const TEntry& entry) const noexcept;
  TEntry* FindEntry(std::string_view path, std::uint32_t hash) const noexcept;
  TEntry* EntryOf(ICIMInstance& instance) const noexcept;
  void GrowTable();
  void Enter(TEntry* entry) noexcept;
  // Both leave it to the caller to let go what they return.
  boost::shared_ptr<ICIMInstance> Erase(TEntry& entry) noexcept;
  boost::shared_ptr<ICIMInstance> RemoveEntryOf(ICIMInstance& instance) noexcept;
  void LeaveOrder(TEntry& entry) noexcept;
  void MakeOrder() const;
  void PutPendingInOrder() const;

  // Open addressing with linear probing; a power of two, at most three quarters full.
  TEntries m_table;
  std::size_t m_size = 0;
  std::uint64_t m_moves = 0;
  TLinkIndex* m_links = nullptr;
  // What the last walk went over, null before the first, and what was added since.
  mutable boost::shared_ptr<TInstanceList> m_all;
  mutable TEntries m_pending;
  // Entries of instances that cannot remember theirs: of another make, or stored elsewhere
  // as well.
  std::unordered_map<const ICIMInstance*, TEntry*> m_others;
};

}  // namespace NORVHAV20

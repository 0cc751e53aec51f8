// TInstanceStore: the instances of one class, by the text of their object paths.
//
// Look-ups go through a hash table. The order of the paths is needed by walks alone: it is
// put right when one begins, for what came since the last. A walk goes over an unchanging
// list that it shares with the store until the store changes, so that nothing that happens
// during the walk reaches it.
//
// An instance whose key changed after it was stored is still found under the path that it
// was stored with; taking it out, or storing it again, removes that entry.
//
// Ownership: shares the instances.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"

namespace NORVHAV20 {

class TInmemInstance;

class TInstanceStore {
 public:
  using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;
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
  // Returns the instances in the order of their paths. Complexity: O(1) when nothing changed
  // since the last time, else O(n) and the sorting of what was added.
  boost::shared_ptr<const TInstances> All() const;
  std::size_t Size() const noexcept { return m_size; }
  // Returns the place of an instance in `all`, what All returned last. An instance that is
  // not there gets any place at all, or none: `all` has to be asked.
  static std::size_t PlaceIn(const TInstances& all, const TInmemInstance& instance) noexcept;
  void Swap(TInstanceStore& other) noexcept;

 private:
  using TEntries = std::vector<TEntry*>;

  std::size_t SlotOf(const TEntry& entry) const noexcept;
  TEntry* FindEntry(std::string_view path, std::size_t hash) const noexcept;
  TEntry* EntryOf(ICIMInstance& instance) const noexcept;
  void GrowTable();
  void Enter(TEntry* entry) noexcept;
  // Both leave it to the caller to let go what they return, and the list of the last walk.
  boost::shared_ptr<ICIMInstance> Erase(TEntry& entry) noexcept;
  boost::shared_ptr<ICIMInstance> RemoveEntryOf(ICIMInstance& instance) noexcept;
  void PutInOrder() const;

  // Open addressing with linear probing; a power of two, at most three quarters full.
  TEntries m_table;
  std::size_t m_size = 0;
  // Every entry, those erased since the order was last put right included: first what is in
  // order, then what was added since.
  mutable TEntries m_order;
  mutable std::size_t m_ordered = 0;
  mutable std::size_t m_erased = 0;
  mutable boost::shared_ptr<const TInstances> m_all;
  // Entries of instances that cannot remember theirs: of another make, or stored elsewhere
  // as well.
  std::unordered_map<const ICIMInstance*, TEntry*> m_others;
};

}  // namespace NORVHAV20

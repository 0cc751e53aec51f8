// TClassSet: classes in the order in which they came, each once.
//
// Ownership: shares the classes. The last share of a class that is removed goes when the set
//            is whole again: its end may call back.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace NORVHAV20 {

class ICIMClass;

class TClassSet {
 public:
  using TClasses = std::vector<boost::shared_ptr<ICIMClass>>;
  class TWalk;

  TClassSet() = default;
  TClassSet(const TClassSet&) = delete;
  TClassSet& operator=(const TClassSet&) = delete;
  ~TClassSet();

  // Adds a class at the end unless it is there; on failure nothing has changed. Complexity: O(1)
  // on average.
  void Add(const boost::shared_ptr<ICIMClass>& cls);
  // Returns whether the class was there. Needs no memory. Complexity: O(1) on average.
  bool Remove(const ICIMClass* cls) noexcept;
  bool Contains(const ICIMClass* cls) const noexcept;
  std::size_t Size() const noexcept { return m_classes.size() - m_gaps; }
  // Complexity: O(n).
  TClasses All() const;
  void Swap(TClassSet& other) noexcept;
  // Empties the set. Empty pointers may stand among what it had.
  TClasses TakeAll() noexcept;

 private:
  using TPlaces = std::unordered_map<const ICIMClass*, std::size_t>;

  std::size_t PlaceOf(const ICIMClass* cls) const noexcept;
  void CloseGaps() noexcept;
  void BeforeChange() noexcept;

  TClasses m_classes;  // an empty pointer where one was removed
  std::size_t m_gaps = 0;
  std::unique_ptr<TPlaces> m_places;  // once there are more than a few
  mutable TWalk* m_walk = nullptr;    // the walks under way
};

// A walk over what the set holds when the walk begins, whatever becomes of the set. It copies
// that only when the set is about to change.
class TClassSet::TWalk {
 public:
  explicit TWalk(const TClassSet& set) noexcept;
  ~TWalk();
  TWalk(const TWalk&) = delete;
  TWalk& operator=(const TWalk&) = delete;

  // Returns the next class, null after the last. It is there until the set changes. Throws
  // std::bad_alloc when the set has changed, the walk was not prepared, and there was no memory
  // for a copy.
  ICIMClass* Next();
  // Returns the class that Next returned last.
  const boost::shared_ptr<ICIMClass>& Current() const noexcept { return Classes()[m_next - 1]; }
  // Whether the class is one of those to be walked.
  bool Covers(const ICIMClass* cls) const noexcept;
  // To be called before the set may change: then the walk goes on whatever memory there is. On
  // failure nothing has changed.
  void Prepare();

 private:
  friend class TClassSet;

  const TClasses& Classes() const noexcept { return m_set ? m_set->m_classes : m_kept; }
  void Keep() noexcept;
  void Leave() noexcept;

  const TClassSet* m_set;  // null once the walk has a copy
  TWalk* m_other;          // the next walk over the set
  std::size_t m_next = 0;
  TClasses m_kept;
  bool m_lost = false;
};

}  // namespace NORVHAV20

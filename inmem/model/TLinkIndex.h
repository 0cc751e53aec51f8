// TLinkIndex: which stored association instances of one class may refer to an instance that is
// stored under a given path.
//
// An index is an accelerator and never an authority. It goes by the text of the path that each
// reference names, without regard to case, because binding a path to its class changes no more
// of it than the case of names. So it leaves out nothing that resolves to the instance; what
// it offers is resolved by who asks, when its turn comes. What happens to the instances that
// are referred to, or to their classes, is nothing to the index. It is told by the store and
// by the slots of its own associations when these change.
//
// Associations that it cannot judge by a text are offered to everybody: of another make, or of
// another class, or with a reference that is resolved by a namespace or class of another make.
//
// Ownership: refers to its store and to what that holds; owned by the class of both.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "inmem/model/TIdTable.h"
#include "inmem/model/TInstanceStore.h"
#include "inmem/values/TSlotLayout.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMElement;
class TCIMReference;
class TCIMValue;
class TInmemInstance;
class TInmemPropertyDecl;

// Returns the element that a reference value names. Throws 15 when there is none, and what
// resolving throws.
boost::shared_ptr<ICIMElement> Resolve(const TCIMValue& reference);

class TLinkIndex final : public IReferenceWatcher {
 public:
  using TEntry = TInstanceStore::TEntry;
  class TWalk;

  // Indexes what the store of `cls` holds; from then on the store tells of its changes.
  // Complexity: O(n).
  TLinkIndex(const ICIMClass& cls, TInstanceStore& store);
  ~TLinkIndex();
  TLinkIndex(const TLinkIndex&) = delete;
  TLinkIndex& operator=(const TLinkIndex&) = delete;

  // Whether it still says what there is: not when memory was lacking for a change, or a
  // declaration has turned into one of references.
  bool IsWhole() const noexcept;

  // Returns the instance that the reference in a slot is known to lead to, empty when it has to
  // be resolved.
  boost::shared_ptr<TInmemInstance> KnownEnd(const TSlotTable& values,
                                             std::size_t slot) const noexcept;
  // Keeps what the reference in a slot has been found to lead to, if that can be kept, and if
  // the slot still has that value.
  void Know(const TSlotTable& values, std::size_t slot, const TCIMValue& value,
            const TInmemInstance& end);

  // For the store: what is about to change, has come, is about to go.
  void BeforeChange() noexcept;
  void Entered(const TEntry& entry) noexcept;
  void Leaving(const TEntry& entry) noexcept;
  // For the slots: a reference is about to be assigned, and has been.
  void Assigning(const TSlotTable& values) noexcept override;
  void Assigned(const TSlotTable& values) noexcept override;

 private:
  static constexpr std::uint32_t kNone = TIdTable::kNone;
  static constexpr std::uint32_t kAny = 0;      // the target of what is offered to everybody
  static constexpr std::uint32_t kUnknown = 0;  // where no end has been found yet

  // An association instance that is stored.
  struct TRecord {
    const void* key;  // its slot table, or the instance when it is of another make
    const TEntry* entry;
    std::uint32_t first;  // of its links; of a free record the next free one
  };
  // One reference of an association.
  struct TLink {
    std::uint32_t record;
    std::uint32_t slot;
    std::uint32_t target;
    std::uint32_t place;  // among the links of the target
    std::uint32_t next;   // of the same association, in the order of the slots; or the next free
    std::uint32_t known;  // as its target's, when it leads to its end
  };
  // The references that name one path, or that are the default of one declaration. In the order
  // of their associations, then slots, at least as far as `ordered`; then what came since. kNone
  // where one has gone. `ordered` of a free target is the next free one.
  struct TTarget {
    std::uint64_t hash = 0;  // of the path
    std::uint32_t live = 0;
    std::uint32_t ordered = kNone;
    // An instance of the class that links name, to which those that have the same `known` were
    // found to lead. They do as long as it stands where it stood and the path clock stands. The
    // guard keeps the memory of one that is gone, so that no other one is taken for it.
    const TInmemInstance* end = nullptr;
    boost::weak_ptr<TInmemInstance> guard;
    std::uint64_t paths = 0;
    std::uint32_t known = kUnknown;
    std::uint16_t standing = 0;
    std::vector<std::uint32_t> links;

    // Whether `end` is this instance, and it stands.
    bool Is(const TInmemInstance& instance) const noexcept;
  };
  struct TDefault {
    const TInmemPropertyDecl* decl;
    std::uint32_t target;
  };

  std::uint32_t RecordOf(const void* key) const noexcept;
  const TEntry* EntryOf(std::uint32_t link) const noexcept {
    return m_records[m_links[link].record].entry;
  }
  // The first link of the same association.
  std::uint32_t FirstLinkOf(std::uint32_t link) const noexcept {
    return m_records[m_links[link].record].first;
  }
  std::uint32_t LinkOf(const TSlotTable& values, std::size_t slot) const noexcept;
  // Returns the instance that a link is known to lead to, empty when it has to be resolved. The
  // class that the reference names is then that of the instance.
  boost::shared_ptr<TInmemInstance> KnownEnd(std::uint32_t link) const noexcept;
  // Keeps that a link leads to `end`, if that can be kept.
  void Know(std::uint32_t link, const TInmemInstance& end);
  std::uint64_t HashOfRecord(std::uint32_t record) const noexcept;
  void Enter(const TEntry& entry);
  void LinkAll(std::uint32_t record);
  bool LinkSlots(std::uint32_t record, const TInmemInstance& association);
  void Link(std::uint32_t record, std::uint32_t slot, std::uint32_t target);
  std::uint32_t NewLink();
  void UnlinkAll(std::uint32_t record) noexcept;
  std::uint32_t TargetOf(std::uint64_t hash);
  std::uint32_t TargetOf(const TInmemPropertyDecl& decl);
  std::uint32_t NewTarget();
  void Release(std::uint32_t target) noexcept;
  bool IsDefault(std::uint32_t target) const noexcept;
  void Watch(const TSlotLayout& layout);
  void CloseGaps(TTarget& target) noexcept;
  const std::vector<std::uint32_t>& InOrder(std::uint32_t target);
  bool IsBefore(std::uint32_t a, std::uint32_t b) const noexcept;
  // The target of the references that name a path, kNone when none does.
  std::uint32_t TargetNaming(std::string_view path) const;
  // Whether the default of a declaration may lead to what is stored under a path; under none, when
  // that is empty.
  static bool MayLeadTo(std::string_view path, const TInmemPropertyDecl& decl);

  const ICIMClass& m_class;
  TInstanceStore& m_store;
  std::vector<TRecord> m_records;
  std::uint32_t m_freeRecord = kNone;
  TIdTable m_byKey;
  std::vector<TLink> m_links;
  std::uint32_t m_freeLink = kNone;
  std::vector<TTarget> m_targets;
  std::uint32_t m_freeTarget = kNone;
  TIdTable m_byHash;
  std::vector<TDefault> m_defaults;
  std::vector<boost::intrusive_ptr<const TSlotLayout>> m_layouts;
  TWalk* m_walk = nullptr;  // those under way, the one that began last before the others
  std::uint64_t m_retyped;
  bool m_broken = false;
};

// A walk over the associations that may refer to one instance, in the order of their paths. It
// stands for a walk over all that were stored when it began: once something has changed by
// which the others might refer to the instance as well, it has the rest of them all.
class TLinkIndex::TWalk {
 public:
  // An association, there as long as the walk is current.
  struct TCandidate {
    const TEntry* entry;
    std::uint32_t slot;  // kEvery: any of them
    std::uint32_t link;
  };
  static constexpr std::uint32_t kEvery = static_cast<std::uint32_t>(-1);

  TWalk(TLinkIndex& index, const TInmemInstance& target);
  ~TWalk();
  TWalk(const TWalk&) = delete;
  TWalk& operator=(const TWalk&) = delete;

  const std::vector<TCandidate>& Candidates() const noexcept { return m_candidates; }
  // Says that ForEachOtherEnd will be asked about the candidates.
  void FetchEnds() const noexcept;
  // For a candidate that is known to refer to the instance: calls `visit` with the
  // instances that its references are known to lead to, in the order of its slots and without
  // the first one that leads to the instance itself, until it answers false. Returns false when
  // it comes to one that has to be resolved.
  template <class Visit>
  bool ForEachOtherEnd(const TCandidate& candidate, Visit&& visit) const;
  // Whether a candidate is known to refer to the instance.
  bool IsKnown(const TCandidate& candidate) const noexcept;
  // Says that a candidate has been found to refer to it.
  void Found(const TCandidate& candidate) noexcept;
  // Whether the candidates are still all.
  bool IsCurrent() const noexcept;
  // The associations after a candidate, of those that were stored when the walk began. To be asked
  // when the candidates are no longer all. Throws std::bad_alloc when there was no memory for
  // keeping them.
  std::vector<boost::shared_ptr<ICIMInstance>> After(const TCandidate& candidate);

 private:
  friend class TLinkIndex;

  void Take(std::uint32_t target);
  bool IsKnown(std::uint32_t link) const noexcept;
  void Keep() noexcept;

  TLinkIndex* m_index;  // null once the walk has kept what was stored
  TWalk* m_other = nullptr;
  const TInmemInstance& m_target;
  std::uint64_t m_moves;
  std::uint64_t m_defaults;
  std::vector<TCandidate> m_candidates;
  boost::shared_ptr<const TInstanceStore::TInstances> m_kept;
};

template <class Visit>
bool TLinkIndex::TWalk::ForEachOtherEnd(const TCandidate& candidate, Visit&& visit) const {
  bool selfSeen = false;
  for (std::uint32_t link = m_index->FirstLinkOf(candidate.link); link != kNone;
       link = m_index->m_links[link].next) {
    if (!selfSeen && IsKnown(link)) {
      selfSeen = true;
      continue;
    }
    const auto end = m_index->KnownEnd(link);
    if (!end) return false;
    if (!visit(end)) break;
  }
  return true;
}

}  // namespace NORVHAV20

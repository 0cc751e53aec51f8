// TLinkIndex: which association instances of one class refer to which instances, with every
// reference resolved once.
//
// An index is an accelerator, never an authority. What it says is what resolving each
// reference would say, for as long as neither clock of the model has moved since it was made;
// after that it is thrown away. Where resolving does anything but succeed or answer that
// there is nothing, or involves objects of another make, which may change unseen, there is
// no index.
//
// Ownership: shares the association instances; the instances referred to are not owned, and
//            are there while the index is current.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "inmem/model/TInstanceStore.h"

namespace NORVHAV20 {

class ICIMElement;
class TCIMValue;
class TInmemInstance;

// Returns the element that a reference value names. Throws 15 when there is none, and what
// resolving throws.
boost::shared_ptr<ICIMElement> Resolve(const TCIMValue& reference);

class TLinkIndex {
 public:
  static constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);

  // One reference of one association instance.
  struct TLink {
    enum EKind : std::uint8_t { kInstance, kNothing, kNoInstance };

    TInmemInstance* target;  // null unless it resolves to an instance
    std::uint32_t position;  // of the association instance, in the order of the paths
    std::uint32_t next;      // the next link to the same target, kNone after the last
    std::uint32_t slot;
    EKind kind;
  };

  // Returns an index of `associations`, empty when there can be none. Complexity: O(n), a
  // resolution for each reference.
  static boost::shared_ptr<const TLinkIndex> Make(
      const boost::shared_ptr<const TInstanceStore::TInstances>& associations);

  bool IsCurrent() const noexcept;
  const std::vector<boost::shared_ptr<ICIMInstance>>& Associations() const noexcept {
    return m_associations;
  }
  // Returns the position of an association, kNone when it is not there.
  std::uint32_t PositionOf(const ICIMInstance& association) const noexcept;
  const TLink& operator[](std::uint32_t link) const noexcept { return m_links[link]; }
  // Returns the first link to `target`, kNone when there is none. The links of a target come
  // in the order of their associations, then slots. Complexity: O(1) on average.
  std::uint32_t FirstTo(const TInmemInstance& target) const noexcept;
  // Returns the link of one slot of an association, null when it has no reference there.
  const TLink* Find(std::uint32_t position, std::size_t slot) const noexcept;

 private:
  explicit TLinkIndex(const TInstanceStore::TInstances& associations);

  bool AddLinksOf(ICIMInstance& association);
  void ChainByTarget();

  std::vector<boost::shared_ptr<ICIMInstance>> m_associations;
  std::unordered_map<const ICIMInstance*, std::uint32_t> m_positions;
  std::uint64_t m_schema;
  std::uint64_t m_linksClock;
  std::vector<TLink> m_links;          // by association, then slot
  std::vector<std::uint32_t> m_first;  // of each association, and one past the last
  std::vector<std::uint32_t> m_heads;  // by hash of the target; open addressing
};

}  // namespace NORVHAV20

// TSlotTable: the property values of one instance, without the rules for them (those are
// TInmemProperty's), in one block of memory: 16 bytes a property, assigned or not.
//
// The slot objects that callers see are made when one first asks, each with an ownership of
// its own. They share the table with the instance, and outlive it where the caller holds on
// to one.
//
// Ownership: owns the values; shares the layout. The slots made share the table, and the
//            table them until the instance lets them go.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "havcore/TCIMValue.h"
#include "inmem/values/TSlotLayout.h"

namespace NORVHAV20 {

class TInmemProperty;

class TSlotTable : public boost::intrusive_ref_counter<TSlotTable> {
 public:
  static boost::intrusive_ptr<TSlotTable> Make(boost::intrusive_ptr<const TSlotLayout> layout);
  ~TSlotTable();
  TSlotTable(const TSlotTable&) = delete;
  TSlotTable& operator=(const TSlotTable&) = delete;
  // The block holds the values behind the object itself.
  static void operator delete(void* block) noexcept { ::operator delete(block); }

  const TSlotLayout& Layout() const noexcept { return *m_layout; }

  // The value assigned to a slot, null while none is.
  const TCIMValue* Assigned(std::size_t index) const noexcept;
  void Assign(std::size_t index, const TCIMValue& value);

  // The previous value of a slot, null while it has none. It keeps its place.
  const TCIMValue* Previous(std::size_t index) const noexcept;
  void SetPrevious(std::size_t index, const TCIMValue& value);

  // Returns the slot object of a property, the same one every time. Complexity: O(1).
  boost::shared_ptr<TInmemProperty> Slot(std::size_t index);
  // Drops the slots made: those that nobody else holds are gone.
  void ReleaseSlots() noexcept;

 private:
  // What few instances need: made when first used.
  struct TExtras;

  explicit TSlotTable(boost::intrusive_ptr<const TSlotLayout> layout);
  static void* operator new(std::size_t size, std::size_t slots);
  // For values of a host core that may throw where they are made. GCOVR_EXCL_START: ours do not
  static void operator delete(void* block, std::size_t) noexcept { ::operator delete(block); }
  // GCOVR_EXCL_STOP

  // Behind the object: a value for each slot, then a bit for each beyond the first 32 that
  // is assigned.
  TCIMValue* Values() const noexcept;
  std::uint32_t& AssignedBits(std::size_t index) noexcept;
  TExtras& Extras();

  std::uint32_t m_assigned = 0;  // in the padding behind the count of references
  boost::intrusive_ptr<const TSlotLayout> m_layout;
  TExtras* m_extras = nullptr;
};

}  // namespace NORVHAV20

// TSlotTable: the property values of one instance, without the rules for them (those are
// TInmemProperty's), in one block of memory: 16 bytes a property, assigned or not.
//
// TSlots: the slot objects that callers see, made when one first asks. They share the values
// with the instance, and outlive it where the caller holds on to one.
//
// Ownership: owns the values; shares the layout.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

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
  void Assign(std::size_t index, const TCIMValue& value) noexcept;

  // The previous value of a slot, null while it has none. It keeps its place.
  const TCIMValue* Previous(std::size_t index) const noexcept;
  void SetPrevious(std::size_t index, const TCIMValue& value);

 private:
  explicit TSlotTable(boost::intrusive_ptr<const TSlotLayout> layout) noexcept;
  static void* operator new(std::size_t size, std::size_t slots);
  static void operator delete(void* block, std::size_t) noexcept { ::operator delete(block); }

  // Behind the object: a value for each slot, then a bit for each beyond the first 32 that
  // is assigned.
  TCIMValue* Values() const noexcept;
  std::uint32_t& AssignedBits(std::size_t index) noexcept;

  std::uint32_t m_assigned = 0;  // in the padding behind the count of references
  boost::intrusive_ptr<const TSlotLayout> m_layout;
  std::unique_ptr<std::map<std::size_t, TCIMValue>> m_previous;
};

class TSlots {
 public:
  explicit TSlots(boost::intrusive_ptr<TSlotTable> table);
  ~TSlots();

  TInmemProperty& operator[](std::size_t index) noexcept;

 private:
  boost::intrusive_ptr<TSlotTable> m_table;
  std::vector<TInmemProperty> m_slots;
};

}  // namespace NORVHAV20

#include "inmem/values/TSlotTable.h"

#include <cstring>
#include <new>
#include <utility>

#include "inmem/values/ModelClock.h"
#include "inmem/values/TInmemProperty.h"

namespace NORVHAV20 {

namespace {

constexpr std::size_t kBits = 32;

// Of the bits that do not stand in the object itself.
std::size_t BitsSize(std::size_t slots) {
  return slots <= kBits ? 0 : (slots - 1) / kBits * sizeof(std::uint32_t);
}

}  // namespace

static_assert(alignof(TSlotTable) >= alignof(TCIMValue) &&
                  sizeof(TSlotTable) % alignof(TCIMValue) == 0,
              "the values stand right behind the table");

boost::intrusive_ptr<TSlotTable> TSlotTable::Make(boost::intrusive_ptr<const TSlotLayout> layout) {
  const std::size_t slots = layout->Size();
  return new (slots) TSlotTable(std::move(layout));
}

void* TSlotTable::operator new(std::size_t size, std::size_t slots) {
  return ::operator new(size + slots * sizeof(TCIMValue) + BitsSize(slots));
}

TSlotTable::TSlotTable(boost::intrusive_ptr<const TSlotLayout> layout) noexcept
    : m_layout(std::move(layout)) {
  const std::size_t slots = m_layout->Size();
  for (std::size_t i = 0; i < slots; ++i) new (Values() + i) TCIMValue();
  std::memset(static_cast<void*>(Values() + slots), 0, BitsSize(slots));
}

TSlotTable::~TSlotTable() {
  for (std::size_t i = 0; i < m_layout->Size(); ++i) Values()[i].~TCIMValue();
}

TCIMValue* TSlotTable::Values() const noexcept {
  return reinterpret_cast<TCIMValue*>(const_cast<TSlotTable*>(this) + 1);
}

std::uint32_t& TSlotTable::AssignedBits(std::size_t index) noexcept {
  if (index < kBits) return m_assigned;
  return reinterpret_cast<std::uint32_t*>(Values() + m_layout->Size())[index / kBits - 1];
}

const TCIMValue* TSlotTable::Assigned(std::size_t index) const noexcept {
  const std::uint32_t bits = const_cast<TSlotTable*>(this)->AssignedBits(index);
  return (bits >> (index % kBits)) & 1 ? Values() + index : nullptr;
}

void TSlotTable::Assign(std::size_t index, const TCIMValue& value) noexcept {
  if (value.IsReference() || Values()[index].IsReference()) ModelClock::LinksChanged();
  Values()[index] = value;
  AssignedBits(index) |= 1U << (index % kBits);
}

const TCIMValue* TSlotTable::Previous(std::size_t index) const noexcept {
  if (!m_previous) return nullptr;
  const auto found = m_previous->find(index);
  return found == m_previous->end() ? nullptr : &found->second;
}

void TSlotTable::SetPrevious(std::size_t index, const TCIMValue& value) {
  if (!m_previous) m_previous = std::make_unique<std::map<std::size_t, TCIMValue>>();
  m_previous->insert_or_assign(index, value);
}

TSlots::TSlots(boost::intrusive_ptr<TSlotTable> table) : m_table(std::move(table)) {
  const std::size_t slots = m_table->Layout().Size();
  m_slots.reserve(slots);
  for (std::size_t i = 0; i < slots; ++i) m_slots.emplace_back(*m_table, i);
}

TSlots::~TSlots() = default;

TInmemProperty& TSlots::operator[](std::size_t index) noexcept { return m_slots[index]; }

}  // namespace NORVHAV20

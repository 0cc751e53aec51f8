#include "inmem/values/TSlotTable.h"

#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include <boost/make_shared.hpp>

#include "inmem/values/TInmemProperty.h"

namespace NORVHAV20 {

namespace {

constexpr std::size_t kBits = 32;
constexpr std::size_t kBitOf = kBits - 1;

// Of the bits that do not stand in the object itself.
std::size_t BitsSize(std::size_t slots) { return slots / kBits * sizeof(std::uint32_t); }

}  // namespace

struct TSlotTable::TExtras {
  using TSlot = boost::shared_ptr<TInmemProperty>;

  std::unique_ptr<std::map<std::size_t, TCIMValue>> previous;
  // Behind the object, in the same block, that reading a slot goes to one place less: the slot
  // of each property, empty until it is made.
  TSlot* Slots() noexcept { return reinterpret_cast<TSlot*>(this + 1); }

  static TExtras* Make(std::size_t slots) {
    auto* const made = new (::operator new(sizeof(TExtras) + slots * sizeof(TSlot))) TExtras();
    std::uninitialized_default_construct_n(made->Slots(), slots);
    return made;
  }
  // None of the slots is left: each of them holds the table.
  static void Destroy(TExtras* extras) noexcept {
    extras->~TExtras();
    ::operator delete(extras);
  }
};

static_assert(alignof(TSlotTable) >= alignof(TCIMValue) &&
                  sizeof(TSlotTable) % alignof(TCIMValue) == 0,
              "the values stand right behind the table");

// Inline, like the operator that takes the block back: compilers tell pairs by what they see.
inline void* TSlotTable::operator new(std::size_t size, std::size_t slots) {
  return ::operator new(size + slots * sizeof(TCIMValue) + BitsSize(slots));
}

boost::intrusive_ptr<TSlotTable> TSlotTable::Make(boost::intrusive_ptr<const TSlotLayout> layout) {
  const std::size_t slots = layout->Size();
  return new (slots) TSlotTable(std::move(layout));
}

TSlotTable::TSlotTable(boost::intrusive_ptr<const TSlotLayout> layout)
    : m_layout(std::move(layout)) {
  const std::size_t slots = m_layout->Size();
  std::uninitialized_value_construct_n(Values(), slots);
  std::memset(static_cast<void*>(Values() + slots), 0, BitsSize(slots));
}

TSlotTable::~TSlotTable() {
  if (m_extras) TExtras::Destroy(m_extras);
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
  return (bits >> (index & kBitOf)) & 1 ? Values() + index : nullptr;
}

void TSlotTable::Assign(std::size_t index, const TCIMValue& value) {
  // NULL as well: it ends the reference that the default may be.
  const bool refers = value.GetType() == kCIMReference || Values()[index].IsReference();
  IReferenceWatcher* const watcher = refers ? m_layout->Watcher() : nullptr;
  if (watcher) watcher->Assigning(*this);
  Values()[index] = m_layout->Share(index, value);
  AssignedBits(index) |= 1U << (index & kBitOf);
  if (watcher) watcher->Assigned(*this);
}

TSlotTable::TExtras& TSlotTable::Extras() {
  if (!m_extras) m_extras = TExtras::Make(m_layout->Size());
  return *m_extras;
}

const TCIMValue* TSlotTable::Previous(std::size_t index) const noexcept {
  if (!m_extras || !m_extras->previous) return nullptr;
  const auto found = m_extras->previous->find(index);
  return found == m_extras->previous->end() ? nullptr : &found->second;
}

void TSlotTable::SetPrevious(std::size_t index, const TCIMValue& value) {
  auto& previous = Extras().previous;
  if (!previous) previous = std::make_unique<std::map<std::size_t, TCIMValue>>();
  previous->insert_or_assign(index, value);
}

boost::shared_ptr<TInmemProperty> TSlotTable::Slot(std::size_t index) {
  auto& slot = Extras().Slots()[index];
  if (!slot)
    slot = boost::make_shared<TInmemProperty>(boost::intrusive_ptr<TSlotTable>(this), index);
  return slot;
}

void TSlotTable::ReleaseSlots() noexcept {
  if (!m_extras) return;
  for (std::size_t i = 0; i < m_layout->Size(); ++i) m_extras->Slots()[i].reset();
}

}  // namespace NORVHAV20

#include "values/TSlotTable.h"

#include <algorithm>

#include <boost/make_shared.hpp>

#include "values/TInmemProperty.h"

namespace NORVHAV20 {

std::size_t TSlotLayout::Find(std::string_view folded) const noexcept {
  const auto found = std::lower_bound(
      m_entries.begin(), m_entries.end(), folded,
      [](const TEntry& entry, std::string_view name) { return entry.name < name; });
  if (found == m_entries.end() || found->name != folded) return kNone;
  return static_cast<std::size_t>(found - m_entries.begin());
}

TSlotDeclarations::TSlotDeclarations(std::vector<TNamed> named) {
  std::vector<TSlotLayout::TEntry> entries;
  entries.reserve(named.size());
  decls.reserve(named.size());
  for (auto& [name, decl] : named) {
    entries.push_back({std::move(name), decl});
    decls.push_back(std::move(decl));
  }
  layout = boost::make_shared<const TSlotLayout>(std::move(entries));
}

TSlotTable::TSlotTable(const boost::shared_ptr<const TSlotLayout>& layout)
    : m_layout(layout),
      m_values(new TCIMValue[layout->Size()]),
      m_assigned(layout->Size(), false) {}

TSlotTable::~TSlotTable() = default;

const TCIMValue* TSlotTable::Assigned(std::size_t index) const noexcept {
  return m_assigned[index] ? &m_values[index] : nullptr;
}

void TSlotTable::Assign(std::size_t index, const TCIMValue& value) noexcept {
  m_values[index] = value;
  m_assigned[index] = true;
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

TInmemProperty& TSlotTable::Slot(std::size_t index) {
  if (m_slots.empty()) {
    std::vector<TInmemProperty> slots;
    slots.reserve(m_layout->Size());
    for (std::size_t i = 0; i < m_layout->Size(); ++i) slots.emplace_back(*this, i);
    m_slots = std::move(slots);
  }
  return m_slots[index];
}

}  // namespace NORVHAV20

#include "inmem/values/TSlotLayout.h"

#include <functional>

namespace NORVHAV20 {

namespace {

std::size_t HashOf(std::string_view folded) noexcept {
  std::size_t hash = 14695981039346656037ULL;
  for (const char c : folded) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
  return hash ^ (hash >> 32);
}

}  // namespace

TSlotLayout::TSlotLayout(std::vector<TEntry> entries) : m_entries(std::move(entries)) {
  std::size_t size = 4;
  while (size < 2 * m_entries.size()) size *= 2;
  m_table.assign(size, 0);
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    std::size_t slot = HashOf(m_entries[i].name) & (size - 1);
    while (m_table[slot] != 0) slot = (slot + 1) & (size - 1);
    m_table[slot] = static_cast<std::uint32_t>(i + 1);
  }
}

std::size_t TSlotLayout::Find(std::string_view folded) const noexcept {
  const std::size_t mask = m_table.size() - 1;
  for (std::size_t slot = HashOf(folded) & mask; m_table[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t index = m_table[slot] - 1;
    if (m_entries[index].name == folded) return index;
  }
  return kNone;
}

TSlotDeclarations::TSlotDeclarations(std::vector<TNamed> named) {
  std::vector<TSlotLayout::TEntry> entries;
  entries.reserve(named.size());
  decls.reserve(named.size());
  for (auto& [name, decl] : named) {
    entries.push_back({std::move(name), decl});
    decls.push_back(std::move(decl));
  }
  layout.reset(new TSlotLayout(std::move(entries)));
}

}  // namespace NORVHAV20

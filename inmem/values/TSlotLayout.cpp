#include "inmem/values/TSlotLayout.h"

#include <cstring>
#include <new>

namespace NORVHAV20 {

namespace {

// The same for every spelling of a name: letters differ in one bit, which is set in all bytes.
std::size_t HashOf(std::string_view name) noexcept {
  constexpr std::uint64_t kFold = 0x2020202020202020ULL;
  std::uint64_t hash = name.size();
  const auto add = [&](const char* bytes, std::size_t count) {
    std::uint64_t word = kFold;
    std::memcpy(&word, bytes, count);
    hash = (hash ^ (word | kFold)) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 29;
  };
  const char* next = name.data();
  std::size_t left = name.size();
  for (; left >= sizeof(std::uint64_t); left -= sizeof(std::uint64_t)) {
    add(next, sizeof(std::uint64_t));
    next += sizeof(std::uint64_t);
  }
  if (left != 0) add(next, left);
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

bool IsFolded(std::string_view folded, std::string_view name) noexcept {
  if (folded.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (folded[i] != c && (c < 'A' || c > 'Z' || folded[i] != c + ('a' - 'A'))) return false;
  }
  return true;
}

constexpr std::uint32_t kManyTexts = 1024;

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

std::size_t TSlotLayout::FindSpelt(std::string_view name) const noexcept {
  const std::size_t mask = m_table.size() - 1;
  for (std::size_t slot = HashOf(name) & mask; m_table[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t index = m_table[slot] - 1;
    if (IsFolded(m_entries[index].name, name)) return index;
  }
  return kNone;
}

const TCIMValue& TSlotLayout::Share(std::size_t index, const TCIMValue& value) const noexcept {
  if (!TTextPool::kIsOfUse || value.IsNull() || value.GetType() != kCIMString) return value;
  if (!m_texts) {
    if (++m_textsGiven != kManyTexts) return value;
    m_textsGiven = 0;
    try {
      m_texts = std::make_unique<TTextPool>(m_entries.size());
    } catch (const std::bad_alloc&) {
      return value;  // and again after as many
    }
  }
  return m_texts->Share(index, value);
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

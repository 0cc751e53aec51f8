#include "inmem/values/TSlotLayout.h"

#include <cstring>
#include <new>

namespace NORVHAV20 {

namespace {

using TWord = std::uint64_t;

constexpr TWord kCaseBits = 0x2020202020202020ULL;

TWord WordAt(const char* bytes) noexcept {
  TWord word;
  std::memcpy(&word, bytes, sizeof(word));
  return word;
}

// Up to eight bytes, in few steps whatever their number: three of them cover three bytes, two
// halves that overlap cover more.
TWord ShortWord(const char* bytes, std::size_t count) noexcept {
  if (count < 4) {
    const auto byte = [&](std::size_t i) { return TWord{static_cast<unsigned char>(bytes[i])}; };
    return count == 0 ? 0 : byte(0) | byte(count / 2) << 8 | byte(count - 1) << 16;
  }
  std::uint32_t halves[2];
  std::memcpy(&halves[0], bytes, sizeof(halves[0]));
  std::memcpy(&halves[1], bytes + count - sizeof(halves[1]), sizeof(halves[1]));
  return TWord{halves[0]} << 32 | halves[1];
}

// Hands `take` the words of the bytes until it answers false; the last overlaps the one before.
template <class TTake>
bool ForEachWord(std::string_view text, const TTake& take) noexcept {
  constexpr std::size_t kSize = sizeof(TWord);
  if (text.size() < kSize) return take(std::size_t{0}, ShortWord(text.data(), text.size()));
  std::size_t at = 0;
  for (; at + kSize < text.size(); at += kSize)
    if (!take(at, WordAt(text.data() + at))) return false;
  return take(text.size() - kSize, WordAt(text.data() + text.size() - kSize));
}

// The same for every spelling of a name: letters differ in one bit, which is set in all bytes.
std::size_t HashOf(std::string_view name) noexcept {
  TWord hash = name.size();
  ForEachWord(name, [&](std::size_t, TWord word) {
    hash = (hash ^ (word | kCaseBits)) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 29;
    return true;
  });
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

// Word by word: they may differ in the bit of the case where the folded one has a letter, which
// in a folded name are the bytes that have this bit and the next one.
bool IsFolded(std::string_view folded, std::string_view name) noexcept {
  if (folded.size() != name.size()) return false;
  const bool isShort = name.size() < sizeof(TWord);
  return ForEachWord(name, [&](std::size_t at, TWord word) {
    const TWord wanted =
        isShort ? ShortWord(folded.data(), folded.size()) : WordAt(folded.data() + at);
    return ((word ^ wanted) & ~(wanted & (wanted >> 1) & kCaseBits)) == 0;
  });
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

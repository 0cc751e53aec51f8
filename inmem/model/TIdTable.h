// TIdTable: numbers, found by hashes of what they stand for. What that is, and its hash, is its
// owner's to know.
//
// Threads: one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace NORVHAV20 {

class TIdTable {
 public:
  static constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);

  // Returns the first number of that hash for which `matches` answers true, kNone when there
  // is none. Complexity: O(1) on average.
  template <class Matches>
  std::uint32_t Find(std::uint64_t hash, Matches&& matches) const {
    if (m_slots.empty()) return kNone;
    for (std::size_t slot = Home(hash); m_slots[slot] != kNone; slot = Next(slot))
      if (matches(m_slots[slot])) return m_slots[slot];
    return kNone;
  }

  // `hashOf` gives the hash of any number in the table. On failure nothing has changed.
  // Complexity: O(1) on average.
  template <class HashOf>
  void Insert(std::uint32_t id, HashOf&& hashOf) {
    if (4 * (m_size + 1) > 3 * m_slots.size()) Grow(hashOf);
    Put(id, hashOf(id));
    ++m_size;
  }

  // Complexity: O(1) on average.
  template <class HashOf>
  void Erase(std::uint32_t id, HashOf&& hashOf) noexcept {
    std::size_t hole = Home(hashOf(id));
    while (m_slots[hole] != id) hole = Next(hole);
    for (std::size_t next = Next(hole); m_slots[next] != kNone; next = Next(next)) {
      // A number may move up into the hole only if that is not before its home.
      const std::size_t home = Home(hashOf(m_slots[next]));
      if (((next - home) & Mask()) < ((next - hole) & Mask())) continue;
      m_slots[hole] = m_slots[next];
      hole = next;
    }
    m_slots[hole] = kNone;
    --m_size;
  }

 private:
  std::size_t Mask() const noexcept { return m_slots.size() - 1; }
  std::size_t Home(std::uint64_t hash) const noexcept {
    return static_cast<std::size_t>(hash ^ (hash >> 32)) & Mask();
  }
  std::size_t Next(std::size_t slot) const noexcept { return (slot + 1) & Mask(); }
  void Put(std::uint32_t id, std::uint64_t hash) noexcept {
    std::size_t slot = Home(hash);
    while (m_slots[slot] != kNone) slot = Next(slot);
    m_slots[slot] = id;
  }
  template <class HashOf>
  void Grow(HashOf&& hashOf) {
    std::vector<std::uint32_t> ids(m_slots.empty() ? 16 : 2 * m_slots.size(), kNone);
    ids.swap(m_slots);
    for (const std::uint32_t id : ids)
      if (id != kNone) Put(id, hashOf(id));
  }

  // Open addressing with linear probing; a power of two, at most three quarters full.
  std::vector<std::uint32_t> m_slots;
  std::size_t m_size = 0;
};

}  // namespace NORVHAV20

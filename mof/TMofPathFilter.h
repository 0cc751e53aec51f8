// TMofPathFilter: whether an object may have been seen before, by a hash of its path. It answers
// "no" for certain and "perhaps" seldom wrongly, so that of many objects few have to be looked up.
//
// Ownership: four bytes for each object that it is made for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace hav::mof {

class TMofPathFilter {
 public:
  // Room for that many; with more, "perhaps" becomes frequent.
  void Reserve(std::size_t count) {
    std::size_t bits = 64;
    while (bits < kBitsOfEach * count) bits *= 2;
    m_bits.assign(bits / 64, 0);
  }
  // Adds a hash, and says whether it may have been added before.
  bool MayHoldAndAdd(std::uint64_t hash) noexcept {
    auto& word = m_bits[hash / 64 % m_bits.size()];
    const auto bit = std::uint64_t{1} << hash % 64;
    const bool had = (word & bit) != 0;
    word |= bit;
    return had;
  }

 private:
  static constexpr std::size_t kBitsOfEach = 32;

  std::vector<std::uint64_t> m_bits = {0};
};

}  // namespace hav::mof

// TTextPool: the texts that the instances of a class were given lately. Most properties of most
// models say one of few things (a vendor, a state, the name of the system that all belong to);
// a value given again is kept as a copy of the one that is there, and copies share their text.
//
// It is a cache and no more: texts fall out of it, and a property whose values are nearly all
// different is left alone. Where copying a value needs memory, so that copies share nothing, or
// text cannot be looked at without copying it, there is no pool.
//
// Ownership: holds copies of some hundred values.
// Threads:   one thread at a time per namespace.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "havcore/TCIMValue.h"
#include "inmem/values/HostServices.h"

namespace NORVHAV20 {

class TTextPool {
 public:
  static constexpr bool kIsOfUse = std::is_same_v<THeldText<TCIMValue>, std::string_view> &&
                                   std::is_nothrow_copy_assignable_v<TCIMValue>;

  explicit TTextPool(std::size_t slots) : m_records(slots) {}

  // Returns a value equal to `text`, a string given to a slot: the one that the pool has, or
  // else `text` itself, which the pool then has. Good until the next call. Complexity: O(1) and
  // the length of the text.
  const TCIMValue& Share(std::size_t slot, const TCIMValue& text) noexcept;

 private:
  static constexpr std::size_t kSets = 128;
  static constexpr std::size_t kWays = 4;
  static constexpr std::size_t kWindow = 1024;

  // How often a slot was given a text, and how often that was there, in this window.
  struct TRecord {
    std::uint16_t given = 0;
    std::uint16_t found = 0;
    bool leftAlone = false;
  };

  void Count(TRecord& record, bool found) noexcept;

  std::vector<TRecord> m_records;
  std::array<TCIMValue, kSets * kWays> m_texts;
  std::array<std::uint32_t, kSets * kWays> m_hashes{};
  std::array<std::uint8_t, kSets> m_oldest{};
};

}  // namespace NORVHAV20

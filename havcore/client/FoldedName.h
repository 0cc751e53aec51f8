// FoldedName: CIM names compare without regard to case, for ASCII letters only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace hav::client {

constexpr char FoldCharacter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (FoldCharacter(a[i]) != FoldCharacter(b[i])) return false;
  return true;
}

struct TFoldedHash {
  std::size_t operator()(std::string_view name) const noexcept {
    std::uint64_t hash = 14695981039346656037u;  // FNV-1a
    for (char c : name)
      hash = (hash ^ static_cast<unsigned char>(FoldCharacter(c))) * 1099511628211u;
    return static_cast<std::size_t>(hash);
  }
};
struct TFoldedEqual {
  bool operator()(std::string_view a, std::string_view b) const noexcept { return SameName(a, b); }
};

// The text behind the keys must outlive the map.
template <class T>
using TFoldedMap = std::unordered_map<std::string_view, T, TFoldedHash, TFoldedEqual>;

}  // namespace hav::client

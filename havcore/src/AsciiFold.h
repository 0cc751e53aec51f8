// AsciiFold: CIM names ignore case, and only that of the ASCII letters: the same in every
// locale, and without a look at one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace NORVHAV20 {

inline unsigned char FoldAscii(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

// Negative, zero or positive, as the folded bytes of `a` stand to those of `b`.
inline int CompareFolded(std::string_view a, std::string_view b) noexcept {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = FoldAscii(a[i]) - FoldAscii(b[i]);
    if (difference != 0) return difference;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

inline bool EqualFolded(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && CompareFolded(a, b) == 0;
}

}  // namespace NORVHAV20

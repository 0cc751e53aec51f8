#include "inmem/values/CimName.h"

#include <algorithm>
#include <array>

#include "inmem/values/Failure.h"

namespace NORVHAV20 {

namespace {

// GCOVR_EXCL_START: the compiler runs these
constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Every byte folded, 0 for those that stand in no name. A table and not <cctype>: the host may
// have set any locale, and names are ASCII.
constexpr std::array<char, 256> FoldedBytes() {
  std::array<char, 256> folded{};
  for (int i = 0; i < 128; ++i) {
    const char c = Lower(static_cast<char>(i));
    if (c == '_' || IsDigit(c) || (c >= 'a' && c <= 'z')) folded[static_cast<std::size_t>(i)] = c;
  }
  return folded;
}
// GCOVR_EXCL_STOP
constexpr std::array<char, 256> kFolded = FoldedBytes();

void Fold(std::string_view name, char* folded) {
  bool valid = name.empty() || !IsDigit(name.front());
  for (std::size_t i = 0; i < name.size(); ++i) {
    folded[i] = kFolded[static_cast<unsigned char>(name[i])];
    valid = valid && folded[i] != 0;
  }
  if (valid) return;
  LogError("Inmem: CIM name '" + std::string(name) + "' is invalid");
  Throw(kHAVInvalidName);
}

}  // namespace

CimName::CimName(std::string_view name) {
  char* folded = m_inline;
  if (name.size() > kInline) {
    m_long.resize(name.size());
    folded = m_long.data();
  }
  Fold(name, folded);
  m_folded = std::string_view(folded, name.size());
}

bool IsCimName(std::string_view text) noexcept {
  if (!text.empty() && IsDigit(text.front())) return false;
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return kFolded[static_cast<unsigned char>(c)] != 0; });
}

std::string NormalizeCimName(std::string_view name) {
  std::string folded(name.size(), '\0');
  Fold(name, folded.data());
  return folded;
}

}  // namespace NORVHAV20

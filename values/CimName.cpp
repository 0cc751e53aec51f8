#include "values/CimName.h"

#include <algorithm>

#include "values/Failure.h"

namespace NORVHAV20 {

namespace {

// By hand and not by <cctype>: the host may have set any locale, and names are ASCII.
constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr bool StartsName(char c) { return c == '_' || (c >= 'a' && c <= 'z'); }
constexpr bool ContinuesName(char c) { return StartsName(c) || (c >= '0' && c <= '9'); }

void Fold(std::string_view name, char* folded) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = Lower(name[i]);
    if (!(i == 0 ? StartsName(c) : ContinuesName(c))) {
      LogError("Inmem: CIM name '" + std::string(name) + "' is invalid");
      Throw(kHAVInvalidName);
    }
    folded[i] = c;
  }
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

bool IsSameName(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string NormalizeCimName(std::string_view name) {
  std::string folded(name.size(), '\0');
  Fold(name, folded.data());
  return folded;
}

}  // namespace NORVHAV20

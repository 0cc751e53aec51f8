// CimName: the one rule for CIM names. A name is kept as it is spelt and compared folded to
// lower case; its first byte is '_' or an ASCII letter, the rest are '_', letters or digits,
// and the empty name is a name too.
//
// Threads: a value.
// Errors:  25, after the log line "Inmem: CIM name '…' is invalid" with the name as given.
#pragma once

#include <string>
#include <string_view>

namespace NORVHAV20 {

// A name checked and folded for a look-up. Names of up to 64 bytes allocate nothing.
class CimName {
 public:
  explicit CimName(std::string_view name);
  CimName(const CimName&) = delete;
  CimName& operator=(const CimName&) = delete;

  std::string_view Folded() const noexcept { return m_folded; }
  operator std::string_view() const noexcept { return m_folded; }

 private:
  static constexpr std::size_t kInline = 64;

  char m_inline[kInline];
  std::string m_long;
  std::string_view m_folded;
};

// Whether `text` is a CIM name; the empty one is.
bool IsCimName(std::string_view text) noexcept;

// Returns the folded name.
std::string NormalizeCimName(std::string_view name);

}  // namespace NORVHAV20

// TTextWriter: writes text into a buffer that is there, as far as it goes.
//
// Ownership: the buffer is the caller's, for as long as this object lives.
// Threads:   a value.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace NORVHAV20 {

class TTextWriter {
 public:
  TTextWriter(char* buffer, std::size_t size) noexcept
      : m_begin(buffer), m_next(buffer), m_end(buffer + size) {}

  void Add(char c) noexcept {
    if (HasRoom(1)) *m_next++ = c;
  }
  void Add(std::string_view text) noexcept {
    if (!HasRoom(text.size())) return;
    if (!text.empty()) std::memcpy(m_next, text.data(), text.size());
    m_next += text.size();
  }
  // In double quotes, with \ before each " and \ in it.
  void AddQuoted(std::string_view text) noexcept {
    if (text.size() + 2 > Room()) return GiveUp();  // before a look at what may be endless
    Add('"');
    for (std::size_t plain; !text.empty(); text.remove_prefix(plain)) {
      plain = PlainSize(text);
      Add(text.substr(0, plain));
      if (plain == text.size()) break;
      Add('\\');
      Add(text[plain]);
      ++plain;
    }
    Add('"');
  }
  void GiveUp() noexcept { m_whole = false; }
  // How much still fits, 0 when something was left out.
  std::size_t Room() const noexcept {
    return m_whole ? static_cast<std::size_t>(m_end - m_next) : 0;
  }

  // Of what was written, 0 when something was left out.
  std::size_t Length() const noexcept {
    return m_whole ? static_cast<std::size_t>(m_next - m_begin) : 0;
  }

 private:
  bool HasRoom(std::size_t size) noexcept {
    m_whole = m_whole && size <= static_cast<std::size_t>(m_end - m_next);
    return m_whole;
  }
  // How much of it stands before the first character that needs a \.
  static std::size_t PlainSize(std::string_view text) noexcept {
    const std::size_t quote = std::min(text.find('"'), text.size());
    return std::min(text.substr(0, quote).find('\\'), quote);
  }

  char* const m_begin;
  char* m_next;
  char* const m_end;
  bool m_whole = true;
};

}  // namespace NORVHAV20

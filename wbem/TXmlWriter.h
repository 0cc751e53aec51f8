// TXmlWriter: writes XML at the end of a string. Every element gets a tag that opens and one
// that closes it, also when there is nothing in it: some clients refuse `<VALUE/>`.
//
// Text is UTF-8. What XML cannot hold (control characters, bytes that are no UTF-8) is written
// as U+FFFD.
//
// Ownership: borrows the string.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace hav::wbem {

class TXmlWriter {
 public:
  using TAttribute = std::pair<std::string_view, std::string_view>;

  explicit TXmlWriter(std::string& out) : m_out(out) {}

  void Open(std::string_view name, std::initializer_list<TAttribute> attributes = {}) {
    Begin(name);
    for (const auto& [attribute, value] : attributes) Attribute(attribute, value);
    End();
  }
  // Open in steps, where attributes depend.
  void Begin(std::string_view name);
  void Attribute(std::string_view name, std::string_view value);
  void End() { m_out += '>'; }

  void Close(std::string_view name);
  void Text(std::string_view text);
  void Leaf(std::string_view name, std::string_view text) {
    Open(name);
    Text(text);
    Close(name);
  }
  void Empty(std::string_view name, std::initializer_list<TAttribute> attributes = {}) {
    Open(name, attributes);
    Close(name);
  }

 private:
  void Escape(std::string_view text, bool inAttribute);

  std::string& m_out;
};

}  // namespace hav::wbem

// TXmlElement: an XML document as a tree of elements, read within limits.
//
// What strangers send is read with this, so that it takes no more than the text is worth: no
// entity is expanded but the five that XML itself has, and depth and number of elements are
// bounded.
//
// Ownership: a value.
// Errors:    TXmlError, with the line and what is wrong.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hav::wbem {

class TXmlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct TXmlElement {
  static constexpr std::size_t kMaximumDepth = 64;
  static constexpr std::size_t kMaximumElements = 200'000;

  // Reads a document. `encoding` is what the transport says of it and wins over what the
  // document says; empty: the document's own word. An external document type is not fetched;
  // declarations of entities are refused.
  static TXmlElement Parse(std::string_view document, const std::string& encoding = {});

  // The value of an attribute, null when it is not there.
  const std::string* Find(std::string_view attribute) const;
  // The value of an attribute, `otherwise` when it is not there.
  std::string Get(std::string_view attribute, std::string_view otherwise = {}) const;
  bool Is(std::string_view element) const { return name == element; }
  // The first child of that name, null when there is none.
  const TXmlElement* Child(std::string_view element) const;

  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<TXmlElement> children;
  std::string text;  // of this element alone, in one piece
};

// What the readers of the systems share: puts the tree together and watches its limits.
class TXmlTreeBuilder {
 public:
  // Throws TXmlError when a limit is passed.
  TXmlElement& Open(std::string name);
  void Close();
  void Text(std::string_view text);
  TXmlElement Take() { return std::move(m_root); }

 private:
  TXmlElement m_root;
  std::vector<TXmlElement*> m_open;
  std::size_t m_elements = 0;
};

}  // namespace hav::wbem

#include "wbem/TXmlWriter.h"

#include "havcore/client/Utf8.h"

namespace hav::wbem {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// U+FFFE and U+FFFF, which XML has no place for.
bool IsNoCharacter(std::string_view character) {
  return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

bool IsPlain(char c, bool inAttribute) {
  const auto byte = static_cast<unsigned char>(c);
  if (byte < 0x20) return !inAttribute && (c == '\n' || c == '\t');
  return byte < 0x80 && c != '&' && c != '<' && c != '>' && c != '"';
}

std::string_view Escaped(char c) {
  switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\t': return "&#9;";
    case '\n': return "&#10;";
    case '\r': return "&#13;";  // a bare one would be read as a line feed
    default: return kReplacement;
  }
}

}  // namespace

void TXmlWriter::Begin(std::string_view name) {
  m_out += '<';
  m_out += name;
}

void TXmlWriter::Attribute(std::string_view name, std::string_view value) {
  m_out += ' ';
  m_out += name;
  m_out += "=\"";
  Escape(value, true);
  m_out += '"';
}

void TXmlWriter::Close(std::string_view name) {
  m_out += "</";
  m_out += name;
  m_out += '>';
}

void TXmlWriter::Text(std::string_view text) { Escape(text, false); }

void TXmlWriter::Escape(std::string_view text, bool inAttribute) {
  std::size_t at = 0;
  while (at < text.size()) {
    auto end = at;
    while (end < text.size() && IsPlain(text[end], inAttribute)) ++end;
    m_out += text.substr(at, end - at);
    at = end;
    if (at == text.size()) return;
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      m_out += Escaped(text[at++]);
      continue;
    }
    const auto length = client::Utf8Length(text, at);
    const auto character = text.substr(at, length);
    m_out += length == 0 || IsNoCharacter(character) ? kReplacement : character;
    at += length == 0 ? 1 : length;
  }
}

}  // namespace hav::wbem

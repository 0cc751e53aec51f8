#include "mof/TMofPlainReader.h"

#include <utility>

#include "havcore/client/FoldedName.h"
#include "mof/MofCharacters.h"

namespace hav::mof {

using client::SameName;
using EKind = TMofToken::EKind;

// What every token goes through comes first, for the compiler to put it together.
inline void TMofPlainReader::SkipBlanks() noexcept { m_at = EndOf(kBlank, m_text, m_at); }

inline bool TMofPlainReader::Take(char punctuation) noexcept {
  SkipBlanks();
  if (m_text.data()[m_at] != punctuation) return false;
  ++m_at;
  return true;
}

inline TMofToken TMofPlainReader::Token(EKind kind, std::size_t from) const noexcept {
  return {kind, m_begin + static_cast<TMofOffset>(from),
          std::string_view(m_text.data() + from, m_at - from)};
}

inline bool TMofPlainReader::TakeKeyword(std::string_view keyword) noexcept {
  const auto from = m_at;
  m_at = EndOf(kNameStart | kDigit, m_text, m_at);
  return SameName(std::string_view(m_text.data() + from, m_at - from), keyword);
}

bool TMofPlainReader::ReadKeywords() noexcept {
  SkipBlanks();
  if (!TakeKeyword("instance")) return false;
  SkipBlanks();
  if (!TakeKeyword("of")) return false;
  SkipBlanks();
  return true;
}

bool TMofPlainReader::ReadClassName(TMofInstance& instance) {
  const auto from = m_at;
  if (!IsNameStart(m_text.data()[from])) return false;
  m_at = EndOf(kNameStart | kDigit, m_text, from);
  const auto name = Token(EKind::kName, from);
  SkipBlanks();
  if (m_text.data()[m_at] != '{') return false;  // an alias, for one
  instance.className = {name.text, name.offset};
  instance.alias = {};
  return true;
}

bool TMofPlainReader::ReadBody(TMofInstance* instance) {
  if (instance) {
    instance->assignments.clear();
    instance->isDamaged = false;
  }
  if (!Take('{')) return false;
  while (!Take('}'))
    if (!ReadAssignment(instance)) return false;
  return Take(';');
}

bool TMofPlainReader::ReadAssignment(TMofInstance* instance) {
  const auto from = m_at;  // behind blanks
  if (!IsNameStart(m_text.data()[from])) return false;
  m_at = EndOf(kNameStart | kDigit, m_text, from);
  const auto name = Token(EKind::kName, from);
  if (!Take('=')) return false;
  SkipBlanks();
  TMofValue value;
  value.offset = GetOffset();
  value.isArray = m_text.data()[m_at] == '{';
  const bool read =
      value.isArray ? ReadElements(instance ? &value : nullptr) : ReadLiteral(value.scalar);
  if (!read || !Take(';')) return false;
  if (instance) instance->assignments.push_back({{name.text, name.offset}, std::move(value)});
  return true;
}

bool TMofPlainReader::ReadElements(TMofValue* value) {
  ++m_at;
  if (Take('}')) return true;
  do {
    SkipBlanks();
    TMofToken element;
    if (!ReadLiteral(element)) return false;
    if (value) value->elements.push_back(element);
  } while (Take(','));
  if (value) value->elements.shrink_to_fit();
  return Take('}');
}

bool TMofPlainReader::ReadLiteral(TMofToken& literal) noexcept {
  const auto from = m_at;
  const char c = m_text.data()[from];
  if (c == '"') {
    if (!ReadString()) return false;
    literal = Token(EKind::kString, from);
    SkipBlanks();
    return m_text.data()[m_at] != '"';  // strings that stand together are one
  }
  if (IsNameStart(c)) {
    m_at = EndOf(kNameStart | kDigit, m_text, from);
    literal = Token(EKind::kName, from);
    return SameName(literal.text, "true") || SameName(literal.text, "false") ||
           SameName(literal.text, "null");
  }
  if (!ReadInteger()) return false;
  literal = Token(EKind::kInteger, from);
  return true;
}

bool TMofPlainReader::ReadString() noexcept {
  ++m_at;
  for (;;) {
    m_at = EndOf(kPlain, m_text, m_at);
    const char* const at = m_text.data() + m_at;
    if (*at == '"') break;
    if (*at != '\\' || (at[1] != '"' && at[1] != '\\')) return false;
    m_at += 2;
  }
  ++m_at;
  return true;
}

// What begins with 0 may be written in another base, and what goes on with anything but digits is
// something else.
bool TMofPlainReader::ReadInteger() noexcept {
  const auto from = m_at;
  if (m_text.data()[m_at] == '-' || m_text.data()[m_at] == '+') ++m_at;
  const auto first = m_at;
  m_at = EndOf(kDigit, m_text, first);
  if (m_at == first || (m_text.data()[first] == '0' && (m_at != first + 1 || first != from)))
    return false;
  const char next = m_text.data()[m_at];
  return !IsNameStart(next) && next != '.';
}

}  // namespace hav::mof

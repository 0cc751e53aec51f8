#include "ObjectPathText.h"

#include <algorithm>

#include "AsciiFold.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"

namespace NORVHAV20 {
namespace {

void Require(bool holds) {
  if (!holds) throw THAVException(kHAVNotFound);
}

bool IsNameStart(char c) {
  const unsigned char folded = FoldAscii(c);
  return c == '_' || (folded >= 'a' && folded <= 'z');
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The class above all top-level classes has the one name that is no CIM name.
bool IsClassName(std::string_view text) { return IsCimName(text) || text == "<root>"; }

bool IsNumber(std::string_view text) {
  if (text == "inf" || text == "-inf" || text == "nan") return true;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  return !text.empty() && (IsDigit(text.front()) || text.front() == '.');
}

bool IsSpecial(char c) { return c == '"' || c == '\\'; }

// Reads the key values of a path, from the first name on.
class TKeyReader {
 public:
  explicit TKeyReader(std::string_view text) : m_rest(text) {}

  std::vector<TKeyText> ReadAll() {
    std::vector<TKeyText> keys;
    keys.push_back(ReadKey());
    while (!m_rest.empty()) {
      Require(m_rest.front() == ',');
      m_rest.remove_prefix(1);
      keys.push_back(ReadKey());
    }
    return keys;
  }

 private:
  TKeyText ReadKey() {
    const std::size_t equals = m_rest.find('=');
    Require(equals != std::string_view::npos);
    const std::string_view name = m_rest.substr(0, equals);
    Require(IsCimName(name));
    m_rest.remove_prefix(equals + 1);
    TKeyText key{std::string(name), TKeyText::kQuoted, {}};
    if (!m_rest.empty() && m_rest.front() == '"')
      ReadQuoted(key);
    else
      ReadBare(key);
    return key;
  }

  void ReadQuoted(TKeyText& key) {
    std::size_t at = 1;
    for (;;) {
      const std::size_t begin = at;
      while (at < m_rest.size() && !IsSpecial(m_rest[at])) ++at;
      key.text.append(m_rest, begin, at - begin);
      Require(at < m_rest.size());
      if (m_rest[at] == '"') break;
      ++at;
      Require(at < m_rest.size() && IsSpecial(m_rest[at]));
      key.text += m_rest[at++];
    }
    m_rest.remove_prefix(at + 1);
  }

  void ReadBare(TKeyText& key) {
    const std::string_view text = m_rest.substr(0, m_rest.find(','));
    m_rest.remove_prefix(text.size());
    key.text = text;
    if (EqualFolded(text, "NULL"))
      key.kind = TKeyText::kNull;
    else if (EqualFolded(text, "TRUE") || EqualFolded(text, "FALSE"))
      key.kind = TKeyText::kBoolean;
    else
      key.kind = TKeyText::kNumber;
    Require(key.kind != TKeyText::kNumber || IsNumber(text));
  }

  std::string_view m_rest;
};

// Nearly no text has any: asking first costs a fraction of looking at each character.
bool HasSpecial(std::string_view text) {
  return text.find('"') != std::string_view::npos || text.find('\\') != std::string_view::npos;
}

std::size_t QuotedSize(std::string_view text) {
  std::size_t size = text.size() + 2;
  if (HasSpecial(text))
    size += static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsSpecial));
  return size;
}

}  // namespace

bool IsCimName(std::string_view text) {
  if (text.empty() || !IsNameStart(text.front())) return false;
  for (const char c : text)
    if (!IsNameStart(c) && !IsDigit(c)) return false;
  return true;
}

TObjectPathText ParseObjectPath(std::string_view text) {
  // Neither a namespace name nor a class name has an equals sign, but values may have any
  // character: what stands before the first one is free of values.
  const std::size_t equals = text.find('=');
  const std::string_view head = text.substr(0, equals);
  const std::size_t colon = head.rfind(':');
  const std::size_t classAt = colon == std::string_view::npos ? 0 : colon + 1;
  const std::size_t point = head.find('.', classAt);
  TObjectPathText path;
  if (classAt > 0) {
    path.namespaceName = head.substr(0, colon);
    Require(!path.namespaceName.empty() && path.namespaceName.find('"') == std::string::npos);
  }
  path.className = head.substr(classAt, point == std::string_view::npos ? point : point - classAt);
  Require(IsClassName(path.className));
  if (point == std::string_view::npos)
    Require(equals == std::string_view::npos);
  else
    path.keys = TKeyReader(text.substr(point + 1)).ReadAll();
  return path;
}

void AppendQuoted(std::string& out, std::string_view text) {
  out += '"';
  if (!HasSpecial(text)) {
    out += text;
  } else {
    for (const char c : text) {
      if (IsSpecial(c)) out += '\\';
      out += c;
    }
  }
  out += '"';
}

std::size_t KeyTextSize(const TCIMValue& value) {
  constexpr std::size_t kNumberSize = 32;
  if (value.IsNull() || value.GetType() != kCIMString) return kNumberSize;
  return QuotedSize(static_cast<std::string_view>(value));
}

}  // namespace NORVHAV20

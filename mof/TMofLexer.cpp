#include "mof/TMofLexer.h"

#include <utility>

#include "havcore/client/FoldedName.h"
#include "havcore/client/Utf8.h"
#include "mof/MofCharacters.h"

namespace hav::mof {

using namespace client;

namespace {

// Reads one escape, beginning at its backslash; moves `at` behind it only when it is one.
bool ReadUnit(std::string_view text, std::size_t& at, char32_t& unit) {
  constexpr std::string_view letters = "\"\\btnfr'";
  constexpr std::string_view values = "\"\\\b\t\n\f\r'";
  if (at + 1 >= text.size() || text[at] != '\\') return false;
  const auto simple = letters.find(text[at + 1]);
  if (simple != std::string_view::npos) {
    unit = static_cast<unsigned char>(values[simple]);
    at += 2;
    return true;
  }
  if (text[at + 1] != 'x' && text[at + 1] != 'X') return false;
  std::size_t digits = 0;
  unit = 0;
  while (digits < 4 && at + 2 + digits < text.size() && HexDigit(text[at + 2 + digits]) < 16)
    unit = unit * 16 + HexDigit(text[at + 2 + digits++]);
  if (digits == 0) return false;
  at += 2 + digits;
  return true;
}

// As ReadUnit, with the two halves of a surrogate pair read as one character.
bool ReadEscape(std::string_view text, std::size_t& at, char32_t& character) {
  auto end = at;
  if (!ReadUnit(text, end, character) || IsLowSurrogate(character)) return false;
  if (IsHighSurrogate(character)) {
    char32_t low = 0;
    if (!ReadUnit(text, end, low) || !IsLowSurrogate(low)) return false;
    character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
  }
  at = end;
  return true;
}

bool EscapesInFileName(std::string_view text, std::size_t at) {
  return at + 1 < text.size() && (text[at + 1] == '\\' || text[at + 1] == '"');
}

// The length of the character at `at`, of a byte that is none 1.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const auto length = Utf8Length(text, at);
  return length == 0 ? 1 : length;
}

// The end of what stands for itself in a string that has been checked, where everything but a
// quote and a backslash does.
std::size_t EndOfPlain(std::string_view token, std::size_t at) {
  while (token[at] != '"' && token[at] != '\\') ++at;
  return at;
}

// Joins the pieces of a string into `value`; `readBackslash` appends to it what stands at a
// backslash, and moves behind that.
template <class TReadBackslash>
void Join(std::string_view token, std::string& value, TReadBackslash&& readBackslash) {
  value.clear();
  value.reserve(token.size() - 2);
  std::size_t at = 0;
  while (at < token.size()) {
    ++at;  // the opening quote
    while (token[at] != '"') {
      const auto end = EndOfPlain(token, at);
      value.append(token, at, end - at);
      at = end;
      if (token[at] == '\\') readBackslash(at);
    }
    std::size_t open = 0;
    at = EndOfBlanks(token, at + 1, open);
  }
}

bool AllOf(std::string_view text, unsigned radix) {
  for (char c : text)
    if (HexDigit(c) >= radix) return false;
  return !text.empty();
}

bool IsReal(std::string_view text) {
  const auto point = text.find('.');
  if (point == std::string_view::npos) return false;
  const auto whole = text.substr(0, point);
  auto fraction = text.substr(point + 1);
  const auto e = fraction.find_first_of("eE");
  if (e != std::string_view::npos) {
    auto exponent = fraction.substr(e + 1);
    if (!exponent.empty() && (exponent[0] == '+' || exponent[0] == '-')) exponent.remove_prefix(1);
    if (!AllOf(exponent, 10)) return false;
    fraction = fraction.substr(0, e);
  }
  return (whole.empty() || AllOf(whole, 10)) && AllOf(fraction, 10);
}

TMofToken::EKind NumberKind(std::string_view text) {
  if (text[0] == '+' || text[0] == '-') text.remove_prefix(1);
  const auto last = text.back();
  const bool hexadecimal = text.size() > 2 && text[0] == '0' && FoldCharacter(text[1]) == 'x';
  const bool binary = FoldCharacter(last) == 'b' && AllOf(text.substr(0, text.size() - 1), 2);
  const bool leadingZero = text.size() > 1 && text[0] == '0';
  const bool integer =
      hexadecimal ? AllOf(text.substr(2), 16) : binary || AllOf(text, leadingZero ? 8 : 10);
  if (integer) return TMofToken::EKind::kInteger;
  return IsReal(text) ? TMofToken::EKind::kReal : TMofToken::EKind::kBroken;
}

}  // namespace

std::string TMofToken::Describe() const {
  constexpr std::size_t longest = 40;
  if (kind == EKind::kEnd) return "the end of the file";
  auto shown = std::string(text.substr(0, text.find_first_of("\r\n")));
  if (shown.size() > longest) {
    auto end = longest;  // never in the middle of a character
    while (end > 0 && (static_cast<unsigned char>(shown[end]) & 0xC0u) == 0x80u) --end;
    shown = shown.substr(0, end) + "...";
  }
  return kind == EKind::kString ? shown : "'" + shown + "'";
}

TMofLexer::TMofLexer(const TMofText& text, TMofReport& report) : m_source(text), m_report(report) {
  MoveTo(0);
}

void TMofLexer::MoveTo(TMofOffset offset) noexcept {
  const auto part = m_source.PartAt(offset);
  m_begin = part.begin;
  m_text = part.text;
  m_at = offset - m_begin;
}

inline TMofOffset TMofLexer::OffsetOf(std::size_t at) const noexcept {
  return m_begin + static_cast<TMofOffset>(at);
}

// What every token goes through comes first, for the compiler to put it together.
inline TMofToken TMofLexer::Take(TMofToken::EKind kind, std::size_t end) {
  const TMofToken token{kind, OffsetOf(m_at), std::string_view(m_text.data() + m_at, end - m_at)};
  m_at = end;
  return token;
}

inline void TMofLexer::SkipBlanks() {
  m_at = EndOf(kBlank, m_text, m_at);
  if (Has(m_at) && m_text[m_at] == '/') SkipComments();
}

inline TMofToken TMofLexer::Scan() {
  for (;;) {
    SkipBlanks();
    if (!Has(m_at) || m_report.IsFull()) {
      m_at = m_text.size();
      return Take(TMofToken::EKind::kEnd, m_at);
    }
    const char c = m_text[m_at];
    if (IsNameStart(c)) return Take(TMofToken::EKind::kName, EndOfName(m_at));
    if (Is(c, kPunctuation)) return Take(TMofToken::EKind::kPunctuation, m_at + 1);
    if (c == '"') return ReadString();
    const bool sign = (c == '+' || c == '-' || c == '.') && Has(m_at + 1) &&
                      (IsDigit(m_text[m_at + 1]) || m_text[m_at + 1] == '.');
    if (IsDigit(c) || sign) return ReadNumber();
    if (c == '\'') return ReadCharacter();
    if (c == '$' && Has(m_at + 1) && IsNameStart(m_text[m_at + 1])) return ReadAlias();
    if (c == '#') {
      if (ScanPragma()) return Take(TMofToken::EKind::kPragma, EndOfName(m_at + 1));
    } else {
      RefuseCharacter();
    }
  }
}

TMofToken TMofLexer::Next() {
  const auto token = Scan();
  if (m_include != EInclude::kNothing || token.kind == TMofToken::EKind::kPragma)
    m_include = Follow(token);
  return token;
}

TMofLexer::EInclude TMofLexer::Follow(const TMofToken& token) const noexcept {
  if (token.kind == TMofToken::EKind::kPragma) return EInclude::kPragma;
  if (m_include == EInclude::kPragma && SameName(token.text, "include")) return EInclude::kInclude;
  if (m_include == EInclude::kInclude && token.Is('(')) return EInclude::kParenthesis;
  return EInclude::kNothing;
}

void TMofLexer::SkipComments() {
  std::size_t open = 0;
  const auto end = EndOfBlanks(m_text, m_at, open);
  if (open != std::string_view::npos) {
    m_cut = true;
    Error(open, "the comment is not closed");
  }
  m_at = end;
}

std::size_t TMofLexer::EndOfName(std::size_t at) const noexcept {
  return EndOf(kNameStart | kDigit, m_text, at);
}

TMofToken TMofLexer::ReadAlias() { return Take(TMofToken::EKind::kAlias, EndOfName(m_at + 1)); }

// Letters belong to a number, so that "12abc" is one wrong number and not two tokens.
std::size_t TMofLexer::EndOfNumber() const noexcept {
  bool fraction = false;
  auto at = m_at + 1;
  if (m_text[m_at] == '.') fraction = true;
  for (; Has(at); ++at) {
    const char c = m_text[at];
    const bool exponentSign =
        (c == '+' || c == '-') && fraction && FoldCharacter(m_text[at - 1]) == 'e';
    if (c == '.')
      fraction = true;
    else if (!IsNameCharacter(c) && !exponentSign)
      break;
  }
  return at;
}

TMofToken TMofLexer::ReadNumber() {
  const auto begin = m_at;
  auto token = Take(TMofToken::EKind::kBroken, EndOfNumber());
  token.kind = NumberKind(token.text);
  if (token.kind == TMofToken::EKind::kBroken)
    Error(begin, "'" + std::string(token.text) + "' is not a number");
  return token;
}

TMofToken TMofLexer::ReadString() {
  const auto begin = m_at;
  bool sound = ScanStringPiece();
  auto end = m_at;
  for (SkipBlanks(); Has(m_at) && m_text[m_at] == '"'; SkipBlanks()) {
    sound = ScanStringPiece() && sound;
    end = m_at;
  }
  return {sound ? TMofToken::EKind::kString : TMofToken::EKind::kBroken, OffsetOf(begin),
          m_text.substr(begin, end - begin)};
}

// Moves behind the closing quote, or to the end of a line that has none.
bool TMofLexer::ScanStringPiece() {
  const auto begin = m_at++;
  for (;;) {
    m_at = EndOf(kPlain, m_text, m_at);
    if (!Has(m_at)) break;
    const char c = m_text[m_at];
    if (c == '"') {
      ++m_at;
      return true;
    }
    if (c == '\n' || c == '\r') break;
    if (c == '\\')
      ScanBackslash();
    else
      ScanByte();
  }
  Error(begin, "the string is not closed on its line");
  return false;
}

void TMofLexer::ScanBackslash() {
  if (m_include == EInclude::kParenthesis) {
    m_at += EscapesInFileName(m_text, m_at) ? 2 : 1;
    return;
  }
  char32_t ignored = 0;
  if (ReadEscape(m_text, m_at, ignored)) return;
  const bool atEnd = !Has(m_at + 1) || m_text[m_at + 1] == '\n' || m_text[m_at + 1] == '\r';
  if (!atEnd)
    m_report.AddWarning(
        m_source, OffsetOf(m_at),
        "unknown escape '" +
            std::string(m_text.substr(m_at, 1 + CharacterLength(m_text, m_at + 1))) +
            "' is taken as it is written");
  ++m_at;
}

// A byte of a character beyond ASCII.
void TMofLexer::ScanByte() {
  if (const auto length = Utf8Length(m_text, m_at)) {
    m_at += length;
    return;
  }
  if (!m_warnedOfBytes)
    m_report.AddWarning(m_source, OffsetOf(m_at),
                        "the text is not UTF-8; its bytes are taken as they are");
  m_warnedOfBytes = true;
  ++m_at;
}

TMofToken TMofLexer::ReadCharacter() {
  const auto begin = m_at;
  auto at = begin + 1;
  char32_t unit = 0;
  bool sound = false;
  if (Has(at) && m_text[at] == '\\') {
    sound = ReadUnit(m_text, at, unit);
  } else if (Has(at) && m_text[at] != '\'' && m_text[at] != '\n' && m_text[at] != '\r') {
    const auto length = Utf8Length(m_text, at);
    sound = length != 0 && length < 4;
    at += length;
  }
  if (sound && Has(at) && m_text[at] == '\'') return Take(TMofToken::EKind::kCharacter, at + 1);

  Error(begin, "a character stands alone between single quotes, as 'x'");
  auto end = m_text.find_first_of("'\r\n", begin + 1);
  if (end == std::string_view::npos)
    end = m_text.size();
  else if (m_text[end] == '\'')
    ++end;
  return Take(TMofToken::EKind::kBroken, end);
}

bool TMofLexer::ScanPragma() {
  const auto end = EndOfName(m_at + 1);
  const auto directive = m_text.substr(m_at, end - m_at);
  if (SameName(directive, "#pragma")) return true;
  Error(m_at, "expected '#pragma', found '" + std::string(directive) + "'");
  m_at = m_text.find_first_of("\r\n", m_at);
  if (m_at == std::string_view::npos) m_at = m_text.size();
  return false;
}

// One report for a run of bytes that nothing in the language begins with.
void TMofLexer::RefuseCharacter() {
  constexpr std::string_view hex = "0123456789ABCDEF";
  const auto begin = m_at;
  const auto length = Utf8Length(m_text, begin);
  const auto byte = static_cast<unsigned char>(m_text[begin]);
  std::string shown = "unexpected ";
  if (length == 0 || byte < 0x20 || byte == 0x7F)
    shown += std::string("byte 0x") + hex[byte >> 4] + hex[byte & 15];
  else
    shown += "character '" + std::string(m_text.substr(begin, length)) + "'";
  do {
    ++m_at;
  } while (Has(m_at) &&
           (static_cast<unsigned char>(m_text[m_at]) >= 0x7F || m_text[m_at] == m_text[begin]));
  Error(begin, shown);
}

void TMofLexer::Error(std::size_t offset, std::string text) {
  m_report.AddError(m_source, OffsetOf(offset), std::move(text));
}

std::string TMofLexer::StringValue(std::string_view token) {
  std::string value;
  StringValue(token, value);
  return value;
}

void TMofLexer::StringValue(std::string_view token, std::string& value) {
  const bool isPlain = token.find('\\') == std::string_view::npos;
  if (isPlain && token.find('"', 1) + 1 == token.size()) {
    value.assign(token, 1, token.size() - 2);
    return;
  }
  Join(token, value, [&](std::size_t& at) {
    char32_t character = 0;
    if (token[at + 1] == '"' || token[at + 1] == '\\') {  // nearly all are one of these
      value += token[at + 1];
      at += 2;
    } else if (ReadEscape(token, at, character))
      AppendUtf8(value, character);
    else
      value += token[at++];
  });
}

std::string TMofLexer::FileName(std::string_view token) {
  std::string value;
  Join(token, value, [&](std::size_t& at) {
    if (EscapesInFileName(token, at)) ++at;
    value += token[at++];
  });
  return value;
}

char16_t TMofLexer::CharacterValue(std::string_view token) {
  const auto inside = token.substr(1, token.size() - 2);
  char32_t unit = 0;
  std::size_t at = 0;
  if (inside[0] == '\\')
    ReadUnit(inside, at, unit);
  else
    unit = Utf8Value(inside);
  return static_cast<char16_t>(unit);
}

}  // namespace hav::mof

#include "havhost/report/TFilter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"
#include "havcore/client/FoldedName.h"
#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"
#include "havhost/report/Text.h"
#include "mof/MofCharacters.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

using TCondition = TFilter::TCondition;
// Negative, zero or positive; nothing where two values have no order.
using TOrder = std::optional<int>;

template <class T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

int TextOrder(std::string_view a, std::string_view b) {
  return NaturalLess(a, b) ? -1 : NaturalLess(b, a) ? 1 : 0;
}

// A number of any type; integers keep all their digits.
struct TNumber {
  bool isInteger = false;
  bool isNegative = false;
  std::uint64_t magnitude = 0;
  double real = 0;

  static TNumber Of(std::uint64_t value) {
    return {true, false, value, static_cast<double>(value)};
  }
  static TNumber Of(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return {true, value < 0, value < 0 ? 0 - bits : bits, static_cast<double>(value)};
  }
  static TNumber Of(double value) { return {false, value < 0, 0, value}; }
};

TOrder NumberOrder(const TNumber& a, const TNumber& b) {
  if (!a.isInteger || !b.isInteger)
    return std::isnan(a.real) || std::isnan(b.real) ? TOrder() : Order(a.real, b.real);
  if (a.isNegative != b.isNegative) return a.isNegative ? -1 : 1;
  const int order = Order(a.magnitude, b.magnitude);
  return a.isNegative ? -order : order;
}

std::optional<TNumber> NumberOf(const TCIMValue& value) {
  switch (value.GetType()) {
    case kCIMUInt8: return TNumber::Of(std::uint64_t{static_cast<std::uint8_t>(value)});
    case kCIMUInt16: return TNumber::Of(std::uint64_t{static_cast<std::uint16_t>(value)});
    case kCIMUInt32: return TNumber::Of(std::uint64_t{static_cast<std::uint32_t>(value)});
    case kCIMUInt64: return TNumber::Of(static_cast<std::uint64_t>(value));
    case kCIMSInt8: return TNumber::Of(std::int64_t{static_cast<std::int8_t>(value)});
    case kCIMSInt16: return TNumber::Of(std::int64_t{static_cast<std::int16_t>(value)});
    case kCIMSInt32: return TNumber::Of(std::int64_t{static_cast<std::int32_t>(value)});
    case kCIMSInt64: return TNumber::Of(static_cast<std::int64_t>(value));
    case kCIMReal32: return TNumber::Of(double{static_cast<float>(value)});
    case kCIMReal64: return TNumber::Of(static_cast<double>(value));
    default: return {};
  }
}

struct TLiteral {
  enum EKind { kNull, kBoolean, kNumber, kText };

  EKind kind = kNull;
  bool boolean = false;
  TNumber number;
  std::string text;  // of a number: as it is written
};

TOrder DateTimeOrder(const TCIMValue& element, const std::string& display,
                     const std::string& text) {
  try {
    return Order(static_cast<const TCIMDateTime&>(element), TCIMDateTime::Parse(text));
  } catch (const THAVException&) {
    return TextOrder(display, text);
  }
}

TOrder OrderOf(const TCIMValue& element, const std::string& display, const TLiteral& literal) {
  if (element.IsNull()) return {};
  const ECIMType type = element.GetType();
  const auto number = NumberOf(element);
  switch (literal.kind) {
    case TLiteral::kNull: return {};
    case TLiteral::kBoolean:
      return type == kCIMBoolean ? TOrder(Order(static_cast<bool>(element), literal.boolean))
                                 : TOrder();
    case TLiteral::kNumber:
      return number ? NumberOrder(*number, literal.number)
                    : TextOrder(element.ToString(10), literal.text);
    case TLiteral::kText: break;
  }
  if (type == kCIMDateTime) return DateTimeOrder(element, display, literal.text);
  return TextOrder(number || type == kCIMBoolean ? display : element.ToString(10), literal.text);
}

char Folded(char c) { return FoldCharacter(c); }

// `pattern` with % for any text and _ for any character. Complexity: O(text * pattern).
bool IsLike(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t next = 0;
  std::size_t star = std::string_view::npos;
  std::size_t starAt = 0;
  while (at < text.size()) {
    if (next < pattern.size() && pattern[next] == '%') {
      star = next++;
      starAt = at;
    } else if (next < pattern.size() && pattern[next] == '_') {
      at += std::max<std::size_t>(Utf8Length(text, at), 1);
      ++next;
    } else if (next < pattern.size() && Folded(pattern[next]) == Folded(text[at])) {
      ++at;
      ++next;
    } else if (star != std::string_view::npos) {
      next = star + 1;
      at = ++starAt;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('%', next) == std::string_view::npos;
}

// True when `meets` holds for the value, or for one element of an array.
template <class Meets>
bool MeetsAny(const TPropertyReport& property, Meets&& meets) {
  if (property.value.IsNull()) return false;
  const auto display = [&](std::size_t i) {
    return i < property.display.size() ? property.display[i] : std::string();
  };
  if (!property.value.IsArray()) return meets(property.value, display(0));
  const auto& elements = static_cast<const std::vector<TCIMValue>&>(property.value);
  for (std::size_t i = 0; i < elements.size(); ++i)
    if (meets(elements[i], display(i))) return true;
  return false;
}

bool IsMet(const std::string& comparison, TOrder order) {
  if (!order) return false;
  if (comparison == "=" || comparison == "==") return *order == 0;
  if (comparison == "<") return *order < 0;
  if (comparison == "<=") return *order <= 0;
  if (comparison == ">") return *order > 0;
  if (comparison == ">=") return *order >= 0;
  return *order != 0;
}

TCondition NullCondition(const std::string& name, bool isNull) {
  return [=](const TInstanceReport& instance) {
    const auto* property = instance.FindFolded(name);
    return (property == nullptr || property->value.IsNull()) == isNull;
  };
}

// Recursive descent over the text of one condition.
class TFilterParser {
 public:
  TFilterParser(std::string_view text, std::vector<std::string>& names)
      : m_text(text), m_names(names) {
    Advance();
  }

  TCondition Parse() {
    auto condition = Alternatives();
    if (m_kind != EKind::kEnd) Fail("'and', 'or' or the end");
    return condition;
  }

 private:
  enum class EKind { kEnd, kWord, kNumber, kText, kSign };

  static constexpr std::size_t kDeepest = 100;

  [[noreturn]] void Fail(const std::string& expected) const {
    throw TUsageError("--where: " + expected + " is expected" + Place());
  }

  std::string Place() const {
    return (m_kind == EKind::kEnd
                ? " at the end"
                : " at character " + std::to_string(Width(m_text.substr(0, m_at)) + 1)) +
           " of '" + Around() + "'";
  }

  // What stands around the place: a condition may be longer than anybody reads.
  std::string Around() const {
    constexpr std::size_t kBytes = 60;
    const auto isInside = [this](std::size_t at) {
      return at < m_text.size() && (static_cast<unsigned char>(m_text[at]) & 0xC0U) == 0x80U;
    };
    auto begin = m_at > kBytes ? m_at - kBytes : 0;
    auto end = std::min(m_at + kBytes, m_text.size());
    while (isInside(begin)) ++begin;
    while (isInside(end)) ++end;
    return (begin == 0 ? "" : "...") + std::string(m_text.substr(begin, end - begin)) +
           (end == m_text.size() ? "" : "...");
  }

  void Advance() {
    m_at = std::min(m_text.find_first_not_of(" \t\r\n", m_next), m_text.size());
    m_next = m_at;
    if (m_at == m_text.size()) {
      m_kind = EKind::kEnd;
      m_token.clear();
    } else if (IsQuote(m_text[m_at])) {
      ReadText();
    } else if (hav::mof::IsNameStart(m_text[m_at])) {
      m_kind = EKind::kWord;
      TakeWhile([](char c) { return hav::mof::IsNameCharacter(c); });
    } else if (hav::mof::IsDigit(m_text[m_at]) || m_text[m_at] == '-' || m_text[m_at] == '+' ||
               m_text[m_at] == '.') {
      ReadNumber();
    } else {
      m_kind = EKind::kSign;
      const auto sign = m_text.substr(m_at, 2);
      const bool isLong =
          sign == "!=" || sign == "<>" || sign == "<=" || sign == ">=" || sign == "==";
      m_token = m_text.substr(m_at, isLong ? 2 : 1);
      m_next += m_token.size();
    }
  }

  static bool IsQuote(char c) { return c == '\'' || c == '"'; }

  template <class IsPart>
  void TakeWhile(IsPart&& isPart) {
    while (m_next < m_text.size() && isPart(m_text[m_next])) ++m_next;
    m_token = m_text.substr(m_at, m_next - m_at);
  }

  void ReadText() {
    const char quote = m_text[m_next++];
    m_kind = EKind::kText;
    m_token.clear();
    for (;; ++m_next) {
      if (m_next == m_text.size()) {
        m_kind = EKind::kEnd;
        Fail(std::string("the quotation mark ") + quote);
      }
      if (m_text[m_next] == quote) {
        if (m_next + 1 == m_text.size() || m_text[m_next + 1] != quote) break;
        ++m_next;
      }
      m_token += m_text[m_next];
    }
    ++m_next;
  }

  // A sign belongs to a number at its beginning and behind the e of its exponent.
  void ReadNumber() {
    m_kind = EKind::kNumber;
    const bool isHex = m_text.substr(m_at, 3).find_first_of("xX") != std::string_view::npos;
    TakeWhile([&](char c) {
      const bool isSign = c == '-' || c == '+';
      const char before = m_next == m_at ? 'e' : Folded(m_text[m_next - 1]);
      return isSign ? before == 'e' && !isHex : c == '.' || hav::mof::IsNameCharacter(c);
    });
    const auto number = Number(m_token);
    if (!number) Fail("a number");
    m_number = *number;
  }

  static std::optional<TNumber> Number(std::string_view text) {
    const bool isNegative = text[0] == '-';
    if (isNegative || text[0] == '+') text.remove_prefix(1);
    const bool isHex = text.size() > 2 && text[0] == '0' && Folded(text[1]) == 'x';
    if (isHex) text.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const auto* const end = text.data() + text.size();
    const auto [at, failure] = std::from_chars(text.data(), end, magnitude, isHex ? 16 : 10);
    if (failure == std::errc() && at == end) {
      const double real = static_cast<double>(magnitude);
      return TNumber{true, isNegative && magnitude != 0, magnitude, isNegative ? -real : real};
    }
    if (isHex) return {};
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double real = 0;
    if (!(stream >> real) || stream.peek() != std::istringstream::traits_type::eof()) return {};
    return TNumber::Of(isNegative ? -real : real);
  }

  bool IsWord(std::string_view word) const {
    return m_kind == EKind::kWord && SameName(m_token, word);
  }
  bool TakeWord(std::string_view word) {
    if (!IsWord(word)) return false;
    Advance();
    return true;
  }
  bool IsSign(std::string_view sign) const { return m_kind == EKind::kSign && m_token == sign; }

  // Side by side, not one within another: there can be thousands.
  TCondition Alternatives() {
    std::vector<TCondition> any;
    do any.push_back(Conjunction());
    while (TakeWord("or"));
    if (any.size() == 1) return std::move(any.front());
    return [any = std::move(any)](const TInstanceReport& instance) {
      return std::any_of(any.begin(), any.end(), [&](const auto& one) { return one(instance); });
    };
  }

  TCondition Conjunction() {
    std::vector<TCondition> all;
    do all.push_back(Factor());
    while (TakeWord("and"));
    if (all.size() == 1) return std::move(all.front());
    return [all = std::move(all)](const TInstanceReport& instance) {
      return std::all_of(all.begin(), all.end(), [&](const auto& one) { return one(instance); });
    };
  }

  TCondition Factor() {
    const bool isNot = IsWord("not");
    if (!isNot && !IsSign("(")) return Comparison();
    if (++m_depth > kDeepest)
      throw TUsageError("--where: parentheses and 'not' nest deeper than " +
                        std::to_string(kDeepest) + Place());
    Advance();
    TCondition condition;
    if (isNot) {
      condition = [inner = Factor()](const TInstanceReport& instance) { return !inner(instance); };
    } else {
      condition = Alternatives();
      if (!IsSign(")")) Fail("')'");
      Advance();
    }
    --m_depth;
    return condition;
  }

  TCondition Comparison() {
    if (m_kind != EKind::kWord) Fail("the name of a property");
    const std::string name(m_token);
    m_names.push_back(name);
    Advance();
    if (TakeWord("is")) {
      const bool isNull = !TakeWord("not");
      if (!TakeWord("null")) Fail("'null'");
      return NullCondition(name, isNull);
    }
    if (TakeWord("like")) return Like(name);
    const std::string comparison(m_token);
    const auto known = {"=", "==", "!=", "<>", "<", "<=", ">", ">="};
    if (m_kind != EKind::kSign || std::find(known.begin(), known.end(), comparison) == known.end())
      Fail("a comparison, such as = or >,");
    Advance();
    return Compare(name, comparison);
  }

  TCondition Like(const std::string& name) {
    if (m_kind != EKind::kText) Fail("a text in quotation marks");
    const std::string pattern(m_token);
    Advance();
    return [=](const TInstanceReport& instance) {
      const auto* property = instance.FindFolded(name);
      return property != nullptr &&
             MeetsAny(*property, [&](const TCIMValue& element, const std::string& display) {
               return !element.IsNull() && IsLike(display, pattern);
             });
    };
  }

  TCondition Compare(const std::string& name, const std::string& comparison) {
    const auto literal = Literal();
    if (literal.kind == TLiteral::kNull) {
      const bool isEqual = IsMet(comparison, 0);
      if (comparison[0] == '<' && comparison != "<>") Fail("= or != before null");
      if (comparison[0] == '>') Fail("= or != before null");
      return NullCondition(name, isEqual);
    }
    return [=](const TInstanceReport& instance) {
      const auto* property = instance.FindFolded(name);
      return property != nullptr &&
             MeetsAny(*property, [&](const TCIMValue& element, const std::string& display) {
               return IsMet(comparison, OrderOf(element, display, literal));
             });
    };
  }

  TLiteral Literal() {
    TLiteral literal;
    literal.text = m_token;
    if (m_kind == EKind::kText) {
      literal.kind = TLiteral::kText;
    } else if (m_kind == EKind::kNumber) {
      literal.kind = TLiteral::kNumber;
      literal.number = m_number;
    } else if (IsWord("true") || IsWord("false")) {
      literal.kind = TLiteral::kBoolean;
      literal.boolean = IsWord("true");
    } else if (!IsWord("null")) {
      Fail("a number, a text in quotation marks, true, false or null");
    }
    Advance();
    return literal;
  }

  std::string_view m_text;
  std::vector<std::string>& m_names;
  std::size_t m_at = 0;    // where the token begins
  std::size_t m_next = 0;  // behind it
  EKind m_kind = EKind::kEnd;
  std::string m_token;
  TNumber m_number;
  std::size_t m_depth = 0;
};

}  // namespace

TFilter::TFilter(std::string_view text) : m_condition([](const TInstanceReport&) { return true; }) {
  if (text.find_first_not_of(" \t\r\n") != std::string_view::npos)
    m_condition = TFilterParser(text, m_names).Parse();
}

bool ValueLess(const TCIMValue& a, const TCIMValue& b) {
  if (a.IsNull() || b.IsNull()) return !a.IsNull();
  const auto numberA = NumberOf(a);
  const auto numberB = NumberOf(b);
  if (numberA && numberB) return NumberOrder(*numberA, *numberB).value_or(0) < 0;
  if (a.GetType() == b.GetType() && a.GetType() != kCIMString && a.GetType() != kCIMReference)
    return a < b;
  return NaturalLess(a.ToString(10), b.ToString(10));
}

}  // namespace havhost

#include "havhost/report/Text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "havcore/client/Utf8.h"
#include "mof/MofCharacters.h"

namespace havhost {

using namespace hav::client;

namespace {

constexpr char kDigits[] = "0123456789abcdef";

// What changes the direction of the text around it, and what takes no place: either can make one
// name look like another.
bool IsInvisible(char32_t c) {
  return c == 0xAD || c == 0x61C || c == 0x180E || (c >= 0x200B && c <= 0x200F) ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF ||
         (c >= 0xFFF9 && c <= 0xFFFB) || (c >= 0xE0000 && c <= 0xE007F);
}

bool IsUnprintable(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0) || IsInvisible(c); }

void AppendUnit(std::string& out, unsigned unit) {
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) out += kDigits[(unit >> shift) & 0xF];
}

// As JSON writes it: beyond the basic plane in two halves.
void AppendJsonEscape(std::string& out, char32_t c) {
  if (c < 0x10000) return AppendUnit(out, static_cast<unsigned>(c));
  const auto beyond = static_cast<unsigned>(c) - 0x10000;
  AppendUnit(out, 0xD800 + (beyond >> 10));
  AppendUnit(out, 0xDC00 + (beyond & 0x3FF));
}

void AppendEscaped(std::string& out, std::string_view bytes) {
  for (const char byte : bytes) switch (byte) {
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default: out += {'\\', 'x', kDigits[(byte >> 4) & 0xF], kDigits[byte & 0xF]};
    }
}

// The character that an escape stands for, and the escape's length; length 0 when `text` begins
// with none.
struct TEscape {
  char character = 0;
  std::size_t length = 0;
};
TEscape EscapeAt(std::string_view text) {
  if (text.size() < 2 || text[0] != '\\') return {};
  switch (text[1]) {
    case 'n': return {'\n', 2};
    case 'r': return {'\r', 2};
    case 't': return {'\t', 2};
    case 'x': break;
    default: return {};
  }
  unsigned value = 0;
  const auto digits = text.substr(2, 2);
  const auto [end, failure] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (failure != std::errc() || digits.size() < 2 || end != digits.data() + 2) return {};
  return {static_cast<char>(value), 4};
}

// The text with those characters escaped that are no UTF-8 or that `isUnwanted` names.
template <class IsUnwanted>
std::string Escaped(std::string_view text, IsUnwanted&& isUnwanted) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto length = Utf8Length(text, at);
    const auto character = text.substr(at, std::max<std::size_t>(length, 1));
    if (length == 0 || isUnwanted(Utf8Value(character)))
      AppendEscaped(result, character);
    else
      result += character;
    at += character.size();
  }
  return result;
}

// Takes the digits at the beginning of `text`, without leading zeros.
std::string_view TakeNumber(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && hav::mof::IsDigit(text[end])) ++end;
  auto number = text.substr(0, end);
  text.remove_prefix(end);
  while (!number.empty() && number[0] == '0') number.remove_prefix(1);
  return number;
}

std::vector<std::size_t> ColumnWidths(const std::vector<TRow>& rows, std::size_t widest) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i)
      if (const auto width = Width(row[i]); width <= widest) widths[i] = std::max(widths[i], width);
  }
  return widths;
}

constexpr std::size_t kGap = 2;  // between two columns

// Takes from the widest columns until all fit into `width`, or none is left to take from.
void Fit(std::vector<std::size_t>& widths, std::size_t width) {
  constexpr std::size_t kNarrowest = 8;
  auto total = kGap * (widths.empty() ? 0 : widths.size() - 1);
  for (const auto column : widths) total += column;
  for (; total > width; --total) {
    const auto widest = std::max_element(widths.begin(), widths.end());
    if (widest == widths.end() || *widest <= kNarrowest) return;
    --*widest;
  }
}

// The line `at` of a row whose cells are lines; it does not end in blanks.
std::string RowLine(const std::string& prefix, const std::vector<std::vector<std::string>>& columns,
                    std::size_t at, const std::vector<std::size_t>& widths, const TTextStyle& style,
                    const std::vector<TTextStyle::EInk>& inks) {
  std::string line;
  std::size_t blanks = 0;
  const auto append = [&](const std::string& text, TTextStyle::EInk ink) {
    const auto end = text.find_last_not_of(' ') + 1;
    if (end != 0) line.append(blanks, ' ').append(style.Ink(ink, text.substr(0, end)));
    blanks = (end == 0 ? blanks : 0) + text.size() - end;
  };
  append(prefix, TTextStyle::kFaint);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto text = at < columns[i].size() ? columns[i][at] : std::string();
    if (i != 0) blanks += kGap;
    append(text, i < inks.size() && columns.size() > 1 ? inks[i] : TTextStyle::kPlain);
    blanks += widths[i] - std::min(widths[i], Width(text));
  }
  return line;
}

}  // namespace

std::string Printable(std::string_view text) { return Escaped(text, IsUnprintable); }

std::string WithoutStrayBytes(std::string_view text) {
  return Escaped(text, [](char32_t) { return false; });
}

std::string PathOfPrintable(std::string_view text) {
  std::string path;
  path.reserve(text.size());
  while (!text.empty()) {
    const auto escape = EscapeAt(text);
    // What stands behind a backslash belongs to it, another backslash above all.
    const std::size_t length = escape.length != 0 ? escape.length : text[0] == '\\' ? 2 : 1;
    if (escape.length != 0)
      path += escape.character;
    else
      path += text.substr(0, length);
    text.remove_prefix(std::min(length, text.size()));
  }
  return path;
}

std::size_t Width(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const auto& text : texts) {
    if (&text != &texts.front()) joined += ", ";
    joined += text;
  }
  return joined;
}

std::string Count(std::size_t number, const std::string& things) {
  const auto thing = number == 1 ? things.substr(0, things.size() - 1) : things;
  return std::to_string(number) + " " + thing;
}

bool NaturalLess(std::string_view a, std::string_view b) {
  const auto wholeA = a;
  const auto wholeB = b;
  while (!a.empty() && !b.empty()) {
    if (hav::mof::IsDigit(a[0]) && hav::mof::IsDigit(b[0])) {
      const auto numberA = TakeNumber(a);
      const auto numberB = TakeNumber(b);
      if (numberA.size() != numberB.size()) return numberA.size() < numberB.size();
      if (numberA != numberB) return numberA < numberB;
    } else {
      if (a[0] != b[0]) return a[0] < b[0];
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  if (a.empty() != b.empty()) return a.empty();
  // The same numbers with other leading zeros.
  return wholeA < wholeB;
}

void PrintRows(std::ostream& out, const std::string& prefix, const std::vector<TRow>& rows,
               std::size_t widest, const TTextStyle& style, const TTableLook& look) {
  constexpr auto kAny = std::string::npos;
  std::vector<TRow> cells;
  for (const auto& row : rows) {
    cells.emplace_back();
    for (const auto& cell : row) cells.back().push_back(Printable(cell));
  }
  auto widths = ColumnWidths(cells, style.width == 0 ? widest : kAny);
  if (style.width != 0) Fit(widths, style.width - std::min(style.width, Width(prefix)));
  for (const auto& row : cells) {
    const bool isHeader = look.hasHeader && &row == &cells.front();
    const auto inks = isHeader ? std::vector(row.size(), TTextStyle::kStrong) : look.columns;
    std::vector<std::vector<std::string>> columns;
    std::size_t height = 1;
    for (std::size_t i = 0; i < row.size(); ++i) {
      columns.push_back(Wrap(row[i], style.width == 0 ? kAny : widths[i]));
      height = std::max(height, columns.back().size());
    }
    for (std::size_t at = 0; at < height; ++at)
      out << RowLine(prefix, columns, at, widths, style, inks) << '\n';
  }
}

std::vector<std::string> Wrap(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  for (;;) {
    std::size_t end = 0;
    for (std::size_t column = 0; column < width && end < text.size(); ++column)
      end += std::max<std::size_t>(Utf8Length(text, end), 1);
    if (end >= text.size()) break;
    // Blanks before the first word set it in.
    const auto blank = text.rfind(' ', end);
    if (blank != std::string_view::npos && blank > text.find_first_not_of(' ')) end = blank;
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(text.find_first_not_of(' ', end), text.size()));
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

std::string PrintableLines(std::string_view text) {
  return Escaped(text, [](char32_t c) { return c != '\n' && IsUnprintable(c); });
}

std::string PrintableJson(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto length = std::max<std::size_t>(Utf8Length(text, at), 1);
    const auto character = text.substr(at, length);
    const auto value = Utf8Value(character);
    if (value != '\n' && IsUnprintable(value))
      AppendJsonEscape(result, value);
    else
      result += character;
    at += length;
  }
  return result;
}

void PrintCsvLine(std::ostream& out, const TRow& cells) {
  for (const auto& cell : cells) {
    if (&cell != &cells.front()) out << ',';
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
      out << cell;
      continue;
    }
    out << '"';
    for (const char c : cell) {
      if (c == '"') out << c;
      out << c;
    }
    out << '"';
  }
  out << '\n';
}

}  // namespace havhost

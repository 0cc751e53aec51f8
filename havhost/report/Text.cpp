#include "havhost/report/Text.h"

#include <algorithm>
#include <cctype>

#include "havcore/client/Utf8.h"
#include "mof/MofCharacters.h"

namespace havhost {

using namespace hav::client;

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

std::string Escaped(char32_t c) {
  constexpr char digits[] = "0123456789abcdef";
  switch (c) {
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: return {'\\', 'x', digits[(c >> 4) & 0xF], digits[c & 0xF]};
  }
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

}  // namespace

std::string Printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto length = Utf8Length(text, at);
    const auto character = text.substr(at, std::max<std::size_t>(length, 1));
    if (length == 0)
      result += kReplacement;
    else if (const auto value = Utf8Value(character); IsControl(value))
      result += Escaped(value);
    else
      result += character;
    at += character.size();
  }
  return result;
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
               std::size_t widest) {
  std::vector<TRow> cells;
  for (const auto& row : rows) {
    cells.emplace_back();
    for (const auto& cell : row) cells.back().push_back(Printable(cell));
  }
  const auto widths = ColumnWidths(cells, widest);
  for (const auto& row : cells) {
    std::string line = prefix;
    std::size_t missing = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line.append(missing, ' ').append(i == 0 ? "" : "  ").append(row[i]);
      missing = widths[i] - std::min(widths[i], Width(row[i]));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

}  // namespace havhost

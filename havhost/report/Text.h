// Text: printing for people: text that is safe on a terminal, and aligned columns.
//
// Threads: pure functions.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "havhost/TTextStyle.h"

namespace havhost {

// The text on one line: control characters (inventories hold what firmware and devices say of
// themselves), what turns the direction of text, what takes no place, and bytes that are no UTF-8
// as escapes, \n, \r, \t or \xHH for each byte.
std::string Printable(std::string_view text);
// The same for bytes that are no UTF-8 alone.
std::string WithoutStrayBytes(std::string_view text);
// The object path that one of them was made of: a path itself has a backslash before another
// one or a quotation mark only. Any other path stays as it is.
std::string PathOfPrintable(std::string_view text);

// How many columns printable text takes: one for each character.
std::size_t Width(std::string_view text);

// The texts with ", " between them.
std::string Join(const std::vector<std::string>& texts);

// "1 instance", "2 instances"; `things` is the plural, with an s.
std::string Count(std::size_t number, const std::string& things);

// Text in which numbers order by their value: "eth2" before "eth10".
bool NaturalLess(std::string_view a, std::string_view b);

using TRow = std::vector<std::string>;

// How the columns of a table look where there is colour.
struct TTableLook {
  std::vector<TTextStyle::EInk> columns = {TTextStyle::kName};  // those after these are plain
  bool hasHeader = false;                                       // the first row is
};

// Writes the rows with `prefix` before each and the columns aligned, made printable. A cell
// wider than `widest` does not widen its column, and no line ends in blanks.
//
// Where the style has a width, columns shrink until the lines fit, and cells go on below
// themselves; then `widest` has no meaning.
void PrintRows(std::ostream& out, const std::string& prefix, const std::vector<TRow>& rows,
               std::size_t widest = 40, const TTextStyle& style = {}, const TTableLook& look = {});

// The text in lines of at most `width` columns, broken at blanks where there are any.
std::vector<std::string> Wrap(std::string_view text, std::size_t width);

// The text with each of its lines made printable.
std::string PrintableLines(std::string_view text);

// The same for lines of JSON, whose texts it leaves what they are: with JSON's own escapes.
std::string PrintableJson(std::string_view text);

// Writes the cells as one line of CSV: with commas between them, quoted where RFC 4180 asks for
// it.
void PrintCsvLine(std::ostream& out, const TRow& cells);

}  // namespace havhost

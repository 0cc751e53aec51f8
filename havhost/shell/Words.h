// Words: a line of the shell taken apart.
//
// Ownership: values.
//
// Threads: pure functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace havhost {

// Blanks part words. A quote that begins a word goes as far as its like, and neither is part of
// the word; a double quote inside a word is part of it, with what stands up to the next one, so
// that an object path can be typed as it is shown: T.Name="a b". Throws TUsageError for a quote
// that does not end.
std::vector<std::string> WordsOf(std::string_view line);

// A line that is being typed.
struct TTypedLine {
  std::vector<std::string> before;  // the words that are whole
  std::string word;                 // what is typed of the next one, without the quote before it
  std::size_t begin = 0;            // where that begins
};

// The same for a line whose last word goes on; its quotes need not end.
TTypedLine TypedLineOf(std::string_view line);

}  // namespace havhost

// TBashLine: a line as bash has it while a word is being typed, and what to give back for that
// word.
//
// Ownership: values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace havhost {

struct TBashLine {
  std::vector<std::string> before;  // the words, the program's own name first, without their quotes
  std::string word;                 // what is typed of the next one
  // Bash replaces not all of that: not what stands before a quote that is open, or before a
  // character that ends words to it.
  std::string kept;
  char quote = '\0';  // the one that is open

  // `line` ends at the cursor; `breaks` is bash's COMP_WORDBREAKS.
  static TBashLine Of(std::string_view line, std::string_view breaks);

  // What stands for `text`, which the word can become, in the place of what bash replaces.
  std::string Reply(const std::string& text) const;
};

}  // namespace havhost

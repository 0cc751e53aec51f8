#include "havhost/shell/Words.h"

#include "havhost/THostError.h"

namespace havhost {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// The place of the quote that ends what begins at `begin`; in double quotes a backslash takes
// the character after it along.
std::size_t EndOfQuote(std::string_view line, std::size_t begin) {
  const char quote = line[begin];
  for (auto at = begin + 1; at < line.size(); ++at) {
    if (quote == '"' && line[at] == '\\')
      ++at;
    else if (line[at] == quote)
      return at;
  }
  throw TUsageError(std::string("a quotation mark ") + quote + " does not end");
}

}  // namespace

std::vector<std::string> WordsOf(std::string_view line) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while (at < line.size()) {
    if (IsBlank(line[at])) {
      ++at;
      continue;
    }
    std::string word;
    if (line[at] == '\'' || line[at] == '"') {
      const auto end = EndOfQuote(line, at);
      word = line.substr(at + 1, end - at - 1);
      at = end + 1;
    }
    for (; at < line.size() && !IsBlank(line[at]); ++at) {
      const auto end = line[at] == '"' ? EndOfQuote(line, at) : at;
      word += line.substr(at, end - at + 1);
      at = end;
    }
    words.push_back(std::move(word));
  }
  return words;
}

TTypedLine TypedLineOf(std::string_view line) {
  TTypedLine typed;
  char quote = '\0';
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (quote != '\0') {
      if (quote == '"' && line[at] == '\\')
        ++at;
      else if (line[at] == quote)
        quote = '\0';
    } else if (IsBlank(line[at])) {
      typed.begin = at + 1;
    } else if (line[at] == '"' || (line[at] == '\'' && at == typed.begin)) {
      quote = line[at];
    }
  }
  typed.before = WordsOf(line.substr(0, typed.begin));
  const bool isQuoted = quote != '\0' && line[typed.begin] == quote;
  if (isQuoted) ++typed.begin;
  typed.word = line.substr(typed.begin);
  return typed;
}

}  // namespace havhost

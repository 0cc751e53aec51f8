#include "havhost/completion/TBashLine.h"

#include <algorithm>

namespace havhost {

namespace {

constexpr std::string_view kSpecial = " \t\n\\\"'`$&|;<>()*?[]{}#~!";

}  // namespace

TBashLine TBashLine::Of(std::string_view line, std::string_view breaks) {
  TBashLine typed;
  bool isWord = false;
  std::string beforeQuote;
  const auto take = [&](char c) {
    typed.word += c;
    isWord = true;
  };
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (c == '\\' && typed.quote != '\'') {
      if (++at < line.size()) take(line[at]);
    } else if (typed.quote != '\0') {
      if (c == typed.quote)
        typed.quote = '\0';
      else
        take(c);
    } else if (c == '\'' || c == '"') {
      typed.quote = c;
      beforeQuote = typed.word;
      isWord = true;
    } else if (c == ' ' || c == '\t' || c == '\n') {
      if (isWord) typed.before.push_back(typed.word);
      typed.word.clear();
      typed.kept.clear();
      isWord = false;
    } else {
      take(c);
      if (breaks.find(c) != std::string_view::npos) typed.kept = typed.word;
    }
  }
  if (typed.quote != '\0') typed.kept = beforeQuote;
  return typed;
}

std::string TBashLine::Reply(const std::string& text) const {
  const auto rest = text.substr(std::min(kept.size(), text.size()));
  std::string reply;
  for (const char c : rest) {
    if (quote == '\'' && c == '\'')
      reply += "'\\'";
    else if (quote == '"' ? std::string_view("\\\"$`").find(c) != std::string_view::npos
                          : quote == '\0' && kSpecial.find(c) != std::string_view::npos)
      reply += '\\';
    reply += c;
  }
  return reply;
}

}  // namespace havhost

// TLineReader: the lines that a person types, with history and completion, or those of a script.
//
// Errors: none; without a place for it, the history is not kept.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "havhost/TConsole.h"

namespace havhost {

class TLineReader {
 public:
  struct TProposal {
    std::vector<std::string> texts;  // in the place of what the line has from `begin` on
    std::size_t begin = 0;
    bool isWord = true;  // one that stands alone ends the word
  };
  // What the last word of the line can become.
  using TComplete = std::function<TProposal(const std::string& line)>;

  // Edits lines where the console's input is standard input and both that and standard output
  // are a terminal; else it takes them as they come, without a prompt.
  static std::unique_ptr<TLineReader> Make(const TConsole& console, TComplete complete);

  virtual ~TLineReader() = default;
  // The next line without its end. False when there is none any more.
  virtual bool Read(std::string& line) = 0;
};

}  // namespace havhost

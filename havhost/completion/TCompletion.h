// TCompletion: what the word that is being typed on a command line can become, told by the tree of
// commands and, where names are due, by the namespace that the line looks at.
//
// Ownership: values; what it is made with is called at each completion.
// Errors:    those of `open` pass through; a line that is wrong completes to nothing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "havhost/CommandLine.h"

namespace havhost {

struct TCompleted {
  struct TWord {
    std::string text;
    std::string description;  // may be empty
  };

  std::vector<TWord> words;  // each begins, case folded, with what is typed; in order
  bool goesOn = false;       // the word does not end with these
  bool files = false;        // names of files as well
  bool folders = false;
};

class TCompletion {
 public:
  using TDeclare = std::function<void(CLI::App& tree, TCommandLine& line)>;
  // The namespace for these settings.
  using TOpen = std::function<boost::shared_ptr<NORVHAV20::ICIMNamespace>(TSettings& settings)>;

  TCompletion(TDeclare declare, TOpen open)
      : m_declare(std::move(declare)), m_open(std::move(open)) {}

  // What `word` can become after the words before it, the program's own name not among them.
  TCompleted Of(const std::vector<std::string>& before, const std::string& word) const;

 private:
  TDeclare m_declare;
  TOpen m_open;
};

}  // namespace havhost

// TCompletion: what the word that is being typed in the shell can become.
//
// Ownership: shares the namespace.
// Errors:    those of the namespace pass through.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"

namespace havhost {

class TCompletion {
 public:
  TCompletion(boost::shared_ptr<NORVHAV20::ICIMNamespace> target, std::vector<std::string> commands)
      : m_target(std::move(target)), m_commands(std::move(commands)) {}

  // Where the last word of `line` begins.
  static std::size_t BeginOfWord(const std::string& line);
  // All that begins as the last word of `line` does, case folded, in order: commands as the first
  // word; behind `get`, `references` and `associators` object paths, once the class is there;
  // else classes, and properties of the class that the line names. Options complete nothing.
  std::vector<std::string> Of(const std::string& line) const;

 private:
  std::vector<std::string> Candidates(const std::string& line, const std::string& word) const;

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_target;
  std::vector<std::string> m_commands;
};

}  // namespace havhost

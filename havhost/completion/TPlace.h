// TPlace: where on a command line the next word stands.
//
// Ownership: points into the tree of commands.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace havhost {

struct TPlace {
  const CLI::App* command = nullptr;     // none yet: a command is due
  const CLI::Option* value = nullptr;    // the option whose value is due
  const CLI::Option* further = nullptr;  // the one whose values may go on
  std::size_t arguments = 0;             // so many are there
  bool isOptionsEnd = false;             // "--" was

  static TPlace After(const CLI::App& tree, const std::vector<std::string>& words);

 private:
  void Pass(const std::string& word);
};

}  // namespace havhost

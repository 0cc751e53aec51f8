// TConsole: where the program reads and writes.
//
// Ownership: the streams belong to the caller.
#pragma once

#include <cstddef>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

namespace havhost {

// The terminal that shows standard output.
struct TTerminal {
  bool isThere = false;  // else standard output is a file or a pipe
  bool hasColour = true;
  bool isUtf8 = true;
  std::size_t width = 80;  // in columns
  std::size_t height = 24;
  // Lets the user leaf through the text; false when there is no way to. None: there is none.
  std::function<bool(const std::string& text)> page = {};
};

struct TConsole {
  std::ostream& out;
  std::ostream& err;
  // Whether a person watches `err`, so that progress may be shown there.
  bool showsProgress = false;
  // Standard input; none: it is empty.
  std::istream* in = nullptr;
  TTerminal terminal = {};
};

}  // namespace havhost

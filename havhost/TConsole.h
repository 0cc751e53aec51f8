// TConsole: where the program reads and writes.
//
// Ownership: the streams belong to the caller.
#pragma once

#include <istream>
#include <ostream>

namespace havhost {

struct TConsole {
  std::ostream& out;
  std::ostream& err;
  // Whether a person watches `err`, so that progress may be shown there.
  bool showsProgress = false;
  // Standard input; none: it is empty.
  std::istream* in = nullptr;
};

}  // namespace havhost

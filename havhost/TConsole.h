// TConsole: where the program writes.
//
// Ownership: the streams belong to the caller.
#pragma once

#include <ostream>

namespace havhost {

struct TConsole {
  std::ostream& out;
  std::ostream& err;
  // Whether a person watches `err`, so that progress may be shown there.
  bool showsProgress = false;
};

}  // namespace havhost

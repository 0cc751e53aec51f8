// Program: the host program as a function, so that tests can call it.
#pragma once

#include <string>
#include <vector>

#include "havhost/TConsole.h"

namespace havhost {

enum EExitStatus : int { kExitDone = 0, kExitFailed = 1, kExitUsage = 2 };

// Runs one command line, without the program's own name. What was asked for goes to the
// console's output; what went wrong to its error stream, each in one line that begins with
// "havhost: ". A reader that closes the output early is no failure.
int Run(const std::vector<std::string>& arguments, const TConsole& console);

}  // namespace havhost

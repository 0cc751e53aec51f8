// PathHint: what is said to those whose shell has taken the quotes out of an object path.
#pragma once

#include <string>

#include "havcore/ICIMNamespace.h"

namespace havhost {

// The path with quotes put around what its class declares as text; empty when they are all
// there, or when quotes make no path of it either.
std::string WithQuotes(NORVHAV20::ICIMNamespace& target, const std::string& path);

// The sentence that tells how to write `path` for the shell of this system.
std::string QuotesHint(const std::string& path);

}  // namespace havhost

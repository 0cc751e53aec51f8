// ManualPage: the page havhost(1), from the tree of commands that their help is made of.
//
// Threads: pure functions.
#pragma once

#include <ostream>

#include <CLI/CLI.hpp>

namespace havhost {

// In the language of man(7).
void PrintManualPage(std::ostream& out, const CLI::App& program);

}  // namespace havhost

// CommandTree: the commands, arguments and options of a command line, as its help, the manual page
// and completion tell them.
//
// Ownership: the results point into the tree.
// Threads:   pure functions.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace havhost {

using TCommandList = std::vector<const CLI::App*>;
using TOptionList = std::vector<const CLI::Option*>;

// Takes the command out of what is told.
void Hide(CLI::App& command);

// In the order in which they were declared.
TCommandList CommandsOf(const CLI::App& app);
TOptionList ArgumentsOf(const CLI::App& app);
TOptionList OptionsOf(const CLI::App& app);

// "FILE..."
std::string ArgumentText(const CLI::Option& argument);
// "-o,--output FILE"
std::string OptionText(const CLI::Option& option);
// What stands behind the name of the command: "[OPTIONS] CLASS"
std::string UsageText(const CLI::App& app);

// What a value is: "FILE", "DIR", "CLASS", ..., or the choices there are, as "text|json"; empty for
// an option that takes none.
std::string ValueOf(const CLI::Option& option);
// True when all words that follow are its values.
bool TakesMany(const CLI::Option& option);

}  // namespace havhost

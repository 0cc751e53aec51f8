// Output: what commands write, put where it is to go in a way that is fit for it.
//
// Errors: THostError for a file that cannot be written.
#pragma once

#include <functional>

#include "havhost/TConsole.h"
#include "havhost/TSettings.h"
#include "havhost/TTextStyle.h"

namespace havhost {

// How text may look on this terminal. A file or a pipe gets the same whatever the terminal.
TTextStyle StyleOf(const TSettings& settings, const TTerminal& terminal);

// Lets `act` write, with its style in the settings: into a file, which is replaced when all went
// well; to the console as it comes; or, when the output has an end that can be waited for, at
// once: on a terminal what is longer than the screen goes to the pager.
void WithOutput(TSettings& settings, bool isShownAtOnce, const TConsole& console,
                const std::function<void(const TConsole& shown)>& act);

}  // namespace havhost

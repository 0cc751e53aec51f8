// havhost manual: the page havhost(1), for `man`. The build installs it.
#include "havhost/CommandLine.h"
#include "havhost/CommandTree.h"
#include "havhost/ManualPage.h"

namespace havhost {

void AddManualCommand(CLI::App& program, TCommandLine& line) {
  auto& command =
      AddCommand(program, line, {"manual", "Write the manual page", "havhost manual > havhost.1"},
                 [](const TConsole& console) {
                   TCommandLine told;
                   CLI::App tree;
                   DeclareProgram(tree, told);
                   PrintManualPage(console.out, tree);
                 });
  Hide(command);
}

}  // namespace havhost

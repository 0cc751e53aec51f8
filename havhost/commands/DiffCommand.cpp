// havhost diff: two snapshots, and what is different between them.
#include <memory>

#include "havcore/client/TPluginLoader.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/OpenNamespace.h"
#include "havhost/Paths.h"
#include "havhost/ReadText.h"
#include "havhost/THostError.h"
#include "havhost/THostLogger.h"
#include "havhost/report/TSnapshot.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

namespace {

// MOF cannot begin with a brace.
bool IsJson(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  return first != std::string::npos && text[first] == '{';
}

TSnapshot ReadSnapshot(const std::string& name, TSettings settings, const TConsole& console) {
  const auto text = ReadTextFile(name);
  if (IsJson(text)) return TSnapshot::Parse(text, name);
  settings.mofFiles = {name};
  THostLogger logger(console.err, settings.verbose);
  TPluginLoader plugin(settings.plugin.empty() ? InstalledPlugin() : PathOf(settings.plugin));
  return TSnapshot::Of(*OpenNamespace(plugin, settings, console));
}

bool Differ(const std::string& before, const std::string& after, const TSettings& settings,
            const TConsole& console) {
  const auto old = ReadSnapshot(before, settings, console);
  const auto changes = ReadSnapshot(after, settings, console).Since(old);
  if (settings.IsJson())
    PrintJson(console.out, ToJson(changes));
  else if (changes.empty() && settings.style.isShown)
    console.out << settings.style.Ink(TTextStyle::kFaint, "nothing is different") << '\n';
  else
    PrintChanges(console.out, changes, settings.style);
  return !changes.empty();
}

}  // namespace

void AddDiffCommand(CLI::App& program, TCommandLine& line) {
  const auto files = std::make_shared<std::vector<std::string>>();
  auto& command = AddCommand(program, line,
                             {"diff", "Show what is different between two snapshots",
                              "havhost diff monday.json today.json"},
                             [&line, files](const TConsole& console) {
                               line.failed = kExitUsage;  // trouble is told apart from a difference
                               const bool differ =
                                   Differ((*files)[0], (*files)[1], line.settings, console);
                               line.status = differ ? kExitFailed : kExitDone;
                             });
  command
      .add_option("FILES", *files,
                  "The earlier and the later one: MOF, or what --format json wrote")
      ->type_name("")
      ->expected(2)
      ->required();
  AddFormatOption(command, line.settings);
  AddNamespaceOptions(command, line.settings);
  command.footer(
      "Exit status: 0 when nothing is different, 1 when something is, 2 when a file cannot be\n"
      "read.\n\nExample:\n  havhost diff monday.json today.json");
}

}  // namespace havhost

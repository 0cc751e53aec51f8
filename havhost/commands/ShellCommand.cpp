// havhost shell: commands, one a line, on one namespace that stays open.
#include <memory>
#include <new>

#include "havcore/THAVException.h"
#include "havhost/CommandLine.h"
#include "havhost/THelpText.h"
#include "havhost/THostError.h"
#include "havhost/TOutputBuffer.h"
#include "havhost/report/Text.h"
#include "havhost/shell/TCompletion.h"
#include "havhost/shell/TLineReader.h"
#include "havhost/shell/Words.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

using TWords = std::vector<std::string>;
using TTarget = boost::shared_ptr<ICIMNamespace>;

// Options that say which namespace is opened: it is open.
constexpr const char* kOpening[] = {"--mof",     "--schema", "--root",   "--namespace",
                                    "--include", "--plugin", "--verbose"};

void Declare(CLI::App& shell, TCommandLine& line) {
  shell.name("");
  shell.allow_windows_style_options(false);
  shell.require_subcommand(1);
  shell.formatter(std::make_shared<THelpText>());
  shell.footer(
      "`help` lists the commands, `help COMMAND` tells more of one, `quit` ends the shell. An\n"
      "object path is typed as it is shown.\n\n"
      "Example:\n  instances ORVSG_Processor");
  AddInventoryCommand(shell, line);
  AddClassesCommand(shell, line);
  AddShowCommand(shell, line);
  AddInstancesCommand(shell, line);
  AddGetCommand(shell, line);
  AddReferencesCommand(shell, line);
  AddAssociatorsCommand(shell, line);
  AddMofCommand(shell, line);
  for (auto* command : shell.get_subcommands({}))
    for (const char* const name : kOpening)
      if (auto* const option = command->get_option_no_throw(name)) command->remove_option(option);
}

TWords CommandNames() {
  TCommandLine line;
  CLI::App shell;
  Declare(shell, line);
  TWords names = {"help", "quit"};
  for (const auto* command : shell.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

// `help` and `help COMMAND`, as options of the command line.
TWords Spelt(TWords words) {
  if (words.front() != "help") return words;
  words.erase(words.begin());
  words.push_back("--help");
  return words;
}

void RunWords(const TTarget& target, const std::string& name, const TWords& words,
              std::ostream& out) {
  TCommandLine line;
  line.settings.namespaceName = name;
  CLI::App shell("Commands of the shell, on the namespace " + name + ".");
  Declare(shell, line);
  try {
    shell.parse(TWords(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    out << shell.help();
    return;
  } catch (const CLI::ParseError& failure) {
    if (shell.get_subcommands().empty())
      throw TUsageError("no such command: " + words.front() + " (help lists them)");
    throw TUsageError(failure.what());
  }
  Perform(line, target, out);
}

// What fails costs its own line only; that nobody reads any more ends the shell.
void RunLine(const TTarget& target, const std::string& name, const std::string& text,
             const TConsole& console) {
  const auto fail = [&](const std::string& what) {
    console.out.flush();
    console.err << "havhost: " << Printable(what) << std::endl;
  };
  try {
    const auto words = WordsOf(text);
    if (!words.empty()) RunWords(target, name, Spelt(words), console.out);
  } catch (const TOutputError&) {
    throw;
  } catch (const std::bad_alloc&) {
    fail("out of memory");
  } catch (const std::exception& failure) {
    fail(failure.what());
  }
}

bool IsEnd(const std::string& line) { return line == "quit" || line == "exit"; }

void RunShell(const TTarget& target, const TSettings& settings, const TConsole& console) {
  const TCompletion completion(target, CommandNames());
  const auto reader =
      TLineReader::Make(console, [&](const std::string& line) { return completion.Of(line); });
  std::string line;
  while (reader->Read(line)) {
    line.erase(0, line.find_first_not_of(" \t\r"));
    line.erase(line.find_last_not_of(" \t\r") + 1);
    if (IsEnd(line)) return;
    if (line.empty() || line.front() == '#') continue;
    RunLine(target, settings.namespaceName, line, console);
    console.out.flush();
  }
}

}  // namespace

void AddShellCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"shell", "Look around in one namespace, command by command",
                              "havhost shell --mof model.mof"},
                             {});
  command.callback([&line] { line.sessionAction = RunShell; });
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

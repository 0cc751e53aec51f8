// havhost shell: commands, one a line, on one namespace that stays open.
#include <memory>
#include <new>
#include <string_view>
#include <variant>

#include "havcore/THAVException.h"
#include "havhost/CommandLine.h"
#include "havhost/Output.h"
#include "havhost/THelpText.h"
#include "havhost/THostError.h"
#include "havhost/TOutputBuffer.h"
#include "havhost/completion/FileNames.h"
#include "havhost/completion/TCompletion.h"
#include "havhost/report/Text.h"
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

void Declare(CLI::App& shell, TCommandLine& line, const TTextStyle& style = {}) {
  shell.name("");
  shell.allow_windows_style_options(false);
  shell.require_subcommand(1);
  shell.formatter(std::make_shared<THelpText>(style));
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
  for (auto* command : shell.get_subcommands({})) {
    for (const char* const name : kOpening)
      if (auto* const option = command->get_option_no_throw(name)) command->remove_option(option);
    // The program has been named when the shell began.
    auto footer = command->get_footer();
    constexpr std::string_view kProgram = "  havhost ";
    if (const auto at = footer.find(kProgram); at != std::string::npos)
      command->footer(footer.replace(at, kProgram.size(), "  "));
  }
}

// What can be typed: those, and what the shell itself understands.
void DeclareTyped(CLI::App& shell, TCommandLine& line) {
  Declare(shell, line);
  shell.add_subcommand("help", "List the commands, or tell more of one")->add_option("COMMAND");
  shell.add_subcommand("quit", "End the shell");
}

TLineReader::TProposal Complete(const TCompletion& completion, const std::string& line) {
  const auto typed = TypedLineOf(line);
  const auto found = completion.Of(typed.before, typed.word);
  TLineReader::TProposal proposal{{}, typed.begin, !found.goesOn};
  for (const auto& word : found.words) proposal.texts.push_back(word.text);
  if (!proposal.texts.empty() || !(found.files || found.folders)) return proposal;
  proposal.texts = FileNamesFrom(typed.word, !found.files);
  proposal.isWord = proposal.texts.size() == 1 && proposal.texts[0].back() != '/';
  return proposal;
}

// `help` and `help COMMAND`, as options of the command line.
TWords Spelt(TWords words) {
  if (words.front() != "help") return words;
  words.erase(words.begin());
  words.push_back("--help");
  return words;
}

void RunWords(const TTarget& target, const std::string& name, const TWords& words,
              const TConsole& console) {
  TCommandLine line;
  line.settings.namespaceName = name;
  CLI::App shell("Commands of the shell, on the namespace " + name + ".");
  Declare(shell, line, StyleOf(line.settings, console.terminal));
  try {
    shell.parse(TWords(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    console.out << shell.help();
    return;
  } catch (const CLI::ParseError& failure) {
    if (shell.get_subcommands().empty())
      throw TUsageError("no such command: " + words.front() + " (help lists them)");
    throw TUsageError(failure.what());
  }
  WithOutput(line.settings, true, console, [&](const TConsole& shown) {
    std::get<TCommandAction>(line.action)(target, line.settings, shown.out);
  });
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
    if (!words.empty()) RunWords(target, name, Spelt(words), console);
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
  const TCompletion completion(DeclareTyped, [&](TSettings&) { return target; });
  const auto reader = TLineReader::Make(
      console, [&](const std::string& line) { return Complete(completion, line); });
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
                             RunShell);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

#include "havhost/Program.h"

#include <algorithm>
#include <memory>
#include <new>
#include <sstream>

#include "havcore/THAVException.h"
#include "havcore/client/TPluginLoader.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/OpenNamespace.h"
#include "havhost/Paths.h"
#include "havhost/THelpText.h"
#include "havhost/THostError.h"
#include "havhost/THostLogger.h"
#include "havhost/TOutputBuffer.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr char kHelp[] = "help";
constexpr char kHelpArgument[] = "COMMAND";

void AddHelpCommand(CLI::App& program) {
  auto& command = *program.add_subcommand(kHelp, "Show this help, or that of a command");
  command.add_option(kHelpArgument, "Name of the command");
  command.footer("Example:\n  havhost help instances");
}

// The help that `havhost help` asks for.
std::string HelpAskedFor(const CLI::App& program) {
  const auto* const name = program.get_subcommand(kHelp)->get_option(kHelpArgument);
  // The program's own help would be that of the command that was given, which is this one.
  if (name->count() == 0)
    return THelpText().make_help(&program, program.get_name(), CLI::AppFormatMode::Normal);
  try {
    return program.get_subcommand(name->results()[0])->help(program.get_name());
  } catch (const CLI::OptionNotFound&) {
    throw TUsageError("no such command: " + name->results()[0] + " (see havhost --help)");
  }
}

void Declare(CLI::App& program, TCommandLine& line) {
  program.name("havhost");
  program.allow_windows_style_options(false);
  program.set_version_flag("--version", "havhost " HAVHOST_VERSION, "Print the version and exit");
  program.require_subcommand(1);
  program.formatter(std::make_shared<THelpText>());
  program.footer(
      "Commands look at what the files of --mof hold, and without it at the inventory of this\n"
      "machine. `havhost COMMAND --help` tells more of a command.\n\n"
      "Example:\n  havhost inventory");
  AddHelpCommand(program);
  AddInventoryCommand(program, line);
  AddLoadCommand(program, line);
  AddClassesCommand(program, line);
  AddShowCommand(program, line);
  AddInstancesCommand(program, line);
  AddGetCommand(program, line);
  AddReferencesCommand(program, line);
  AddAssociatorsCommand(program, line);
  AddMofCommand(program, line);
  AddDiffCommand(program, line);
  AddWatchCommand(program, line);
  AddCheckCommand(program, line);
  AddShellCommand(program, line);
  AddServeCommand(program, line);
  AddPasswdCommand(program, line);
}

// One sentence, and where to read more.
std::string UsageError(const CLI::App& program, const std::vector<std::string>& arguments,
                       const CLI::ParseError& failure) {
  const auto commands = program.get_subcommands();
  const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
  std::string what = failure.what();
  if (commands.empty() && arguments.empty())
    what = "a command is required";
  else if (commands.empty())
    what =
        (arguments[0].rfind('-', 0) == 0 ? "no such option: " : "no such command: ") + arguments[0];
  return what + " (see havhost" + command + " --help)";
}

// Reads the command line. Returns true when there is a command to run; help and version are
// written at once.
bool Parse(const std::vector<std::string>& arguments, TCommandLine& line, std::ostream& out) {
  CLI::App program(
      "Shows CIM classes and instances: of this machine's inventory, or of MOF files.");
  Declare(program, line);
  try {
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    const auto* const command = program.get_subcommands().front();
    line.isShownAtOnce = command->get_option_no_throw("--no-pager") != nullptr;
    if (command->get_name() != kHelp) return true;
    out << HelpAskedFor(program);
  } catch (const CLI::CallForHelp&) {
    out << program.help();
  } catch (const CLI::CallForVersion&) {
    out << program.version() << '\n';
  } catch (const CLI::ParseError& failure) {
    throw TUsageError(UsageError(program, arguments, failure));
  }
  return false;
}

void Finish(std::ostream& out) {
  out.flush();
  if (!out) throw THostError("cannot write the output");
}

// How text may look on this console. A file or a pipe gets the same whatever the terminal.
TTextStyle StyleOf(const TSettings& settings, const TTerminal& terminal) {
  TTextStyle style;
  const bool isShown = terminal.isThere && settings.outputFile.empty();
  style.colour =
      settings.color == "always" || (settings.color == "auto" && isShown && terminal.hasColour);
  style.boxes = !isShown || terminal.isUtf8;
  style.width = isShown ? terminal.width : 0;
  return style;
}

bool IsLonger(const std::string& text, std::size_t lines) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) >= lines;
}

// What programs are to read is not made for a terminal.
void Show(std::string text, const TCommandLine& line, const TConsole& console) {
  if (line.settings.format != "text") text = PrintableLines(text);
  const auto& terminal = console.terminal;
  const bool isPaged = terminal.page && !line.settings.noPager && IsLonger(text, terminal.height) &&
                       terminal.page(text);
  if (!isPaged) console.out << text;
}

void Execute(TPluginLoader& plugin, TCommandLine& line, const TConsole& console) {
  const auto target = OpenNamespace(plugin, line.settings, console);
  line.settings.style = StyleOf(line.settings, console.terminal);
  if (line.sessionAction) return line.sessionAction(target, line.settings, console);
  const bool isShown = line.isShownAtOnce && console.terminal.isThere;
  if (!isShown || !line.settings.outputFile.empty()) return Perform(line, target, console.out);
  std::ostringstream text;
  Perform(line, target, text);
  Show(text.str(), line, console);
}

// The status says what kind of failure it was, and the line logged before it the rest.
std::string Describe(const THAVException& failure, THostLogger& logger) {
  const auto logged = logger.TakeLastError();
  return failure.what() + (logged.empty() ? "" : ": " + logged);
}

void RunCommand(TCommandLine& line, const TConsole& console) {
  if (line.plainAction) return line.plainAction(console);
  const auto& settings = line.settings;
  THostLogger logger(console.err, settings.verbose);
  TPluginLoader plugin(settings.plugin.empty() ? InstalledPlugin() : PathOf(settings.plugin));
  // The log would break up the line that says how far the work is.
  const bool showsProgress = console.showsProgress && !settings.verbose;
  std::string failure;
  try {
    Execute(plugin, line, {console.out, console.err, showsProgress, console.in, console.terminal});
  } catch (const THAVException& thrown) {
    // It is the plug-in's own and has to end before the plug-in does.
    failure = Describe(thrown, logger);
  }
  logger.Summarise();
  if (!failure.empty()) throw THostError(failure);
}

int Fail(const TConsole& console, const std::string& what, EExitStatus status) {
  console.err << "havhost: " << Printable(what) << '\n';
  return status;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const TConsole& console) {
  try {
    TCommandLine line;
    if (Parse(arguments, line, console.out)) RunCommand(line, console);
    Finish(console.out);
    return line.status;
  } catch (const TUsageError& failure) {
    return Fail(console, failure.what(), kExitUsage);
  } catch (const TOutputError& failure) {
    return failure.IsReaderGone() ? kExitDone : Fail(console, failure.what(), kExitFailed);
  } catch (const std::bad_alloc&) {
    return Fail(console, "out of memory", kExitFailed);
  } catch (const std::exception& failure) {
    return Fail(console, failure.what(), kExitFailed);
  }
}

}  // namespace havhost

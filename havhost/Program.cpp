#include "havhost/Program.h"

#include <memory>
#include <new>
#include <variant>

#include "havcore/THAVException.h"
#include "havcore/client/TPluginLoader.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/OpenNamespace.h"
#include "havhost/Output.h"
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
    return program.get_formatter()->make_help(&program, program.get_name(),
                                              CLI::AppFormatMode::Normal);
  try {
    return program.get_subcommand(name->results()[0])->help(program.get_name());
  } catch (const CLI::OptionNotFound&) {
    throw TUsageError("no such command: " + name->results()[0] + " (see havhost --help)");
  }
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
bool Parse(const std::vector<std::string>& arguments, TCommandLine& line, const TConsole& console) {
  CLI::App program;
  program.formatter(std::make_shared<THelpText>(StyleOf(line.settings, console.terminal)));
  DeclareProgram(program, line);
  try {
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    const auto* const command = program.get_subcommands().front();
    line.isShownAtOnce = command->get_option_no_throw("--no-pager") != nullptr;
    if (command->get_name() != kHelp) return true;
    console.out << HelpAskedFor(program);
  } catch (const CLI::CallForHelp&) {
    console.out << program.help();
  } catch (const CLI::CallForVersion&) {
    console.out << program.version() << '\n';
  } catch (const CLI::ParseError& failure) {
    throw TUsageError(UsageError(program, arguments, failure));
  }
  return false;
}

void Finish(std::ostream& out) {
  out.flush();
  if (!out) throw THostError("cannot write the output");
}

// The status says what kind of failure it was, and the line logged before it the rest.
std::string Describe(const THAVException& failure, THostLogger& logger) {
  const auto logged = logger.TakeLastError();
  return failure.what() + (logged.empty() ? "" : ": " + logged);
}

void ActOnNamespace(TPluginLoader& plugin, TCommandLine& line, const TConsole& console) {
  const auto target = OpenNamespace(plugin, line.settings, console);
  if (const auto* const session = std::get_if<TSessionAction>(&line.action))
    (*session)(target, line.settings, console);
  else
    std::get<TCommandAction>(line.action)(target, line.settings, console.out);
}

void Act(TCommandLine& line, const TConsole& console) {
  if (const auto* const plain = std::get_if<TPlainAction>(&line.action)) return (*plain)(console);
  const auto& settings = line.settings;
  THostLogger logger(console.err, settings.verbose);
  TPluginLoader plugin(settings.plugin.empty() ? InstalledPlugin() : PathOf(settings.plugin));
  // The log would break up the line that says how far the work is.
  const bool showsProgress = console.showsProgress && !settings.verbose;
  std::string failure;
  try {
    ActOnNamespace(plugin, line,
                   {console.out, console.err, showsProgress, console.in, console.terminal});
  } catch (const THAVException& thrown) {
    // It is the plug-in's own and has to end before the plug-in does.
    failure = Describe(thrown, logger);
  }
  logger.Summarise();
  if (!failure.empty()) throw THostError(failure);
}

void RunCommand(TCommandLine& line, const TConsole& console) {
  WithOutput(line.settings, line.isShownAtOnce, console,
             [&](const TConsole& shown) { Act(line, shown); });
}

int Fail(const TConsole& console, const std::string& what, EExitStatus status) {
  console.err << "havhost: " << Printable(what) << '\n';
  return status;
}

}  // namespace

void DeclareProgram(CLI::App& program, TCommandLine& line) {
  program.name("havhost");
  program.description(
      "Shows CIM classes and instances: of this machine's inventory, or of MOF files.");
  program.allow_windows_style_options(false);
  program.set_version_flag("--version", "havhost " HAVHOST_VERSION, "Print the version and exit");
  program.require_subcommand(1);
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
  AddCompletionCommand(program, line);
  AddCompleteCommand(program, line);
  AddManualCommand(program, line);
}

int Run(const std::vector<std::string>& arguments, const TConsole& console) {
  TCommandLine line;
  try {
    if (Parse(arguments, line, console)) RunCommand(line, console);
    Finish(console.out);
    return line.status;
  } catch (const TUsageError& failure) {
    return Fail(console, failure.what(), kExitUsage);
  } catch (const TOutputError& failure) {
    return failure.IsReaderGone() ? kExitDone : Fail(console, failure.what(), line.failed);
  } catch (const std::bad_alloc&) {
    return Fail(console, "out of memory", line.failed);
  } catch (const std::exception& failure) {
    return Fail(console, failure.what(), line.failed);
  }
}

}  // namespace havhost

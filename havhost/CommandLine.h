// CommandLine: what one call of the program is asked to do, and the pieces from which each
// command's own file declares its part of it.
//
// Ownership: the line owns the settings, which CLI11's options write to.
// Errors:    none; what the user gets wrong is found when the line is parsed.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "havhost/Program.h"
#include "havhost/TConsole.h"
#include "havhost/TSettings.h"

namespace havhost {

// What a command does with the namespace when it is filled.
using TCommandAction = std::function<void(const boost::shared_ptr<NORVHAV20::ICIMNamespace>& target,
                                          const TSettings& settings, std::ostream& out)>;

// The same for one that reads what to do.
using TSessionAction = std::function<void(const boost::shared_ptr<NORVHAV20::ICIMNamespace>& target,
                                          const TSettings& settings, const TConsole& console)>;

// What a command does that needs no namespace.
using TPlainAction = std::function<void(const TConsole& console)>;

using TAction = std::variant<TCommandAction, TSessionAction, TPlainAction>;

struct TCommandLine {
  TSettings settings;
  TAction action;
  bool isShownAtOnce = false;        // nobody waits for the first line before the last is there
  EExitStatus status = kExitDone;    // what a command that did its work has to say
  EExitStatus failed = kExitFailed;  // and one that could not
};

struct TCommandText {
  std::string name;
  std::string description;
  std::string example;
};

// Adds a command that, when it is given, gives the line its action.
CLI::App& AddCommand(CLI::App& program, TCommandLine& line, const TCommandText& text,
                     TAction action);

// Adds everything that the program's own command line has; the shell has some of it.
void DeclareProgram(CLI::App& program, TCommandLine& line);

// Groups of options that several commands share.
void AddNamespaceOptions(CLI::App& command, TSettings& settings);  // name, plug-in, include, log
void AddSourceOptions(CLI::App& command, TSettings& settings);     // those, and MOF or live
// The formats that the command has, in the order of `formats`, and where the output goes.
void AddFormatOption(CLI::App& command, TSettings& settings,
                     const std::vector<std::string>& formats = {"text", "json"});
void AddFormats(CLI::App& command, TSettings& settings, const std::string& description,
                const std::vector<std::string>& formats);       // nothing but those
void AddOutputOptions(CLI::App& command, TSettings& settings);  // file, colour, pager
void AddColorOption(CLI::App& command, TSettings& settings);
void AddPropertyOptions(CLI::App& command, TSettings& settings);  // raw values, empty properties
// Which instances are listed, in which order, and what of them.
void AddListingOptions(CLI::App& command, TSettings& settings);

// Each of these declares one command.
void AddInventoryCommand(CLI::App& program, TCommandLine& line);
void AddLoadCommand(CLI::App& program, TCommandLine& line);
void AddClassesCommand(CLI::App& program, TCommandLine& line);
void AddShowCommand(CLI::App& program, TCommandLine& line);
void AddInstancesCommand(CLI::App& program, TCommandLine& line);
void AddGetCommand(CLI::App& program, TCommandLine& line);
void AddMofCommand(CLI::App& program, TCommandLine& line);
void AddReferencesCommand(CLI::App& program, TCommandLine& line);
void AddAssociatorsCommand(CLI::App& program, TCommandLine& line);
void AddCheckCommand(CLI::App& program, TCommandLine& line);
void AddShellCommand(CLI::App& program, TCommandLine& line);
void AddServeCommand(CLI::App& program, TCommandLine& line);
void AddPasswdCommand(CLI::App& program, TCommandLine& line);
void AddDiffCommand(CLI::App& program, TCommandLine& line);
void AddWatchCommand(CLI::App& program, TCommandLine& line);
void AddCompletionCommand(CLI::App& program, TCommandLine& line);
void AddCompleteCommand(CLI::App& program, TCommandLine& line);  // asked by those scripts
void AddManualCommand(CLI::App& program, TCommandLine& line);    // asked by the build

}  // namespace havhost

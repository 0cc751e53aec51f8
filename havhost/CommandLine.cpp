#include "havhost/CommandLine.h"

#include <cerrno>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>
#include <utility>

#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

namespace {

// What each format is for.
const std::map<std::string, std::string> kFormats = {
    {"text", "text for people (the default)"},
    {"json", "json for programs"},
    {"csv", "csv (raw values) for spreadsheets"},
    {"mof", "mof to load again"},
    {"html", "html for a browser"},
};

void AddFormats(CLI::App& command, TSettings& settings, const std::string& description,
                const std::vector<std::string>& formats) {
  command.add_option("-f,--format", settings.format, description)
      ->type_name("FORMAT")
      ->check(CLI::IsMember(formats).description(""));
}

CLI::App& Declare(CLI::App& program, const TCommandText& text) {
  auto& command = *program.add_subcommand(text.name, text.description);
  command.footer("Example:\n  " + text.example);
  return command;
}

void WriteFile(const std::string& name, const std::string& text) {
  errno = 0;
  std::ofstream file(PathOf(name), std::ios::binary);
  file << text;
  file.close();
  if (!file)
    throw THostError("cannot write " + name + ": " + std::generic_category().message(errno));
}

}  // namespace

void Perform(const TCommandLine& line, const boost::shared_ptr<NORVHAV20::ICIMNamespace>& target,
             std::ostream& out) {
  if (line.settings.outputFile.empty()) return line.action(target, line.settings, out);
  // The file may be one that was read, and what fails must not cost what it holds.
  std::ostringstream text;
  line.action(target, line.settings, text);
  WriteFile(line.settings.outputFile, text.str());
}

CLI::App& AddCommand(CLI::App& program, TCommandLine& line, const TCommandText& text,
                     TCommandAction action) {
  auto& command = Declare(program, text);
  command.callback([&line, action = std::move(action)] { line.action = action; });
  return command;
}

CLI::App& AddPlainCommand(CLI::App& program, TCommandLine& line, const TCommandText& text,
                          TPlainAction action) {
  auto& command = Declare(program, text);
  command.callback([&line, action = std::move(action)] { line.plainAction = action; });
  return command;
}

void AddNamespaceOptions(CLI::App& command, TSettings& settings) {
  command
      .add_option("-n,--namespace", settings.namespaceName,
                  "Name of the namespace (else what the MOF says, else root/cimv2)")
      ->type_name("NAME");
  command
      .add_option("-I,--include", settings.includeFolders,
                  "Folder to look for included MOF files in; may be repeated")
      ->type_name("DIR")
      ->allow_extra_args(false);
  command
      .add_option("--plugin", settings.plugin,
                  "The plug-in that keeps the namespace (else the installed one)")
      ->type_name("PATH");
  command.add_flag("-v,--verbose", settings.verbose,
                   "Write the log of the plug-in to standard error");
}

void AddSourceOptions(CLI::App& command, TSettings& settings) {
  auto* const mof = command
                        .add_option("-m,--mof", settings.mofFiles,
                                    "Show what these MOF files hold; - is standard input")
                        ->type_name("FILE...");
  command
      .add_option("--schema", settings.schemaFolder,
                  "Folder of the inventory's schema (else the installed one)")
      ->type_name("DIR")
      ->excludes(mof);
  command
      .add_option("--root", settings.rootFolder,
                  "Root folder of the machine to take the inventory of (else /)")
      ->type_name("DIR")
      ->excludes(mof);
  AddNamespaceOptions(command, settings);
}

void AddLineFormatOption(CLI::App& command, TSettings& settings, const std::string& description) {
  AddFormats(command, settings, description, {"text", "json"});
}

void AddFormatOption(CLI::App& command, TSettings& settings,
                     const std::vector<std::string>& formats) {
  std::vector<std::string> descriptions;
  for (const auto& format : formats) descriptions.push_back(kFormats.at(format));
  AddFormats(command, settings, Join(descriptions), formats);
  AddOutputOption(command, settings);
}

void AddOutputOption(CLI::App& command, TSettings& settings) {
  command
      .add_option("-o,--output", settings.outputFile,
                  "File to write to, replaced when all went well (else standard output)")
      ->type_name("FILE");
  command
      .add_option(
          "--color", settings.color,
          "Colour: auto (the default: on a terminal, unless NO_COLOR is set), always, never")
      ->type_name("WHEN")
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
  command.add_flag("--no-pager", settings.noPager,
                   "Do not show what is longer than the screen through $PAGER (else less)");
}

void AddPropertyOptions(CLI::App& command, TSettings& settings) {
  command.add_flag("-r,--raw", settings.raw, "Show raw values in brackets beside the display text");
  command.add_flag("-a,--all", settings.all,
                   "Show empty properties, and those that keep books, as well");
}

void AddListingOptions(CLI::App& command, TSettings& settings) {
  command
      .add_option("-c,--columns", settings.columns,
                  "Show these properties, as a table; __CLASS and __PATH name the instance")
      ->type_name("NAME,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      .add_option("-w,--where", settings.where,
                  "Only instances that meet this condition, such as 'Size > 1000000'")
      ->type_name("CONDITION");
  command
      .add_option("-s,--sort", settings.sort,
                  "In the order of these properties (else of the paths)")
      ->type_name("NAME,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command.add_flag("-R,--reverse", settings.reverse, "The last one first");
  command.add_flag("-N,--names-only", settings.namesOnly, "Show nothing but the object paths");
}

}  // namespace havhost

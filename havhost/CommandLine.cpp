#include "havhost/CommandLine.h"

#include <map>
#include <utility>

#include "havhost/report/Text.h"

namespace havhost {

namespace {

// What each format is for.
const std::map<std::string, std::string> kFormats = {
    {"text", "text for people (the default)"},
    {"json", "json for programs"},
    {"csv", "csv (raw values) for spreadsheets"},
    {"mof", "mof to load again"},
    {"html", "html for a browser"},
};

// One of a few values, which stand in the place of the type, so that help, manual and completion
// tell them.
CLI::Option& AddChoice(CLI::App& command, const std::string& names, std::string& value,
                       const std::string& description, const std::vector<std::string>& choices) {
  std::string type;
  for (const auto& choice : choices) type += (type.empty() ? "" : "|") + choice;
  return *command.add_option(names, value, description)
              ->type_name(type)
              ->check(CLI::IsMember(choices).description(""));
}

}  // namespace

CLI::App& AddCommand(CLI::App& program, TCommandLine& line, const TCommandText& text,
                     TAction action) {
  auto& command = *program.add_subcommand(text.name, text.description);
  command.footer("Example:\n  " + text.example);
  command.callback([&line, action = std::move(action)] { line.action = action; });
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
      ->type_name("FILE");
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

void AddFormats(CLI::App& command, TSettings& settings, const std::string& description,
                const std::vector<std::string>& formats) {
  AddChoice(command, "-f,--format", settings.format, description, formats);
}

void AddFormatOption(CLI::App& command, TSettings& settings,
                     const std::vector<std::string>& formats) {
  std::vector<std::string> descriptions;
  for (const auto& format : formats) descriptions.push_back(kFormats.at(format));
  AddFormats(command, settings, Join(descriptions), formats);
  AddOutputOptions(command, settings);
}

void AddColorOption(CLI::App& command, TSettings& settings) {
  AddChoice(command, "--color", settings.color,
            "Colour: auto is the default, on a terminal, unless NO_COLOR is set",
            {"auto", "always", "never"});
}

void AddOutputOptions(CLI::App& command, TSettings& settings) {
  command
      .add_option("-o,--output", settings.outputFile,
                  "File to write to, replaced when all went well (else standard output)")
      ->type_name("FILE");
  AddColorOption(command, settings);
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
      ->type_name("PROPERTY,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      .add_option("-w,--where", settings.where,
                  "Only instances that meet this condition, such as 'Size > 1000000'")
      ->type_name("CONDITION");
  command
      .add_option("-s,--sort", settings.sort,
                  "In the order of these properties (else of the paths)")
      ->type_name("PROPERTY,...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command.add_flag("-R,--reverse", settings.reverse, "The last one first");
  command.add_flag("-N,--names-only", settings.namesOnly, "Show nothing but the object paths");
}

}  // namespace havhost

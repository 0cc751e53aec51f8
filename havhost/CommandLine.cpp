#include "havhost/CommandLine.h"

#include <utility>
#include <vector>

namespace havhost {

namespace {

void AddFormats(CLI::App& command, TSettings& settings, const std::string& description,
                const std::vector<std::string>& formats) {
  command.add_option("--format", settings.format, description)
      ->type_name("FORMAT")
      ->check(CLI::IsMember(formats).description(""));
}

CLI::App& Declare(CLI::App& program, const TCommandText& text) {
  auto& command = *program.add_subcommand(text.name, text.description);
  command.footer("Example:\n  " + text.example);
  return command;
}

}  // namespace

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
      .add_option("--namespace", settings.namespaceName,
                  "Name of the namespace (else what the MOF says, else root/cimv2)")
      ->type_name("NAME");
  command
      .add_option("--include", settings.includeFolders,
                  "Folder to look for included MOF files in; may be repeated")
      ->type_name("DIR")
      ->allow_extra_args(false);
  command
      .add_option("--plugin", settings.plugin,
                  "The plug-in that keeps the namespace (else the installed one)")
      ->type_name("PATH");
  command.add_flag("--verbose", settings.verbose, "Write the log of the plug-in to standard error");
}

void AddSourceOptions(CLI::App& command, TSettings& settings) {
  auto* const mof =
      command.add_option("--mof", settings.mofFiles, "Show what these MOF files hold")
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

void AddFormatOption(CLI::App& command, TSettings& settings) {
  AddFormats(command, settings, "text for people (the default), json for programs",
             {"text", "json"});
  AddOutputOption(command, settings);
}

void AddPageFormatOption(CLI::App& command, TSettings& settings) {
  AddFormats(command, settings,
             "text for people (the default), json for programs, html for a browser",
             {"text", "json", "html"});
  AddOutputOption(command, settings);
}

void AddOutputOption(CLI::App& command, TSettings& settings) {
  command
      .add_option("-o,--output", settings.outputFile,
                  "File to write to, replaced when all went well (else standard output)")
      ->type_name("FILE");
}

void AddRawOption(CLI::App& command, TSettings& settings) {
  command.add_flag("--raw", settings.raw, "Show raw values in brackets beside the display text");
}

}  // namespace havhost

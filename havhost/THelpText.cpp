#include "havhost/THelpText.h"

#include <sstream>
#include <vector>

#include "havhost/report/Text.h"

namespace havhost {

namespace {

using TOptionList = std::vector<const CLI::Option*>;

TOptionList Arguments(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

TOptionList Options(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::string ArgumentName(const CLI::Option& argument) {
  return argument.get_name(true) + (argument.get_expected_max() > 1 ? "..." : "");
}

std::string OptionName(const CLI::Option& option) {
  const auto type = option.get_type_size() == 0 ? "" : option.get_type_name();
  return option.get_name(false, true) + (type.empty() ? "" : " " + type);
}

std::string Usage(const CLI::App& app, const std::string& name) {
  std::string usage = "Usage: " + name + " [OPTIONS]";
  for (const auto* argument : Arguments(app)) {
    const auto shown = ArgumentName(*argument);
    usage += argument->get_required() ? " " + shown : " [" + shown + "]";
  }
  return app.get_subcommands({}).empty() ? usage : usage + " COMMAND";
}

void PrintSection(std::ostream& out, const std::string& title, const std::vector<TRow>& rows) {
  if (rows.empty()) return;
  out << '\n' << title << ":\n";
  PrintRows(out, "  ", rows);
}

}  // namespace

std::string THelpText::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode) const {
  std::vector<TRow> commands;
  std::vector<TRow> arguments;
  std::vector<TRow> options;
  for (const auto* command : app->get_subcommands({}))
    commands.push_back({command->get_name(), command->get_description()});
  for (const auto* argument : Arguments(*app))
    arguments.push_back({ArgumentName(*argument), argument->get_description()});
  for (const auto* option : Options(*app))
    options.push_back({OptionName(*option), option->get_description()});

  std::ostringstream out;
  out << app->get_description() << "\n\n" << Usage(*app, name) << '\n';
  PrintSection(out, "Commands", commands);
  PrintSection(out, "Arguments", arguments);
  PrintSection(out, "Options", options);
  out << '\n' << app->get_footer() << '\n';
  return out.str();
}

}  // namespace havhost

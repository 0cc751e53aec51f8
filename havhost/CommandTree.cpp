#include "havhost/CommandTree.h"

#include <algorithm>

namespace havhost {

void Hide(CLI::App& command) { command.group(""); }

TCommandList CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

TOptionList ArgumentsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

TOptionList OptionsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::string ArgumentText(const CLI::Option& argument) {
  return argument.get_name(true) + (argument.get_expected_max() > 1 ? "..." : "");
}

std::string OptionText(const CLI::Option& option) {
  const auto type = option.get_type_name();  // a flag has none
  return option.get_name(false, true) + (type.empty() ? "" : " " + type);
}

std::string UsageText(const CLI::App& app) {
  std::string usage = "[OPTIONS]";
  for (const auto* argument : ArgumentsOf(app)) {
    const auto shown = ArgumentText(*argument);
    usage += argument->get_required() ? " " + shown : " [" + shown + "]";
  }
  return CommandsOf(app).empty() ? usage : usage + " COMMAND";
}

std::string ValueOf(const CLI::Option& option) {
  const auto type = option.get_type_name();
  const bool isChoice = type.find('|') != std::string::npos;
  if (option.get_positional() && !isChoice) return option.get_name(true);
  return type.substr(0, type.find("..."));
}

bool TakesMany(const CLI::Option& option) {
  return option.get_expected_max() > 1 && option.get_allow_extra_args();
}

}  // namespace havhost

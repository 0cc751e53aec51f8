#include "havhost/completion/TPlace.h"

#include <algorithm>

#include "havhost/CommandTree.h"

namespace havhost {

namespace {

bool TakesValue(const CLI::Option* option) {
  return option != nullptr && !ValueOf(*option).empty();
}

// The option that a word gives and whose value it does not hold: the last one of "-rf".
const CLI::Option* OptionWithoutValue(const CLI::App& command, const std::string& word) {
  if (word.rfind("--", 0) == 0) return command.get_option_no_throw(word);
  for (std::size_t at = 1; at < word.size(); ++at) {
    const auto* const option = command.get_option_no_throw(std::string("-") + word[at]);
    if (TakesValue(option)) return at + 1 == word.size() ? option : nullptr;
  }
  return nullptr;
}

}  // namespace

TPlace TPlace::After(const CLI::App& tree, const std::vector<std::string>& words) {
  TPlace place;
  const auto commands = CommandsOf(tree);
  for (const auto& word : words) {
    if (place.command != nullptr) {
      place.Pass(word);
      continue;
    }
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto* each) { return each->get_name() == word; });
    if (found != commands.end()) place.command = *found;
  }
  return place;
}

void TPlace::Pass(const std::string& word) {
  if (value != nullptr) {
    further = TakesMany(*value) ? value : nullptr;
    value = nullptr;
  } else if (isOptionsEnd || word.size() < 2 || word[0] != '-') {
    if (further == nullptr) ++arguments;
  } else {
    further = nullptr;
    isOptionsEnd = word == "--";
    const auto* const option = OptionWithoutValue(*command, word);
    value = TakesValue(option) ? option : nullptr;
  }
}

}  // namespace havhost

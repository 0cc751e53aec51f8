#include "havhost/completion/TCompletion.h"

#include <algorithm>
#include <utility>

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"
#include "havhost/CommandTree.h"
#include "havhost/completion/TPlace.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

using TTexts = std::vector<std::string>;

TTexts ClassNames(ICIMNamespace& target) {
  TTexts names;
  auto next = SubclassesOf(*target.GetClass("<root>", {}));
  while (!next.empty()) {
    const auto cls = next.back();
    next.pop_back();
    names.push_back(cls->GetName({}));
    for (const auto& subclass : SubclassesOf(*cls)) next.push_back(subclass);
  }
  return names;
}

// Empty when there is none; what is no name at all is no error here.
boost::shared_ptr<ICIMClass> ClassOf(ICIMNamespace& target, const std::string& name) {
  for (const auto& known : ClassNames(target))
    if (SameName(known, name)) return target.GetClass(known, {});
  return {};
}

TTexts PathsOf(ICIMClass& cls) {
  TTexts paths;
  for (const auto& instance : InstancesOf(cls, true))
    paths.push_back(Printable(instance->GetReference({}).GetPath()));
  return paths;
}

TTexts PropertyNames(ICIMClass& cls) {
  TTexts names;
  for (const auto& decl : Collect<ICIMPropertyDecl>(
           [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); }))
    names.push_back(decl->GetName({}));
  return names;
}

bool BeginsWith(const std::string& text, const std::string& begin) {
  return text.size() >= begin.size() && SameName(text.substr(0, begin.size()), begin);
}

// One word to be completed, on a line whose settings are read.
class TTask {
 public:
  TTask(const CLI::App& tree, TSettings& settings, const TCompletion::TOpen& open,
        const std::string& word)
      : m_tree(tree), m_settings(settings), m_open(open), m_word(word) {}

  TCompleted Complete(const TPlace& place) {
    const bool isOption = !place.isOptionsEnd && m_word.rfind('-', 0) == 0;
    const auto equals = m_word.find('=');
    if (place.value != nullptr)
      AddValues(ValueOf(*place.value));
    else if (isOption && equals != std::string::npos)
      AddAttached(place, equals);
    else if (place.command == nullptr)
      AddCommands(isOption);
    else
      AddWords(place, isOption);
    return std::move(m_found);
  }

 private:
  void Add(const std::string& text, const std::string& description = {}) {
    if (BeginsWith(text, m_word)) m_found.words.push_back({text, description});
  }

  void AddOptions(const CLI::App& app) {
    for (const auto* option : OptionsOf(app))
      for (const auto& name : option->get_lnames()) Add("--" + name, option->get_description());
  }

  void AddCommands(bool isOption) {
    if (isOption) return AddOptions(m_tree);
    for (const auto* command : CommandsOf(m_tree))
      Add(command->get_name(), command->get_description());
  }

  // Where nothing but options can follow, they are what is asked for.
  void AddWords(const TPlace& place, bool isOption) {
    const auto arguments = ArgumentsOf(*place.command);
    const auto* next = place.arguments < arguments.size() ? arguments[place.arguments] : nullptr;
    if (next == nullptr && !arguments.empty() && TakesMany(*arguments.back()))
      next = arguments.back();
    if (isOption || (next == nullptr && place.further == nullptr))
      return AddOptions(*place.command);
    if (place.further != nullptr) AddValues(ValueOf(*place.further));
    if (next != nullptr) AddValues(ValueOf(*next));
  }

  // "--format=js"
  void AddAttached(const TPlace& place, std::size_t equals) {
    const auto& command = place.command == nullptr ? m_tree : *place.command;
    const auto* const option = command.get_option_no_throw(m_word.substr(0, equals));
    if (option == nullptr) return;
    const auto begin = m_word.substr(0, equals + 1);
    m_word.erase(0, equals + 1);
    AddValues(ValueOf(*option));
    for (auto& word : m_found.words) word.text.insert(0, begin);
  }

  void AddValues(const std::string& kind) {
    if (kind.find('|') != std::string::npos)
      AddChoices(kind);
    else if (kind == "FILE" || kind == "FILES")
      m_found.files = true;
    else if (kind == "DIR")
      m_found.folders = true;
    else if (kind == "COMMAND")
      AddCommands(false);
    else if (kind == "CLASS")
      AddClasses();
    else if (kind == "PATH")
      AddPaths();
    else if (kind == "PROPERTY,")
      AddProperties(m_word.rfind(',') + 1, {"__CLASS", "__PATH"});
    else if (kind == "CONDITION")
      AddProperties(m_word.find_last_of(" (!") + 1, {});
  }

  void AddChoices(std::string choices) {
    for (std::size_t end = 0; end != std::string::npos; choices.erase(0, end + 1)) {
      end = choices.find('|');
      Add(choices.substr(0, end));
      if (end == std::string::npos) break;
    }
  }

  void AddClasses() {
    m_settings.collects = false;
    for (const auto& name : ClassNames(*m_open(m_settings))) Add(name);
  }

  // Behind a class's whole name, its instances.
  void AddPaths() {
    const auto dot = m_word.find('.');
    m_settings.collects = false;
    m_found.goesOn = dot == std::string::npos;
    if (m_found.goesOn)
      for (const auto& name : ClassNames(*m_open(m_settings))) Add(name);
    const bool isWhole = m_found.words.size() == 1 && SameName(m_found.words[0].text, m_word);
    if (m_found.goesOn && !isWhole) return;
    m_settings.collects = true;
    const auto target = m_open(m_settings);
    if (const auto cls = ClassOf(*target, m_word.substr(0, dot)))
      for (const auto& path : PathsOf(*cls)) Add(path);
  }

  // Those of the class that the line is about, behind the first `begin` characters of the word.
  void AddProperties(std::size_t begin, TTexts names) {
    auto name = m_settings.className;
    if (name.empty()) name = m_settings.resultClass;
    if (name.empty()) name = m_settings.path.substr(0, m_settings.path.find('.'));
    if (name.empty()) return;
    m_settings.collects = false;
    const auto target = m_open(m_settings);
    const auto cls = ClassOf(*target, name);
    if (!cls) return;
    for (auto& property : PropertyNames(*cls)) names.push_back(std::move(property));
    for (const auto& property : names) Add(m_word.substr(0, begin) + property);
    m_found.goesOn = true;
  }

  const CLI::App& m_tree;
  TSettings& m_settings;
  const TCompletion::TOpen& m_open;
  std::string m_word;
  TCompleted m_found;
};

// What the words say, as far as they go: they need be no whole line.
void Read(CLI::App& tree, TTexts words) {
  std::reverse(words.begin(), words.end());
  try {
    tree.parse(std::move(words));
  } catch (const CLI::Error&) {
  }
}

}  // namespace

TCompleted TCompletion::Of(const std::vector<std::string>& before, const std::string& word) const {
  TCommandLine line;
  CLI::App tree;
  m_declare(tree, line);
  const auto place = TPlace::After(tree, before);
  auto words = before;
  if (place.value != nullptr) words.pop_back();
  Read(tree, words);
  auto found = TTask(tree, line.settings, m_open, word).Complete(place);
  std::sort(found.words.begin(), found.words.end(),
            [](const auto& a, const auto& b) { return a.text < b.text; });
  return found;
}

}  // namespace havhost

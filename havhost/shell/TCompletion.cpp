#include "havhost/shell/TCompletion.h"

#include <algorithm>
#include <sstream>

#include "havcore/ICIMPropertyDecl.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"

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
    paths.push_back(instance->GetReference({}).GetPath());
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

}  // namespace

std::size_t TCompletion::BeginOfWord(const std::string& line) {
  bool isQuoted = false;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '"') isQuoted = !isQuoted;
    if (!isQuoted && (line[at] == ' ' || line[at] == '\'' || line[at] == ',')) begin = at + 1;
  }
  return begin;
}

std::vector<std::string> TCompletion::Of(const std::string& line) const {
  const auto word = line.substr(BeginOfWord(line));
  auto found = Candidates(line, word);
  found.erase(std::remove_if(found.begin(), found.end(),
                             [&](const auto& one) { return !BeginsWith(one, word); }),
              found.end());
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<std::string> TCompletion::Candidates(const std::string& line,
                                                 const std::string& word) const {
  std::istringstream before(line.substr(0, BeginOfWord(line)));
  TTexts words;
  for (std::string one; before >> one;) words.push_back(one);
  if (words.empty()) return m_commands;
  const auto& command = words.front();
  const bool takesPath = command == "get" || command == "references" || command == "associators";
  const auto dot = word.find('.');
  if (takesPath && dot != std::string::npos) {
    const auto cls = ClassOf(*m_target, word.substr(0, dot));
    return cls ? PathsOf(*cls) : TTexts();
  }
  if (command == "help") return m_commands;
  auto names = ClassNames(*m_target);
  for (std::size_t i = 1; i < words.size(); ++i)
    if (const auto cls = ClassOf(*m_target, words[i])) {
      const auto properties = PropertyNames(*cls);
      names.insert(names.end(), properties.begin(), properties.end());
    }
  return names;
}

}  // namespace havhost

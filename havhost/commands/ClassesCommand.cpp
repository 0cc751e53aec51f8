// havhost classes: the class hierarchy.
#include <algorithm>
#include <utility>

#include "havcore/client/Enumerate.h"
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/Listing.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

using TClasses = std::vector<boost::shared_ptr<ICIMClass>>;

// The classes and all below them, depth first, siblings in the order of their names.
std::vector<TListedClass> Hierarchy(TClasses tops) {
  std::vector<TListedClass> listed;
  std::vector<TListedClass> next;
  const auto push = [&next](TClasses classes, std::size_t depth) {
    std::sort(classes.begin(), classes.end(),
              [](const auto& a, const auto& b) { return a->GetName({}) > b->GetName({}); });
    for (const auto& cls : classes) next.push_back({cls, depth});
  };
  push(std::move(tops), 0);
  while (!next.empty()) {
    listed.push_back(next.back());
    next.pop_back();
    const auto at = listed.back();
    push(SubclassesOf(*at.cls), at.depth + 1);
  }
  return listed;
}

void ListClasses(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                 std::ostream& out) {
  const auto& name = settings.className;
  PrintListing(out,
               Hierarchy(name.empty() ? SubclassesOf(*target->GetClass("<root>", {}))
                                      : TClasses{FindClass(*target, name)}),
               settings);
}

}  // namespace

void AddClassesCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(
      program, line,
      {"classes", "List the classes, each below its superclass", "havhost classes --mof model.mof"},
      ListClasses);
  command.add_option("--class", line.settings.className, "Only this class and those below it")
      ->type_name("CLASS");
  command
      .add_flag("-N,--names-only", line.settings.namesOnly,
                "Show nothing but the names; takes no inventory")
      ->each([&line](const std::string&) { line.settings.collects = false; });
  AddFormatOption(command, line.settings, {"text", "json", "csv"});
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

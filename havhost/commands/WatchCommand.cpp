// havhost watch: the inventory, taken again and again, and what changed in it.
#include <chrono>
#include <memory>
#include <thread>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TOSSpecific.h"
#include "havhost/CommandLine.h"
#include "havhost/THostError.h"
#include "havhost/report/Changes.h"
#include "havhost/report/Text.h"
#include "inventory/Refresh.h"

namespace havhost {

using namespace hav::inventory;

using namespace NORVHAV20;

namespace {

struct TWatch {
  double interval = 2;
  unsigned rounds = 0;  // 0: without end
};

TJson StateBefore(const ICIMProperty& slot) {
  return ToJson(
      TPropertyReport{{}, slot.GetPrevValue({}), slot.GetType({}), PreviousDisplayTexts(slot)});
}

TJson StateNow(const ICIMProperty& slot) {
  return ToJson(TPropertyReport{{}, slot.GetValue({}), slot.GetType({}), DisplayTexts(slot)});
}

TChanges Shown(const std::vector<TChange>& found) {
  TChanges changes;
  for (const auto& change : found) {
    changes.push_back({static_cast<TInstanceChange::EKind>(change.kind),
                       change.instance->GetReference({}).GetPath(),
                       change.instance->GetClass({})->GetName({}),
                       {}});
    for (const auto& slot : change.properties)
      changes.back().properties.push_back(
          {slot->GetDecl({})->GetName({}), StateBefore(*slot), StateNow(*slot)});
  }
  return changes;
}

// "2026-03-01 10:15:00", of this machine's clock.
std::string Now() {
  const auto text = TOSSpecific::GetLocalTime().ToUIString();
  return text.substr(0, text.find_first_of(".+", 11));
}

void Watch(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
           const TWatch& watch, std::ostream& out) {
  const TMachine machine(settings.rootFolder);
  for (unsigned round = 0; watch.rounds == 0 || round < watch.rounds; ++round) {
    std::this_thread::sleep_for(std::chrono::duration<double>(watch.interval));
    // What could not be read was told when the inventory was first taken.
    const auto changes = Shown(RefreshInventory(*target, machine, {}));
    if (changes.empty()) continue;
    if (settings.IsJson()) {
      auto document = ToJson(changes);
      document["version"] = kJsonVersion;
      document["time"] = Now();
      const auto text = document.dump(-1, ' ', false, TJson::error_handler_t::replace);
      out << (settings.style.isShown ? PrintableJson(text) : text) << '\n';
    } else {
      out << settings.style.Ink(TTextStyle::kStrong, Now()) << '\n';
      PrintChanges(out, changes, settings.style);
    }
    out.flush();
    if (!out) throw THostError("cannot write the output");
  }
}

}  // namespace

void AddWatchCommand(CLI::App& program, TCommandLine& line) {
  const auto watch = std::make_shared<TWatch>();
  auto& command =
      AddCommand(program, line,
                 {"watch", "Take the inventory again and again, and show what changes",
                  "havhost watch --interval 10"},
                 [watch](const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                         std::ostream& out) { Watch(target, settings, *watch, out); });
  command.add_option("--interval", watch->interval, "Seconds between two inventories (else 2)")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.01, 86400.0).description(""));
  command.add_option("--rounds", watch->rounds, "End after so many (else never)")
      ->type_name("NUMBER")
      ->check(CLI::PositiveNumber.description(""));
  AddFormats(command, line.settings,
             "text for people (the default), json for programs: a line for each round",
             {"text", "json"});
  AddColorOption(command, line.settings);
  command
      .add_option("--schema", line.settings.schemaFolder,
                  "Folder of the inventory's schema (else the installed one)")
      ->type_name("DIR");
  command
      .add_option("--root", line.settings.rootFolder,
                  "Root folder of the machine to take the inventory of (else /)")
      ->type_name("DIR");
  AddNamespaceOptions(command, line.settings);
}

}  // namespace havhost

// Takes the inventory of a machine with one collector more, and shows what that found.
//
//   collector PLUG-IN ROOT-FOLDER SCHEMA-FILE...
#include <havcore/client/Enumerate.h>
#include <havcore/client/TPluginLoader.h>
#include <havcore/havcore.h>
#include <inventory/Inventory.h>
#include <mof/TMofFolderSource.h>
#include <mof/TMofLoader.h>

#include <exception>
#include <iostream>

#include "TBatteryCollector.h"

using namespace hav::inventory;

static void Tell(const TFailure& failure) {
  std::cerr << "not in the inventory: " << failure.ToString() << '\n';
}

static int Show(const NORVHAV20::INamespaceProvider& provider, const TMachine& machine,
                const std::vector<std::string>& schema) {
  hav::mof::TMofFolderSource source;
  hav::mof::TMofReport report;
  const auto ns = hav::mof::TMofLoader(provider, source).Load(schema, report);
  std::cerr << report.ToString();
  if (!ns) return 1;
  auto collectors = MakeCollectors(machine);
  collectors.push_back(std::make_unique<TBatteryCollector>(machine));
  const auto collection = GatherInventory(collectors);
  for (const auto& failure : collection.Failures()) Tell(failure);
  for (const auto& failure : PublishInventory(collection, *ns)) Tell(failure);
  for (const auto& battery : hav::client::InstancesOf(*ns->GetClass("Example_Battery", {}), false))
    std::cout << battery->GetReference({}).GetPath() << ": "
              << battery->GetProperty("Charge", {})->GetDisplayValue({}) << " %, "
              << battery->GetProperty("ChargeStatus", {})->GetDisplayValue({}) << '\n';
  return 0;
}

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  try {
    hav::client::TPluginLoader plugin(argv[1]);
    try {
      return Show(plugin.GetProvider(), TMachine(argv[2]), {argv + 3, argv + argc});
    } catch (const std::exception& failure) {  // it may be the plug-in's, and ends before it
      std::cerr << "collector: " << failure.what() << '\n';
    }
  } catch (const hav::client::TPluginError& failure) {
    std::cerr << "collector: " << failure.what() << '\n';
  }
  return 1;
}

// Takes the inventory of this machine and prints how many instances of each class it has.
//
//   inventory PLUG-IN SCHEMA-FILE...
#include <havcore/client/Enumerate.h>
#include <havcore/client/TPluginLoader.h>
#include <havcore/havcore.h>
#include <inventory/Inventory.h>
#include <mof/TMofFolderSource.h>
#include <mof/TMofLoader.h>

#include <exception>
#include <iostream>
#include <map>

int Show(const NORVHAV20::INamespaceProvider& provider, const std::vector<std::string>& schema) {
  hav::mof::TMofFolderSource source;
  hav::mof::TMofReport report;
  const auto ns = hav::mof::TMofLoader(provider, source).Load(schema, report);
  std::cerr << report.ToString();
  if (!ns) return 1;
  hav::inventory::CollectInventory(*ns, hav::inventory::TMachine(), [](const auto& failure) {
    std::cerr << "not in the inventory: " << failure.ToString() << '\n';
  });
  std::map<std::string, int> counts;
  for (const auto& instance : hav::client::InstancesOf(*ns->GetClass("<root>", {}), true))
    ++counts[instance->GetClass({})->GetName({})];
  for (const auto& [name, count] : counts) std::cout << name << ' ' << count << '\n';
  return 0;
}

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    hav::client::TPluginLoader plugin(argv[1]);
    try {
      return Show(plugin.GetProvider(), {argv + 2, argv + argc});
    } catch (const std::exception& failure) {  // it may be the plug-in's, and ends before it
      std::cerr << "inventory: " << failure.what() << '\n';
    }
  } catch (const hav::client::TPluginError& failure) {
    std::cerr << "inventory: " << failure.what() << '\n';
  }
  return 1;
}

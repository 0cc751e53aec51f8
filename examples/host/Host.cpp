// A host in 50 lines: loads the plug-in, reads MOF into a namespace of it, and prints every
// instance with what is associated with it.
//
//   host PLUG-IN FILE.mof
#include <havcore/client/Associations.h>
#include <havcore/client/Enumerate.h>
#include <havcore/client/TPluginLoader.h>
#include <havcore/havcore.h>
#include <mof/TMofFolderSource.h>
#include <mof/TMofLoader.h>

#include <exception>
#include <iostream>

void Print(NORVHAV20::ICIMNamespace& ns) {
  const auto everything = ns.GetClass("<root>", {});  // the class above all others
  for (const auto& instance : hav::client::InstancesOf(*everything, true)) {
    std::cout << instance->GetReference({}).GetPath() << '\n';
    for (const auto& path : hav::client::AssociatorNames(*instance))
      std::cout << "  " << path.GetPath() << '\n';
  }
}

int Show(const NORVHAV20::INamespaceProvider& provider, const char* file) {
  hav::mof::TMofFolderSource source;
  hav::mof::TMofLoader loader(provider, source);
  hav::mof::TMofReport report;
  const auto ns = loader.Load({file}, report);
  std::cerr << report.ToString();
  if (ns) Print(*ns);
  return ns ? 0 : 1;
}

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    hav::client::TPluginLoader plugin(argv[1]);
    try {
      return Show(plugin.GetProvider(), argv[2]);
    } catch (const std::exception& failure) {  // it may be the plug-in's, and ends before it
      std::cerr << "host: " << failure.what() << '\n';
    }
  } catch (const hav::client::TPluginError& failure) {
    std::cerr << "host: " << failure.what() << '\n';
  }
  return 1;
}

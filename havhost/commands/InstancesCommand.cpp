// havhost instances: the instances of one class.
#include "havcore/client/Enumerate.h"
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/Listing.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

void ListInstances(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                   std::ostream& out) {
  const auto cls = FindClass(*target, settings.className);
  PrintListing(out, InstancesOf(*cls, settings.deep), settings, cls);
}

}  // namespace

void AddInstancesCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"instances", "List the instances of a class with their properties",
                              "havhost instances ORVSG_NetworkPort --deep --raw"},
                             ListInstances);
  command.add_option("CLASS", line.settings.className, "Name of the class")->required();
  command.add_flag("-d,--deep", line.settings.deep, "With the instances of its subclasses");
  AddListingOptions(command, line.settings);
  AddFormatOption(command, line.settings, {"text", "json", "csv", "mof"});
  AddPropertyOptions(command, line.settings);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

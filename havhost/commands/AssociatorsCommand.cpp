// havhost associators: the instances at the other ends of an instance's associations, or the
// classes at the other ends of a class's.
#include "havcore/client/Associations.h"
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/Listing.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

void ListAssociators(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                     std::ostream& out) {
  RequireClass(*target, settings.associationClass);
  RequireClass(*target, settings.resultClass);
  const TAssociatorFilter filter{settings.associationClass, settings.resultClass, settings.role,
                                 settings.resultRole};
  if (IsClassName(settings.path))
    PrintListing(out, Associators(*FindClass(*target, settings.path), filter), settings);
  else
    PrintListing(out, Associators(*FindInstance(target, settings), filter), settings);
}

}  // namespace

void AddAssociatorsCommand(CLI::App& program, TCommandLine& line) {
  auto& settings = line.settings;
  auto& command = AddCommand(
      program, line,
      {"associators", "List what associations link to an instance, or can link to a class",
       "havhost associators 'ORVSG_DiskDrive.Name=\"/dev/sda\"' --result-class "
       "ORVSG_DiskPartition"},
      ListAssociators);
  command.add_option("PATH", settings.path, "Object path of the instance, or the name of a class")
      ->required();
  command
      .add_option("--assoc-class", settings.associationClass,
                  "Only by associations of this class or a subclass")
      ->type_name("CLASS");
  command.add_option("--result-class", settings.resultClass, "Only of this class or a subclass")
      ->type_name("CLASS");
  command
      .add_option("--role", settings.role,
                  "Only by associations that refer to the starting point by this name")
      ->type_name("ROLE");
  command
      .add_option("--result-role", settings.resultRole,
                  "Only what the association refers to by this name")
      ->type_name("ROLE");
  AddListingOptions(command, settings);
  AddFormatOption(command, settings, {"text", "json", "csv", "mof"});
  AddPropertyOptions(command, settings);
  AddSourceOptions(command, settings);
}

}  // namespace havhost

// havhost references: the associations that refer to an instance, or that can refer to the
// instances of a class.
#include "havcore/client/Associations.h"
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/Listing.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

void ListReferences(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                    std::ostream& out) {
  RequireClass(*target, settings.resultClass);
  const TReferenceFilter filter{settings.resultClass, settings.role};
  if (IsClassName(settings.path))
    PrintListing(out, References(*FindClass(*target, settings.path), filter), settings);
  else
    PrintListing(out, References(*FindInstance(target, settings), filter), settings);
}

}  // namespace

void AddReferencesCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(
      program, line,
      {"references", "List the associations that refer to an instance, or can refer to a class",
       "havhost references 'ORVSG_DiskDrive.Name=\"/dev/sda\"' --role Antecedent"},
      ListReferences);
  command
      .add_option("PATH", line.settings.path, "Object path of the instance, or the name of a class")
      ->required();
  command
      .add_option("--result-class", line.settings.resultClass,
                  "Only associations of this class or a subclass")
      ->type_name("CLASS");
  command.add_option("--role", line.settings.role, "Only those that refer to it by this name")
      ->type_name("ROLE");
  AddListingOptions(command, line.settings);
  AddFormatOption(command, line.settings, {"text", "json", "csv", "mof"});
  AddPropertyOptions(command, line.settings);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

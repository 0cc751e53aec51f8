// havhost get: one instance, by its path.
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/InstanceText.h"
#include "havhost/report/Json.h"
#include "havhost/report/MofText.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

void GetInstance(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                 std::ostream& out) {
  const auto instance = FindInstance(target, settings);
  if (settings.IsMof())
    out << MofOf(*instance);
  else if (settings.IsJson())
    PrintJson(out, ToJson(ReportOf(*instance)));
  else
    PrintInstance(out, ReportOf(*instance), settings);
}

}  // namespace

void AddGetCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"get", "Show one instance with its properties",
                              "havhost get 'ORVSG_NetworkPort.Name=\"lo\"' --raw"},
                             GetInstance);
  command.add_option("PATH", line.settings.path, "Object path of the instance")->required();
  AddFormatOption(command, line.settings, {"text", "json", "mof"});
  AddPropertyOptions(command, line.settings);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

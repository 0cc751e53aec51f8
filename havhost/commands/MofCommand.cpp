// havhost mof: the namespace, or one class of it, as MOF.
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "mof/TMofWriter.h"

namespace havhost {

using namespace hav::mof;

using namespace NORVHAV20;

namespace {

void WriteMof(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
              std::ostream& out) {
  std::string mof;
  TMofWriter writer(mof);
  if (settings.className.empty())
    writer.WriteNamespace(*target);
  else
    writer.WriteClass(*FindClass(*target, settings.className));
  out << mof;
}

}  // namespace

void AddMofCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"mof", "Write the namespace, or one class, as MOF",
                              "havhost mof ORVSG_Processor --mof model.mof"},
                             WriteMof);
  command.add_option("CLASS", line.settings.className,
                     "Name of the class; everything when not given");
  AddOutputOption(command, line.settings);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

// havhost mof: the namespace, or one class of it, as MOF.
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/MofText.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

void WriteMof(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
              std::ostream& out) {
  out << (settings.className.empty() ? MofOf(*target)
                                     : MofOf(*FindClass(*target, settings.className)));
}

}  // namespace

void AddMofCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"mof", "Write the namespace, or one class, as MOF",
                              "havhost mof ORVSG_Processor --mof model.mof"},
                             WriteMof);
  command.add_option("CLASS", line.settings.className,
                     "Name of the class; everything when not given");
  AddOutputOptions(command, line.settings);
  command.preparse_callback([&line](std::size_t) { line.settings.format = "mof"; });
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

// havhost load: reads MOF into a namespace and sums up what is there.
#include "havcore/client/Enumerate.h"
#include "havhost/CommandLine.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/Json.h"
#include "havhost/report/Text.h"

#include "havcore/ICIMQualifierDecl.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

struct TSummary {
  std::size_t qualifierDecls = 0;
  std::size_t ordinaryClasses = 0;
  std::size_t associationClasses = 0;
  std::size_t indicationClasses = 0;
  std::size_t abstractClasses = 0;  // of each of the three kinds
  std::size_t instances = 0;
  std::size_t associations = 0;

  std::size_t Classes() const { return ordinaryClasses + associationClasses + indicationClasses; }
};

void Add(TSummary& summary, ICIMClass& cls) {
  const auto kind = KindOf(cls);
  ++(kind.isAssociation  ? summary.associationClasses
     : kind.isIndication ? summary.indicationClasses
                         : summary.ordinaryClasses);
  if (kind.isAbstract) ++summary.abstractClasses;
  (kind.isAssociation ? summary.associations : summary.instances) += InstancesOf(cls, false).size();
}

TSummary Summarise(ICIMNamespace& target) {
  TSummary summary;
  target.EnumerateQualifierDecls(
      [&](const boost::shared_ptr<ICIMQualifierDecl>&) {
        ++summary.qualifierDecls;
        return true;
      },
      {});
  auto next = SubclassesOf(*target.GetClass("<root>", {}));
  while (!next.empty()) {
    const auto cls = next.back();
    next.pop_back();
    Add(summary, *cls);
    for (const auto& subclass : SubclassesOf(*cls)) next.push_back(subclass);
  }
  return summary;
}

void SumUp(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
           std::ostream& out) {
  const auto summary = Summarise(*target);
  if (settings.IsJson()) {
    PrintJson(out, {{"namespace", settings.namespaceName},
                    {"qualifierDeclarations", summary.qualifierDecls},
                    {"classes",
                     {{"total", summary.Classes()},
                      {"ordinary", summary.ordinaryClasses},
                      {"association", summary.associationClasses},
                      {"indication", summary.indicationClasses},
                      {"abstract", summary.abstractClasses}}},
                    {"instances", summary.instances},
                    {"associations", summary.associations}});
    return;
  }
  PrintRows(out, "",
            {{"Namespace", settings.namespaceName},
             {"Qualifier declarations", std::to_string(summary.qualifierDecls)},
             {"Classes", std::to_string(summary.Classes())},
             {"  ordinary", std::to_string(summary.ordinaryClasses)},
             {"  associations", std::to_string(summary.associationClasses)},
             {"  indications", std::to_string(summary.indicationClasses)},
             {"  abstract, of all these", std::to_string(summary.abstractClasses)},
             {"Instances", std::to_string(summary.instances)},
             {"Associations", std::to_string(summary.associations)}},
            40, settings.style);
}

}  // namespace

void AddLoadCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"load", "Read MOF files into a namespace and sum up what is there",
                              "havhost load --include cim-schema cim_schema_2.49.0.mof"},
                             SumUp);
  command.add_option("FILE", line.settings.mofFiles, "MOF files; - is standard input")->required();
  command.add_flag("--strict", line.settings.strict,
                   "Load nothing when an instance refers to an object that is not there "
                   "(else it is left out with a warning)");
  AddFormatOption(command, line.settings);
  AddNamespaceOptions(command, line.settings);
}

}  // namespace havhost

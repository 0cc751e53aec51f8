// havhost show: one class with all its declarations.
#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/Json.h"
#include "havhost/report/MofText.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

void PrintQualifiers(std::ostream& out, const std::string& prefix,
                     const std::vector<TQualifierReport>& qualifiers) {
  std::vector<TRow> rows;
  for (const auto& qualifier : qualifiers)
    rows.push_back({qualifier.name, qualifier.value.ToString(10)});
  PrintRows(out, prefix, rows);
}

// "key, from ORVSG_ManagedElement, default 1"
std::string Remarks(const TPropertyDeclReport& property, const std::string& className) {
  std::vector<std::string> remarks;
  if (property.isKey) remarks.push_back("key");
  if (property.origin != className) remarks.push_back("from " + property.origin);
  if (!property.defaultValue.IsNull())
    remarks.push_back("default " + property.defaultValue.ToString(10));
  return Join(remarks);
}

std::string Signature(const TMethodDeclReport& method) {
  std::vector<std::string> parameters;
  for (const auto& parameter : method.parameters)
    parameters.push_back(parameter.type + " " + parameter.name);
  return method.type + " " + method.name + "(" + Join(parameters) + ")";
}

void PrintProperties(std::ostream& out, const TClassReport& cls) {
  out << "\nProperties\n";
  for (const auto& property : cls.properties) {
    PrintRows(out, "  ", {{property.name, property.type, Remarks(property, cls.name)}});
    PrintQualifiers(out, "    ", property.qualifiers);
  }
}

void PrintMethods(std::ostream& out, const TClassReport& cls) {
  out << "\nMethods\n";
  for (const auto& method : cls.methods) {
    PrintRows(out, "  ",
              {{Signature(method), method.origin == cls.name ? "" : "from " + method.origin}});
    PrintQualifiers(out, "    ", method.qualifiers);
    for (const auto& parameter : method.parameters) {
      PrintRows(out, "    ", {{parameter.name, parameter.type}});
      PrintQualifiers(out, "      ", parameter.qualifiers);
    }
  }
}

void Print(std::ostream& out, const TClassReport& cls) {
  PrintRows(out, "",
            {{"Class", cls.name},
             {"Kind", cls.kind.ToString()},
             {"Superclass", cls.superclass.empty() ? "none" : cls.superclass},
             {"Subclasses", cls.subclasses.empty() ? "none" : Join(cls.subclasses)},
             {"Instances", std::to_string(cls.instances)}});
  if (!cls.qualifiers.empty()) {
    out << "\nQualifiers\n";
    PrintQualifiers(out, "  ", cls.qualifiers);
  }
  if (!cls.properties.empty()) PrintProperties(out, cls);
  if (!cls.methods.empty()) PrintMethods(out, cls);
}

void ShowClass(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
               std::ostream& out) {
  const auto cls = FindClass(*target, settings.className);
  if (settings.IsMof())
    out << MofOf(*cls);
  else if (settings.IsJson())
    PrintJson(out, ToJson(ReportOf(*cls)));
  else
    Print(out, ReportOf(*cls));
}

}  // namespace

void AddShowCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(
      program, line,
      {"show", "Show one class with its declarations", "havhost show ORVSG_Processor"}, ShowClass);
  command.add_option("CLASS", line.settings.className, "Name of the class")->required();
  AddFormatOption(command, line.settings, {"text", "json", "mof"});
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost

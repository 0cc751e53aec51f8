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
                     const std::vector<TQualifierReport>& qualifiers, const TTextStyle& style) {
  std::vector<TRow> rows;
  for (const auto& qualifier : qualifiers)
    rows.push_back({qualifier.name, qualifier.value.ToString(10)});
  PrintRows(out, prefix, rows, 40, style);
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

void PrintProperties(std::ostream& out, const TClassReport& cls, const TTextStyle& style) {
  out << '\n' << style.Ink(TTextStyle::kStrong, "Properties") << '\n';
  for (const auto& property : cls.properties) {
    PrintRows(out, "  ", {{property.name, property.type, Remarks(property, cls.name)}}, 40, style);
    PrintQualifiers(out, "    ", property.qualifiers, style);
  }
}

void PrintMethods(std::ostream& out, const TClassReport& cls, const TTextStyle& style) {
  out << '\n' << style.Ink(TTextStyle::kStrong, "Methods") << '\n';
  for (const auto& method : cls.methods) {
    PrintRows(out, "  ",
              {{Signature(method), method.origin == cls.name ? "" : "from " + method.origin}}, 40,
              style);
    PrintQualifiers(out, "    ", method.qualifiers, style);
    for (const auto& parameter : method.parameters) {
      PrintRows(out, "    ", {{parameter.name, parameter.type}}, 40, style);
      PrintQualifiers(out, "      ", parameter.qualifiers, style);
    }
  }
}

void Print(std::ostream& out, const TClassReport& cls, const TTextStyle& style) {
  PrintRows(out, "",
            {{"Class", cls.name},
             {"Kind", cls.kind.ToString()},
             {"Superclass", cls.superclass.empty() ? "none" : cls.superclass},
             {"Subclasses", cls.subclasses.empty() ? "none" : Join(cls.subclasses)},
             {"Instances", std::to_string(cls.instances)}},
            40, style);
  if (!cls.qualifiers.empty()) {
    out << '\n' << style.Ink(TTextStyle::kStrong, "Qualifiers") << '\n';
    PrintQualifiers(out, "  ", cls.qualifiers, style);
  }
  if (!cls.properties.empty()) PrintProperties(out, cls, style);
  if (!cls.methods.empty()) PrintMethods(out, cls, style);
}

void ShowClass(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
               std::ostream& out) {
  const auto cls = FindClass(*target, settings.className);
  if (settings.IsMof())
    out << MofOf(*cls);
  else if (settings.IsJson())
    PrintJson(out, ToJson(ReportOf(*cls)));
  else
    Print(out, ReportOf(*cls), settings.style);
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

// havhost check: what the repository will do with a schema, before anything relies on it.
#include "havcore/THAVException.h"
#include "havcore/client/TPluginLoader.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/Paths.h"
#include "havhost/THostError.h"
#include "havhost/THostLogger.h"
#include "havhost/report/Json.h"
#include "havhost/report/Text.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"

namespace havhost {

using namespace hav::client;
using namespace hav::mof;
using namespace NORVHAV20;

namespace {

// Enough for any schema that is worth reading on.
constexpr std::size_t kMostFindings = 10000;

TJson ToJson(const TMofMessage& message) {
  return {{"severity", message.severity == TMofMessage::ESeverity::kError ? "error" : "warning"},
          {"file", message.file},
          {"line", message.line},
          {"column", message.column},
          {"text", message.text}};
}

void PrintJsonOf(std::ostream& out, const TMofReport& report) {
  auto findings = TJson::array();
  for (const auto& message : report.GetMessages()) findings.push_back(ToJson(message));
  PrintJson(out, {{"files", report.files},
                  {"classes", report.classes},
                  {"errors", report.CountErrors()},
                  {"warnings", report.CountWarnings()},
                  {"findings", findings}});
}

// Like a compiler, whose messages editors can jump to.
void PrintMessage(std::ostream& out, const TMofMessage& message, const TTextStyle& style) {
  const bool isError = message.severity == TMofMessage::ESeverity::kError;
  const auto text = Printable(message.ToString());
  const std::string severity = isError ? "error: " : "warning: ";
  const auto at = text.find(severity);
  out << style.Ink(TTextStyle::kStrong, text.substr(0, at))
      << style.Ink(isError ? TTextStyle::kOld : TTextStyle::kChanged, severity)
      << text.substr(at + severity.size()) << '\n';
}

void PrintText(std::ostream& out, const TMofReport& report, const TTextStyle& style) {
  for (const auto& message : report.GetMessages()) PrintMessage(out, message, style);
  if (const auto note = report.GetNote(); !note.empty()) out << "note: " << note << '\n';
  if (report.GetMessages().empty())
    out << report.classes << (report.classes == 1 ? " class" : " classes") << ", nothing to say\n";
  else
    out << Count(report.CountErrors(), "errors") << ", "
        << Count(report.CountWarnings(), "warnings") << '\n';
}

EExitStatus StatusOf(const TMofReport& report, bool wasReadWhole) {
  if (!wasReadWhole) return kExitUsage;
  return report.GetMessages().empty() ? kExitDone : kExitFailed;
}

EExitStatus Check(const TSettings& settings, const TConsole& console) {
  const THostLogger logger(console.err, settings.verbose);
  const TPluginLoader plugin(settings.plugin.empty() ? InstalledPlugin() : PathOf(settings.plugin));
  std::vector<std::filesystem::path> searchPath;
  for (const auto& folder : settings.includeFolders) searchPath.push_back(PathOf(folder));
  TMofFolderSource source(searchPath);
  TMofLoader loader(plugin.GetProvider(), source);
  loader.SetNamespaceName(settings.namespaceName);
  loader.SetDefaultNamespaceName(TSettings::kDefaultNamespace);
  loader.SetChecks(true);
  TMofReport report(kMostFindings);
  try {
    loader.Load(settings.mofFiles, report);
  } catch (const THAVException& failure) {
    // It is the plug-in's own and has to end before the plug-in does.
    throw THostError(failure.what());
  }
  if (settings.IsJson())
    PrintJsonOf(console.out, report);
  else
    PrintText(console.out, report, settings.style);
  return StatusOf(report, loader.WasReadWhole());
}

}  // namespace

void AddCheckCommand(CLI::App& program, TCommandLine& line) {
  auto& command =
      AddCommand(program, line,
                 {"check", "Tell what the repository will do with the declarations of MOF files",
                  "havhost check model.mof"},
                 [&line](const TConsole& console) { line.status = Check(line.settings, console); });
  command.add_option("FILE", line.settings.mofFiles, "MOF files")->required();
  AddFormatOption(command, line.settings);
  AddNamespaceOptions(command, line.settings);
}

}  // namespace havhost

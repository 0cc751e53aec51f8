#include "havhost/OpenNamespace.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "havcore/client/Enumerate.h"
#include "havcore/client/Utf8.h"
#include "havhost/Paths.h"
#include "havhost/ReadText.h"
#include "havhost/THostError.h"
#include "havhost/TProgressLine.h"
#include "havhost/report/Text.h"
#include "inventory/CachesFound.h"
#include "inventory/Inventory.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"

namespace havhost {

using namespace hav::client;
using namespace hav::mof;
using namespace hav::inventory;

using namespace NORVHAV20;

namespace {

std::string StepText(TMofLoader::EStep step) {
  switch (step) {
    case TMofLoader::EStep::kReadFiles: return "reading MOF files";
    case TMofLoader::EStep::kMakeClasses: return "making classes";
    case TMofLoader::EStep::kStoreInstances: return "storing instances";
  }
  return {};
}

// The files, and standard input under the name "-".
class TMofSource : public TMofFolderSource {
 public:
  TMofSource(const TSettings& settings, std::istream* in)
      : TMofFolderSource(Folders(settings)), m_in(in) {}

  bool Find(const std::string& name, const std::string& includer, std::string& identity) override {
    if (name != "-" || !includer.empty()) return TMofFolderSource::Find(name, includer, identity);
    identity = kStandardInput;
    return true;
  }
  bool Read(const std::string& identity, std::string& text) override {
    if (identity != kStandardInput) return TMofFolderSource::Read(identity, text);
    // It can be read once only.
    try {
      if (m_in != nullptr && !m_isRead) m_text = ReadText(*m_in, "it");
    } catch (const THostError& failure) {
      text = failure.what();
      return false;
    }
    m_isRead = true;
    text = m_text;
    return true;
  }

 private:
  static constexpr char kStandardInput[] = "standard input";

  static std::vector<std::filesystem::path> Folders(const TSettings& settings) {
    std::vector<std::filesystem::path> folders;
    for (const auto& folder : settings.includeFolders) folders.push_back(PathOf(folder));
    return folders;
  }

  std::istream* m_in;
  bool m_isRead = false;
  std::string m_text;
};

void PrintMessages(const TConsole& console, const TMofReport& report) {
  for (const auto& message : report.GetMessages())
    console.err << "havhost: " << Printable(message.ToString()) << '\n';
  if (const auto note = report.GetNote(); !note.empty())
    console.err << "havhost: note: " << note << '\n';
}

boost::shared_ptr<ICIMNamespace> LoadMof(const TPluginLoader& plugin, TSettings& settings,
                                         const std::vector<std::string>& files,
                                         const TConsole& console) {
  TMofSource source(settings, console.in);
  TMofLoader loader(plugin.GetProvider(), source);
  loader.SetNamespaceName(settings.namespaceName);
  loader.SetDefaultNamespaceName(TSettings::kDefaultNamespace);
  loader.SetStrict(settings.strict);
  TMofReport report;
  boost::shared_ptr<ICIMNamespace> loaded;
  {
    TProgressLine progress(console);
    loader.SetProgress([&](TMofLoader::EStep step, std::size_t done, std::size_t total) {
      progress.Show(StepText(step), done, total);
    });
    loaded = loader.Load(files, report);
  }
  PrintMessages(console, report);
  if (!loaded)
    throw THostError("nothing is loaded: the MOF has " + Count(report.CountErrors(), "errors"));
  settings.namespaceName = loader.GetNamespaceName();
  return loaded;
}

std::vector<std::string> SchemaFiles(const TSettings& settings) {
  const auto folder =
      settings.schemaFolder.empty() ? InstalledSchema() : PathOf(settings.schemaFolder);
  std::error_code failure;
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure))
    if (entry.path().extension() == ".mof") files.push_back(Utf8(entry.path()));
  if (failure)
    throw THostError("cannot read the schema folder " + Utf8(folder) + ": " + failure.message());
  if (files.empty()) throw THostError("no MOF file in the schema folder " + Utf8(folder));
  std::sort(files.begin(), files.end());
  return files;
}

void TakeInventory(TPluginLoader& plugin, ICIMNamespace& target, const TSettings& settings,
                   const TConsole& console) {
  std::error_code failure;
  if (!std::filesystem::is_directory(PathOf(settings.rootFolder), failure))
    throw THostError("no such folder: '" + settings.rootFolder + "'");
  CollectInventory(target, TMachine(settings.rootFolder), [&](const TFailure& lack) {
    console.err << "havhost: not in the inventory: " << Printable(lack.ToString()) << '\n';
  });
  if (InstancesOf(*target.GetClass("<root>", {}), true).empty())
    throw THostError("nothing is found of the machine in '" + settings.rootFolder + "'");
  const auto switches = CachesFound(target);
  for (std::size_t i = 0; i < switches.size(); ++i)
    plugin.CacheSwitch(static_cast<int>(i) + 1) = switches[i];
}

}  // namespace

boost::shared_ptr<ICIMNamespace> OpenNamespace(TPluginLoader& plugin, TSettings& settings,
                                               const TConsole& console) {
  if (!settings.mofFiles.empty()) return LoadMof(plugin, settings, settings.mofFiles, console);
  auto target = LoadMof(plugin, settings, SchemaFiles(settings), console);
  if (!settings.collects) return target;
  TakeInventory(plugin, *target, settings, console);
  return target;
}

}  // namespace havhost

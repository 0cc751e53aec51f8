#include "mof/TMofLoader.h"

#include <algorithm>

#include "havcore/client/FoldedName.h"
#include "mof/TMofInstanceBuilder.h"
#include "mof/TMofReader.h"
#include "mof/TMofSchemaBuilder.h"
#include "mof/TMofSchemaChecks.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

bool HasNoDamage(const TMofReader::TFiles& files) {
  return std::all_of(files.begin(), files.end(), [](const auto& file) {
    return std::none_of(file->classes.begin(), file->classes.end(),
                        [](const TMofClass& cls) { return cls.isDamaged; });
  });
}

}  // namespace

boost::shared_ptr<ICIMNamespace> TMofLoader::Load(const std::vector<std::string>& names,
                                                  TMofReport& report) {
  TMofReader reader(m_source, report, ProgressOf(EStep::kReadFiles), m_pieceSize);
  reader.Read(names);
  m_wasReadWhole = reader.IsComplete() && HasNoDamage(reader.GetFiles());
  m_chosenName = ChooseName(reader.GetFiles(), report);
  if (report.IsFull()) return {};

  const auto home = m_provider.AllocateNamespace({}, false, m_chosenName);
  TMofSchemaBuilder schema(m_provider, home, reader.GetFiles(), reader.IsComplete(), report);
  schema.SetKeepsTrees(m_checks);
  schema.Build(ProgressOf(EStep::kMakeClasses));
  if (m_checks) TMofSchemaChecks(schema, report).Run();
  if (!report.IsFull())
    TMofInstanceBuilder(home, schema, reader.GetFiles(),
                        {m_chosenName, m_strict, reader.IsComplete()}, report)
        .Build(ProgressOf(EStep::kStoreInstances));
  return report.HasErrors() ? boost::shared_ptr<ICIMNamespace>() : home;
}

std::function<void(std::size_t, std::size_t)> TMofLoader::ProgressOf(EStep step) const {
  if (!m_progress) return {};
  return [this, step](std::size_t done, std::size_t total) { m_progress(step, done, total); };
}

std::string TMofLoader::ChooseName(const TMofReader::TFiles& files, TMofReport& report) const {
  const std::string* said = nullptr;
  for (const auto& file : files) {
    for (const auto& pragma : file->pragmas) {
      if (pragma.kind != TMofPragma::EKind::kNamespace) continue;
      if (said && !SameName(*said, pragma.value))
        report.AddError(file->text, pragma.offset,
                        "namespace '" + pragma.value + "' follows namespace '" + *said +
                            "', and one load fills one namespace");
      else if (!said && !m_name.empty() && !SameName(m_name, pragma.value))
        report.AddWarning(
            file->text, pragma.offset,
            "everything is loaded into namespace '" + m_name + "', not '" + pragma.value + "'");
      if (!said) said = &pragma.value;
    }
  }
  if (!m_name.empty()) return m_name;
  return said ? *said : m_defaultName;
}

}  // namespace hav::mof

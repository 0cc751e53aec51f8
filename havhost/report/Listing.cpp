#include "havhost/report/Listing.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"
#include "havhost/THostError.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/InstanceText.h"
#include "havhost/report/Json.h"
#include "havhost/report/MofText.h"
#include "havhost/report/TFilter.h"
#include "havhost/report/TPathOrder.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr std::size_t kWidestCell = 60;

TJson ToJson(ICIMClass& cls) {
  const auto kind = KindOf(cls);
  const auto superclass = SuperclassName(cls);
  return {{"name", cls.GetName({})},
          {"superclass", superclass.empty() ? TJson() : TJson(superclass)},
          {"association", kind.isAssociation},
          {"abstract", kind.isAbstract},
          {"indication", kind.isIndication},
          {"instances", InstancesOf(cls, false).size()}};
}

TRow ToRow(const TListedClass& listed) {
  const auto instances = InstancesOf(*listed.cls, false).size();
  return {std::string(2 * listed.depth, ' ') + listed.cls->GetName({}),
          KindOf(*listed.cls).ToString(), instances == 0 ? "" : Count(instances, "instances")};
}

using TReports = std::vector<TInstanceReport>;

constexpr char kClassColumn[] = "__CLASS";
constexpr char kPathColumn[] = "__PATH";

// Names that the user gives, in the spelling of who declares them.
class TPropertyNames {
 public:
  TPropertyNames(const TReports& reports, const boost::shared_ptr<ICIMClass>& cls) {
    if (cls)
      for (const auto& decl : PropertyDeclsOf(*cls)) Add(decl->GetName({}));
    for (const auto& report : reports)
      for (const auto& property : report.properties) Add(property.name);
    m_isKnown = cls || !reports.empty();
  }

  const std::vector<std::string>& All() const { return m_names; }

  std::string Spelling(const std::string& option, const std::string& name) const {
    if (!m_isKnown) return name;
    const auto found = std::find_if(m_names.begin(), m_names.end(),
                                    [&](const auto& known) { return SameName(known, name); });
    if (found == m_names.end())
      throw TUsageError(option + ": no such property: '" + name + "' (there are " + Join(m_names) +
                        ")");
    return *found;
  }

 private:
  void Add(const std::string& name) {
    if (m_seen.emplace(name).second) m_names.push_back(name);
  }

  std::vector<std::string> m_names;
  std::unordered_set<std::string> m_seen;
  bool m_isKnown = false;
};

std::vector<std::string> ColumnsOf(const TPropertyNames& names, const TSettings& settings) {
  std::vector<std::string> columns;
  for (const auto& column : settings.columns) {
    const bool isOwn = SameName(column, kClassColumn) || SameName(column, kPathColumn);
    columns.push_back(isOwn ? (SameName(column, kPathColumn) ? kPathColumn : kClassColumn)
                            : names.Spelling("--columns", column));
  }
  return columns;
}

void Sort(TReports& reports, const std::vector<std::string>& keys, bool reverse) {
  const auto less = [&](const TInstanceReport& a, const TInstanceReport& b) {
    for (const auto& key : keys) {
      const auto* left = a.FindFolded(key);
      const auto* right = b.FindFolded(key);
      const auto& first = left == nullptr ? TCIMValue() : left->value;
      const auto& second = right == nullptr ? TCIMValue() : right->value;
      if (ValueLess(first, second)) return true;
      if (ValueLess(second, first)) return false;
    }
    return false;
  };
  std::stable_sort(reports.begin(), reports.end(), less);
  if (reverse) std::reverse(reports.begin(), reports.end());
}

// The cells of one instance: display texts, or raw values where `raw`.
TRow Cells(const TInstanceReport& report, const std::vector<std::string>& columns, bool raw) {
  TRow row;
  for (const auto& column : columns) {
    const auto* property = report.FindFolded(column);
    if (column == kPathColumn)
      row.push_back(report.path);
    else if (column == kClassColumn)
      row.push_back(report.className);
    else if (property == nullptr || (raw && property->value.IsNull()))
      row.emplace_back();
    else
      row.push_back(raw ? property->value.ToString(10) : Join(property->display));
  }
  return row;
}

// The display texts with the raw values in brackets behind them.
TRow BothCells(const TInstanceReport& report, const std::vector<std::string>& columns) {
  auto row = Cells(report, columns, false);
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (const auto* property = report.FindFolded(columns[i]))
      row[i] += " [" + property->value.ToString(10) + "]";
  return row;
}

void PrintCsv(std::ostream& out, const TReports& reports, const std::vector<std::string>& columns) {
  PrintCsvLine(out, columns);
  for (const auto& report : reports) PrintCsvLine(out, Cells(report, columns, true));
}

void PrintTable(std::ostream& out, const TReports& reports, const std::vector<std::string>& columns,
                const TSettings& settings) {
  if (reports.empty()) return;
  std::vector<TRow> rows = {columns};
  for (const auto& report : reports)
    rows.push_back(settings.raw ? BothCells(report, columns) : Cells(report, columns, false));
  // The first column is no name of the others.
  PrintRows(out, "", rows, kWidestCell, settings.style, {{}, true});
}

void PrintInstances(std::ostream& out, const TReports& reports, const TSettings& settings) {
  for (const auto& report : reports) {
    if (!settings.namesOnly && &report != &reports.front()) out << '\n';
    if (settings.namesOnly)
      out << Printable(report.path) << '\n';
    else
      PrintInstance(out, report, settings);
  }
}

void PrintJsonOf(std::ostream& out, TReports reports, const std::vector<std::string>& columns,
                 const TSettings& settings) {
  TJson list = TJson::array();
  for (auto& report : reports) {
    std::vector<TPropertyReport> kept;
    for (const auto& column : columns)
      if (const auto* property = report.FindFolded(column)) kept.push_back(*property);
    if (settings.namesOnly || !columns.empty()) report.properties = std::move(kept);
    list.push_back(havhost::ToJson(report));
  }
  PrintJson(out, {{"namespace", settings.namespaceName}, {"instances", list}});
}

void PrintMof(std::ostream& out, const TReports& reports,
              const std::vector<boost::shared_ptr<ICIMInstance>>& instances) {
  std::unordered_map<std::string, boost::shared_ptr<ICIMInstance>> byPath;
  for (const auto& instance : instances)
    byPath.emplace(instance->GetReference({}).GetPath(), instance);
  for (const auto& report : reports) out << MofOf(*byPath.at(report.path));
}

// Columns have no meaning for whole instances, names alone are no table.
void RequireThatSettingsGoTogether(const TSettings& settings) {
  const bool chooses = settings.namesOnly || !settings.columns.empty();
  if (settings.IsMof() && chooses)
    throw TUsageError(
        "--format mof writes whole instances: it goes with neither --columns nor "
        "--names-only");
  if (settings.namesOnly && !settings.columns.empty())
    throw TUsageError("--names-only does not go with --columns");
}

}  // namespace

void PrintListing(std::ostream& out, std::vector<boost::shared_ptr<ICIMInstance>> instances,
                  const TSettings& settings, const boost::shared_ptr<ICIMClass>& cls) {
  RequireThatSettingsGoTogether(settings);
  const TFilter filter(settings.where);
  SortByPath(instances);
  TReports reports;
  for (const auto& instance : instances) reports.push_back(ReportOf(*instance));
  const TPropertyNames names(reports, cls);
  for (const auto& name : filter.Names()) names.Spelling("--where", name);
  for (const auto& name : settings.sort) names.Spelling("--sort", name);
  const auto columns = ColumnsOf(names, settings);

  reports.erase(std::remove_if(reports.begin(), reports.end(),
                               [&](const auto& report) { return !filter.Matches(report); }),
                reports.end());
  Sort(reports, settings.sort, settings.reverse);
  if (settings.IsJson())
    PrintJsonOf(out, std::move(reports), columns, settings);
  else if (settings.IsCsv())
    PrintCsv(out, reports,
             settings.namesOnly ? TRow{kPathColumn}
             : columns.empty()  ? names.All()
                                : columns);
  else if (settings.IsMof())
    PrintMof(out, reports, instances);
  else if (reports.empty() && settings.style.isShown)
    out << settings.style.Ink(TTextStyle::kFaint, "no instances") << '\n';
  else if (!columns.empty())
    PrintTable(out, reports, columns, settings);
  else
    PrintInstances(out, reports, settings);
}

void PrintListing(std::ostream& out, const std::vector<TListedClass>& classes,
                  const TSettings& settings) {
  if (!settings.where.empty() || !settings.sort.empty() || !settings.columns.empty())
    throw TUsageError("--where, --sort and --columns are for instances, and these are classes");
  if (settings.IsMof()) {
    for (const auto& listed : classes) out << MofOf(*listed.cls);
  } else if (settings.IsJson()) {
    TJson list = TJson::array();
    for (const auto& listed : classes) list.push_back(ToJson(*listed.cls));
    PrintJson(out, {{"namespace", settings.namespaceName}, {"classes", list}});
  } else if (settings.namesOnly) {
    for (const auto& listed : classes) out << listed.cls->GetName({}) << '\n';
  } else if (settings.IsCsv()) {
    PrintCsvLine(out, {"Name", "Superclass", "Kind", "Instances"});
    for (const auto& listed : classes)
      PrintCsvLine(out, {listed.cls->GetName({}), SuperclassName(*listed.cls),
                         KindOf(*listed.cls).ToString(),
                         std::to_string(InstancesOf(*listed.cls, false).size())});
  } else {
    std::vector<TRow> rows;
    for (const auto& listed : classes) rows.push_back(ToRow(listed));
    PrintRows(out, "", rows, kWidestCell, settings.style);
  }
}

void PrintListing(std::ostream& out, const std::vector<boost::shared_ptr<ICIMClass>>& classes,
                  const TSettings& settings) {
  std::vector<TListedClass> listed;
  for (const auto& cls : classes) listed.push_back({cls});
  PrintListing(out, listed, settings);
}

}  // namespace havhost

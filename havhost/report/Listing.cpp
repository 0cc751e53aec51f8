#include "havhost/report/Listing.h"

#include <string>

#include "havcore/client/Enumerate.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/InstanceText.h"
#include "havhost/report/Json.h"
#include "havhost/report/TPathOrder.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

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

}  // namespace

void PrintListing(std::ostream& out, std::vector<boost::shared_ptr<ICIMInstance>> instances,
                  const TSettings& settings) {
  SortByPath(instances);
  TJson list = TJson::array();
  for (const auto& instance : instances) {
    const auto report = ReportOf(*instance);
    if (settings.IsJson()) {
      list.push_back(havhost::ToJson(report));
    } else {
      if (instance != instances.front()) out << '\n';
      PrintInstance(out, report, settings.raw);
    }
  }
  if (settings.IsJson())
    PrintJson(out, {{"namespace", settings.namespaceName}, {"instances", list}});
}

void PrintListing(std::ostream& out, const std::vector<TListedClass>& classes,
                  const TSettings& settings) {
  if (settings.IsJson()) {
    TJson list = TJson::array();
    for (const auto& listed : classes) list.push_back(ToJson(*listed.cls));
    PrintJson(out, {{"namespace", settings.namespaceName}, {"classes", list}});
    return;
  }
  std::vector<TRow> rows;
  for (const auto& listed : classes) rows.push_back(ToRow(listed));
  PrintRows(out, "", rows, 60);
}

void PrintListing(std::ostream& out, const std::vector<boost::shared_ptr<ICIMClass>>& classes,
                  const TSettings& settings) {
  std::vector<TListedClass> listed;
  for (const auto& cls : classes) listed.push_back({cls});
  PrintListing(out, listed, settings);
}

}  // namespace havhost

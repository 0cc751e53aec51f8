#include "havhost/report/InstanceReport.h"

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"
#include "havcore/client/Enumerate.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

std::string TInstanceReport::Title() const {
  for (const char* name : {"ElementName", "Caption", "Name", "DeviceID"}) {
    const auto* property = Find(name);
    if (property != nullptr && !property->value.IsNull() && property->display.size() == 1 &&
        !property->display[0].empty())
      return property->display[0];
  }
  return path;
}

const TPropertyReport* TInstanceReport::Find(const std::string& name) const {
  for (const auto& property : properties)
    if (property.name == name) return &property;
  return nullptr;
}

std::vector<std::string> DisplayTexts(const ICIMProperty& slot) {
  try {
    // The list of a NULL array has no element that could show the text of NULL.
    if (slot.IsArray({}) && !slot.GetValue({}).IsNull()) return slot.GetDisplayValues({});
    return {slot.GetDisplayValue({})};
  } catch (const THAVException&) {
    return {slot.GetValue({}).ToString(10)};
  }
}

TInstanceReport ReportOf(ICIMInstance& instance) {
  TInstanceReport report;
  report.path = instance.GetReference({}).GetPath();
  report.className = instance.GetClass({})->GetName({});
  const auto slots = Collect<ICIMProperty>([&](const TEnumCallback<ICIMProperty>& callback) {
    instance.EnumerateProperties(callback, {});
  });
  for (const auto& slot : slots)
    if (const auto decl = slot->GetDecl({}))
      report.properties.push_back(
          {decl->GetName({}), slot->GetValue({}), slot->GetType({}), DisplayTexts(*slot)});
  return report;
}

}  // namespace havhost

#include "havhost/report/InstanceReport.h"

#include <algorithm>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"

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

const TPropertyReport* TInstanceReport::FindFolded(const std::string& name) const {
  for (const auto& property : properties)
    if (SameName(property.name, name)) return &property;
  return nullptr;
}

bool IsBookkeeping(const TPropertyReport& property) {
  for (const char* name : {"DateTimeOfCollection", "CreationClassName", "SystemCreationClassName",
                           "CSCreationClassName", "OSCreationClassName"})
    if (SameName(property.name, name)) return true;
  return false;
}

bool IsEmpty(const TPropertyReport& property) {
  return property.value.IsNull() ||
         std::all_of(property.display.begin(), property.display.end(), [](const auto& text) {
           return text.find_first_not_of(" \t\r\n") == std::string::npos;
         });
}

namespace {

// Datetimes have no display text of their own but their 25 characters.
std::vector<std::string> DateTexts(const TCIMValue& value) {
  if (!value.IsArray())
    return {value.IsNull() ? value.ToString(10)
                           : static_cast<const TCIMDateTime&>(value).ToUIString()};
  std::vector<std::string> texts;
  for (const auto& element : static_cast<const std::vector<TCIMValue>&>(value))
    texts.push_back(DateTexts(element)[0]);
  return texts;
}

bool IsDate(const TCIMValue& value) {
  return !value.IsNull() && (value.GetType() & ~kCIMArray) == kCIMDateTime;
}

}  // namespace

std::vector<std::string> DisplayTexts(const ICIMProperty& slot) {
  if (const auto& value = slot.GetValue({}); IsDate(value)) return DateTexts(value);
  try {
    // The list of a NULL array has no element that could show the text of NULL.
    if (slot.IsArray({}) && !slot.GetValue({}).IsNull()) return slot.GetDisplayValues({});
    return {slot.GetDisplayValue({})};
  } catch (const THAVException&) {
    return {slot.GetValue({}).ToString(10)};
  }
}

std::vector<std::string> PreviousDisplayTexts(const ICIMProperty& slot) {
  if (const auto& value = slot.GetPrevValue({}); IsDate(value)) return DateTexts(value);
  try {
    return {slot.GetPrevDisplayValue({})};
  } catch (const THAVException&) {
    return {slot.GetPrevValue({}).ToString(10)};
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

#include "havhost/report/TSnapshot.h"

#include <algorithm>

#include "havcore/client/Enumerate.h"
#include "havhost/THostError.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr char kTimeOfCollection[] = "DateTimeOfCollection";

// The property of that name, null when there is none.
const TJson& PropertyOf(const TJson& properties, const std::string& name) {
  static const TJson none;
  const auto found = properties.find(name);
  return found == properties.end() ? none : *found;
}

bool IsChanged(const TJson& before, const TJson& after) {
  if (before.is_null() || after.is_null()) return before.is_null() != after.is_null();
  return before.at("value") != after.at("value") || before.at("display") != after.at("display");
}

std::vector<TPropertyChange> Changes(const TJson& before, const TJson& after) {
  std::vector<TPropertyChange> changes;
  const auto compare = [&](const std::string& name) {
    const auto &old = PropertyOf(before, name), &now = PropertyOf(after, name);
    if (name != kTimeOfCollection && IsChanged(old, now)) changes.push_back({name, old, now});
  };
  for (const auto& item : after.items()) compare(item.key());
  for (const auto& item : before.items())
    if (PropertyOf(after, item.key()).is_null()) compare(item.key());
  return changes;
}

constexpr char kNoSnapshot[] = ": no instances in it that havhost wrote as JSON: ";

// What is nested without end would be copied and compared by recursion without end.
TJson ParseJson(const std::string& text, const std::string& name) {
  constexpr int kDeepest = 10;
  return TJson::parse(text, [&](int depth, TJson::parse_event_t, const TJson&) {
    if (depth > kDeepest) throw THostError(name + kNoSnapshot + "it is nested too deeply");
    return true;
  });
}

bool IsScalar(const TJson& value) { return !value.is_array() && !value.is_object(); }

// A value or a display text: one, or a list.
bool IsValue(const TJson& value) {
  return IsScalar(value) || (value.is_array() && std::all_of(value.begin(), value.end(), IsScalar));
}

bool IsProperty(const TJson& property) {
  const auto has = [&](const char* name) {
    const auto found = property.find(name);
    return found != property.end() && IsValue(*found);
  };
  return has("value") && has("display");
}

// Throws THostError for properties that no ToJson has written.
void CheckProperties(const TJson& instance, const std::string& name) {
  const auto& properties = instance.at("properties");
  if (properties.is_object() && std::all_of(properties.begin(), properties.end(), IsProperty))
    return;
  throw THostError(name + kNoSnapshot + "the properties of " +
                   instance.at("path").get<std::string>() + " are none");
}

}  // namespace

TSnapshot TSnapshot::Of(ICIMNamespace& target) {
  TSnapshot snapshot;
  const auto classes = Collect<ICIMClass>(
      [&](const TEnumCallback<ICIMClass>& callback) { target.EnumerateRootClasses(callback, {}); });
  for (const auto& cls : classes)
    for (const auto& instance : InstancesOf(*cls, true)) snapshot.Add(ToJson(ReportOf(*instance)));
  return snapshot;
}

TSnapshot TSnapshot::Parse(const std::string& text, const std::string& name) {
  TSnapshot snapshot;
  const auto addAll = [&](const TJson& instances) {
    for (const auto& instance : instances) {
      CheckProperties(instance, name);
      snapshot.Add(instance);
    }
  };
  try {
    const auto document = ParseJson(text, name);
    if (!document.is_object() || !document.contains("version") ||
        document.at("version") != kJsonVersion)
      throw THostError(name + ": the document's version is not " + std::to_string(kJsonVersion));
    addAll(document.at("instances"));
    if (document.contains("associations")) addAll(document.at("associations"));
  } catch (const TJson::exception& failure) {
    throw THostError(name + kNoSnapshot + failure.what());
  }
  return snapshot;
}

void TSnapshot::Add(const TJson& instance) {
  m_instances.insert_or_assign(
      instance.at("path").get<std::string>(),
      TInstance{instance.at("class").get<std::string>(), instance.at("properties")});
}

TChanges TSnapshot::Since(const TSnapshot& before) const {
  TChanges changes;
  auto old = before.m_instances.begin();
  const auto gone = [&] {
    changes.push_back({TInstanceChange::kDisappeared, old->first, old->second.className, {}});
    ++old;
  };
  for (const auto& [path, instance] : m_instances) {
    while (old != before.m_instances.end() && old->first < path) gone();
    if (old == before.m_instances.end() || old->first != path) {
      changes.push_back({TInstanceChange::kAppeared, path, instance.className, {}});
      continue;
    }
    auto properties = Changes(old->second.properties, instance.properties);
    if (!properties.empty())
      changes.push_back(
          {TInstanceChange::kChanged, path, instance.className, std::move(properties)});
    ++old;
  }
  while (old != before.m_instances.end()) gone();
  return changes;
}

}  // namespace havhost

#include "havhost/report/TSnapshot.h"

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
  try {
    const auto document = TJson::parse(text);
    if (document.value("version", 0) != kJsonVersion)
      throw THostError(name + ": the document's version is not " + std::to_string(kJsonVersion));
    for (const auto& instance : document.at("instances")) snapshot.Add(instance);
    for (const auto& instance : document.value("associations", TJson::array()))
      snapshot.Add(instance);
  } catch (const TJson::exception& failure) {
    throw THostError(name + ": no instances in it that havhost wrote as JSON: " + failure.what());
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

#include "inventory/Refresh.h"

#include <algorithm>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/client/Enumerate.h"
#include "inventory/TPublisher.h"

using namespace NORVHAV20;

namespace hav::inventory {
namespace {

using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;

constexpr char kTimeOfCollection[] = "DateTimeOfCollection";

TInstances AllInstances(ICIMNamespace& target) {
  TInstances instances;
  const auto classes = client::Collect<ICIMClass>(
      [&](const TEnumCallback<ICIMClass>& callback) { target.EnumerateRootClasses(callback, {}); });
  for (const auto& cls : classes)
    for (const auto& instance : client::InstancesOf(*cls, true)) instances.push_back(instance);
  return instances;
}

// A collector that failed as a whole found nothing, which does not mean that nothing is there.
bool IsWhole(const TCollection& collection) {
  const auto& failures = collection.Failures();
  return std::none_of(failures.begin(), failures.end(),
                      [](const TFailure& failure) { return failure.source == "collector"; });
}

TChange ChangeOf(const boost::shared_ptr<ICIMInstance>& instance) {
  TChange change{TChange::kChanged, instance, {}};
  const auto slots =
      client::Collect<ICIMProperty>([&](const TEnumCallback<ICIMProperty>& callback) {
        instance->EnumerateProperties(callback, {});
      });
  for (const auto& slot : slots)
    if (slot->GetPrevValue({}) != slot->GetValue({}) &&
        slot->GetDecl({})->GetName({}) != kTimeOfCollection)
      change.properties.push_back(slot);
  return change;
}

}  // namespace

std::vector<TChange> RefreshInventory(ICIMNamespace& target, const TMachine& machine,
                                      const TReportFailure& report) {
  return RefreshInventory(target, GatherInventory(machine), report);
}

std::vector<TChange> RefreshInventory(ICIMNamespace& target, const TCollection& collection,
                                      const TReportFailure& report) {
  const auto tell = [&](const std::vector<TFailure>& failures) {
    if (report)
      for (const auto& failure : failures) report(failure);
  };
  tell(collection.Failures());
  if (collection.Elements().empty()) return {};
  const auto before = AllInstances(target);
  TPublisher publisher(target, TPublisher::kUpdate);
  publisher.Publish(collection);
  tell(publisher.Failures());

  TInstances gone;
  if (IsWhole(collection))
    for (const auto& instance : before)
      if (!publisher.Has(*instance)) gone.push_back(instance);
  for (const auto& instance : gone) instance->Delete({});
  // The walk gives processors their cache switches, as it did the last time.
  std::vector<TChange> changes;
  for (const auto& instance : AllInstances(target)) {
    if (publisher.HasStored(*instance))
      changes.push_back({TChange::kAppeared, instance, {}});
    else if (auto change = ChangeOf(instance); !change.properties.empty())
      changes.push_back(std::move(change));
  }
  for (const auto& instance : gone) changes.push_back({TChange::kDisappeared, instance, {}});
  return changes;
}

}  // namespace hav::inventory

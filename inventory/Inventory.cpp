#include "inventory/Inventory.h"

#include <exception>

#include "inventory/TPublisher.h"

using namespace NORVHAV20;

namespace hav::inventory {

void CollectInventory(ICIMNamespace& target, const TMachine& machine,
                      const TReportFailure& report) {
  const auto collection = GatherInventory(machine);
  const auto refused = PublishInventory(collection, target);
  if (!report) return;
  for (const auto& failure : collection.Failures()) report(failure);
  for (const auto& failure : refused) report(failure);
}

TCollection GatherInventory(const TMachine& machine) {
  return GatherInventory(MakeCollectors(machine));
}

TCollection GatherInventory(const std::vector<std::unique_ptr<ICollector>>& collectors) {
  TCollection collection;
  for (const auto& collector : collectors) {
    collection.SetCollector(collector->Name());
    try {
      collector->Collect(collection);
    } catch (const std::exception& failure) {
      collection.Fail("collector", failure.what());
    }
  }
  // Devices belong to a computer also when it does not tell its name; this is the one that
  // every computer has for itself.
  if (!collection.Find(TCollection::kSystem) && !collection.Elements().empty())
    collection.Add(TCollection::kSystem, "ORVSG_ComputerSystem", "localhost");
  return collection;
}

std::vector<TFailure> PublishInventory(const TCollection& collection, ICIMNamespace& target) {
  TPublisher publisher(target);
  publisher.Publish(collection);
  return publisher.Failures();
}

}  // namespace hav::inventory

#include "inventory/Inventory.h"

#include <exception>
#include <map>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/THAVException.h"

using namespace NORVHAV20;

namespace hav::inventory {
namespace {

using TInstancePtr = boost::shared_ptr<ICIMInstance>;

// Publishes one collection into one namespace.
class TPublisher {
 public:
  explicit TPublisher(ICIMNamespace& target) : m_target(target) {}

  void Publish(const TElement& element) {
    const auto instance = Allocate(element.className);
    if (!instance) return;
    for (const auto& [property, value] : element.values)
      Set(*instance, element.className, property, value);
    if (Store(instance, element.className)) m_instances.emplace(element.id, instance);
  }

  void Publish(const TLink& link) {
    const auto antecedent = m_instances.find(link.antecedent.id);
    const auto dependent = m_instances.find(link.dependent.id);
    if (antecedent == m_instances.end() || dependent == m_instances.end()) return;
    const auto instance = Allocate(link.className);
    if (!instance) return;
    Set(*instance, link.className, link.antecedent.role,
        TCIMValue(antecedent->second->GetReference({})));
    Set(*instance, link.className, link.dependent.role,
        TCIMValue(dependent->second->GetReference({})));
    Store(instance, link.className);
  }

  std::vector<TFailure> Failures() { return std::move(m_failures); }

 private:
  TInstancePtr Allocate(const std::string& className) {
    try {
      return m_target.GetClass(className, {})->AllocateInstance({});
    } catch (const THAVException& failure) {
      Fail(className, failure.what());
      return {};
    }
  }

  void Set(ICIMInstance& instance, const std::string& className, const std::string& property,
           const TCIMValue& value) {
    try {
      instance.SetPropertyValue(property, value, {});
    } catch (const THAVException& failure) {
      Fail(className + "." + property, failure.what());
    }
  }

  // Storing reports nothing, and would replace another element of the same path.
  bool Store(const TInstancePtr& instance, const std::string& className) {
    try {
      const auto path = instance->GetReference({});
      if (m_target.GetInstance(path, {})) {
        Fail(path.GetPath(), "there is another element of this name");
        return false;
      }
      instance->AddToNamespace({});
      if (m_target.GetInstance(path, {})) return true;
      Fail(path.GetPath(), "the namespace refused it");
    } catch (const THAVException& failure) {
      Fail(className, failure.what());
    }
    return false;
  }

  void Fail(const std::string& source, const std::string& reason) {
    m_failures.push_back({"namespace", source, reason});
  }

  ICIMNamespace& m_target;
  std::map<std::string, TInstancePtr> m_instances;  // by element id
  std::vector<TFailure> m_failures;
};

}  // namespace

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
  for (const auto& element : collection.Elements()) publisher.Publish(element);
  for (const auto& link : collection.Links()) publisher.Publish(link);
  return publisher.Failures();
}

}  // namespace hav::inventory

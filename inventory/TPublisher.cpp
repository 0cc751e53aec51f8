#include "inventory/TPublisher.h"

#include "havcore/ICIMClass.h"
#include "havcore/ICIMProperty.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"
#include "havcore/client/Enumerate.h"

using namespace NORVHAV20;

namespace hav::inventory {

void TPublisher::Publish(const TCollection& collection) {
  for (const auto& element : collection.Elements()) Publish(element);
  for (const auto& link : collection.Links()) Publish(link);
}

bool TPublisher::Has(const ICIMInstance& instance) const {
  return HasStored(instance) || m_updated.count(&instance) != 0;
}

bool TPublisher::HasStored(const ICIMInstance& instance) const {
  return m_stored.count(&instance) != 0;
}

void TPublisher::Publish(const TElement& element) {
  const auto instance = Allocate(element.className);
  if (!instance) return;
  for (const auto& [property, value] : element.values)
    Set(*instance, element.className, property, value);
  if (Store(instance, element.className)) m_instances.emplace(element.id, instance);
}

void TPublisher::Publish(const TLink& link) {
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

TPublisher::TInstancePtr TPublisher::Allocate(const std::string& className) {
  try {
    return m_target.GetClass(className, {})->AllocateInstance({});
  } catch (const THAVException& failure) {
    Fail(className, failure.what());
    return {};
  }
}

void TPublisher::Set(ICIMInstance& instance, const std::string& className,
                     const std::string& property, const TCIMValue& value) {
  try {
    instance.SetPropertyValue(property, value, {});
  } catch (const THAVException& failure) {
    Fail(className + "." + property, failure.what());
  }
}

// Storing reports nothing, and would replace another element of the same path.
bool TPublisher::Store(const TInstancePtr& instance, const std::string& className) {
  try {
    const auto path = instance->GetReference({});
    if (const auto standing = m_target.GetInstance(path, {})) {
      if (m_standing == kUpdate && !Has(*standing)) return Update(standing, *instance);
      Fail(path.GetPath(), "there is another element of this name");
      return false;
    }
    instance->AddToNamespace({});
    if (m_target.GetInstance(path, {})) {
      m_stored.insert(instance.get());
      return true;
    }
    Fail(path.GetPath(), "the namespace refused it");
  } catch (const THAVException& failure) {
    Fail(className, failure.what());
  }
  return false;
}

bool TPublisher::Update(const TInstancePtr& standing, ICIMInstance& fresh) {
  m_updated.insert(standing.get());
  const auto slots =
      client::Collect<ICIMProperty>([&](const TEnumCallback<ICIMProperty>& callback) {
        standing->EnumerateProperties(callback, {});
      });
  for (const auto& slot : slots) {
    const TCIMValue read = fresh.GetProperty(slot->GetDecl({})->GetName({}), {})->GetValue({});
    slot->SetPrevValue(slot->GetValue({}), {});
    if (slot->GetValue({}) != read) slot->SetValue(read, {});
  }
  return true;
}

void TPublisher::Fail(const std::string& source, const std::string& reason) {
  m_failures.push_back({"namespace", source, reason});
}

}  // namespace hav::inventory

#include "havcore/TNamespaceProviderManager.h"

#include "havcore/THAVException.h"

namespace NORVHAV20 {

void TNamespaceProviderManager::RegisterNamespaceProvider(
    boost::shared_ptr<INamespaceProvider> provider) {
  if (!provider) throw THAVException(kHAVNotFound);
  const auto entry = m_providers.emplace(provider->GetName({}), provider).first;
  if (entry->second != provider) throw THAVException(kHAVAlreadyDefined);
}

boost::shared_ptr<INamespaceProvider> TNamespaceProviderManager::FindNamespaceProvider(
    const std::string& name) const {
  const auto entry = m_providers.find(name);
  return entry == m_providers.end() ? boost::shared_ptr<INamespaceProvider>() : entry->second;
}

void TNamespaceProviderManager::EnumerateNamespaceProviders(
    const TEnumCallback<INamespaceProvider>& callback) const {
  // The callback may register and unregister: walk what was there when the walk began.
  const auto providers = m_providers;
  for (const auto& entry : providers)
    if (!callback(entry.second)) return;
}

bool TNamespaceProviderManager::UnregisterNamespaceProvider(const std::string& name) {
  const auto entry = m_providers.find(name);
  if (entry == m_providers.end()) return false;
  // The provider's destructor may look here: it goes only after its entry is gone.
  const auto provider = entry->second;
  m_providers.erase(entry);
  return true;
}

void TNamespaceProviderManager::Clear() {
  std::map<std::string, boost::shared_ptr<INamespaceProvider>> providers;
  providers.swap(m_providers);
}

}  // namespace NORVHAV20

// TNamespaceProviderManager: the open host's list of namespace providers, by name.
//
// Ownership: shares every registered provider. Release them (Unregister or Clear) before
//            the library that made them is unloaded.
// Threads:   one thread at a time.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <map>
#include <string>

#include "havcore/INamespaceProvider.h"
#include "havcore/INamespaceProviderManager.h"

namespace NORVHAV20 {

class HAVCORE_API TNamespaceProviderManager : public INamespaceProviderManager {
 public:
  // Registers `provider` under its name; the provider that already stands there may
  // register again. Throws 15 for an empty pointer, 16 when another provider has the name.
  void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) override;

  // Returns the provider of that name (case-sensitive), empty when there is none.
  boost::shared_ptr<INamespaceProvider> FindNamespaceProvider(const std::string& name) const;
  // Visits the providers in name order until the callback answers false.
  void EnumerateNamespaceProviders(const TEnumCallback<INamespaceProvider>& callback) const;
  // Forgets the provider of that name; false when there is none.
  bool UnregisterNamespaceProvider(const std::string& name);
  void Clear();

 private:
  std::map<std::string, boost::shared_ptr<INamespaceProvider>> m_providers;
};

}  // namespace NORVHAV20

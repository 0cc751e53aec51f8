// RegisteredProvider: what a plug-in's entry point leaves in the provider manager.
#pragma once

#include <stdexcept>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"

namespace havtest {

// Calls the entry point and returns the provider "inmem" from the default manager. Throws
// when the entry point reports a failure or did not register.
template <class EntryPoint>
boost::shared_ptr<NORVHAV20::INamespaceProvider> RegisteredProvider(EntryPoint&& initialize) {
  using namespace NORVHAV20;
  // An empty manager restores the default one, whatever a test has set before.
  const auto before = TRootObject::SetNamespaceProviderManager({});
  const auto manager = boost::dynamic_pointer_cast<TNamespaceProviderManager>(
      TRootObject::GetNamespaceProviderManager());
  THAVStatusCode status = initialize();
  TRootObject::SetNamespaceProviderManager(before);
  if (status.GetStatusCode() != 0) throw std::runtime_error(status.TranslateStatusCode());
  auto provider = manager ? manager->FindNamespaceProvider("inmem") : nullptr;
  if (!provider) throw std::runtime_error("the plug-in registered no provider \"inmem\"");
  return provider;
}

}  // namespace havtest

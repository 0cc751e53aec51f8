// TInmemNamespaceProvider: the provider "inmem", and the entry point of the plug-in.
//
// Ownership: one object, made on first use, shared with the host's provider manager; it keeps
//            no list of the namespaces that it makes.
// Threads:   any, the first use included; each namespace then has one thread at a time.
// Errors:    none of its own; what the manager or an allocation throws passes through.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/INamespaceProvider.h"
#include "havcore/THAVStatusCode.h"

namespace NORVHAV20 {

class INMEM_API TInmemNamespaceProvider final : public INamespaceProvider {
 public:
  // Registers the provider with the host's manager and returns status 0.
  static THAVStatusCode Initialize();
  // Returns the one provider.
  static boost::shared_ptr<TInmemNamespaceProvider> GetInstance();

  // Copies copy nothing: there is nothing in a provider.
  TInmemNamespaceProvider(const TInmemNamespaceProvider& other);
  TInmemNamespaceProvider& operator=(const TInmemNamespaceProvider& other);
  ~TInmemNamespaceProvider() override;

  const std::string& GetName(TOptions options) const override;
  boost::shared_ptr<ICIMNamespace> AllocateNamespace(TOptions options, bool redefinitionAllowed,
                                                     std::string name) const override;
  EType GetType(TOptions options) const override;
  bool IsIndicationsSupported(TOptions options) const override;

 private:
  TInmemNamespaceProvider();
};

}  // namespace NORVHAV20

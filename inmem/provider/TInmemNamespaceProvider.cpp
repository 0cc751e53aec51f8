#include "inmem/provider/TInmemNamespaceProvider.h"

#include <boost/make_shared.hpp>

#include "havcore/TRootObject.h"
#include "inmem/provider/TInmemNamespace.h"

namespace NORVHAV20 {

THAVStatusCode TInmemNamespaceProvider::Initialize() {
  TRootObject::GetNamespaceProviderManager()->RegisterNamespaceProvider(GetInstance());
  return THAVStatusCode(kHAVSuccess);
}

boost::shared_ptr<TInmemNamespaceProvider> TInmemNamespaceProvider::GetInstance() {
  static const boost::shared_ptr<TInmemNamespaceProvider> instance(new TInmemNamespaceProvider);
  return instance;
}

TInmemNamespaceProvider::TInmemNamespaceProvider() = default;

TInmemNamespaceProvider::TInmemNamespaceProvider(const TInmemNamespaceProvider&)
    : INamespaceProvider() {}

TInmemNamespaceProvider& TInmemNamespaceProvider::operator=(const TInmemNamespaceProvider&) {
  return *this;
}

TInmemNamespaceProvider::~TInmemNamespaceProvider() = default;

const std::string& TInmemNamespaceProvider::GetName(TOptions) const {
  static const std::string name("inmem");
  return name;
}

boost::shared_ptr<ICIMNamespace> TInmemNamespaceProvider::AllocateNamespace(
    TOptions, bool redefinitionAllowed, std::string) const {
  const auto made = boost::make_shared<TInmemNamespace>(redefinitionAllowed);
  made->Initialize();
  return made;
}

INamespaceProvider::EType TInmemNamespaceProvider::GetType(TOptions) const { return kInMemory; }

bool TInmemNamespaceProvider::IsIndicationsSupported(TOptions) const { return false; }

}  // namespace NORVHAV20

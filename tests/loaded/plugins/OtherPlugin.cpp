// Another plug-in for the same host: a provider "other" of its own, whose namespaces refuse
// everything with status 1. It exports symbols by the names of the real plug-in's, which must
// not get in its way.
#include <cstdint>

#include <boost/make_shared.hpp>

#include "havcore/havcore.h"

extern "C" {
HAV_EXPORT std::int32_t g_L1Enabled = 101;
HAV_EXPORT std::int32_t g_L2Enabled = 102;
HAV_EXPORT std::int32_t g_L3Enabled = 103;
}

namespace NORVHAV20 {

class TOtherNamespaceProvider final : public INamespaceProvider {
 public:
  HAV_EXPORT static THAVStatusCode Initialize();

  const std::string& GetName(TOptions) const override {
    static const std::string name("other");
    return name;
  }
  boost::shared_ptr<ICIMNamespace> AllocateNamespace(TOptions, bool, std::string) const override {
    throw THAVException(kHAVNotSupported);
  }
  EType GetType(TOptions) const override { return kForwarding; }
  bool IsIndicationsSupported(TOptions) const override { return true; }
};

THAVStatusCode TOtherNamespaceProvider::Initialize() {
  TRootObject::GetNamespaceProviderManager()->RegisterNamespaceProvider(
      boost::make_shared<TOtherNamespaceProvider>());
  return kHAVSuccess;
}

// What the real plug-in calls its provider and its namespace.
class TInmemNamespaceProvider {
 public:
  HAV_EXPORT static boost::shared_ptr<TInmemNamespaceProvider> GetInstance();
};
boost::shared_ptr<TInmemNamespaceProvider> TInmemNamespaceProvider::GetInstance() { return {}; }

class TInmemNamespace {
 public:
  HAV_EXPORT TInmemNamespace(bool);
  HAV_EXPORT void Initialize();
};
TInmemNamespace::TInmemNamespace(bool) { throw THAVException(kHAVNotSupported); }
void TInmemNamespace::Initialize() { throw THAVException(kHAVNotSupported); }

}  // namespace NORVHAV20

// INamespaceProviderManager: where plug-ins announce their namespace provider.
#pragma once

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"

namespace NORVHAV20 {

class INamespaceProvider;

class HAV_TYPE INamespaceProviderManager {
 public:
  virtual ~INamespaceProviderManager() = default;  // 0
  // Shares `provider` from now on.
  virtual void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) = 0;  // 1
};

}  // namespace NORVHAV20

// TRootObject of the foreign core: the way to its services.
#pragma once

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ILogger.h"
#include "havcore/INamespaceProviderManager.h"

namespace NORVHAV20 {

class HAVCORE_API TRootObject {
 public:
  // Never null, not owned.
  static ILogger* GetCoreLogger();
  // Never empty.
  static boost::shared_ptr<INamespaceProviderManager> GetNamespaceProviderManager();

#if defined(FOREIGN_CORE_HOST)
  // Both return what was there before; nothing restores what was there first.
  static ILogger* SetCoreLogger(ILogger* logger);
  static boost::shared_ptr<INamespaceProviderManager> SetNamespaceProviderManager(
      const boost::shared_ptr<INamespaceProviderManager>& manager);
#endif
};

}  // namespace NORVHAV20

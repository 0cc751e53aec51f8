// TRootObject: the way to the host's services.
//
// Threads: any. A logger that is replaced may still be in use by another thread.
#pragma once

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ILogger.h"
#include "havcore/INamespaceProviderManager.h"

namespace NORVHAV20 {

class HAVCORE_API TRootObject {
 public:
  // Returns the core logger: never null, not owned by the caller. Until another is set it
  // writes lines of level 3 and above to standard error and drops the rest.
  static ILogger* GetCoreLogger();
  // Makes `logger` the core logger and returns the one before it; null restores the first.
  // Not owned: it must outlive its use.
  static ILogger* SetCoreLogger(ILogger* logger);

  // Returns the manager: never empty. Until another is set it is a TNamespaceProviderManager.
  static boost::shared_ptr<INamespaceProviderManager> GetNamespaceProviderManager();
  // Makes `manager` the manager and returns the one before it; empty restores the first.
  static boost::shared_ptr<INamespaceProviderManager> SetNamespaceProviderManager(
      const boost::shared_ptr<INamespaceProviderManager>& manager);
};

}  // namespace NORVHAV20

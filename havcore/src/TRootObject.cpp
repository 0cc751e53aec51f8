#include "havcore/TRootObject.h"

#include <atomic>
#include <iostream>
#include <mutex>
#include <new>
#include <utility>

#include "havcore/TNamespaceProviderManager.h"

namespace NORVHAV20 {
namespace {

class TStandardErrorLogger : public ILogger {
 public:
  void Log(int level, const std::string& message) override {
    if (level < kError) return;
    std::cerr << message + '\n' << std::flush;
  }
};

struct TServices {
  TStandardErrorLogger firstLogger;
  std::atomic<ILogger*> logger{&firstLogger};

  std::mutex managerMutex;
  TNamespaceProviderManager firstManager;
  boost::shared_ptr<INamespaceProviderManager> manager = FirstManager();

  // Points at the first manager without owning it: see Services.
  boost::shared_ptr<INamespaceProviderManager> FirstManager() {
    return {boost::shared_ptr<void>(), &firstManager};
  }
};

// Never destroyed, so that a plug-in can log and deregister in the destructors of its own
// statics; and in static storage, so that nothing is left behind when the library is unloaded.
TServices& Services() {
  alignas(TServices) static unsigned char storage[sizeof(TServices)];
  static TServices* const services = new (storage) TServices;
  return *services;
}

}  // namespace

ILogger* TRootObject::GetCoreLogger() { return Services().logger; }

ILogger* TRootObject::SetCoreLogger(ILogger* logger) {
  TServices& services = Services();
  return services.logger.exchange(logger ? logger : &services.firstLogger);
}

boost::shared_ptr<INamespaceProviderManager> TRootObject::GetNamespaceProviderManager() {
  TServices& services = Services();
  const std::lock_guard<std::mutex> lock(services.managerMutex);
  return services.manager;
}

boost::shared_ptr<INamespaceProviderManager> TRootObject::SetNamespaceProviderManager(
    const boost::shared_ptr<INamespaceProviderManager>& manager) {
  TServices& services = Services();
  const std::lock_guard<std::mutex> lock(services.managerMutex);
  return std::exchange(services.manager, manager ? manager : services.FirstManager());
}

}  // namespace NORVHAV20

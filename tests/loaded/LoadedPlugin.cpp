#include "loaded/LoadedPlugin.h"

#include <boost/make_shared.hpp>

namespace havtest {
namespace {

// The decorated name of `static THAVStatusCode NORVHAV20::<entryClass>::Initialize()`.
std::string DecoratedInitialize(const std::string& entryClass) {
#if defined(_MSC_VER)
  return "?Initialize@" + entryClass + "@NORVHAV20@@SA?AVTHAVStatusCode@2@XZ";
#else
  return "_ZN9NORVHAV20" + std::to_string(entryClass.size()) + entryClass + "10InitializeEv";
#endif
}

boost::dll::load_mode::type Mode(Symbols symbols) {
  return symbols == Symbols::kGlobal ? boost::dll::load_mode::rtld_global
                                     : boost::dll::load_mode::default_mode;
}

// Stands in for the host's manager while it lives.
class ManagerInPlace {
 public:
  explicit ManagerInPlace(const boost::shared_ptr<INamespaceProviderManager>& manager)
      : m_before(TRootObject::SetNamespaceProviderManager(manager)) {}
  ~ManagerInPlace() { TRootObject::SetNamespaceProviderManager(m_before); }
  ManagerInPlace(const ManagerInPlace&) = delete;
  ManagerInPlace& operator=(const ManagerInPlace&) = delete;

 private:
  boost::shared_ptr<INamespaceProviderManager> m_before;
};

}  // namespace

LoadedPlugin::LoadedPlugin(const std::string& path, const std::string& entryClass, Symbols symbols)
    : m_library(path, Mode(symbols)),
      m_initialize(DecoratedInitialize(entryClass)),
      m_manager(boost::make_shared<TNamespaceProviderManager>()) {
  Initialize(m_manager);
}

THAVStatusCode LoadedPlugin::Initialize(
    const boost::shared_ptr<INamespaceProviderManager>& manager) {
  const ManagerInPlace inPlace(manager);
  return m_library.get<THAVStatusCode()>(m_initialize)();
}

std::int32_t& LoadedPlugin::CacheSwitch(int level) {
  return m_library.get<std::int32_t>("g_L" + std::to_string(level) + "Enabled");
}

}  // namespace havtest

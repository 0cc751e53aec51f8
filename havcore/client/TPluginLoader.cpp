#include "havcore/client/TPluginLoader.h"

#include <mutex>
#include <system_error>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/shared_library.hpp>
#include <boost/make_shared.hpp>

#include "havcore/THAVException.h"
#include "havcore/TNamespaceProviderManager.h"
#include "havcore/TRootObject.h"
#include "havcore/client/Utf8.h"

namespace hav::client {

using namespace NORVHAV20;

namespace {

// The decorated name of `static THAVStatusCode TInmemNamespaceProvider::Initialize()`.
#if defined(_MSC_VER)
constexpr char kInitialize[] =
    "?Initialize@TInmemNamespaceProvider@NORVHAV20@@SA?AVTHAVStatusCode@2@XZ";
#else
constexpr char kInitialize[] = "_ZN9NORVHAV2023TInmemNamespaceProvider10InitializeEv";
#endif

// The system's own words out of what Boost.DLL makes of them.
std::string SystemMessage(const std::system_error& failure) {
  const std::string text = failure.what();
  const std::string before = "(dlerror system message: ";
  const auto begin = text.find(before);
  if (begin == std::string::npos) return failure.code().message();
  const auto first = begin + before.size();
  return text.substr(first, text.rfind(')') - first);
}

// Makes a manager the host's for as long as the plug-in registers itself. There is one at a time,
// or a plug-in that another thread loads would register with it; but a plug-in may load others.
class TManagerInUse {
 public:
  explicit TManagerInUse(const boost::shared_ptr<INamespaceProviderManager>& manager)
      : m_lock(Mutex()), m_before(TRootObject::SetNamespaceProviderManager(manager)) {}
  ~TManagerInUse() { TRootObject::SetNamespaceProviderManager(m_before); }
  TManagerInUse(const TManagerInUse&) = delete;
  TManagerInUse& operator=(const TManagerInUse&) = delete;

 private:
  static std::recursive_mutex& Mutex() {
    static std::recursive_mutex mutex;
    return mutex;
  }

  std::lock_guard<std::recursive_mutex> m_lock;
  boost::shared_ptr<INamespaceProviderManager> m_before;
};

}  // namespace

class TPluginLoader::TLibrary : public boost::dll::shared_library {};

TPluginLoader::TPluginLoader(const std::filesystem::path& library)
    : m_path(library), m_library(std::make_unique<TLibrary>()) {
  Load();
  Initialize();
}

TPluginLoader::~TPluginLoader() = default;

void TPluginLoader::Load() {
  std::error_code missing;
  if (!std::filesystem::exists(m_path, missing)) Fail("there is no such file");
  try {
    m_library->load(m_path, boost::dll::load_mode::rtld_now);
  } catch (const std::system_error& failure) {
    Fail(SystemMessage(failure));
  }
  if (!m_library->has(kInitialize))
    Fail("it is no plug-in: it exports no TInmemNamespaceProvider::Initialize");
  for (const char* name : {"g_L1Enabled", "g_L2Enabled", "g_L3Enabled"})
    if (!m_library->has(name)) Fail(std::string("it exports no ") + name);
}

void TPluginLoader::Initialize() {
  const auto manager = boost::make_shared<TNamespaceProviderManager>();
  const TManagerInUse use(manager);
  std::string failure;
  try {
    const THAVStatusCode status = m_library->get<THAVStatusCode()>(kInitialize)();
    if (status.GetStatusCode() != kHAVSuccess) failure = status.TranslateStatusCode();
  } catch (const std::exception& thrown) {
    // The exception may be the plug-in's, so no more than its text may leave here.
    failure = thrown.what();
  } catch (...) {
    failure = "it threw what is no standard exception";
  }
  if (failure.empty()) {
    m_provider = manager->FindNamespaceProvider(kProviderName);
    if (!m_provider) failure = std::string("it registered no provider \"") + kProviderName + "\"";
  }
  if (!failure.empty()) Fail("its initialisation failed: " + failure);
}

void TPluginLoader::Fail(const std::string& what) const {
  throw TPluginError("cannot load the plug-in " + Utf8(m_path) + ": " + what);
}

std::int32_t& TPluginLoader::CacheSwitch(int level) {
  if (level < 1 || level > 3) throw std::out_of_range("cache levels are 1 to 3");
  return m_library->get<std::int32_t>("g_L" + std::to_string(level) + "Enabled");
}

}  // namespace hav::client

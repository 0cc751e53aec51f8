// A host in one file: loads the plug-in, makes a namespace, a class and an instance, and
// reads the instance back by its path. Prints the path and the value.
//
//   consumer [PLUG-IN]
#include <cstdint>
#include <exception>
#include <iostream>
#include <string>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/shared_library.hpp>
#include <boost/make_shared.hpp>

#include <havcore/havcore.h>

namespace {

using namespace NORVHAV20;

#if defined(_MSC_VER)
constexpr char kInitialize[] =
    "?Initialize@TInmemNamespaceProvider@NORVHAV20@@SA?AVTHAVStatusCode@2@XZ";
#else
constexpr char kInitialize[] = "_ZN9NORVHAV2023TInmemNamespaceProvider10InitializeEv";
#endif

void AddVolumeClass(ICIMNamespace& ns) {
  const auto key = ns.AllocateQualifierDecl("Key", TCIMValue(false), ICIMQualifierDecl::kScopeAny,
                                            ICIMQualifierDecl::kFlavorToSubclass, {});
  const auto volume = ns.AllocateClass("Example_Volume", {}, {});
  const auto name = volume->AllocatePropertyDecl("Name", TCIMValue::Null(kCIMString), {});
  name->AllocateQualifier(key, TCIMValue(true), {});
  name->AddToClass({});
  volume->AllocatePropertyDecl("Size", TCIMValue::Null(kCIMUInt64), {})->AddToClass({});
  volume->AddToNamespace({});
}

// Returns the path under which the instance can be found.
std::string AddVolume(ICIMNamespace& ns, const std::string& name, std::uint64_t size) {
  const auto instance = ns.GetClass("Example_Volume", {})->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue(name), {});
  instance->SetPropertyValue("Size", TCIMValue(size), {});
  instance->AddToNamespace({});
  return instance->GetReference({}).GetPath();
}

void ShowVolume(const INamespaceProvider& provider) {
  const auto ns = provider.AllocateNamespace({}, false, "root/example");
  AddVolumeClass(*ns);
  const auto path = AddVolume(*ns, "data", 4096);
  const auto found = ns->GetInstance(TCIMReference::Parse(path, ns), {});
  std::cout << path << ": " << found->GetProperty("Size", {})->GetValue({}).ToString(10) << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  boost::dll::shared_library plugin;
  const auto manager = boost::make_shared<TNamespaceProviderManager>();
  TRootObject::SetNamespaceProviderManager(manager);
  int status = 1;
  try {
    plugin.load(argc > 1 ? argv[1] : INMEM_LIBRARY);
    const THAVStatusCode initialized = plugin.get<THAVStatusCode()>(kInitialize)();
    if (initialized.GetStatusCode() != kHAVSuccess) throw THAVException(initialized);
    ShowVolume(*manager->FindNamespaceProvider("inmem"));
    status = 0;
  } catch (const std::exception& failure) {
    std::cerr << "consumer: " << failure.what() << '\n';
  }
  // Nothing of the plug-in may be held when it is unloaded.
  manager->Clear();
  return status;
}

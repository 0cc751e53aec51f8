// The plug-in's life as a library: loading and unloading, what outlives what, and company.
#include <chrono>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "havcore/havcore.h"
#include "loaded/LoadedPlugin.h"
#include "loaded/ProcessUse.h"
#include "support/Instances.h"
#include "support/Repository.h"
#include "support/Walks.h"

namespace havtest {
namespace {

namespace fs = std::filesystem;

const std::string kFileName = fs::path(INMEM_LIBRARY).filename().string();

// Something of everything: schema, data, association traversal, display text, failures of the
// plug-in's own and of Boost's that cross the library's border.
void Use(LoadedPlugin& plugin) {
  const Repository repository(plugin.NewNamespace());
  const auto thing = repository.Class("Thing");
  const auto link = repository.Association("Link", "From", thing, "To", thing);
  const auto a = repository.Instance(thing, {{"Name", TCIMValue("a")}});
  const auto b = repository.Instance(thing, {{"Name", TCIMValue("b")}});
  repository.Link(link, "From", a, "To", b);
  EXPECT_EQ(Associators(a), (Names{"Thing.Name=\"b\""}));
  EXPECT_EQ(a->GetProperty("Name", {})->GetDisplayValue({}), "a");
  EXPECT_EQ(a->GetProperty("speedDuplex", {})->GetDisplayValue({}), "Unknown");
  EXPECT_STATUS(15, thing->GetPropertyDecl("Size", {}));
  EXPECT_THROW(thing->EnumerateKeyNames({}, {}), boost::bad_function_call);
  plugin.CacheSwitch(1) = 0;
}

// A manager that takes nothing.
template <class Failure>
class RefusingManager : public INamespaceProviderManager {
 public:
  explicit RefusingManager(Failure failure) : m_failure(failure) {}
  void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) override {
    refused = provider;
    throw m_failure;
  }

  boost::weak_ptr<INamespaceProvider> refused;

 private:
  Failure m_failure;
};

// A copy of the library under another file name, in a folder that goes with this object.
class CopiedLibrary {
 public:
  CopiedLibrary()
      : m_folder(fs::temp_directory_path() /
                 ("inmem-copy-" +
                  std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
    fs::create_directories(m_folder);
    fs::copy_file(INMEM_LIBRARY, Path());
  }
  ~CopiedLibrary() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
  }
  CopiedLibrary(const CopiedLibrary&) = delete;
  CopiedLibrary& operator=(const CopiedLibrary&) = delete;

  fs::path Path() const { return m_folder / ("copy-of-" + kFileName); }

 private:
  fs::path m_folder;
};

TEST(Loaded, LibraryIsGoneOnceItIsUnloaded) {
  ASSERT_FALSE(IsLoaded(kFileName));
  {
    LoadedPlugin plugin(INMEM_LIBRARY);
    EXPECT_TRUE(IsLoaded(kFileName));
    Use(plugin);
  }
  EXPECT_FALSE(IsLoaded(kFileName));
}

TEST(Loaded, EveryLoadBeginsAfresh) {
  for (int i = 0; i < 3; ++i) {
    LoadedPlugin plugin(INMEM_LIBRARY);
    for (int level = 1; level <= 3; ++level) {
      EXPECT_EQ(plugin.CacheSwitch(level), -1);
      plugin.CacheSwitch(level) = level;
    }
  }
}

TEST(Loaded, AThousandLoadsAndUnloadsLeaveNothingBehind) {
  const auto once = [] {
    LoadedPlugin plugin(INMEM_LIBRARY);
    Use(plugin);
  };
  // Until the allocator and the loader have what they keep.
  for (int i = 0; i < 50; ++i) once();
  const auto before = ProcessUse::Now();
  for (int i = 0; i < 1000; ++i) {
    once();
    ASSERT_FALSE(IsLoaded(kFileName)) << "after load " << i;
  }
  const auto after = ProcessUse::Now();

  const auto growth =
      static_cast<long long>(after.memoryBytes) - static_cast<long long>(before.memoryBytes);
  std::cout << "1000 loads: " << before.memoryBytes / 1024 << " KiB of memory before, "
            << after.memoryBytes / 1024 << " after; " << before.mappings << " and "
            << after.mappings << " mappings; " << before.handles << " and " << after.handles
            << " handles\n";
  EXPECT_LT(growth, 1024 * 1024) << "more than a kilobyte for each load";
  EXPECT_LE(after.mappings, before.mappings + 4);
  EXPECT_LE(after.handles, before.handles);
}

TEST(Loaded, NamespacesOutliveTheProviderThatMadeThem) {
  LoadedPlugin plugin(INMEM_LIBRARY);
  const Repository repository(plugin.NewNamespace());
  plugin.ReleaseProvider();
  const auto thing = repository.Class("Thing");
  repository.Instance(thing, {{"Name", TCIMValue("a")}});
  EXPECT_EQ(Stored(thing), (Names{"Thing.Name=\"a\""}));
  EXPECT_EQ(repository.ns->GetNamespaceProvider({})->GetName({}), "inmem");
}

TEST(Loaded, ClassesAndInstancesOutliveTheirNamespace) {
  LoadedPlugin plugin(INMEM_LIBRARY);
  auto repository = std::make_unique<Repository>(plugin.NewNamespace());
  const auto thing = repository->Class("Thing");
  const auto a = repository->Instance(thing, {{"Name", TCIMValue("a")}});
  const TCIMValue path(a->GetReference({}));
  plugin.ReleaseProvider();
  repository.reset();
  EXPECT_EQ(thing->GetNamespace({}), nullptr);
  EXPECT_EQ(ValueOf(a, "Name"), TCIMValue("a"));
  EXPECT_EQ(PathOf(a), "Thing.Name=\"a\"");
  EXPECT_STATUS(15, static_cast<const TCIMReference&>(path).GetCIMElement(false));
}

// A value that came from the plug-in is the host's: it needs the library no more.
TEST(Loaded, ValuesOutliveTheLibrary) {
  std::vector<TCIMValue> values;
  {
    LoadedPlugin plugin(INMEM_LIBRARY);
    const Repository repository(plugin.NewNamespace());
    const auto thing = repository.Class("Thing");
    const auto a = repository.Instance(thing, {{"Name", TCIMValue("a long enough text to share")}});
    values = {ValueOf(a, "Name"), TCIMValue(kCIMString, {ValueOf(a, "Name")})};
  }
  ASSERT_FALSE(IsLoaded(kFileName));
  EXPECT_EQ(values[0].ToString(10), "a long enough text to share");
  EXPECT_EQ(values[1].ToString(10), "{a long enough text to share}");
}

TEST(Loaded, InitializingTwiceRegistersTheSameProvider) {
  LoadedPlugin plugin(INMEM_LIBRARY);
  const auto manager = boost::make_shared<TNamespaceProviderManager>();
  EXPECT_EQ(plugin.Initialize(manager).GetStatusCode(), kHAVSuccess);
  EXPECT_EQ(plugin.Initialize(manager).GetStatusCode(), kHAVSuccess);
  EXPECT_EQ(manager->FindNamespaceProvider("inmem"), plugin.Provider());
  int providers = 0;
  manager->EnumerateNamespaceProviders([&](boost::shared_ptr<INamespaceProvider>) {
    ++providers;
    return true;
  });
  EXPECT_EQ(providers, 1);
}

TEST(Loaded, ExceptionOfTheManagerReachesTheCaller) {
  LoadedPlugin plugin(INMEM_LIBRARY);
  const auto refusing = boost::make_shared<RefusingManager<THAVException>>(
      THAVException(kHAVUnderlyingNamespaceRefused));
  EXPECT_STATUS(31, plugin.Initialize(refusing));
  EXPECT_EQ(refusing->refused.lock(), plugin.Provider());
  const auto broken =
      boost::make_shared<RefusingManager<std::runtime_error>>(std::runtime_error("broken"));
  EXPECT_THROW(plugin.Initialize(broken), std::runtime_error);

  const auto manager = boost::make_shared<TNamespaceProviderManager>();
  EXPECT_EQ(plugin.Initialize(manager).GetStatusCode(), kHAVSuccess);
  EXPECT_EQ(manager->FindNamespaceProvider("inmem"), plugin.Provider());
}

TEST(Loaded, NamespacesWithTheSameClassNamesKnowNothingOfEachOther) {
  LoadedPlugin plugin(INMEM_LIBRARY);
  const Repository one(plugin.NewNamespace());
  const Repository two(plugin.NewNamespace());
  const auto inOne = one.Class("Thing");
  const auto inTwo = two.Class("Thing");
  two.Property(inTwo, "Size", TCIMValue(std::uint32_t{1}));
  one.Instance(inOne, {{"Name", TCIMValue("a")}});

  EXPECT_EQ(one.ns->GetClass("thing", {}), inOne);
  EXPECT_EQ(two.ns->GetClass("thing", {}), inTwo);
  EXPECT_EQ(PropertyNames(inOne), (Names{"Name"}));
  EXPECT_EQ(PropertyNames(inTwo), (Names{"Name", "Size"}));
  EXPECT_EQ(Stored(inOne), (Names{"Thing.Name=\"a\""}));
  EXPECT_EQ(Stored(inTwo), Names());
  two.ns->ClearInstances();
  EXPECT_EQ(Stored(inOne), (Names{"Thing.Name=\"a\""}));
}

class LoadedBeside : public testing::TestWithParam<Symbols> {};

TEST_P(LoadedBeside, AnotherPluginWithSymbolsOfTheSameNames) {
  LoadedPlugin other(OTHER_LIBRARY, kOther, GetParam());
  LoadedPlugin plugin(INMEM_LIBRARY, kInmem, GetParam());
  EXPECT_EQ(plugin.CacheSwitch(1), -1);
  EXPECT_EQ(other.CacheSwitch(1), 101);
  Use(plugin);
  EXPECT_EQ(other.CacheSwitch(1), 101);

  EXPECT_EQ(plugin.Provider("other"), nullptr);
  EXPECT_EQ(other.Provider("inmem"), nullptr);
  EXPECT_EQ(other.Provider("other")->GetType({}), INamespaceProvider::kForwarding);
  EXPECT_STATUS(1, other.Provider("other")->AllocateNamespace({}, false, "root/x"));
  EXPECT_STATUS(15, plugin.NewNamespace()->GetClass("Thing", {}));
}

TEST_P(LoadedBeside, AnotherPluginThatIsUnloadedFirst) {
  LoadedPlugin plugin(INMEM_LIBRARY, kInmem, GetParam());
  { LoadedPlugin other(OTHER_LIBRARY, kOther, GetParam()); }
  Use(plugin);
}

TEST_P(LoadedBeside, ACopyOfItself) {
  const CopiedLibrary copied;
  LoadedPlugin plugin(INMEM_LIBRARY, kInmem, GetParam());
  const Repository repository(plugin.NewNamespace());
  {
    LoadedPlugin copy(copied.Path().string(), kInmem, GetParam());
    EXPECT_NE(copy.Provider(), plugin.Provider());
    EXPECT_EQ(copy.NewNamespace()->GetNamespaceProvider({}), copy.Provider());
    EXPECT_EQ(repository.ns->GetNamespaceProvider({}), plugin.Provider());
    plugin.CacheSwitch(2) = 1;
    EXPECT_EQ(copy.CacheSwitch(2), -1);
    Use(copy);
    Use(plugin);

    // A class of the other copy is a host's class to this one, and shares its declarations.
    const Repository foreign(copy.NewNamespace());
    const Repository own(plugin.NewNamespace());
    const auto base = foreign.Class("Base");
    const auto derived = own.Class("Derived", base);
    EXPECT_EQ(PropertyNames(derived), (Names{"Name"}));
    EXPECT_TRUE(derived->IsA(base, {}));
    derived->Delete({});
    EXPECT_EQ(SubclassNames(base), Names());
  }
  Use(plugin);
}

std::string SymbolsName(const testing::TestParamInfo<Symbols>& info) {
  return info.param == Symbols::kGlobal ? "GlobalSymbols" : "LocalSymbols";
}

INSTANTIATE_TEST_SUITE_P(Loaders, LoadedBeside, testing::Values(Symbols::kLocal, Symbols::kGlobal),
                         SymbolsName);

}  // namespace
}  // namespace havtest

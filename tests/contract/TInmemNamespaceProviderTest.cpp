// The plug-in's entry point and the one provider object behind it.
#include <stdexcept>
#include <vector>

#include "support/LoggedRepository.h"

namespace havtest {
namespace {

// Stands in for the host's provider manager while it lives, and keeps what is registered.
class RecordingManager : public INamespaceProviderManager {
 public:
  static boost::shared_ptr<RecordingManager> Install() {
    boost::shared_ptr<RecordingManager> manager(new RecordingManager);
    manager->m_before = TRootObject::SetNamespaceProviderManager(manager);
    return manager;
  }
  void Remove() { TRootObject::SetNamespaceProviderManager(m_before); }

  void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) override {
    registered.push_back(provider);
    if (refuses) throw std::runtime_error("no more providers");
  }

  std::vector<boost::shared_ptr<INamespaceProvider>> registered;
  bool refuses = false;

 private:
  RecordingManager() = default;
  boost::shared_ptr<INamespaceProviderManager> m_before;
};

class TInmemNamespaceProvider : public testing::Test {
 protected:
  void SetUp() override {
    provider = Provider();
    manager = RecordingManager::Install();
  }
  void TearDown() override { manager->Remove(); }

  boost::shared_ptr<INamespaceProvider> provider;
  boost::shared_ptr<RecordingManager> manager;
};

TEST_F(TInmemNamespaceProvider, EntryPointRegistersOneProviderWithTheHostsManager) {
  EXPECT_EQ(CallEntryPoint().GetStatusCode(), kHAVSuccess);
  ASSERT_EQ(manager->registered.size(), 1u);
  EXPECT_EQ(manager->registered[0]->GetName({}), "inmem");
}

TEST_F(TInmemNamespaceProvider, EntryPointRegistersTheSameObjectEveryTime) {
  CallEntryPoint();
  CallEntryPoint();
  ASSERT_EQ(manager->registered.size(), 2u);
  EXPECT_EQ(manager->registered[0], provider);
  EXPECT_EQ(manager->registered[1], provider);
}

TEST_F(TInmemNamespaceProvider, EntryPointLogsNothing) {
  RecordingLogger log;
  CallEntryPoint();
  EXPECT_EQ(log.Take(), kNothingLogged);
}

TEST_F(TInmemNamespaceProvider, EntryPointPassesTheManagersExceptionToTheHost) {
  manager->refuses = true;
  EXPECT_THROW(CallEntryPoint(), std::runtime_error);
}

TEST_F(TInmemNamespaceProvider, EntryPointSucceedsAfterTheManagerRefused) {
  manager->refuses = true;
  EXPECT_THROW(CallEntryPoint(), std::runtime_error);
  manager->refuses = false;
  EXPECT_EQ(CallEntryPoint().GetStatusCode(), kHAVSuccess);
  EXPECT_EQ(manager->registered.back(), provider);
}

TEST_F(TInmemNamespaceProvider, NameIsInmem) { EXPECT_EQ(provider->GetName({}), "inmem"); }

TEST_F(TInmemNamespaceProvider, NameIsTheSameStringObjectOnEveryCall) {
  EXPECT_EQ(&provider->GetName({}), &provider->GetName({{"Any", TCIMValue(true)}}));
}

TEST_F(TInmemNamespaceProvider, TypeIsTwo) {
  EXPECT_EQ(static_cast<unsigned>(provider->GetType({})), 2u);
}

TEST_F(TInmemNamespaceProvider, SupportsNoIndications) {
  EXPECT_FALSE(provider->IsIndicationsSupported({}));
}

TEST_F(TInmemNamespaceProvider, IgnoresOptions) {
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}, {"", TCIMValue()}};
  EXPECT_EQ(provider->GetName(options), "inmem");
  EXPECT_EQ(provider->GetType(options), INamespaceProvider::kInMemory);
  EXPECT_FALSE(provider->IsIndicationsSupported(options));
  EXPECT_TRUE(provider->AllocateNamespace(options, false, "root/test"));
}

TEST_F(TInmemNamespaceProvider, NamespaceHasTheRootClassAndNothingElse) {
  auto ns = provider->AllocateNamespace({}, false, "root/test");
  EXPECT_EQ(ns->GetClass("<root>", {})->GetName({}), "<root>");
  EXPECT_EQ(RootClassNames(ns), Names{});
  EXPECT_EQ(QualifierDeclNames(ns), Names{});
}

TEST_F(TInmemNamespaceProvider, AllocatingANamespaceLogsNothing) {
  RecordingLogger log;
  provider->AllocateNamespace({}, false, "root/test");
  provider->AllocateNamespace({}, true, "root/test");
  EXPECT_EQ(log.Take(), kNothingLogged);
}

TEST_F(TInmemNamespaceProvider, NameOfANamespaceIsNotUsed) {
  EXPECT_TRUE(provider->AllocateNamespace({}, false, ""));
  EXPECT_TRUE(provider->AllocateNamespace({}, false, "no CIM name at all!"));
}

TEST_F(TInmemNamespaceProvider, EveryAllocationMakesANewNamespace) {
  auto one = provider->AllocateNamespace({}, false, "root/test");
  auto other = provider->AllocateNamespace({}, false, "root/test");
  EXPECT_NE(one, other);
  one->AllocateQualifierDecl("Key", TCIMValue(false), ICIMQualifierDecl::kScopeProperty,
                             ICIMQualifierDecl::kFlavorNone, {});
  EXPECT_EQ(QualifierDeclNames(one), Names{"Key"});
  EXPECT_EQ(QualifierDeclNames(other), Names{});
}

TEST_F(TInmemNamespaceProvider, KeepsNoNamespaceAlive) {
  boost::weak_ptr<ICIMNamespace> ns = provider->AllocateNamespace({}, false, "root/test");
  EXPECT_TRUE(ns.expired());
}

TEST_F(TInmemNamespaceProvider, FlagTrueAllowsRedefinition) {
  Repository repository(true);
  auto first = repository.Allocate("CIM_Foo", {}, {{"Abstract", TCIMValue(true)}});
  auto second = repository.Allocate("CIM_Foo", {}, {{"Abstract", TCIMValue(true)}});
  first->AddToNamespace({});
  EXPECT_STATUS(0, second->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("CIM_Foo", {}), second);
}

TEST_F(TInmemNamespaceProvider, FlagFalseRefusesASecondRegistration) {
  LoggedRepository repository(false);
  auto first = repository.Allocate("CIM_Foo", {}, {{"Abstract", TCIMValue(true)}});
  auto second = repository.Allocate("CIM_Foo", {}, {{"Abstract", TCIMValue(true)}});
  first->AddToNamespace({});
  EXPECT_STATUS(16, second->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("CIM_Foo", {}), first);
}

TEST_F(TInmemNamespaceProvider, IsWhatItsNamespacesAnswerAsTheirProvider) {
  auto ns = provider->AllocateNamespace({}, false, "root/test");
  EXPECT_EQ(ns->GetNamespaceProvider({}), provider);
}

}  // namespace
}  // namespace havtest

#include "havcore/TNamespaceProviderManager.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "support/Status.h"

using namespace NORVHAV20;

namespace {

using ProviderPtr = boost::shared_ptr<INamespaceProvider>;

class NamedProvider : public INamespaceProvider {
 public:
  explicit NamedProvider(std::string name) : m_name(std::move(name)) {}
  const std::string& GetName(TOptions) const override { return m_name; }
  boost::shared_ptr<ICIMNamespace> AllocateNamespace(TOptions, bool, std::string) const override {
    return {};
  }
  EType GetType(TOptions) const override { return kInMemory; }
  bool IsIndicationsSupported(TOptions) const override { return false; }

 private:
  std::string m_name;
};

ProviderPtr Named(const std::string& name) { return boost::make_shared<NamedProvider>(name); }

std::vector<std::string> Names(const TNamespaceProviderManager& manager) {
  std::vector<std::string> names;
  manager.EnumerateNamespaceProviders([&](ProviderPtr provider) {
    names.push_back(provider->GetName({}));
    return true;
  });
  return names;
}

using Strings = std::vector<std::string>;

}  // namespace

TEST(TNamespaceProviderManager, FindsAProviderByItsExactName) {
  TNamespaceProviderManager manager;
  const auto provider = Named("one");
  manager.RegisterNamespaceProvider(provider);
  EXPECT_EQ(manager.FindNamespaceProvider("one"), provider);
  EXPECT_EQ(manager.FindNamespaceProvider("One"), ProviderPtr());
  EXPECT_EQ(manager.FindNamespaceProvider(""), ProviderPtr());
}

TEST(TNamespaceProviderManager, RefusesAnEmptyPointer) {
  TNamespaceProviderManager manager;
  EXPECT_STATUS(15, manager.RegisterNamespaceProvider({}));
  EXPECT_EQ(Names(manager), Strings());
}

TEST(TNamespaceProviderManager, TheSameProviderMayRegisterAgainAndAnotherMayNot) {
  TNamespaceProviderManager manager;
  const auto provider = Named("one");
  manager.RegisterNamespaceProvider(provider);
  EXPECT_STATUS(0, manager.RegisterNamespaceProvider(provider));
  EXPECT_STATUS(16, manager.RegisterNamespaceProvider(Named("one")));
  EXPECT_EQ(manager.FindNamespaceProvider("one"), provider);
}

TEST(TNamespaceProviderManager, EnumeratesInNameOrderUntilToldToStop) {
  TNamespaceProviderManager manager;
  for (const char* name : {"c", "a", "b"}) manager.RegisterNamespaceProvider(Named(name));
  EXPECT_EQ(Names(manager), (Strings{"a", "b", "c"}));
  Strings seen;
  manager.EnumerateNamespaceProviders([&](ProviderPtr provider) {
    seen.push_back(provider->GetName({}));
    return seen.size() < 2;
  });
  EXPECT_EQ(seen, (Strings{"a", "b"}));
}

TEST(TNamespaceProviderManager, ACallbackMayUnregisterEverything) {
  TNamespaceProviderManager manager;
  for (const char* name : {"a", "b", "c"}) manager.RegisterNamespaceProvider(Named(name));
  Strings seen;
  manager.EnumerateNamespaceProviders([&](ProviderPtr provider) {
    seen.push_back(provider->GetName({}));
    manager.Clear();
    return true;
  });
  EXPECT_EQ(seen, (Strings{"a", "b", "c"}));
  EXPECT_EQ(Names(manager), Strings());
}

TEST(TNamespaceProviderManager, ExceptionsOfTheCallbackPassThrough) {
  TNamespaceProviderManager manager;
  manager.RegisterNamespaceProvider(Named("a"));
  EXPECT_THROW(manager.EnumerateNamespaceProviders(
                   [](ProviderPtr) -> bool { throw std::runtime_error("stop"); }),
               std::runtime_error);
}

TEST(TNamespaceProviderManager, SharesAProviderUntilItIsForgotten) {
  TNamespaceProviderManager manager;
  manager.RegisterNamespaceProvider(Named("a"));
  manager.RegisterNamespaceProvider(Named("b"));
  const boost::weak_ptr<INamespaceProvider> a = manager.FindNamespaceProvider("a");
  const boost::weak_ptr<INamespaceProvider> b = manager.FindNamespaceProvider("b");
  EXPECT_FALSE(a.expired());
  EXPECT_TRUE(manager.UnregisterNamespaceProvider("a"));
  EXPECT_TRUE(a.expired());
  EXPECT_FALSE(manager.UnregisterNamespaceProvider("a"));
  EXPECT_FALSE(b.expired());
  manager.Clear();
  EXPECT_TRUE(b.expired());
}

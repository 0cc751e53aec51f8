// The namespace: its class registry, its look-ups and walks, and what it does not offer.
// Names, redefinition and qualifier declarations have tests of their own.
#include <stdexcept>

#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

const TOptions kAnyOptions = {{"ProvNSP", TCIMValue("elsewhere")}, {"Deep", TCIMValue(true)}};

TEST(TInmemNamespace, AcceptsAnyUpcallNamespaceAndIgnoresIt) {
  LoggedRepository repository;
  EXPECT_STATUS(0, repository.ns->SetUpcallNamespace({}, {}));
  EXPECT_STATUS(0, repository.ns->SetUpcallNamespace(repository.ns, {}));
  EXPECT_STATUS(0, repository.ns->SetUpcallNamespace(NewNamespace(), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, RefusesUnderlyingNamespaces) {
  LoggedRepository repository;
  EXPECT_STATUS(31, repository.ns->AddUnderlyingNamespace(NewNamespace(), {}));
  EXPECT_STATUS(31, repository.ns->AddUnderlyingNamespace({}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, SupportsNeitherSubscriptionsNorQueriesNorChangesByPath) {
  LoggedRepository repository;
  auto instance = repository.Instance(repository.Class("A"), {{"Name", TCIMValue("1")}});
  const TCIMReference path = instance->GetReference({});
  std::string query = "SELECT * FROM A";
  EXPECT_STATUS(1, repository.ns->Subscribe({}, {}, {}));
  EXPECT_STATUS(1, repository.ns->DeleteInstance(path, {}));
  EXPECT_STATUS(1, repository.ns->ModifyInstance(path, {{"Name", TCIMValue("2")}}, {}));
  EXPECT_STATUS(1, repository.ns->ExecuteQuery({}, query, {}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
  EXPECT_EQ(repository.ns->GetInstance(path, {}), instance);
  EXPECT_EQ(query, "SELECT * FROM A");
}

TEST(TInmemNamespace, HasNoProvidersToVisit) {
  Repository repository;
  int visits = 0;
  repository.ns->EnumerateProviders(
      [&](boost::shared_ptr<IProvider>) {
        ++visits;
        return true;
      },
      {});
  EXPECT_EQ(visits, 0);
  EXPECT_STATUS(0, repository.ns->EnumerateProviders({}, {}));
}

TEST(TInmemNamespace, AssignmentReturnsTheNamespaceAndCopiesNothing) {
  Repository full;
  full.Class("A");
  Repository empty;
  EXPECT_EQ(&(*empty.ns = *full.ns), empty.ns.get());
  EXPECT_EQ(RootClassNames(empty.ns), Names{});
  EXPECT_EQ(QualifierDeclNames(empty.ns), Names{});
  EXPECT_EQ(RootClassNames(full.ns), Names{"A"});
}

TEST(TInmemNamespace, RootClassIsNotAmongTheClasses) {
  Repository repository;
  auto root = repository.ns->GetClass("<root>", {});
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
  EXPECT_FALSE(root->GetSuperClass({}));
  EXPECT_EQ(root->GetNamespace({}), repository.ns);
}

TEST(TInmemNamespace, AnswersOneRootClassAlways) {
  Repository repository;
  EXPECT_EQ(repository.ns->GetClass("<root>", {}), repository.ns->GetClass("<root>", kAnyOptions));
}

TEST(TInmemNamespace, AllocatesTheRootClassAsTheOneThatIsThere) {
  LoggedRepository repository;
  auto root = repository.ns->GetClass("<root>", {});
  EXPECT_EQ(repository.ns->AllocateClass("<root>", {}, {}), root);
  EXPECT_FALSE(root->GetSuperClass({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, UnknownClassIsNotFoundAndNothingIsLogged) {
  LoggedRepository repository;
  EXPECT_STATUS(15, repository.ns->GetClass("CIM_Foo", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, AllocatedClassIsFoundOnlyOnceItIsRegistered) {
  Repository repository;
  auto cls = repository.Allocate("CIM_Foo", {}, {{"Abstract", TCIMValue(true)}});
  EXPECT_STATUS(15, repository.ns->GetClass("CIM_Foo", {}));
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
  cls->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("CIM_Foo", {}), cls);
  EXPECT_EQ(RootClassNames(repository.ns), Names{"CIM_Foo"});
}

TEST(TInmemNamespace, AllocatingAClassLogsNothing) {
  LoggedRepository repository;
  repository.ns->AllocateClass("CIM_Foo", {}, {});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, AllocatingARegisteredNameReturnsTheRegisteredClass) {
  LoggedRepository repository;
  auto cls = repository.Class("CIM_Foo");
  EXPECT_EQ(repository.ns->AllocateClass("cim_foo", {}, {}), cls);
  EXPECT_EQ(cls->GetName({}), "CIM_Foo");
  EXPECT_EQ(RootClassNames(repository.ns), Names{"CIM_Foo"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, AllocatingARegisteredNameReturnsItAlsoWithRedefinitionAllowed) {
  Repository repository(true);
  auto cls = repository.Class("CIM_Foo");
  EXPECT_EQ(repository.ns->AllocateClass("CIM_FOO", {}, {}), cls);
}

TEST(TInmemNamespace, AllocatingARegisteredNameKeepsItsSuperclass) {
  Repository repository;
  auto cls = repository.Class("A");
  repository.ns->AllocateClass("A", repository.Class("B"), {});
  EXPECT_EQ(cls->GetSuperClass({})->GetName({}), "<root>");
}

TEST(TInmemNamespace, TwoUnregisteredClassesOfOneNameCanExist) {
  Repository repository;
  auto first = repository.Allocate("A");
  auto second = repository.Allocate("A");
  EXPECT_NE(first, second);
}

TEST(TInmemNamespace, RefusesATakenClassNameAndSaysSo) {
  LoggedRepository repository;
  auto first = repository.Allocate("CIM_Foo");
  auto second = repository.Allocate("cim_FOO");
  repository.Key(first, "Name");
  repository.Key(second, "Name");
  first->AddToNamespace({});
  EXPECT_STATUS(16, second->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: TInmemNamespace: class cim_FOO already defined")});
}

TEST(TInmemNamespace, RefusedClassLeavesTheNamespaceAsItWas) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto first = repository.Allocate("A", base);
  auto second = repository.Allocate("A", base);
  first->AddToNamespace({});
  EXPECT_STATUS(16, second->AddToNamespace({}));
  EXPECT_EQ(SubclassNames(base), Names{"A"});
  EXPECT_EQ(repository.ns->GetClass("A", {}), first);
  EXPECT_STATUS(17, second->Delete({}));
}

TEST(TInmemNamespace, RefusesTheObjectThatIsAlreadyRegistered) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  EXPECT_STATUS(16, cls->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: TInmemNamespace: class A already defined")});
  EXPECT_EQ(RootClassNames(repository.ns), Names{"A"});
}

TEST(TInmemNamespace, VisitsTheClassesWithoutASuperclassInTheOrderOfRegistration) {
  Repository repository;
  auto zebra = repository.Class("Zebra");
  auto apple = repository.Class("apple");
  repository.Class("Mango");
  repository.Class("Foal", zebra);
  repository.Class("Pip", apple);
  EXPECT_EQ(RootClassNames(repository.ns), (Names{"Zebra", "apple", "Mango"}));
}

TEST(TInmemNamespace, WalkOverRootClassesIgnoresTheAnswerAndDropsExceptions) {
  Repository repository;
  for (const char* name : {"A", "B", "C", "D"}) repository.Class(name);
  Names visited;
  repository.ns->EnumerateRootClasses(
      [&](ClassPtr cls) -> bool {
        visited.push_back(cls->GetName({}));
        if (visited.size() == 1) return false;
        if (visited.size() == 2) throw THAVException(kHAVNotFound);
        throw std::runtime_error("callback");
      },
      {});
  EXPECT_EQ(visited, (Names{"A", "B", "C", "D"}));
  EXPECT_STATUS(0, repository.ns->EnumerateRootClasses({}, {}));
}

TEST(TInmemNamespace, FindsAnInstanceByItsPath) {
  Repository repository;
  auto cls = repository.Class("A");
  auto one = repository.Instance(cls, {{"Name", TCIMValue("1")}});
  auto two = repository.Instance(cls, {{"Name", TCIMValue("2")}});
  EXPECT_EQ(repository.ns->GetInstance(one->GetReference({}), {}), one);
  EXPECT_EQ(repository.ns->GetInstance(ReferenceTo(cls, {{"Name", TCIMValue("2")}}), {}), two);
}

TEST(TInmemNamespace, AnswersAnEmptyPointerForAPathWithoutInstance) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  EXPECT_FALSE(repository.ns->GetInstance(ReferenceTo(cls, {{"Name", TCIMValue("1")}}), {}));
  EXPECT_FALSE(repository.ns->GetInstance(ReferenceTo(cls, {}), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, FindsNoInstanceOfASubclassUnderTheSuperclass) {
  Repository repository;
  auto base = repository.Class("Base");
  repository.Instance(repository.Class("Sub", base), {{"Name", TCIMValue("1")}});
  EXPECT_FALSE(repository.ns->GetInstance(ReferenceTo(base, {{"Name", TCIMValue("1")}}), {}));
}

TEST(TInmemNamespace, RefusesAPathOfAnUnknownClass) {
  LoggedRepository repository;
  Repository other;
  auto path = ReferenceTo(other.Class("Elsewhere"), {{"Name", TCIMValue("1")}});
  EXPECT_STATUS(15, repository.ns->GetInstance(path, {}));
  EXPECT_STATUS(15, repository.ns->GetInstance(TCIMReference(repository.ns, {}), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, ClearsTheInstancesOfEveryClass) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  auto other = repository.Class("Other");
  for (const auto& cls : {base, sub, other}) {
    repository.Instance(cls, {{"Name", TCIMValue("1")}});
    repository.Instance(cls, {{"Name", TCIMValue("2")}});
  }
  repository.ns->ClearInstances();
  for (const auto& cls : {base, sub, other}) EXPECT_EQ(Stored(cls), Names{});
}

TEST(TInmemNamespace, ClearingKeepsClassesAndQualifierDeclarations) {
  Repository repository;
  auto sub = repository.Class("Sub", repository.Class("Base"));
  repository.ns->ClearInstances();
  EXPECT_EQ(RootClassNames(repository.ns), Names{"Base"});
  EXPECT_EQ(repository.ns->GetClass("Sub", {}), sub);
  EXPECT_EQ(PropertyNames(sub), Names{"Name"});
  EXPECT_EQ(QualifierDeclNames(repository.ns), Names{"Key"});
}

TEST(TInmemNamespace, ClearingReleasesInstancesAndTellsNone) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  auto held = repository.Instance(cls, {{"Name", TCIMValue("1")}});
  boost::weak_ptr<ICIMInstance> released = repository.Instance(cls, {{"Name", TCIMValue("2")}});
  repository.ns->ClearInstances();
  EXPECT_TRUE(released.expired());
  EXPECT_EQ(ValueOf(held, "Name"), TCIMValue("1"));
  held->AddToNamespace({});
  EXPECT_EQ(Stored(cls), Names{PathOf(held)});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemNamespace, ClearingAnEmptyNamespaceDoesNothing) {
  Repository repository;
  repository.ns->ClearInstances();
  repository.ns->ClearInstances();
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
}

TEST(TInmemNamespace, IgnoresOptions) {
  Repository repository;
  auto cls = repository.ns->AllocateClass("A", {}, kAnyOptions);
  repository.Key(cls, "Name");
  cls->AddToNamespace(kAnyOptions);
  auto instance = repository.Instance(cls, {{"Name", TCIMValue("1")}});
  EXPECT_EQ(repository.ns->GetClass("a", kAnyOptions), cls);
  EXPECT_EQ(repository.ns->GetQualifierDecl("KEY", kAnyOptions)->GetName({}), "Key");
  EXPECT_EQ(repository.ns->GetInstance(instance->GetReference({}), kAnyOptions), instance);
  EXPECT_EQ(repository.ns->GetNamespaceProvider(kAnyOptions), Provider());
}

}  // namespace
}  // namespace havtest

// A class in its namespace: registration, deletion, and the links between a class and its
// superclass.
#include <algorithm>

#include "support/ForeignDecls.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

const Qualifiers kAbstract = {{"Abstract", TCIMValue(true)}};

TEST(ClassRegistration, LinksTheClassUnderItsSuperclass) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Allocate("Sub", base);
  sub->AddToNamespace({});
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
  EXPECT_EQ(RootClassNames(repository.ns), Names{"Base"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, OfAClassWithoutKeysWarnsOnceAndSucceeds) {
  LoggedRepository repository;
  auto cls = repository.Allocate("CIM_Foo");
  EXPECT_STATUS(0, cls->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Error("Inmem: Class CIM_Foo has no keys")});
  EXPECT_EQ(repository.ns->GetClass("CIM_Foo", {}), cls);
}

TEST(ClassRegistration, OfAnAbstractClassWithoutKeysLogsNothing) {
  LoggedRepository repository;
  repository.Allocate("A", {}, kAbstract)->AddToNamespace({});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, ChecksTheKeysBeforeTheName) {
  LoggedRepository repository;
  repository.Class("A");
  EXPECT_STATUS(16, [&] {
    auto second = repository.ns->GetClass("A", {});
    second->RemovePropertyDecl(second->GetPropertyDecl("Name", {}), {});
    second->AddToNamespace({});
  }());
  EXPECT_EQ(repository.TakeLog(),
            (LogLines{Error("Inmem: Class A has no keys"),
                      Error("Inmem: TInmemNamespace: class A already defined")}));
}

TEST(ClassRegistration, ThatFailsTheKeyCheckChangesNothing) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Allocate("Sub", base);
  sub->RemovePropertyDecl(sub->GetPropertyDecl("Name", {}), {});
  boost::shared_ptr<ForeignPropertyDecl> decl(
      new ForeignPropertyDecl(sub, "Strange", TCIMValue(true)));
  sub->AddPropertyDecl(decl, {});
  decl->qualifiers.FailsWith("KEY", 31);
  EXPECT_STATUS(31, sub->AddToNamespace({}));
  EXPECT_EQ(SubclassNames(base), Names{});
  EXPECT_STATUS(15, repository.ns->GetClass("Sub", {}));
  EXPECT_STATUS(17, sub->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, UnderASuperclassThatIsNotRegisteredLinksAllTheSame) {
  Repository repository;
  auto base = repository.Allocate("Base", {}, kAbstract);
  repository.Allocate("Sub", base, kAbstract)->AddToNamespace({});
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
  EXPECT_STATUS(15, repository.ns->GetClass("Base", {}));
}

TEST(ClassRegistration, OfAClassWhoseSuperclassIsGoneSucceedsWithoutOne) {
  LoggedRepository repository;
  auto base = repository.Allocate("Base");
  repository.Key(base, "Name");
  auto sub = repository.Allocate("Sub", base);
  base.reset();
  EXPECT_STATUS(0, sub->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Sub", {}), sub);
  EXPECT_FALSE(sub->GetSuperClass({}));
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, InAnyOrderLinksEachClassUnderItsSuperclass) {
  std::vector<std::size_t> order{0, 1, 2, 3};
  do {
    LoggedRepository repository;
    std::vector<ClassPtr> levels;
    for (const char* name : {"Level0", "Level1", "Level2", "Level3"})
      levels.push_back(
          repository.Allocate(name, levels.empty() ? nullptr : levels.back(), kAbstract));
    for (const auto level : order) ASSERT_STATUS(0, levels[level]->AddToNamespace({}));
    EXPECT_EQ(RootClassNames(repository.ns), Names{"Level0"});
    EXPECT_EQ(SubclassNames(levels[0]), Names{"Level1"});
    EXPECT_EQ(SubclassNames(levels[1]), Names{"Level2"});
    EXPECT_EQ(SubclassNames(levels[2]), Names{"Level3"});
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(ClassRegistration, OfAClassWhoseInheritedKeyIsNoneAnyMoreWarns) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Allocate("Sub", base);
  base->GetPropertyDecl("Name", {})->GetQualifier("Key", {})->SetValue(TCIMValue(false), {});
  sub->AddToNamespace({});
  EXPECT_EQ(repository.TakeLog(), LogLines{Error("Inmem: Class Sub has no keys")});
}

TEST(ClassRegistration, OfAClassThatDeclaresItsInheritedKeyAnewLooksAtItsOwn) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Allocate("Sub", base);
  auto key = repository.Key(sub, "Name");
  auto keyless = repository.Allocate("Keyless", base);
  repository.Key(keyless, "Name")->GetQualifier("Key", {})->SetValue(TCIMValue(false), {});
  ASSERT_NE(key, base->GetPropertyDecl("Name", {}));
  sub->AddToNamespace({});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
  keyless->AddToNamespace({});
  EXPECT_EQ(repository.TakeLog(), LogLines{Error("Inmem: Class Keyless has no keys")});
}

TEST(ClassRegistration, DeleteTakesTheClassFromItsSuperclass) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  repository.Class("Other", base);
  sub->Delete({});
  EXPECT_EQ(SubclassNames(base), Names{"Other"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, DeleteOfATopLevelClassTakesItFromTheRootClasses) {
  Repository repository;
  repository.Class("A")->Delete({});
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
}

TEST(ClassRegistration, DeletedClassStaysUnderItsNameInTheRegistry) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  cls->Delete({});
  EXPECT_EQ(repository.ns->GetClass("A", {}), cls);
  EXPECT_EQ(repository.ns->AllocateClass("A", {}, {}), cls);
  EXPECT_STATUS(16, cls->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: TInmemNamespace: class A already defined")});
}

TEST(ClassRegistration, DeletedClassComesBackWhereRedefinitionIsAllowed) {
  Repository repository(true);
  auto cls = repository.Class("A", repository.Class("Base"));
  cls->Delete({});
  cls->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("A", {}), cls);
  EXPECT_EQ(SubclassNames(repository.ns->GetClass("Base", {})), Names{"A"});
  EXPECT_STATUS(0, cls->Delete({}));
}

TEST(ClassRegistration, DeleteIsRefusedBeforeTheClassIsInTheNamespace) {
  LoggedRepository repository;
  EXPECT_STATUS(17, repository.Allocate("A")->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, DeleteIsRefusedASecondTime) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  cls->Delete({});
  EXPECT_STATUS(17, cls->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, DeleteOfTheRootClassIsRefused) {
  Repository repository;
  EXPECT_STATUS(17, repository.ns->GetClass("<root>", {})->Delete({}));
}

TEST(ClassRegistration, DeleteIsRefusedWhileTheClassHasASubclass) {
  LoggedRepository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  EXPECT_STATUS(17, base->Delete({}));
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
  EXPECT_EQ(RootClassNames(repository.ns), Names{"Base"});
  sub->Delete({});
  EXPECT_STATUS(0, base->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, AllocatedSubclassDoesNotBlockDelete) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Allocate("Sub", base);
  EXPECT_STATUS(0, base->Delete({}));
}

TEST(ClassRegistration, InstancesDoNotBlockDelete) {
  Repository repository;
  auto cls = repository.Class("A");
  repository.Instance(cls, {{"Name", TCIMValue("1")}});
  EXPECT_STATUS(0, cls->Delete({}));
  EXPECT_EQ(Stored(cls), Names{"A.Name=\"1\""});
}

TEST(ClassRegistration, DeleteIsRefusedWhileAnAssociationRefersToTheClass) {
  LoggedRepository repository;
  auto a = repository.Class("A");
  auto b = repository.Class("B");
  auto link = repository.Association("Link", "Left", a, "Right", b);
  EXPECT_STATUS(17, a->Delete({}));
  EXPECT_STATUS(17, b->Delete({}));
  EXPECT_EQ(RootClassNames(repository.ns), (Names{"A", "B", "Link"}));
  link->Delete({});
  EXPECT_STATUS(0, a->Delete({}));
  EXPECT_STATUS(0, b->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassRegistration, AllocatedAssociationDoesNotBlockDelete) {
  Repository repository;
  auto a = repository.Class("A");
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "End", a);
  EXPECT_STATUS(0, a->Delete({}));
}

TEST(ClassRegistration, AssociationWithItselfCanBeDeleted) {
  Repository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "Next", link, {{"Key", TCIMValue(true)}});
  link->AddToNamespace({});
  EXPECT_STATUS(0, link->Delete({}));
  EXPECT_EQ(AssociationNames(link), Names{});
}

TEST(ClassRegistration, DeleteOfAnAssociationWithItselfIsRefusedWhileAnotherRefersToIt) {
  LoggedRepository repository;
  auto ring = repository.Allocate("Ring", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(ring, "Self", ring, {{"Key", TCIMValue(true)}});
  ring->AddToNamespace({});
  auto other = repository.Association("Other", "From", ring, "To", ring);
  EXPECT_STATUS(17, ring->Delete({}));
  other->Delete({});
  EXPECT_STATUS(0, ring->Delete({}));
}

TEST(ClassRegistration, DeleteUndoesTheRegistrationAlsoOfReferencesThatAreGone) {
  Repository repository;
  auto a = repository.Class("A");
  auto b = repository.Class("B");
  auto link = repository.Association("Link", "Left", a, "Right", b);
  link->RemovePropertyDecl(link->GetPropertyDecl("Left", {}), {});
  link->GetQualifier("Association", {})->SetValue(TCIMValue(false), {});
  link->Delete({});
  EXPECT_STATUS(0, a->Delete({}));
  EXPECT_STATUS(0, b->Delete({}));
}

TEST(ClassRegistration, SubclassIsListedOnce) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  base->AddSubclass(sub, {});
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
}

TEST(ClassRegistration, SubclassThatWouldCloseACycleIsRefused) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  auto leaf = repository.Class("Leaf", sub);
  EXPECT_STATUS(16, leaf->AddSubclass(base, {}));
  EXPECT_STATUS(16, base->AddSubclass(base, {}));
  EXPECT_EQ(SubclassNames(leaf), Names{});
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
}

TEST(ClassRegistration, SubclassIsRemovedFromTheList) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  base->RemoveSubclass(sub, {});
  EXPECT_EQ(SubclassNames(base), Names{});
}

}  // namespace
}  // namespace havtest

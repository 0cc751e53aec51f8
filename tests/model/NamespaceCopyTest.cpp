// Copies of a namespace: they share its classes and declarations, and these belong to them when
// the original is gone.
#include <boost/make_shared.hpp>

#include "inmem/provider/TInmemNamespace.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

boost::shared_ptr<TInmemNamespace> CopyOf(const NamespacePtr& ns) {
  return boost::make_shared<TInmemNamespace>(static_cast<const TInmemNamespace&>(*ns));
}

// A namespace with two classes and an association of them, the copy of it, and no original.
struct NamespaceCopy : testing::Test {
  NamespaceCopy() {
    Repository original;
    thing = original.Class("Thing");
    sub = original.Class("Sub", thing);
    loose = original.Allocate("Loose", thing);
    link = original.Association("Link", "From", thing, "To", thing);
    first = original.Instance(thing, {{"Name", TCIMValue("first")}});
    second = original.Instance(thing, {{"Name", TCIMValue("second")}});
    original.Link(link, "From", first, "To", second);
    repository = Repository(CopyOf(original.ns));
  }

  Repository repository{NamespacePtr()};
  ClassPtr thing, sub, loose, link;
  InstancePtr first, second;
};

TEST(NamespaceCopies, StandBesideTheOriginalAndShareItsClasses) {
  Repository repository;
  auto thing = repository.Class("Thing");
  Repository copy(CopyOf(repository.ns));
  EXPECT_EQ(copy.ns->GetClass("Thing", {}), thing);
  EXPECT_EQ(copy.ns->GetClass("<root>", {}), repository.ns->GetClass("<root>", {}));
  EXPECT_EQ(copy.ns->GetQualifierDecl("Key", {}), repository.ns->GetQualifierDecl("Key", {}));
  EXPECT_EQ(thing->GetNamespace({}), repository.ns);
  auto later = copy.Class("Later");
  EXPECT_EQ(later->GetNamespace({}), copy.ns);
  EXPECT_STATUS(15, repository.ns->GetClass("Later", {}));
}

TEST(NamespaceCopies, OfANamespaceWithoutARootHaveNoneEither) {
  const auto bare = boost::make_shared<TInmemNamespace>(true);
  for (const NamespacePtr& ns : {NamespacePtr(bare), NamespacePtr(CopyOf(bare))}) {
    EXPECT_EQ(RootClassNames(ns), Names{});
    EXPECT_FALSE(ns->GetClass("<root>", {}));
  }
}

TEST_F(NamespaceCopy, OwnsTheClassesAndDeclarationsOfTheOriginal) {
  for (const auto& cls : {thing, sub, loose, link}) EXPECT_EQ(cls->GetNamespace({}), repository.ns);
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {})->GetNamespace({}), repository.ns);
  EXPECT_EQ(RootClassNames(repository.ns), (Names{"Thing", "Link"}));
}

TEST_F(NamespaceCopy, FindsAndStoresInstances) {
  EXPECT_EQ(repository.ns->GetInstance(first->GetReference({}), {}), first);
  auto third = repository.Instance(thing, {{"Name", TCIMValue("third")}});
  EXPECT_EQ(third->GetReference({}).GetCIMElement(false), third);
}

TEST_F(NamespaceCopy, FollowsLinksAndTakesNewOnes) {
  EXPECT_EQ(Associators(first), Names{"Thing.Name=\"second\""});
  RecordingLogger log;
  auto third = repository.Instance(thing, {{"Name", TCIMValue("third")}});
  repository.Link(link, "From", first, "To", third);
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(Associators(third), Names{"Thing.Name=\"first\""});
}

TEST_F(NamespaceCopy, RegistersAndDeletesClasses) {
  loose->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("Loose", {}), loose);
  EXPECT_EQ(SubclassNames(thing), (Names{"Sub", "Loose"}));
  EXPECT_STATUS(0, sub->Delete({}));
  EXPECT_EQ(SubclassNames(thing), Names{"Loose"});
  EXPECT_STATUS(0, link->Delete({}));
  EXPECT_EQ(AssociationNames(thing), Names{});
}

TEST_F(NamespaceCopy, RefusesWhatTheOriginalWouldRefuse) {
  RecordingLogger log;
  EXPECT_STATUS(16, thing->AddToNamespace({}));
  EXPECT_STATUS(16, repository.ns->GetQualifierDecl("Key", {})->AddToNamespace({}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: TInmemNamespace: class Thing already defined"},
                                  {3, "Inmem: TInmemNamespace: qualifier Key already defined"}}));
}

TEST_F(NamespaceCopy, OfACopyIsAsGood) {
  repository = Repository(CopyOf(repository.ns));
  EXPECT_EQ(thing->GetNamespace({}), repository.ns);
  EXPECT_EQ(Associators(first), Names{"Thing.Name=\"second\""});
}

TEST_F(NamespaceCopy, MadeFirstIsTheOneThatClassesBelongTo) {
  auto next = CopyOf(repository.ns);
  EXPECT_EQ(thing->GetNamespace({}), repository.ns);
  repository.ns.reset();
  EXPECT_EQ(thing->GetNamespace({}), next);
}

TEST_F(NamespaceCopy, ThatNoSharedPointerOwnsAnswersNoNamespace) {
  {
    const TInmemNamespace bare(static_cast<const TInmemNamespace&>(*repository.ns));
    repository.ns.reset();
    EXPECT_FALSE(thing->GetNamespace({}));
    EXPECT_EQ(Stored(thing).size(), 2u);
  }
  EXPECT_EQ(Stored(thing), Names{});
}

TEST_F(NamespaceCopy, IsTheLastToGo) {
  repository.ns.reset();
  EXPECT_FALSE(thing->GetNamespace({}));
  EXPECT_EQ(Stored(thing), Names{});
  EXPECT_EQ(AssociationNames(thing), Names{});
  EXPECT_STATUS(15, thing->AddInstance(first, {}));
  EXPECT_STATUS(15, sub->Delete({}));
}

TEST_F(NamespaceCopy, CanBeAssigned) {
  Repository other(true);
  auto own = other.Class("Own");
  static_cast<TInmemNamespace&>(*other.ns) = static_cast<const TInmemNamespace&>(*repository.ns);
  EXPECT_STATUS(15, other.ns->GetClass("Own", {}));
  EXPECT_EQ(other.ns->GetClass("Thing", {}), thing);
  EXPECT_EQ(other.ns->GetQualifierDecl("Association", {}),
            repository.ns->GetQualifierDecl("Association", {}));
  EXPECT_STATUS(16, thing->AddToNamespace({}));
  EXPECT_EQ(thing->GetNamespace({}), repository.ns);
  repository.ns.reset();
  EXPECT_EQ(thing->GetNamespace({}), other.ns);
  EXPECT_EQ(Associators(first), Names{"Thing.Name=\"second\""});
  EXPECT_STATUS(15, own->AddInstance(own->AllocateInstance({}), {}));
  other.ns.reset();
  EXPECT_EQ(Stored(thing), Names{});
}

TEST_F(NamespaceCopy, ThatIsAssignedHasTheOthersClassOfANameAndItsRule) {
  const Repository other(true);
  const auto own = other.Class("Thing");
  ASSERT_EQ(other.ns->GetClass("Thing", {}), own);
  auto& assigned = static_cast<TInmemNamespace&>(*other.ns);
  assigned = static_cast<const TInmemNamespace&>(*repository.ns);
  EXPECT_EQ(other.ns->GetClass("Thing", {}), thing);
  EXPECT_STATUS(16, other.ns->AllocateQualifierDecl("Key", TCIMValue(true), {}, {}, {}));
}

TEST_F(NamespaceCopy, CanBeAssignedToItselfAndToItsOriginal) {
  auto next = CopyOf(repository.ns);
  auto& ns = static_cast<TInmemNamespace&>(*repository.ns);
  ns = static_cast<const TInmemNamespace&>(ns);
  ns = static_cast<const TInmemNamespace&>(*next);
  EXPECT_EQ(thing->GetNamespace({}), repository.ns);
  repository.ns.reset();
  EXPECT_EQ(thing->GetNamespace({}), next);
}

}  // namespace
}  // namespace havtest

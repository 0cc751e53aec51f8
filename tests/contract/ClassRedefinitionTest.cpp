// Redefinition: a class that is registered under a taken name takes the place of the one
// that stands there.
#include <boost/make_shared.hpp>

#include "support/ForeignClass.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

const Qualifiers kAbstract = {{"Abstract", TCIMValue(true)}};

// "Base" with the registered class `first`, named "A", and `second` of the same name, which
// was allocated under "<root>" and is not yet registered.
class ClassRedefinition : public testing::Test {
 protected:
  ClassRedefinition() : repository(true), base(repository.Class("Base")) {
    first = repository.Allocate("A", base);
    second = repository.Allocate("a");
    repository.Key(second, "Name");
    first->AddToNamespace({});
  }

  LoggedRepository repository;
  ClassPtr base;
  ClassPtr first;
  ClassPtr second;
};

TEST_F(ClassRedefinition, PutsTheNewClassInTheRegistry) {
  second->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("A", {}), second);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(ClassRedefinition, TakesOverTheSuperclass) {
  second->AddToNamespace({});
  EXPECT_EQ(second->GetSuperClass({}), base);
  EXPECT_EQ(SubclassNames(base), Names{"a"});
  EXPECT_EQ(RootClassNames(repository.ns), Names{"Base"});
}

TEST_F(ClassRedefinition, TakesOverTheSubclasses) {
  auto zebra = repository.Class("Zebra", first);
  auto apple = repository.Class("Apple", first);
  second->AddToNamespace({});
  EXPECT_EQ(SubclassNames(second), (Names{"Zebra", "Apple"}));
  EXPECT_EQ(zebra->GetSuperClass({}), second);
  EXPECT_EQ(apple->GetSuperClass({}), second);
}

TEST_F(ClassRedefinition, SubclassesCanBeDeletedFromTheNewClass) {
  auto sub = repository.Class("Sub", first);
  second->AddToNamespace({});
  EXPECT_STATUS(17, second->Delete({}));
  sub->Delete({});
  EXPECT_EQ(SubclassNames(second), Names{});
  EXPECT_STATUS(0, second->Delete({}));
}

TEST_F(ClassRedefinition, DisplacedClassIsNoLongerInTheNamespace) {
  second->AddToNamespace({});
  EXPECT_STATUS(17, first->Delete({}));
  EXPECT_EQ(SubclassNames(base), Names{"a"});
  EXPECT_STATUS(0, second->Delete({}));
}

TEST_F(ClassRedefinition, CarriesTheAssociationsOver) {
  auto link = repository.Association("Link", "Left", first, "Right", repository.Class("B"));
  second->AddToNamespace({});
  EXPECT_EQ(AssociationNames(second), Names{"Link"});
  EXPECT_STATUS(17, second->Delete({}));
  link->Delete({});
  EXPECT_STATUS(0, second->Delete({}));
}

TEST_F(ClassRedefinition, StartsWithoutInstances) {
  auto instance = repository.Instance(first, {{"Name", TCIMValue("1")}});
  second->AddToNamespace({});
  EXPECT_EQ(Stored(second), Names{});
  EXPECT_FALSE(repository.ns->GetInstance(instance->GetReference({}), {}));
}

TEST_F(ClassRedefinition, KeepsTheNewClassesOwnDeclarationsAndQualifiers) {
  repository.Property(second, "Own", TCIMValue(true));
  repository.Property(first, "Old", TCIMValue(true));
  repository.Qualify(*second, {{"Version", TCIMValue("2")}});
  second->AddToNamespace({});
  EXPECT_EQ(PropertyNames(second), (Names{"Name", "Own"}));
  EXPECT_EQ(QualifierNames(second), Names{"Version"});
}

TEST_F(ClassRedefinition, CanBeRepeated) {
  auto sub = repository.Class("Sub", first);
  second->AddToNamespace({});
  first->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("A", {}), first);
  EXPECT_EQ(SubclassNames(base), Names{"A"});
  EXPECT_EQ(SubclassNames(first), Names{"Sub"});
  EXPECT_EQ(sub->GetSuperClass({}), first);
}

TEST_F(ClassRedefinition, ByTheClassThatStandsThereListsItOnce) {
  auto sub = repository.Class("Sub", first);
  EXPECT_STATUS(0, first->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("A", {}), first);
  EXPECT_EQ(SubclassNames(base), Names{"A"});
  EXPECT_EQ(SubclassNames(first), Names{"Sub"});
  EXPECT_EQ(sub->GetSuperClass({}), first);
}

TEST_F(ClassRedefinition, AssociationThatIsRedefinedLeavesNoClassBlocked) {
  auto b = repository.Class("B");
  auto define = [&](const char* role) {
    auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
    repository.Reference(link, role, b, {{"Key", TCIMValue(true)}});
    return link;
  };
  auto one = define("One");
  auto two = define("Two");
  one->AddToNamespace({});
  two->AddToNamespace({});
  EXPECT_EQ(AssociationNames(b), Names{"Link"});
  two->Delete({});
  EXPECT_STATUS(0, b->Delete({}));
}

// An association "Ring" with a reference to `target`, itself when that is empty.
ClassPtr Ring(const Repository& repository, ClassPtr target = {}) {
  auto ring = repository.Allocate("Ring", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(ring, "Next", target ? target : ring, {{"Key", TCIMValue(true)}});
  return ring;
}

TEST_F(ClassRedefinition, KeepsTheRegistrationOfAnAssociationWithItself) {
  auto one = Ring(repository);
  auto two = Ring(repository);
  one->AddToNamespace({});
  two->AddToNamespace({});
  for (const auto& ring : {two, one, two}) {
    ring->AddToNamespace({});
    EXPECT_EQ(AssociationNames(ring), Names{"Ring"});
    EXPECT_EQ(AssociationNames(ring == one ? two : one), Names{});
  }
  EXPECT_STATUS(0, two->Delete({}));
  EXPECT_EQ(AssociationNames(two), Names{});
}

TEST_F(ClassRedefinition, KeepsTheRegistrationWithTheClassItWasOnTheClassItIs) {
  auto one = Ring(repository);
  auto two = Ring(repository, one);
  one->AddToNamespace({});
  two->AddToNamespace({});
  EXPECT_EQ(AssociationNames(two), Names{"Ring"});
  EXPECT_EQ(AssociationNames(one), Names{});
  EXPECT_STATUS(0, two->Delete({}));
  EXPECT_EQ(AssociationNames(two), Names{});
}

TEST_F(ClassRedefinition, ThatWouldMakeAClassItsOwnAncestorIsRefused) {
  auto upper = repository.Allocate("Upper", {}, kAbstract);
  auto lower = repository.Allocate("Lower", upper, kAbstract);
  auto other = repository.Allocate("Upper", lower, kAbstract);
  lower->AddToNamespace({});
  other->AddToNamespace({});
  EXPECT_STATUS(16, upper->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Upper", {}), other);
  EXPECT_EQ(other->GetSuperClass({}), lower);
  EXPECT_EQ(SubclassNames(lower), Names{"Upper"});
  EXPECT_STATUS(0, other->Delete({}));
}

TEST_F(ClassRedefinition, ThatWouldCloseACircleOfSuperclassesAloneIsRefusedToo) {
  auto upper = repository.Allocate("Upper", {}, kAbstract);
  auto lower = repository.Allocate("Lower", upper, kAbstract);
  auto other = repository.Allocate("Upper", lower, kAbstract);
  lower->AddToNamespace({});
  other->AddToNamespace({});
  upper->RemoveSubclass(lower, {});
  EXPECT_STATUS(16, upper->AddToNamespace({}));
  EXPECT_FALSE(upper->IsA(lower, {}));
  EXPECT_EQ(SubclassNames(lower), Names{"Upper"});
}

// Subclasses can be listed by hand, beside what their superclasses are.
TEST_F(ClassRedefinition, OfAClassThatListsWhatIsAboveItIsRefused) {
  auto upper = repository.Allocate("Upper", {}, kAbstract);
  auto thing = repository.Allocate("Thing", upper, kAbstract);
  auto other = repository.Allocate("Thing", upper, kAbstract);
  upper->AddToNamespace({});
  thing->AddToNamespace({});
  upper->RemoveSubclass(thing, {});
  thing->AddSubclass(upper, {});
  EXPECT_STATUS(16, other->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Thing", {}), thing);
  EXPECT_FALSE(upper->IsA(thing, {}));
  EXPECT_EQ(SubclassNames(thing), Names{"Upper"});
}

TEST_F(ClassRedefinition, ByAClassThatItListsIsRefused) {
  auto thing = repository.Allocate("Thing", {}, kAbstract);
  auto other = repository.Allocate("Thing", {}, kAbstract);
  auto between = repository.Allocate("Between", {}, kAbstract);
  thing->AddToNamespace({});
  thing->AddSubclass(between, {});
  between->AddSubclass(other, {});
  EXPECT_STATUS(16, other->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Thing", {}), thing);
  EXPECT_EQ(SubclassNames(between), Names{"Thing"});
  EXPECT_EQ(SubclassNames(other), Names{});
}

TEST_F(ClassRedefinition, ThatWouldCloseACircleOfListsAloneIsRefused) {
  auto upper = repository.Allocate("Upper", {}, kAbstract);
  auto thing = repository.Allocate("Thing", upper, kAbstract);
  auto other = repository.Allocate("Thing", upper, kAbstract);
  auto side = repository.Allocate("Side", {}, kAbstract);
  upper->AddToNamespace({});
  thing->AddToNamespace({});
  upper->RemoveSubclass(thing, {});
  thing->AddSubclass(side, {});
  side->AddSubclass(upper, {});
  EXPECT_STATUS(16, other->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Thing", {}), thing);
  EXPECT_EQ(SubclassNames(upper), Names{});
}

TEST_F(ClassRedefinition, OfAClassThatListsWhatIsFurtherAboveItIsRefused) {
  auto top = repository.Allocate("Top", {}, kAbstract);
  auto upper = repository.Allocate("Upper", top, kAbstract);
  auto thing = repository.Allocate("Thing", upper, kAbstract);
  auto other = repository.Allocate("Thing", upper, kAbstract);
  for (const auto& cls : {top, upper, thing}) cls->AddToNamespace({});
  top->RemoveSubclass(upper, {});
  thing->AddSubclass(top, {});
  EXPECT_STATUS(16, other->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Thing", {}), thing);
  EXPECT_FALSE(top->IsA(thing, {}));
}

TEST_F(ClassRedefinition, OfAClassThatItsSuperclassHasLostListsTheNewOne) {
  base->RemoveSubclass(first, {});
  base->AddToNamespace({});
  EXPECT_STATUS(0, second->AddToNamespace({}));
  EXPECT_EQ(SubclassNames(base), Names{"a"});
}

TEST_F(ClassRedefinition, OfAClassWhoseSuperclassIsGoneLeavesTheNewOneNone) {
  auto gone = repository.Allocate("Gone", {}, kAbstract);
  auto thing = repository.Allocate("Thing", gone, kAbstract);
  auto other = repository.Allocate("Thing", base, kAbstract);
  thing->AddToNamespace({});
  gone.reset();
  EXPECT_STATUS(0, other->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Thing", {}), other);
  EXPECT_FALSE(other->GetSuperClass({}));
  EXPECT_EQ(SubclassNames(base), Names{"A"});
}

TEST_F(ClassRedefinition, CarriesAnAssociationOfAHostsMakingOver) {
  auto link = repository.Association("Link", "From", base, "To", base);
  auto host = boost::make_shared<ForeignClass>(link);
  first->AddAssociation(host, {});
  second->AddToNamespace({});
  EXPECT_STATUS(0, second->RemoveAssociation(host, {}));
  EXPECT_STATUS(15, first->RemoveAssociation(host, {}));
}

TEST_F(ClassRedefinition, LeavesTheDisplacedClassNoSubclasses) {
  auto taken = repository.Class("Taken", first);
  auto lost = repository.Allocate("Lost", second);
  second->AddSubclass(lost, {});
  second->AddToNamespace({});
  EXPECT_EQ(SubclassNames(second), Names{"Taken"});
  EXPECT_EQ(SubclassNames(first), Names{});
}

class NetworkPort : public testing::TestWithParam<const char*> {};

TEST_P(NetworkPort, IsNotRedefinedAndNothingIsSaid) {
  LoggedRepository repository(true);
  auto first = repository.Allocate(GetParam(), {}, kAbstract);
  auto second = repository.Allocate(GetParam(), {}, kAbstract);
  first->AddToNamespace({});
  EXPECT_STATUS(0, second->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass(GetParam(), {}), first);
  EXPECT_EQ(RootClassNames(repository.ns), Names{GetParam()});
  EXPECT_STATUS(17, second->Delete({}));
  EXPECT_STATUS(0, first->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(NetworkPort, ComesBackWhenItIsDeletedAndAddedAgain) {
  LoggedRepository repository(true);
  auto port = repository.Allocate(GetParam(), {}, kAbstract);
  port->AddToNamespace({});
  port->Delete({});
  EXPECT_STATUS(0, port->AddToNamespace({}));
  EXPECT_EQ(RootClassNames(repository.ns), Names{GetParam()});
  EXPECT_STATUS(0, port->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

INSTANTIATE_TEST_SUITE_P(Names, NetworkPort,
                         testing::Values("ORVSG_PhysicalNetworkPort", "orvsg_physicalnetworkport",
                                         "My_ORVSG_PHYSICALNETWORKPORT_2"));

TEST(ClassRedefinitionRefused, NetworkPortIsNoExceptionWithoutRedefinition) {
  LoggedRepository repository(false);
  auto first = repository.Allocate("ORVSG_PhysicalNetworkPort", {}, kAbstract);
  auto second = repository.Allocate("ORVSG_PhysicalNetworkPort", {}, kAbstract);
  first->AddToNamespace({});
  EXPECT_STATUS(16, second->AddToNamespace({}));
  EXPECT_EQ(
      repository.TakeLog(),
      LogLines{Error("Inmem: TInmemNamespace: class ORVSG_PhysicalNetworkPort already defined")});
}

TEST(ClassRedefinitionRefused, AssociationThatWasNotRegisteredBlocksNoClass) {
  LoggedRepository repository(true);
  auto b = repository.Class("B");
  auto first = repository.Allocate("ORVSG_PhysicalNetworkPort", {}, kAbstract);
  auto second =
      repository.Allocate("ORVSG_PhysicalNetworkPort", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(second, "End", b, {{"Key", TCIMValue(true)}});
  first->AddToNamespace({});
  second->AddToNamespace({});
  EXPECT_EQ(AssociationNames(b), Names{});
  EXPECT_STATUS(0, b->Delete({}));
}

}  // namespace
}  // namespace havtest

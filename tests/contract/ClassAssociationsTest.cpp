// Associations at class level: with which classes an association registers, and what the
// two queries of a class find through it.
#include <stdexcept>

#include "support/ForeignClass.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

TEST(AssociationRegistration, ReachesEveryReferencedClass) {
  LoggedRepository repository;
  auto a = repository.Class("A");
  auto b = repository.Class("B");
  repository.Association("Link", "Left", a, "Right", b);
  EXPECT_EQ(AssociationNames(a), Names{"Link"});
  EXPECT_EQ(AssociationNames(b), Names{"Link"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(AssociationRegistration, OfTwoReferencesToOneClassHappensOnce) {
  Repository repository;
  auto a = repository.Class("A");
  auto link = repository.Association("Link", "Left", a, "Right", a);
  EXPECT_EQ(AssociationNames(a), Names{"Link"});
  a->RemoveAssociation(link, {});
  EXPECT_EQ(AssociationNames(a), Names{});
}

TEST(AssociationRegistration, LeavesOutAClassWhoseAncestorIsReferencedToo) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", repository.Class("Middle", base));
  auto link = repository.Association("Link", "Left", base, "Right", sub);
  EXPECT_STATUS(15, sub->RemoveAssociation(link, {}));
  EXPECT_EQ(AssociationNames(sub), Names{"Link"});
  EXPECT_STATUS(0, sub->Delete({}));
  EXPECT_STATUS(0, base->RemoveAssociation(link, {}));
}

TEST(AssociationRegistration, LeavesItOutWhateverTheOrderOfTheReferences) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  auto link = repository.Association("Link", "Left", sub, "Right", base);
  EXPECT_STATUS(15, sub->RemoveAssociation(link, {}));
  EXPECT_STATUS(0, base->RemoveAssociation(link, {}));
}

TEST(AssociationRegistration, OfASubAssociationReachesTheInheritedReferences) {
  Repository repository;
  auto a = repository.Class("A");
  auto b = repository.Class("B");
  auto link = repository.Association("Link", "Left", a, "Right", b);
  repository.Class("SubLink", link);
  EXPECT_EQ(AssociationNames(a), (Names{"Link", "SubLink"}));
}

TEST(AssociationRegistration, NeedsTheAssociationQualifier) {
  Repository repository;
  auto a = repository.Class("A");
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "End", a, {{"Key", TCIMValue(true)}});
  link->GetQualifier("Association", {})->SetValue(TCIMValue(false), {});
  link->AddToNamespace({});
  EXPECT_EQ(AssociationNames(a), Names{});
}

TEST(AssociationRegistration, LooksAtReferencesOnly) {
  LoggedRepository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Key(link, "Name");
  EXPECT_STATUS(0, link->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(AssociationRegistration, CanBeMadeAndUndoneByHand) {
  Repository repository;
  auto a = repository.Class("A");
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  a->AddAssociation(link, {});
  a->AddAssociation(link, {});
  EXPECT_EQ(AssociationNames(a), Names{"Link"});
  EXPECT_STATUS(17, a->Delete({}));
  a->RemoveAssociation(link, {});
  EXPECT_EQ(AssociationNames(a), Names{});
  EXPECT_STATUS(0, a->Delete({}));
}

TEST(AssociationRegistration, ThatIsNotThereCannotBeUndone) {
  LoggedRepository repository;
  auto a = repository.Class("A");
  EXPECT_STATUS(15, a->RemoveAssociation(repository.Allocate("Link"), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

// System <- Component -> Device, with subclasses on both sides and a sub-association:
//   System, Computer : System, Device, Disk : Device, Port : Device
//   Component (Group -> System, Part -> Device), SystemDevice : Component
//   Wire (From -> Port, To -> Port)
class ClassAssociations : public testing::Test {
 protected:
  ClassAssociations()
      : system(repository.Class("System")),
        computer(repository.Class("Computer", system)),
        device(repository.Class("Device")),
        disk(repository.Class("Disk", device)),
        port(repository.Class("Port", device)),
        component(repository.Association("Component", "Group", system, "Part", device)),
        systemDevice(repository.Class("SystemDevice", component)),
        wire(repository.Association("Wire", "From", port, "To", port)) {}

  LoggedRepository repository;
  ClassPtr system;
  ClassPtr computer;
  ClassPtr device;
  ClassPtr disk;
  ClassPtr port;
  ClassPtr component;
  ClassPtr systemDevice;
  ClassPtr wire;
};

using AssociationClasses = ClassAssociations;

TEST_F(AssociationClasses, AreThoseOfTheClassAndOfItsAncestors) {
  EXPECT_EQ(AssociationNames(system), (Names{"Component", "SystemDevice"}));
  EXPECT_EQ(AssociationNames(computer), (Names{"Component", "SystemDevice"}));
  EXPECT_EQ(AssociationNames(device), (Names{"Component", "SystemDevice"}));
  EXPECT_EQ(AssociationNames(port), (Names{"Component", "SystemDevice", "Wire"}));
}

TEST_F(AssociationClasses, OfTheRootClassAreNone) {
  EXPECT_EQ(AssociationNames(repository.ns->GetClass("<root>", {})), Names{});
}

TEST_F(AssociationClasses, AreVisitedOnceWhenClassAndAncestorAreBothRegisteredWith) {
  port->AddAssociation(component, {});
  EXPECT_EQ(AssociationNames(port), (Names{"Component", "SystemDevice", "Wire"}));
}

TEST_F(AssociationClasses, OfAnAncestorOfAnotherKindAreFoundThroughItsWalk) {
  boost::shared_ptr<ForeignClass> foreign(new ForeignClass(port));
  auto sub = repository.Class("Fibre", foreign);
  EXPECT_EQ(AssociationNames(sub), (Names{"Component", "SystemDevice", "Wire"}));
  EXPECT_EQ(AssociationNames(sub, "Component", "Part"), (Names{"Component", "SystemDevice"}));
}

TEST_F(AssociationClasses, CanBeLimitedToAClassAndItsSubclasses) {
  EXPECT_EQ(AssociationNames(port, "Component"), (Names{"Component", "SystemDevice"}));
  EXPECT_EQ(AssociationNames(port, "systemdevice"), Names{"SystemDevice"});
  EXPECT_EQ(AssociationNames(port, "Wire"), Names{"Wire"});
  EXPECT_EQ(AssociationNames(port, "<root>"), (Names{"Component", "SystemDevice", "Wire"}));
}

TEST_F(AssociationClasses, OfAnUnknownResultClassAreNone) {
  EXPECT_EQ(AssociationNames(port, "Unknown"), Names{});
  EXPECT_EQ(AssociationNames(port, "Disk"), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(AssociationClasses, OfAResultClassThatIsNoNameAreRefusedWith25) {
  const auto ignore = [](ClassPtr) { return true; };
  EXPECT_STATUS(25, system->EnumerateAssociationClasses(ignore, "no name", "", {}));
  EXPECT_STATUS(25, system->EnumerateAssociatedClasses(ignore, "no name", "", "", "", {}));
  EXPECT_STATUS(25, system->EnumerateAssociatedClasses(ignore, "", "no name", "", "", {}));
  EXPECT_EQ(repository.TakeLog(), LogLines(3, Error("Inmem: CIM name 'no name' is invalid")));
}

TEST_F(AssociationClasses, CanBeLimitedToARole) {
  EXPECT_EQ(AssociationNames(port, "", "part"), (Names{"Component", "SystemDevice"}));
  EXPECT_EQ(AssociationNames(port, "", "FROM"), Names{"Wire"});
  EXPECT_EQ(AssociationNames(port, "", "To"), Names{"Wire"});
}

TEST_F(AssociationClasses, InARoleOfAnotherClassAreNone) {
  EXPECT_EQ(AssociationNames(port, "", "Group"), Names{});
  EXPECT_EQ(AssociationNames(port, "", "Unknown"), Names{});
  EXPECT_EQ(AssociationNames(port, "", "Name"), Names{});
}

TEST_F(AssociationClasses, MatchBothFilters) {
  EXPECT_EQ(AssociationNames(port, "SystemDevice", "Part"), Names{"SystemDevice"});
  EXPECT_EQ(AssociationNames(port, "Wire", "Part"), Names{});
}

TEST_F(AssociationClasses, WalkIgnoresTheAnswerAndDropsExceptions) {
  int visits = 0;
  EXPECT_NO_THROW(port->EnumerateAssociationClasses(
      [&](ClassPtr) -> bool {
        if (++visits == 1) return false;
        if (visits == 2) throw THAVException(kHAVTypesDiffer);
        throw std::runtime_error("callback");
      },
      "", "", {}));
  EXPECT_EQ(visits, 3);
  EXPECT_NO_THROW(port->EnumerateAssociationClasses({}, "", "", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(AssociationClasses, AreGoneOnceDeleted) {
  systemDevice->Delete({});
  EXPECT_EQ(AssociationNames(port), (Names{"Component", "Wire"}));
  component->Delete({});
  EXPECT_EQ(AssociationNames(port), Names{"Wire"});
  EXPECT_EQ(AssociationNames(system), Names{});
}

using AssociatedClasses = ClassAssociations;

TEST_F(AssociatedClasses, AreThoseAtTheOtherReferences) {
  EXPECT_EQ(AssociatedNames(system), Names{"Device"});
  EXPECT_EQ(AssociatedNames(computer), Names{"Device"});
  EXPECT_EQ(AssociatedNames(device), Names{"System"});
  EXPECT_EQ(AssociatedNames(disk), Names{"System"});
}

TEST_F(AssociatedClasses, HoldTheClassItselfWhenAnotherReferenceNamesIt) {
  EXPECT_EQ(AssociatedNames(port), (Names{"Port", "System"}));
}

TEST_F(AssociatedClasses, AreEachVisitedOnce) {
  repository.Association("Also", "One", system, "Two", device);
  EXPECT_EQ(AssociatedNames(system), Names{"Device"});
}

TEST_F(AssociatedClasses, CanBeLimitedToAnAssociation) {
  EXPECT_EQ(AssociatedNames(port, {"Component"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"systemdevice"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"Wire"}), Names{"Port"});
  EXPECT_EQ(AssociatedNames(port, {"Unknown"}), Names{});
}

TEST_F(AssociatedClasses, CanBeLimitedToAResultClassAndItsSubclasses) {
  EXPECT_EQ(AssociatedNames(port, {"", "System"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"", "device"}), Names{"Port"});
  EXPECT_EQ(AssociatedNames(system, {"", "Disk"}), Names{});
  EXPECT_EQ(AssociatedNames(port, {"", "Unknown"}), Names{});
}

TEST_F(AssociatedClasses, CanBeLimitedToTheRoleOfThisClass) {
  EXPECT_EQ(AssociatedNames(port, {"", "", "PART"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"", "", "From"}), Names{"Port"});
  EXPECT_EQ(AssociatedNames(port, {"", "", "Group"}), Names{});
}

TEST_F(AssociatedClasses, CanBeLimitedToTheRoleOfTheOther) {
  EXPECT_EQ(AssociatedNames(port, {"", "", "", "group"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"", "", "", "To"}), Names{"Port"});
  EXPECT_EQ(AssociatedNames(port, {"", "", "", "Part"}), Names{});
}

TEST_F(AssociatedClasses, InOneRoleAreNotReachedThroughTheSameRole) {
  EXPECT_EQ(AssociatedNames(port, {"Wire", "", "From", "To"}), Names{"Port"});
  EXPECT_EQ(AssociatedNames(port, {"Wire", "", "From", "From"}), Names{});
}

TEST_F(AssociatedClasses, MatchAllFilters) {
  EXPECT_EQ(AssociatedNames(port, {"Component", "System", "Part", "Group"}), Names{"System"});
  EXPECT_EQ(AssociatedNames(port, {"Component", "Computer", "Part", "Group"}), Names{});
}

TEST_F(AssociatedClasses, OfAnAssociationWithThreeEndsAreTheOtherTwo) {
  auto link = repository.Allocate("Triple", {}, {{"Association", TCIMValue(true)}});
  auto x = repository.Class("X");
  auto y = repository.Class("Y");
  auto z = repository.Class("Z");
  repository.Reference(link, "A", x, {{"Key", TCIMValue(true)}});
  repository.Reference(link, "B", y);
  repository.Reference(link, "C", z);
  link->AddToNamespace({});
  EXPECT_EQ(AssociatedNames(x), (Names{"Y", "Z"}));
  EXPECT_EQ(AssociatedNames(y), (Names{"X", "Z"}));
  EXPECT_EQ(AssociatedNames(z, {"", "", "C", "B"}), Names{"Y"});
}

TEST_F(AssociatedClasses, AreFoundThroughRelatedReferencesInEitherRole) {
  repository.Association("Dependency", "Antecedent", device, "Dependent", disk);
  EXPECT_EQ(AssociatedNames(disk, {"Dependency"}), (Names{"Device", "Disk"}));
  EXPECT_EQ(AssociatedNames(device, {"Dependency"}), Names{"Disk"});
}

TEST_F(AssociatedClasses, WalkIgnoresTheAnswerAndDropsExceptions) {
  for (auto failing : {0, 1, 2}) {
    int visits = 0;
    EXPECT_NO_THROW(port->EnumerateAssociatedClasses(
        [&](ClassPtr) -> bool {
          ++visits;
          if (failing == 1) throw THAVException(kHAVTypesDiffer);
          if (failing == 2) throw std::runtime_error("callback");
          return false;
        },
        "", "", "", "", {}));
    EXPECT_EQ(visits, 2);
  }
  EXPECT_NO_THROW(port->EnumerateAssociatedClasses({}, "", "", "", "", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

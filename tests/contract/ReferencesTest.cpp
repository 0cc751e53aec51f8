// EnumerateAssociationInstances: the association instances that refer to an instance.
#include <algorithm>

#include <boost/make_shared.hpp>

#include "contract/Links.h"
#include "support/LoggedRepository.h"
#include "support/UnreliableNamespace.h"

namespace havtest {
namespace {

TEST(References, OfAnInstanceWithoutAssociationsAreNone) {
  LinkedModel model;
  RecordingLogger log;
  EXPECT_EQ(References(model.s), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, AreTheAssociationsThatReferToTheInstanceFromEitherEnd) {
  LinkedModel model;
  auto other = Thing(model.repository, model.disk, "other");
  model.Link("1");
  Join(model.repository, model.link, "2", {{"Group", model.s}, {"Part", other}});
  EXPECT_EQ(References(model.s), (Names{"Link.Id=\"1\"", "Link.Id=\"2\""}));
  EXPECT_EQ(References(model.d), (Names{"Link.Id=\"1\""}));
  EXPECT_EQ(References(other), (Names{"Link.Id=\"2\""}));
}

// An association that was made before its class declared such a reference has no slot for it, and
// answers what the class declares; a "speedDuplex" it declares itself.
TEST(References, InARoleThatEveryInstanceAnswersAreFoundThoughTheyHaveNoSlotForIt) {
  for (const auto& [role, found] : {std::pair<const char*, Names>{"Description", {"Link.Id=\"1\""}},
                                    {"HealthState", {"Link.Id=\"1\""}},
                                    {"speedDuplex", {}}}) {
    LinkedModel model;
    model.Link("1");
    const auto decl =
        model.link->AllocatePropertyDecl(role, TCIMValue(model.s->GetReference({})), {});
    decl->AddToClass({});
    for (int time = 0; time < 3; ++time) EXPECT_EQ(References(model.s).size(), 1u);
    EXPECT_EQ(References(model.s, "", role), found) << role;
    EXPECT_EQ(model.link->GetPropertyDecl(role, {}) == decl, !found.empty());
  }
}

TEST(References, AreTheVeryInstancesOfTheStore) {
  LinkedModel model;
  auto link = model.Link("1");
  InstancePtr found;
  model.s->EnumerateAssociationInstances([&](InstancePtr it) { return found = it, true; }, "", "",
                                         {});
  EXPECT_EQ(found, link);
}

TEST(References, OfOneAssociationClassComeInTheOrderOfTheirPaths) {
  LinkedModel model;
  for (const char* id : {"b", "a", "B", "10", "9"}) model.Link(id);
  EXPECT_EQ(References(model.s), (Names{"Link.Id=\"10\"", "Link.Id=\"9\"", "Link.Id=\"B\"",
                                        "Link.Id=\"a\"", "Link.Id=\"b\""}));
}

TEST(References, AnAssociationWithThreeReferencesIsFoundFromEachOfThem) {
  LinkedModel model;
  auto port = model.repository.Class("Port");
  auto p = Thing(model.repository, port, "p");
  auto triple = LinkClass(model.repository, "Triple",
                          {{"Group", model.system}, {"Part", model.disk}, {"Via", port}});
  Join(model.repository, triple, "1", {{"Group", model.s}, {"Part", model.d}, {"Via", p}});
  for (const auto& end : {model.s, model.d, p})
    EXPECT_EQ(References(end), (Names{"Triple.Id=\"1\""}));
}

TEST(References, AnAssociationThatRefersTwiceIsReportedOnce) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.a}});
  EXPECT_EQ(References(model.a), (Names{"Edge.Id=\"1\""}));
}

TEST(References, OfNodesAmongThemselvesAreFoundFromBothEnds) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.b}});
  EXPECT_EQ(References(model.a), (Names{"Edge.Id=\"1\""}));
  EXPECT_EQ(References(model.b), (Names{"Edge.Id=\"1\""}));
}

TEST(References, OfAnInstanceOfASubclassIncludeThoseOfItsAncestorsAssociations) {
  LinkedModel model;
  auto raid = model.repository.Class("Raid", model.repository.Class("Array", model.disk));
  auto r = Thing(model.repository, raid, "r");
  Join(model.repository, model.link, "1", {{"Group", model.s}, {"Part", r}});
  auto own = LinkClass(model.repository, "Own", {{"Host", model.system}, {"Guest", raid}});
  Join(model.repository, own, "2", {{"Host", model.s}, {"Guest", r}});
  EXPECT_EQ(References(r), (Names{"Own.Id=\"2\"", "Link.Id=\"1\""}));
}

TEST(References, ThroughASubAssociationAreReportedOnce) {
  LinkedModel model;
  auto sub = LinkClass(model.repository, "SubLink", {}, model.link);
  Join(model.repository, sub, "1", {{"Group", model.s}, {"Part", model.d}});
  EXPECT_EQ(References(model.s), (Names{"SubLink.Id=\"1\""}));
  EXPECT_EQ(References(model.d), (Names{"SubLink.Id=\"1\""}));
}

TEST(References, OfAClassAndItsSubclassInOneAssociationAreReportedOnce) {
  Repository repository;
  auto base = repository.Class("Base");
  auto sub = repository.Class("Sub", base);
  auto link = LinkClass(repository, "Chain", {{"Upper", base}, {"Lower", sub}});
  auto upper = Thing(repository, sub, "upper");
  auto lower = Thing(repository, sub, "lower");
  Join(repository, link, "1", {{"Upper", upper}, {"Lower", lower}});
  EXPECT_EQ(References(upper), (Names{"Chain.Id=\"1\""}));
  EXPECT_EQ(References(lower), (Names{"Chain.Id=\"1\""}));
}

TEST(References, AResultClassSelectsItsAssociationsAndThoseOfItsSubclasses) {
  LinkedModel model;
  auto sub = LinkClass(model.repository, "SubLink", {}, model.link);
  auto other = LinkClass(model.repository, "Other", {{"Group", model.system}});
  model.Link("1");
  Join(model.repository, sub, "2", {{"Group", model.s}, {"Part", model.d}});
  Join(model.repository, other, "3", {{"Group", model.s}});

  auto linked = References(model.s, "Link");
  std::sort(linked.begin(), linked.end());
  EXPECT_EQ(linked, (Names{"Link.Id=\"1\"", "SubLink.Id=\"2\""}));
  EXPECT_EQ(References(model.s, "SubLink"), (Names{"SubLink.Id=\"2\""}));
  EXPECT_EQ(References(model.s, "Other"), (Names{"Other.Id=\"3\""}));
}

TEST(References, AResultClassMayBeGivenInAnyCase) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(References(model.s, "LINK"), (Names{"Link.Id=\"1\""}));
}

TEST(References, AnUnknownResultClassFindsNothing) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(References(model.s, "Unknown"), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, AResultClassThatIsNoAssociationFindsNothing) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(References(model.s, "Disk"), Names{});
}

TEST(References, TheRootAsResultClassStandsForAnyClass) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(References(model.s, "<root>"), (Names{"Link.Id=\"1\""}));
}

TEST(References, ARoleSelectsTheAssociationsThatReferThroughIt) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.b}});
  Join(model.repository, model.edge, "2", {{"First", model.b}, {"Second", model.a}});
  Join(model.repository, model.edge, "3", {{"First", model.a}, {"Second", model.a}});
  EXPECT_EQ(References(model.a, "", "First"), (Names{"Edge.Id=\"1\"", "Edge.Id=\"3\""}));
  EXPECT_EQ(References(model.a, "", "Second"), (Names{"Edge.Id=\"2\"", "Edge.Id=\"3\""}));
}

TEST(References, ARoleMayBeGivenInAnyCase) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(References(model.s, "", "GROUP"), (Names{"Link.Id=\"1\""}));
}

TEST(References, TheRoleOfTheOtherEndFindsNothing) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(References(model.s, "", "Part"), Names{});
}

TEST(References, ARoleThatIsNoReferenceFindsNothing) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(References(model.s, "", "Id"), Names{});
  EXPECT_EQ(References(model.s, "", "Nothing"), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, ARoleWorksForInstancesOfSubclasses) {
  LinkedModel model;
  auto raid = model.repository.Class("Raid", model.disk);
  auto r = Thing(model.repository, raid, "r");
  Join(model.repository, model.link, "1", {{"Group", model.s}, {"Part", r}});
  EXPECT_EQ(References(r, "", "Part"), (Names{"Link.Id=\"1\""}));
}

TEST(References, ResultClassAndRoleMustBothMatch) {
  SelfModel model;
  auto sub = LinkClass(model.repository, "SubEdge", {}, model.edge);
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.b}});
  Join(model.repository, sub, "2", {{"First", model.a}, {"Second", model.b}});
  Join(model.repository, sub, "3", {{"First", model.b}, {"Second", model.a}});
  EXPECT_EQ(References(model.a, "SubEdge", "First"), (Names{"SubEdge.Id=\"2\""}));
  EXPECT_EQ(References(model.a, "SubEdge", "Second"), (Names{"SubEdge.Id=\"3\""}));
}

TEST(References, AnAssociationOlderThanTheRoleIsSkipped) {
  Repository repository;
  auto node = repository.Class("Node");
  auto edge = LinkClass(repository, "Edge", {{"First", node}});
  auto a = Thing(repository, node, "a");
  Join(repository, edge, "old", {{"First", a}});
  repository.Reference(edge, "Second", node);
  Join(repository, edge, "z", {{"First", a}, {"Second", a}});
  EXPECT_EQ(References(a, "", "Second"), (Names{"Edge.Id=\"z\""}));
  EXPECT_EQ(References(a, "", "First"), (Names{"Edge.Id=\"old\"", "Edge.Id=\"z\""}));
}

TEST(References, GoByIdentityNotByKeys) {
  LinkedModel model;
  model.Link("1");
  auto successor = Thing(model.repository, model.system, "s");
  EXPECT_EQ(References(model.s), Names{});
  EXPECT_EQ(References(successor), (Names{"Link.Id=\"1\""}));
}

TEST(References, ToAnInstanceThatIsNotStoredAreNone) {
  LinkedModel model;
  model.Link("1");
  model.s->Delete({});
  RecordingLogger log;
  EXPECT_EQ(References(model.s), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, AReferenceThatDoesNotResolveIsSkippedAndTheNextIsTried) {
  SelfModel model;
  auto c = Thing(model.repository, model.node, "c");
  Join(model.repository, model.edge, "1", {{"First", model.b}, {"Second", model.a}});
  Join(model.repository, model.edge, "2", {{"First", c}, {"Second", model.a}});
  model.b->Delete({});
  RecordingLogger log;
  EXPECT_EQ(References(model.a), (Names{"Edge.Id=\"1\"", "Edge.Id=\"2\""}));
  EXPECT_EQ(References(c), (Names{"Edge.Id=\"2\""}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, ARoleThatDoesNotResolveSkipsTheAssociation) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.b}, {"Second", model.a}});
  Join(model.repository, model.edge, "2", {{"First", model.a}, {"Second", model.a}});
  model.b->Delete({});
  EXPECT_EQ(References(model.a, "", "First"), (Names{"Edge.Id=\"2\""}));
}

TEST(References, ANullReferenceIsSkipped) {
  LinkedModel model;
  Join(model.repository, model.link, "1", {{"Part", model.d}});
  EXPECT_EQ(References(model.d), (Names{"Link.Id=\"1\""}));
  EXPECT_EQ(References(model.s), Names{});
}

TEST(References, AnotherStatusEndsTheExaminationOfThatAssociationOnly) {
  SelfModel model;
  auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  auto edge = model.edge->AllocateInstance({});
  edge->SetPropertyValue("Id", TCIMValue("1"), {});
  edge->SetPropertyValue("First",
                         TCIMValue(ReferenceTo(model.node, {{"Name", TCIMValue("b")}}, host)), {});
  edge->SetPropertyValue("Second", TCIMValue(model.a->GetReference({})), {});
  edge->AddToNamespace({});
  Join(model.repository, model.edge, "2", {{"First", model.b}, {"Second", model.a}});
  ASSERT_EQ(References(model.a), (Names{"Edge.Id=\"1\"", "Edge.Id=\"2\""}));

  RecordingLogger log;
  host->FailWithStatus(15);
  EXPECT_EQ(References(model.a), (Names{"Edge.Id=\"1\"", "Edge.Id=\"2\""}));
  host->FailWithStatus(7);
  EXPECT_EQ(References(model.a), (Names{"Edge.Id=\"2\""}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(References, FollowTheCurrentValueOfAReference) {
  LinkedModel model;
  auto link = model.Link("1");
  auto other = Thing(model.repository, model.disk, "other");
  ASSERT_EQ(References(model.d), (Names{"Link.Id=\"1\""}));
  link->SetPropertyValue("Part", TCIMValue(other->GetReference({})), {});
  EXPECT_EQ(References(model.d), Names{});
  EXPECT_EQ(References(other), (Names{"Link.Id=\"1\""}));
}

TEST(References, WithANamespaceNameResolveAllTheSame) {
  LinkedModel model;
  auto link = model.Link("1");
  link->SetPropertyValue(
      "Group", TCIMValue(model.s->GetReference({{"ProvNSP", TCIMValue("root/cimv2")}})), {});
  EXPECT_EQ(References(model.s), (Names{"Link.Id=\"1\""}));
}

TEST(References, LeaveOutAssociationsThatAreNotStored) {
  LinkedModel model;
  auto link = model.Link("1");
  link->Delete({});
  EXPECT_EQ(References(model.s), Names{});
  link->AddToNamespace({});
  EXPECT_EQ(References(model.s), (Names{"Link.Id=\"1\""}));
}

TEST(References, LeaveOutTheAssociationsOfADeletedClass) {
  LinkedModel model;
  model.Link("1");
  model.link->Delete({});
  EXPECT_EQ(References(model.s), Names{});
}

TEST(References, AreNoneOnceTheInstancesAreCleared) {
  LinkedModel model;
  model.Link("1");
  model.repository.ns->ClearInstances();
  EXPECT_EQ(References(model.s), Names{});
}

TEST(References, EndWhenNullIsAssignedOverADefaultThatRefers) {
  LinkedModel model;
  auto reserve = LinkClass(model.repository, "Reserve", {{"Group", model.system}});
  reserve->GetPropertyDecl("Group", {})->SetDefaultValue(model.s->GetReference({}), {});
  auto link = model.repository.Instance(reserve, {{"Id", TCIMValue("1")}});
  for (int time = 0; time < 3; ++time) ASSERT_EQ(References(model.s), (Names{"Reserve.Id=\"1\""}));
  link->SetPropertyValue("Group", TCIMValue::NullReference(model.system), {});
  EXPECT_EQ(References(model.s), Names{});
  EXPECT_EQ(Associators(model.s), Names{});
}

TEST(References, FailureOfAnEarlierReferenceEndsItsAssociation) {
  LoggedRepository repository;
  const auto node = repository.Class("Node");
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  const auto first = repository.Property(link, "Before", TCIMValue::Null(kCIMString));
  repository.Reference(link, "From", node, {{"Key", TCIMValue(true)}});
  repository.Reference(link, "To", node, {{"Key", TCIMValue(true)}});
  link->AddToNamespace({});
  const auto a = repository.Instance(node, {{"Name", TCIMValue("a")}});
  repository.Link(link, "From", a, "To", a);
  for (int time = 0; time < 3; ++time) ASSERT_EQ(References(a).size(), 1u);
  // Resolving a class whose name is none throws 25; its class drops that and the association.
  first->SetDefaultValue(TCIMValue(ReferenceTo(repository.Allocate("no name"), {})), {});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(References(a), Names{});
  EXPECT_EQ(References(a, "", "From").size(), 1u);
}

}  // namespace
}  // namespace havtest

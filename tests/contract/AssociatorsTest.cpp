// EnumerateAssociatedInstances: the instances at the other end, and its four filters alone.
#include <boost/make_shared.hpp>

#include "contract/Links.h"
#include "support/UnreliableNamespace.h"

namespace havtest {
namespace {

// One association of a system, a disk and a port; the slots are walked in this order:
// Group, Id, Part, Via.
struct TripleModel : LinkedModel {
  ClassPtr port = repository.Class("Port");
  ClassPtr triple =
      LinkClass(repository, "Triple", {{"Group", system}, {"Part", disk}, {"Via", port}});
  InstancePtr p = Thing(repository, port, "p");
  InstancePtr joined = Join(repository, triple, "1", {{"Group", s}, {"Part", d}, {"Via", p}});
};

AssociatorFilters ByResultClass(const std::string& name) {
  AssociatorFilters filters;
  filters.resultClass = name;
  return filters;
}
AssociatorFilters ByAssociation(const std::string& name) {
  AssociatorFilters filters;
  filters.associationClass = name;
  return filters;
}
AssociatorFilters ByRole(const std::string& role) {
  AssociatorFilters filters;
  filters.role = role;
  return filters;
}
AssociatorFilters ByResultRole(const std::string& role) {
  AssociatorFilters filters;
  filters.resultRole = role;
  return filters;
}

TEST(Associators, OfAnInstanceWithoutAssociationsAreNone) {
  LinkedModel model;
  EXPECT_EQ(Associators(model.s), Names{});
}

TEST(Associators, AreTheInstancesAtTheOtherEnd) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.d), (Names{"System.Name=\"s\""}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(Associators, AreTheVeryInstancesOfTheStore) {
  LinkedModel model;
  model.Link("1");
  InstancePtr found;
  model.s->EnumerateAssociatedInstances([&](InstancePtr it) { return found = it, true; }, "",
                                        "<root>", "", "", {});
  EXPECT_EQ(found, model.d);
}

TEST(Associators, ComeInTheOrderOfTheAssociationsPaths) {
  LinkedModel model;
  auto first = Thing(model.repository, model.disk, "zz");
  Join(model.repository, model.link, "2", {{"Group", model.s}, {"Part", model.d}});
  Join(model.repository, model.link, "1", {{"Group", model.s}, {"Part", first}});
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"zz\"", "Disk.Name=\"d\""}));
}

TEST(Associators, AreReportedOnceForEveryAssociation) {
  LinkedModel model;
  model.Link("1");
  model.Link("2");
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"d\"", "Disk.Name=\"d\""}));
}

TEST(Associators, OfNodesAmongThemselvesAreTheOthers) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.b}});
  EXPECT_EQ(Associators(model.a), (Names{"Node.Name=\"b\""}));
  EXPECT_EQ(Associators(model.b), (Names{"Node.Name=\"a\""}));
}

TEST(Associators, AnInstanceAssociatedWithItselfIsItsOwnOtherEnd) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.a}});
  EXPECT_EQ(Associators(model.a), (Names{"Node.Name=\"a\""}));
}

TEST(Associators, OfThreeEndsTheFirstOtherOneInTheOrderOfTheSlotsIsReported) {
  TripleModel model;
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.d), (Names{"System.Name=\"s\""}));
  EXPECT_EQ(Associators(model.p), (Names{"System.Name=\"s\""}));
}

TEST(Associators, AReferenceToTheInstanceAfterItsFirstOneIsAnOtherEnd) {
  SelfModel model;
  auto via = LinkClass(model.repository, "Path",
                       {{"From", model.node}, {"To", model.node}, {"Zone", model.node}});
  Join(model.repository, via, "1", {{"From", model.a}, {"To", model.a}, {"Zone", model.b}});
  EXPECT_EQ(Associators(model.a), (Names{"Node.Name=\"a\""}));
}

TEST(Associators, OfSubclassesAreFoundThroughTheAssociationsOfTheirAncestors) {
  LinkedModel model;
  auto raid = model.repository.Class("Raid", model.disk);
  auto cluster = model.repository.Class("Cluster", model.system);
  auto r = Thing(model.repository, raid, "r");
  auto c = Thing(model.repository, cluster, "c");
  Join(model.repository, model.link, "1", {{"Group", c}, {"Part", r}});
  EXPECT_EQ(Associators(c), (Names{"Raid.Name=\"r\""}));
  EXPECT_EQ(Associators(r), (Names{"Cluster.Name=\"c\""}));
}

TEST(Associators, AreFoundThroughSubAssociations) {
  LinkedModel model;
  auto sub = LinkClass(model.repository, "SubLink", {}, model.link);
  Join(model.repository, sub, "1", {{"Group", model.s}, {"Part", model.d}});
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"d\""}));
}

TEST(Associators, AnEmptyResultClassFindsNothing) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s, ByResultClass("")), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(Associators, AnUnknownResultClassFindsNothing) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s, ByResultClass("Unknown")), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(Associators, AResultClassThatIsNoCimNameThrows25AfterOneLine) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_STATUS(25, Associators(model.s, ByResultClass("no-name")));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name 'no-name' is invalid"}}));
}

TEST(Associators, AResultClassSelectsItsInstancesAndThoseOfItsSubclasses) {
  LinkedModel model;
  auto raid = model.repository.Class("Raid", model.disk);
  auto r = Thing(model.repository, raid, "r");
  model.Link("1");
  Join(model.repository, model.link, "2", {{"Group", model.s}, {"Part", r}});
  EXPECT_EQ(Associators(model.s, ByResultClass("Disk")),
            (Names{"Disk.Name=\"d\"", "Raid.Name=\"r\""}));
  EXPECT_EQ(Associators(model.s, ByResultClass("Raid")), (Names{"Raid.Name=\"r\""}));
  EXPECT_EQ(Associators(model.s, ByResultClass("System")), Names{});
}

TEST(Associators, AResultClassMayBeGivenInAnyCase) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(Associators(model.s, ByResultClass("dISK")), (Names{"Disk.Name=\"d\""}));
}

TEST(Associators, AResultClassPicksAmongThreeEnds) {
  TripleModel model;
  EXPECT_EQ(Associators(model.s, ByResultClass("Port")), (Names{"Port.Name=\"p\""}));
  EXPECT_EQ(Associators(model.p, ByResultClass("Disk")), (Names{"Disk.Name=\"d\""}));
}

TEST(Associators, AResultClassOfTheInstanceItselfDoesNotReportIt) {
  TripleModel model;
  EXPECT_EQ(Associators(model.d, ByResultClass("Disk")), Names{});
}

TEST(Associators, AnAssociationClassSelectsItsOwnAndItsSubclasses) {
  LinkedModel model;
  auto sub = LinkClass(model.repository, "SubLink", {}, model.link);
  auto other =
      LinkClass(model.repository, "Other", {{"Group", model.system}, {"Part", model.disk}});
  auto e = Thing(model.repository, model.disk, "e");
  Join(model.repository, sub, "1", {{"Group", model.s}, {"Part", model.d}});
  Join(model.repository, other, "2", {{"Group", model.s}, {"Part", e}});
  EXPECT_EQ(Associators(model.s, ByAssociation("Link")), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.s, ByAssociation("sublink")), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.s, ByAssociation("Other")), (Names{"Disk.Name=\"e\""}));
  EXPECT_EQ(Associators(model.s, ByAssociation("Unknown")), Names{});
}

TEST(Associators, TheRoleOfTheInstanceReportsTheOtherEnd) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(Associators(model.s, ByRole("Group")), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.d, ByRole("PART")), (Names{"System.Name=\"s\""}));
}

TEST(Associators, TheReferenceOfTheRoleCountsAsTheInstanceWhereverItLeads) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(Associators(model.s, ByRole("Part")), (Names{"System.Name=\"s\""}));
}

TEST(Associators, ARoleIsNoOtherEndButReferencesBeforeItAre) {
  TripleModel model;
  EXPECT_EQ(Associators(model.d, ByRole("Part")), (Names{"System.Name=\"s\""}));
  EXPECT_EQ(Associators(model.s, ByRole("Group")), (Names{"Disk.Name=\"d\""}));
}

TEST(Associators, WithARoleThatTheAssociationLacksEveryReferenceIsAnOtherEnd) {
  TripleModel model;
  EXPECT_EQ(Associators(model.s, ByRole("Nothing")), (Names{"System.Name=\"s\""}));
  EXPECT_EQ(Associators(model.p, ByRole("Id")), (Names{"System.Name=\"s\""}));
}

TEST(Associators, AnUnreadableRoleIsLoggedForTheAssociationAndReportsNothing) {
  LinkedModel model;
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s, ByRole("no-name")), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
  model.Link("1");
  EXPECT_EQ(Associators(model.s, ByRole("no-name")), Names{});
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name 'no-name' is invalid"}}));
}

TEST(Associators, AResultRoleReportsWhatStandsThere) {
  TripleModel model;
  EXPECT_EQ(Associators(model.s, ByResultRole("Part")), (Names{"Disk.Name=\"d\""}));
  EXPECT_EQ(Associators(model.s, ByResultRole("via")), (Names{"Port.Name=\"p\""}));
}

TEST(Associators, TheResultRoleOfTheInstanceReportsTheInstance) {
  LinkedModel model;
  model.Link("1");
  EXPECT_EQ(Associators(model.s, ByResultRole("Group")), (Names{"System.Name=\"s\""}));
}

TEST(Associators, AResultRoleThatIsMissingOrNoReferenceReportsNothing) {
  LinkedModel model;
  model.Link("1");
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s, ByResultRole("Nothing")), Names{});
  EXPECT_EQ(Associators(model.s, ByResultRole("Id")), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(Associators, AResultRoleThatIsNullReportsNothing) {
  LinkedModel model;
  Join(model.repository, model.link, "1", {{"Group", model.s}});
  EXPECT_EQ(Associators(model.s, ByResultRole("Part")), Names{});
}

TEST(Associators, ANullReferenceIsSkipped) {
  TripleModel model;
  model.joined->SetPropertyValue("Part", TCIMValue::NullReference(model.disk), {});
  EXPECT_EQ(Associators(model.s), (Names{"Port.Name=\"p\""}));
}

TEST(Associators, AnOtherEndThatDoesNotResolveEndsTheExaminationOfThatAssociationOnly) {
  TripleModel model;
  auto e = Thing(model.repository, model.disk, "e");
  Join(model.repository, model.triple, "2", {{"Group", model.s}, {"Part", e}, {"Via", model.p}});
  model.d->Delete({});
  RecordingLogger log;
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"e\""}));
  EXPECT_EQ(Associators(model.s, ByResultRole("Part")), (Names{"Disk.Name=\"e\""}));
  EXPECT_EQ(Associators(model.s, ByResultClass("Port")),
            (Names{"Port.Name=\"p\"", "Port.Name=\"p\""}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(Associators, ACandidateThatIsAClassEndsTheExaminationOfItsAssociation) {
  TripleModel model;
  auto e = Thing(model.repository, model.disk, "e");
  Join(model.repository, model.triple, "2", {{"Group", model.s}, {"Part", e}, {"Via", model.p}});
  model.joined->SetPropertyValue("Part", TCIMValue(ReferenceTo(model.disk, {})), {});
  for (int time = 0; time < 3; ++time)
    EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"e\""})) << time;
  EXPECT_EQ(Associators(model.s, ByResultClass("Port")),
            (Names{"Port.Name=\"p\"", "Port.Name=\"p\""}));
}

TEST(Associators, AReferenceThatFailsWithAnotherStatusEndsTheExaminationOfThatAssociationOnly) {
  LinkedModel model;
  auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  auto link = model.Link("1");
  link->SetPropertyValue("Part",
                         TCIMValue(ReferenceTo(model.disk, {{"Name", TCIMValue("d")}}, host)), {});
  auto e = Thing(model.repository, model.disk, "e");
  Join(model.repository, model.link, "2", {{"Group", model.s}, {"Part", e}});
  ASSERT_EQ(Associators(model.s), (Names{"Disk.Name=\"d\"", "Disk.Name=\"e\""}));
  host->FailWithStatus(7);
  EXPECT_EQ(Associators(model.s), (Names{"Disk.Name=\"e\""}));
  EXPECT_EQ(Associators(model.s, ByResultRole("Part")), (Names{"Disk.Name=\"e\""}));
}

TEST(Associators, GoByIdentityNotByKeys) {
  LinkedModel model;
  model.Link("1");
  auto successor = Thing(model.repository, model.system, "s");
  EXPECT_EQ(Associators(model.s), Names{});
  EXPECT_EQ(Associators(successor), (Names{"Disk.Name=\"d\""}));
}

TEST(Associators, AreWhatStandsUnderTheReferenceNow) {
  LinkedModel model;
  model.Link("1");
  auto successor = Thing(model.repository, model.disk, "d");
  InstancePtr found;
  model.s->EnumerateAssociatedInstances([&](InstancePtr it) { return found = it, true; }, "",
                                        "<root>", "", "", {});
  EXPECT_EQ(found, successor);
}

TEST(Associators, AreNoneOnceTheNamespaceOfTheOtherEndWasCleared) {
  Repository here, there;
  const auto near = here.Class("Near"), far = there.Class("Far");
  const auto link = here.Association("Link", "From", near, "To", far);
  const auto a = here.Instance(near, {{"Name", TCIMValue("a")}});
  const auto b = there.Instance(far, {{"Name", TCIMValue("b")}});
  here.Link(link, "From", a, "To", b);
  // What was found once may be remembered, until this.
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Associators(a), Names{"Far.Name=\"b\""});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(References(b).size(), 1u);
  there.ns->ClearInstances();
  EXPECT_EQ(Associators(a), Names{});
  EXPECT_EQ(References(b), Names{});
  EXPECT_EQ(References(a).size(), 1u);
}

}  // namespace
}  // namespace havtest

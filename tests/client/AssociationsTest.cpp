// The association queries of the host's side against brute force, and their edges one by one.
#include <gtest/gtest.h>

#include "client/LinkedModel.h"
#include "support/Instances.h"

namespace havtest {
namespace {

namespace client = hav::client;

Names PathsOf(const client::TInstances& found) {
  Names paths;
  for (const auto& instance : found) paths.push_back(PathOf(instance));
  return Sorted(paths);
}
Names NamesIn(const client::TClasses& found) {
  Names names;
  for (const auto& cls : found) names.push_back(cls->GetName({}));
  return Sorted(names);
}

// The values of a filter: none, each name, and one that nothing has.
Names Filters(const Names& names) {
  Names filters{""};
  filters.insert(filters.end(), names.begin(), names.end());
  filters.push_back("T_NotThere");
  return filters;
}

std::string Text(const TAssociatorFilter& filter) {
  return "association class '" + filter.associationClass + "' result class '" + filter.resultClass +
         "' role '" + filter.role + "' result role '" + filter.resultRole + "'";
}

template <class Check>
void ForEachFilter(const LinkedModel& model, Check&& check) {
  for (const auto& associationClass : Filters(model.AssociationClasses()))
    for (const auto& resultClass : Filters(model.ObjectClasses()))
      for (const auto& role : Filters(model.Roles()))
        for (const auto& resultRole : Filters(model.Roles()))
          check(TAssociatorFilter{associationClass, resultClass, role, resultRole});
}

TEST(Associations, OfInstancesAnswerLikeBruteForceForAllCombinationsOfFilters) {
  for (std::uint32_t seed = 1; seed <= 2; ++seed) {
    const LinkedModel model(seed);
    std::size_t telling = 0;
    for (std::size_t object = 0; object < model.ObjectCount(); ++object) {
      const auto instance = model.Object(object);
      ForEachFilter(model, [&](const TAssociatorFilter& filter) {
        const auto expected = model.Associators(object, filter);
        telling += expected.empty() ? 0 : 1;
        ASSERT_EQ(PathsOf(client::Associators(*instance, filter)), expected)
            << PathOf(instance) << ' ' << Text(filter);
      });
      for (const auto& resultClass : Filters(model.AssociationClasses()))
        for (const auto& role : Filters(model.Roles()))
          ASSERT_EQ(PathsOf(client::References(*instance, {resultClass, role})),
                    model.References(object, {resultClass, role}))
              << PathOf(instance) << " result class '" << resultClass << "' role '" << role << "'";
    }
    EXPECT_GE(telling, 1000u);
  }
}

TEST(Associations, OfClassesAnswerLikeBruteForceForAllCombinationsOfFilters) {
  const LinkedModel model(1);
  std::size_t telling = 0;
  for (const auto& name : model.ObjectClasses()) {
    const auto cls = model.Class(name);
    ForEachFilter(model, [&](const TAssociatorFilter& filter) {
      const auto expected = model.Associators(name, filter);
      telling += expected.empty() ? 0 : 1;
      ASSERT_EQ(NamesIn(client::Associators(*cls, filter)), expected)
          << name << ' ' << Text(filter);
    });
    for (const auto& resultClass : Filters(model.AssociationClasses()))
      for (const auto& role : Filters(model.Roles()))
        ASSERT_EQ(NamesIn(client::References(*cls, {resultClass, role})),
                  model.References(name, {resultClass, role}))
            << name << " result class '" << resultClass << "' role '" << role << "'";
  }
  EXPECT_GE(telling, 700u);
}

class AssociationEdges : public testing::Test {
 protected:
  InstancePtr Disk(const std::string& name) const {
    return repository.Instance(disk, {{"Name", TCIMValue(name)}});
  }
  void Link(const InstancePtr& one, const InstancePtr& other) const {
    repository.Link(link, "One", one, "Other", other);
  }

  Repository repository;
  ClassPtr disk = repository.Class("T_Disk");
  ClassPtr link = repository.Association("T_Link", "One", disk, "Other", disk);
  InstancePtr a = Disk("a");
  InstancePtr b = Disk("b");
};

TEST_F(AssociationEdges, AnObjectIsNotItsOwnAssociatorByTheRoleOfTheOtherEnd) {
  Link(a, b);
  EXPECT_EQ(PathsOf(client::Associators(*a, {"", "", "", "One"})), Names{});
  EXPECT_EQ(PathsOf(client::Associators(*a, {"", "", "", "Other"})), Names{"T_Disk.Name=\"b\""});
  EXPECT_EQ(PathsOf(client::Associators(*a, {"", "", "Other", ""})), Names{});
}

TEST_F(AssociationEdges, AnObjectThatIsLinkedWithItselfIsItsOwnAssociator) {
  Link(a, a);
  EXPECT_EQ(PathsOf(client::Associators(*a)), Names{"T_Disk.Name=\"a\""});
  EXPECT_EQ(PathsOf(client::References(*a)),
            Names{R"(T_Link.One="T_Disk.Name=\"a\"",Other="T_Disk.Name=\"a\"")"});
}

TEST_F(AssociationEdges, AnObjectThatIsReachedByTwoAssociationsIsListedOnce) {
  Link(a, b);
  Link(b, a);
  EXPECT_EQ(PathsOf(client::References(*a)).size(), 2u);
  EXPECT_EQ(PathsOf(client::Associators(*a)), Names{"T_Disk.Name=\"b\""});
}

TEST_F(AssociationEdges, NamesOfFiltersIgnoreCase) {
  Link(a, b);
  EXPECT_EQ(PathsOf(client::Associators(*a, {"t_LINK", "T_DISK", "one", "OTHER"})),
            Names{"T_Disk.Name=\"b\""});
  EXPECT_EQ(NamesIn(client::Associators(*disk, {"t_LINK", "T_DISK", "one", "OTHER"})),
            Names{"T_Disk"});
  EXPECT_EQ(PathsOf(client::References(*a, {"t_LINK", "ONE"})).size(), 1u);
}

TEST_F(AssociationEdges, ARoleThatIsNoNameFindsNothing) {
  Link(a, b);
  EXPECT_EQ(PathsOf(client::References(*a, {"", "no name"})), Names{});
  EXPECT_EQ(PathsOf(client::Associators(*a, {"", "", "", "no name"})), Names{});
}

TEST_F(AssociationEdges, AClassFilterThatIsNoNameIsRefused) {
  const TReferenceFilter ofReferences{"no name", ""};
  const TAssociatorFilter byResult{"", "no name", "", ""};
  const TAssociatorFilter byAssociation{"no name", "", "", ""};
  EXPECT_STATUS(kHAVInvalidName, client::References(*a, ofReferences));
  EXPECT_STATUS(kHAVInvalidName, client::References(*disk, ofReferences));
  for (const auto& filter : {byResult, byAssociation}) {
    EXPECT_STATUS(kHAVInvalidName, client::Associators(*a, filter));
    EXPECT_STATUS(kHAVInvalidName, client::Associators(*disk, filter));
  }
}

TEST_F(AssociationEdges, AskingForAPropertyThatEveryInstanceAnswersDeclaresNothing) {
  Link(a, b);
  const Names before = PropertyNames(link);
  for (const char* const role : {"Description", "HealthState", "speedDuplex"}) {
    EXPECT_EQ(PathsOf(client::References(*a, {"", role})), Names{});
    EXPECT_EQ(PathsOf(client::Associators(*a, {"", "", role, role})), Names{});
  }
  EXPECT_EQ(PropertyNames(link), before);
}

TEST_F(AssociationEdges, AReferenceThatLeadsNowhereIsPassedOver) {
  const auto c = Disk("c");
  Link(a, b);
  Link(a, c);
  c->Delete({});
  EXPECT_EQ(PathsOf(client::References(*a, {"", "One"})).size(), 2u);
  EXPECT_EQ(PathsOf(client::Associators(*a)), Names{"T_Disk.Name=\"b\""});
  EXPECT_EQ(PathsOf(client::Associators(*c)), Names{});
}

TEST_F(AssociationEdges, NamesArePathsInTheNamespaceThatIsGiven) {
  Link(a, b);
  EXPECT_EQ(client::AssociatorNames(*a, {}, "root/cimv2").at(0).GetFullPath(),
            "root/cimv2:T_Disk.Name=\"b\"");
  EXPECT_EQ(client::ReferenceNames(*a).at(0).GetFullPath(),
            R"(T_Link.One="T_Disk.Name=\"a\"",Other="T_Disk.Name=\"b\"")");
  EXPECT_EQ(client::AssociatorNames(*disk, {}, "root/cimv2").at(0).GetFullPath(),
            "root/cimv2:T_Disk");
  EXPECT_EQ(client::ReferenceNames(*disk).at(0).GetFullPath(), "T_Link");
}

}  // namespace
}  // namespace havtest

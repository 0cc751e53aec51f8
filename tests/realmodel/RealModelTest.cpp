// Association traversal over a model of the DMTF schema's own classes: every answer of every
// instance, without a filter and with each, against the oracle.
#include <algorithm>
#include <iostream>
#include <memory>
#include <random>
#include <set>

#include "havcore/client/Associations.h"
#include "havcore/client/Enumerate.h"
#include "realmodel/DeviceClasses.h"
#include "realmodel/DeviceModel.h"
#include "realmodel/DeviceRepository.h"
#include "realmodel/TraversalOracle.h"
#include "support/CimSchema.h"
#include "support/Instances.h"

namespace havtest {
namespace {

constexpr std::uint32_t kSeed = 20490;

std::vector<std::string> AssociationFilters() {
  std::vector<std::string> names{"", "<root>"};
  for (const auto& cls : LinkClasses()) names.push_back(cls.name);
  return names;
}
std::vector<std::string> ResultFilters() {
  std::vector<std::string> names{"", "<root>"};
  for (const auto& cls : ThingClasses()) names.push_back(cls.name);
  return names;
}
std::vector<std::string> Roles() {
  std::set<std::string> names{"", "NoSuchRole"};
  for (const auto& cls : LinkClasses())
    for (const auto& role : cls.roles) names.insert(role.name);
  return {names.begin(), names.end()};
}

std::vector<std::string> PathsOf(const std::vector<Found>& found) {
  std::vector<std::string> paths;
  for (const auto& one : found) paths.push_back(one.path);
  return paths;
}

std::string Text(const AssociatorsQuestion& question) {
  return "association class '" + question.associationClass + "' result class '" +
         question.resultClass + "' role '" + question.role + "' result role '" +
         question.resultRole + "'";
}

// How a class of the schema can be linked: by one reference of an association class, with what
// another one refers to.
struct ClassLink {
  ClassPtr association, other;
  std::string role, resultRole;
};

// Every way of linking `cls`, found by looking at all classes of the schema.
std::vector<ClassLink> LinksOf(const NamespacePtr& ns, const ClassPtr& cls) {
  std::vector<ClassLink> links;
  auto pending = hav::client::SubclassesOf(*ns->GetClass("<root>", {}));
  while (!pending.empty()) {
    const auto association = pending.back();
    pending.pop_back();
    for (const auto& subclass : hav::client::SubclassesOf(*association))
      pending.push_back(subclass);
    const auto references = hav::client::Collect<ICIMPropertyDecl>(
        [&](const auto& callback) { association->EnumerateReferenceDecls(callback, {}); });
    for (const auto& own : references)
      for (const auto& other : references)
        if (own != other && cls->IsA(own->GetDefaultValue({}).GetReferencedClass(), {}))
          links.push_back({association, other->GetDefaultValue({}).GetReferencedClass(),
                           own->GetName({}), other->GetName({})});
  }
  return links;
}

std::string ClassOf(const std::string& path) { return path.substr(0, path.find('.')); }

class RealModel : public testing::Test {
 protected:
  // The schema is loaded once; each test stores its own model.
  static void TearDownTestSuite() { s_repository.reset(); }

  void SetUp() override {
    const std::string missing = WhyNoCimSchema();
    if (!missing.empty() && IsCimSchemaRequired()) FAIL() << missing;
    if (!missing.empty()) GTEST_SKIP() << missing;
    if (!s_repository) s_repository = std::make_unique<DeviceRepository>(CimSchemaFile());
  }

  void Store(std::uint32_t seed, std::size_t systems, std::size_t devicesEach,
             std::size_t linksEach) {
    m_model = MakeDeviceModel(seed, systems, devicesEach, linksEach);
    m_oracle = std::make_unique<TraversalOracle>(m_model);
    s_repository->Store(m_model);
  }
  void StoreTheLargeModel() { Store(kSeed, 20, 25, 15); }

  void CheckReferences(std::size_t thing, const ReferencesQuestion& question) {
    const auto expected = PathsOf(m_oracle->References(thing, question));
    auto answer = References(s_repository->things[thing], question.resultClass, question.role);
    // The order is that of the paths within an association class, and open among classes.
    std::stable_sort(answer.begin(), answer.end(),
                     [](const auto& a, const auto& b) { return ClassOf(a) < ClassOf(b); });
    Count(!expected.empty());
    ASSERT_EQ(answer, expected) << m_model.things[thing].path << " result class '"
                                << question.resultClass << "' role '" << question.role << "'";
  }

  void CheckAssociators(std::size_t thing, const AssociatorsQuestion& question) {
    const auto found = m_oracle->Associators(thing, question);
    auto expected = PathsOf(found);
    auto answer = Associators(
        s_repository->things[thing],
        {question.associationClass, question.resultClass, question.role, question.resultRole});
    const bool throughOneClass = found.empty() || found.front().through == found.back().through;
    if (!throughOneClass) {
      std::sort(answer.begin(), answer.end());
      std::sort(expected.begin(), expected.end());
    }
    Count(!expected.empty());
    ASSERT_EQ(answer, expected) << m_model.things[thing].path << " association class '"
                                << question.associationClass << "' result class '"
                                << question.resultClass << "' role '" << question.role
                                << "' result role '" << question.resultRole << "'";
  }

  // Without a filter, and with each kind of filter alone. Of the values of a filter every
  // `step`th is asked, another one of them for each thing.
  void CheckThing(std::size_t thing, std::size_t step) {
    ASSERT_NO_FATAL_FAILURE(CheckReferences(thing, {"", ""}));
    ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {"", "<root>", "", ""}));
    for (const auto& cls : Some(AssociationFilters(), thing, step)) {
      ASSERT_NO_FATAL_FAILURE(CheckReferences(thing, {cls, ""}));
      ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {cls, "<root>", "", ""}));
    }
    for (const auto& cls : Some(ResultFilters(), thing, step))
      ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {"", cls, "", ""}));
    for (const auto& role : Some(Roles(), thing, step)) {
      ASSERT_NO_FATAL_FAILURE(CheckReferences(thing, {"", role}));
      ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {"", "<root>", role, ""}));
      ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {"", "<root>", "", role}));
    }
  }
  void CheckEveryThing(std::size_t step) {
    for (std::size_t thing = 0; thing < m_model.things.size(); ++thing)
      ASSERT_NO_FATAL_FAILURE(CheckThing(thing, step));
  }

  static std::vector<std::string> Some(const std::vector<std::string>& names, std::size_t from,
                                       std::size_t step) {
    std::vector<std::string> some;
    for (std::size_t i = from % step; i < names.size(); i += step) some.push_back(names[i]);
    return some;
  }

  // Questions that a seed makes up around the ends of a link: three filters of four fit it.
  void CheckCombinations(std::uint32_t seed, std::size_t questions) {
    std::mt19937 random(seed);
    const auto pick = [&](const auto& from) { return from[random() % from.size()]; };
    const auto filter = [&](const std::string& fitting, const std::vector<std::string>& all) {
      const std::size_t choice = random() % 4;
      return choice == 0 ? pick(all) : choice == 1 ? std::string() : fitting;
    };
    for (std::size_t i = 0; i < questions; ++i) {
      const ModelLink link = pick(m_model.links);
      const std::size_t thing = pick(link.ends);
      const std::string association = filter(link.cls, AssociationFilters());
      const std::string role = filter(pick(LinkFact(link.cls).roles).name, Roles());
      ASSERT_NO_FATAL_FAILURE(CheckReferences(thing, {association, role}));
      const std::string result = random() % 2 == 0
                                     ? "<root>"
                                     : filter(m_model.things[pick(link.ends)].cls, ResultFilters());
      const std::string resultRole = filter(pick(LinkFact(link.cls).roles).name, Roles());
      ASSERT_NO_FATAL_FAILURE(CheckAssociators(thing, {association, result, role, resultRole}));
    }
  }

  // What the host's side makes of the same answers.
  void CheckOtherEnds(std::size_t thing, const AssociatorsQuestion& question) {
    const auto expected = m_oracle->OtherEnds(thing, question);
    std::vector<std::string> answer;
    for (const auto& found : hav::client::Associators(
             *s_repository->things[thing],
             {question.associationClass, question.resultClass, question.role, question.resultRole}))
      answer.push_back(PathOf(found));
    std::sort(answer.begin(), answer.end());
    Count(!expected.empty());
    ASSERT_EQ(answer, expected) << m_model.things[thing].path << ' ' << Text(question);
  }
  void CheckOtherEndClasses(const ClassPtr& cls, const std::vector<ClassLink>& links,
                            const AssociatorsQuestion& question) {
    const auto passes = [](const ClassPtr& found, const std::string& filter) {
      return filter.empty() || found->IsA(s_repository->ns->GetClass(filter, {}), {});
    };
    std::set<std::string> expected, answer;
    for (const auto& link : links)
      if ((question.role.empty() || question.role == link.role) &&
          (question.resultRole.empty() || question.resultRole == link.resultRole) &&
          passes(link.association, question.associationClass) &&
          passes(link.other, question.resultClass))
        expected.insert(link.other->GetName({}));
    for (const auto& found : hav::client::Associators(
             *cls,
             {question.associationClass, question.resultClass, question.role, question.resultRole}))
      answer.insert(found->GetName({}));
    Count(!expected.empty());
    ASSERT_EQ(answer, expected) << cls->GetName({}) << ' ' << Text(question);
  }
  // Every pair of roles, with the class of an association, of a result, or neither.
  template <class Check>
  static void ForEachPairOfRoles(const std::string& association, const std::string& result,
                                 Check&& check) {
    for (const auto& role : Roles())
      for (const auto& resultRole : Roles()) {
        ASSERT_NO_FATAL_FAILURE(check(AssociatorsQuestion{"", "", role, resultRole}));
        ASSERT_NO_FATAL_FAILURE(check(AssociatorsQuestion{association, "", role, resultRole}));
        ASSERT_NO_FATAL_FAILURE(check(AssociatorsQuestion{"", result, role, resultRole}));
        ASSERT_NO_FATAL_FAILURE(check(AssociatorsQuestion{association, result, role, resultRole}));
      }
  }

  // Nothing proves anything when hardly any answer has something in it.
  void ExpectTelling(std::size_t leastTelling) const {
    std::cout << m_questions << " questions, " << m_telling << " with an answer\n";
    EXPECT_GE(m_telling, leastTelling);
  }

  static std::unique_ptr<DeviceRepository> s_repository;
  DeviceModel m_model;

 private:
  void Count(bool telling) {
    ++m_questions;
    if (telling) ++m_telling;
  }

  std::unique_ptr<TraversalOracle> m_oracle;
  std::size_t m_questions = 0;
  std::size_t m_telling = 0;
};

std::unique_ptr<DeviceRepository> RealModel::s_repository;

TEST_F(RealModel, TheModelsTableOfClassesIsThatOfTheSchema) {
  const auto superclassOf = [](const ClassPtr& cls) {
    const std::string name = cls->GetSuperClass({})->GetName({});
    return name == "<root>" ? std::string() : name;
  };
  for (const auto& fact : ThingClasses())
    EXPECT_EQ(superclassOf(s_repository->ns->GetClass(fact.name, {})), fact.superclass)
        << fact.name;
  for (const auto& fact : LinkClasses()) {
    const auto cls = s_repository->ns->GetClass(fact.name, {});
    EXPECT_EQ(superclassOf(cls), fact.superclass) << fact.name;
    EXPECT_TRUE(cls->IsAssociation({})) << fact.name;
    std::vector<std::pair<std::string, std::string>> expected, declared;
    for (const auto& role : fact.roles) expected.emplace_back(role.name, role.referenced);
    cls->EnumerateReferenceDecls(
        [&](PropertyDeclPtr decl) {
          declared.emplace_back(decl->GetName({}),
                                decl->GetDefaultValue({}).GetReferencedClassName());
          return true;
        },
        {});
    EXPECT_EQ(declared, expected) << fact.name;
  }
}

TEST_F(RealModel, HoldsMoreThan500InstancesThatAreLinked) {
  StoreTheLargeModel();
  std::set<std::size_t> linked;
  for (const auto& link : m_model.links) linked.insert(link.ends.begin(), link.ends.end());
  EXPECT_GE(linked.size(), 500u);
  std::cout << m_model.things.size() << " things, " << m_model.links.size() << " links, "
            << linked.size() << " things linked\n";
}

TEST_F(RealModel, EveryInstanceStandsUnderThePathThatTheModelGivesIt) {
  StoreTheLargeModel();
  const auto find = [](const std::string& path) {
    return s_repository->ns->GetInstance(TCIMReference::Parse(path, s_repository->ns), {});
  };
  for (std::size_t i = 0; i < m_model.things.size(); ++i) {
    EXPECT_EQ(PathOf(s_repository->things[i]), m_model.things[i].path);
    EXPECT_EQ(find(m_model.things[i].path), s_repository->things[i]);
  }
  for (std::size_t i = 0; i < m_model.links.size(); ++i) {
    EXPECT_EQ(PathOf(s_repository->links[i]), m_model.links[i].path);
    EXPECT_EQ(find(m_model.links[i].path), s_repository->links[i]);
  }
}

TEST_F(RealModel, EveryInstanceAnswersLikeTheOracleWithoutAFilterAndWithEach) {
  StoreTheLargeModel();
  ASSERT_NO_FATAL_FAILURE(CheckEveryThing(5));
  ExpectTelling(5000);
}

TEST_F(RealModel, EveryInstanceOfASmallModelAnswersLikeTheOracleForEveryValueOfAFilter) {
  Store(kSeed, 3, 14, 6);
  ASSERT_NO_FATAL_FAILURE(CheckEveryThing(1));
  ExpectTelling(1500);
}

TEST_F(RealModel, CombinedFiltersAnswerLikeTheOracle) {
  StoreTheLargeModel();
  ASSERT_NO_FATAL_FAILURE(CheckCombinations(kSeed, 2000));
  ExpectTelling(1500);
}

TEST_F(RealModel, OtherEndsOfInstancesAreThoseOfTheCimOperation) {
  Store(kSeed, 3, 14, 6);
  for (std::size_t i = 0; i < m_model.links.size(); i += 5) {
    const auto& link = m_model.links[i];
    for (const std::size_t thing : {link.ends.front(), link.ends.back()}) {
      const std::size_t other = link.ends[thing == link.ends.front() ? 1 : 0];
      ForEachPairOfRoles(
          link.cls, m_model.things[other].cls,
          [&](const AssociatorsQuestion& question) { CheckOtherEnds(thing, question); });
      if (HasFatalFailure()) return;
    }
  }
  ExpectTelling(1000);
}

TEST_F(RealModel, OtherEndsOfClassesAreThoseOfTheCimOperation) {
  std::size_t turn = 0;
  for (const auto& thing : ThingClasses()) {
    const auto cls = s_repository->ns->GetClass(thing.name, {});
    const auto links = LinksOf(s_repository->ns, cls);
    ASSERT_FALSE(links.empty());
    const auto& link = links[turn++ * 31 % links.size()];
    ForEachPairOfRoles(
        link.association->GetName({}), link.other->GetName({}),
        [&](const AssociatorsQuestion& question) { CheckOtherEndClasses(cls, links, question); });
    if (HasFatalFailure()) return;
  }
  ExpectTelling(1000);
}

TEST_F(RealModel, AnUnknownClassAsFilterFindsNothingAnywhere) {
  StoreTheLargeModel();
  for (const auto& thing : s_repository->things) {
    EXPECT_EQ(References(thing, "CIM_NotThere"), std::vector<std::string>{});
    EXPECT_EQ(Associators(thing, {"CIM_NotThere", "<root>", "", ""}), std::vector<std::string>{});
    EXPECT_EQ(Associators(thing, {"", "CIM_NotThere", "", ""}), std::vector<std::string>{});
  }
}

TEST_F(RealModel, AnswersStayTrueAfterDevicesAreDeleted) {
  Store(kSeed + 1, 8, 20, 25);
  for (std::size_t i = 0; i < m_model.things.size(); i += 3) {
    // An endpoint that is gone would be asked for while the own reference is looked for.
    if (Derives(m_model.things[i].cls, "CIM_ProtocolEndpoint")) continue;
    s_repository->things[i]->Delete({});
    m_model.things[i].stored = false;
  }
  ASSERT_NO_FATAL_FAILURE(CheckEveryThing(3));
  ASSERT_NO_FATAL_FAILURE(CheckCombinations(kSeed + 1, 1000));
  ExpectTelling(2000);
}

TEST_F(RealModel, OtherModelsAnswerLikeTheOracle) {
  for (std::uint32_t seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE(seed);
    Store(seed, 3, 12, 12);
    ASSERT_NO_FATAL_FAILURE(CheckCombinations(seed, 500));
  }
  ExpectTelling(500);
}

}  // namespace
}  // namespace havtest

// What a class and its instances tell an index of links: whether paths lead where they led, for
// how long, and whether there is an index.

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/provider/TInmemNamespace.h"
#include "inmem/values/HostServices.h"
#include "support/FailingAllocations.h"
#include "support/ForeignClass.h"
#include "support/ForeignInstance.h"
#include "support/Instances.h"

namespace havtest {
namespace {

const TInmemClass& Own(const ClassPtr& cls) { return dynamic_cast<const TInmemClass&>(*cls); }
const TInmemInstance& Own(const InstancePtr& instance) {
  return dynamic_cast<const TInmemInstance&>(*instance);
}

struct Paths : testing::Test {
  // Whether the path clock of the class moves.
  template <class Change>
  static bool IsTurned(const ClassPtr& cls, Change&& change) {
    const auto before = Own(cls).PathTime();
    change();
    return Own(cls).PathTime() != before;
  }
  static bool IsPredictable(const ClassPtr& cls) { return Own(cls).IsPredictable(); }
  InstancePtr Node(const std::string& name) const {
    return repository.Instance(node, {{"Name", TCIMValue(name)}});
  }

  Repository repository{true};
  ClassPtr base = repository.Class("Base");
  ClassPtr node = repository.Class("Node", base);
};

TEST_F(Paths, OfAClassAndInstancesOfThisMakeArePredictable) {
  EXPECT_TRUE(IsPredictable(base));
  EXPECT_TRUE(IsPredictable(node));
  EXPECT_FALSE(IsTurned(node, [&] { Node("a")->Delete({}); }));
  EXPECT_TRUE(IsPredictable(node));
}

TEST_F(Paths, StayPredictableWhenADeclarationTakesThePlaceOfOneThatIsSpeltAlike) {
  EXPECT_FALSE(IsTurned(node, [&] { repository.Key(node, "Name"); }));
  EXPECT_FALSE(IsTurned(node, [&] { repository.Property(node, "Size", TCIMValue(true)); }));
  EXPECT_TRUE(IsPredictable(node));
}

TEST_F(Paths, AreNotPredictableOnceANameIsSpeltOtherwise) {
  EXPECT_TRUE(IsTurned(node, [&] { repository.Key(node, "NAME"); }));
  EXPECT_FALSE(IsPredictable(node));
  EXPECT_TRUE(IsPredictable(base));
}

TEST_F(Paths, AreNotPredictableOnceANameIsGone) {
  EXPECT_TRUE(
      IsTurned(node, [&] { node->RemovePropertyDecl(node->GetPropertyDecl("Name", {}), {}); }));
  EXPECT_FALSE(IsPredictable(node));
}

TEST_F(Paths, StayPredictableWhenTheSameIsInheritedAgain) {
  EXPECT_FALSE(IsTurned(node, [&] { repository.ns->AllocateClass("Node", base, {}); }));
  EXPECT_TRUE(IsPredictable(node));
}

TEST_F(Paths, AreNotPredictableOnceAnInheritedNameIsSpeltOtherwise) {
  repository.Property(base, "Zone", TCIMValue(true));
  const auto sub = repository.Class("Sub", base);
  base->RemovePropertyDecl(base->GetPropertyDecl("Zone", {}), {});
  repository.Property(base, "ZONE", TCIMValue(true));
  EXPECT_TRUE(IsPredictable(sub));
  EXPECT_TRUE(IsTurned(sub, [&] { repository.ns->AllocateClass("Sub", base, {}); }));
  EXPECT_FALSE(IsPredictable(sub));
}

TEST_F(Paths, AreNotPredictableOnceAnInheritedNameIsGone) {
  base->RemovePropertyDecl(base->GetPropertyDecl("Name", {}), {});
  EXPECT_TRUE(IsTurned(node, [&] { repository.ns->AllocateClass("Node", base, {}); }));
  EXPECT_FALSE(IsPredictable(node));
}

TEST_F(Paths, AreNotPredictableUnderASuperclassOfAnotherMake) {
  const auto host = boost::make_shared<ForeignClass>(base);
  const auto under = repository.Class("Under", host);
  const auto below = repository.Class("Below", under);
  EXPECT_FALSE(IsPredictable(under));
  EXPECT_FALSE(IsPredictable(below));
}

TEST_F(Paths, AreNotPredictableWithADeclarationOfAnotherMake) {
  node->AddPropertyDecl(boost::make_shared<ForeignPropertyDecl>(node, "Size", TCIMValue(true)), {});
  EXPECT_FALSE(IsPredictable(node));
}

TEST_F(Paths, AreNotPredictableOnceAnInstanceOfAnotherClassIsStored) {
  const auto stranger = repository.Instance(base, {{"Name", TCIMValue("a")}});
  const auto another = repository.Instance(base, {{"Name", TCIMValue("b")}});
  EXPECT_TRUE(IsTurned(node, [&] { node->AddInstance(stranger, {}); }));
  EXPECT_FALSE(IsTurned(node, [&] { node->AddInstance(another, {}); }));
  EXPECT_FALSE(IsPredictable(node));
  EXPECT_TRUE(IsPredictable(base));
}

TEST_F(Paths, AreNotPredictableOnceAnInstanceOfAnotherMakeIsStored) {
  const auto foreign = boost::make_shared<ForeignInstance>(Node("a"));
  EXPECT_TRUE(IsTurned(node, [&] { node->AddInstance(foreign, {}); }));
  EXPECT_FALSE(IsPredictable(node));
}

TEST_F(Paths, MayLeadElsewhereOnceTheInstancesAreCleared) {
  EXPECT_TRUE(IsTurned(node, [&] { repository.ns->ClearInstances(); }));
  EXPECT_TRUE(IsPredictable(node));
}

TEST_F(Paths, LeadWhereTheyLedWhenAClassIsAddedOrAddedAgain) {
  EXPECT_FALSE(IsTurned(node, [&] { repository.Class("Other"); }));
  EXPECT_FALSE(IsTurned(node, [&] { node->AddToNamespace({}); }));
}

TEST_F(Paths, MayLeadElsewhereOnceAClassIsRedefined) {
  const auto one = repository.Allocate("One");
  const auto other = repository.Allocate("One");
  ASSERT_NE(one, other);
  EXPECT_FALSE(IsTurned(node, [&] { one->AddToNamespace({}); }));
  EXPECT_TRUE(IsTurned(node, [&] { other->AddToNamespace({}); }));
}

TEST_F(Paths, MayLeadElsewhereOnceANamespaceIsGoneOrIsAnother) {
  auto copy =
      boost::make_shared<TInmemNamespace>(dynamic_cast<const TInmemNamespace&>(*repository.ns));
  EXPECT_TRUE(IsTurned(node, [&] { copy.reset(); }));
  const Repository other;
  const auto thing = other.Class("Thing");
  auto& ns = dynamic_cast<TInmemNamespace&>(*repository.ns);
  const auto& assigned = dynamic_cast<const TInmemNamespace&>(*other.ns);
  EXPECT_TRUE(IsTurned(node, [&] { EXPECT_TRUE(IsTurned(thing, [&] { ns = assigned; })); }));
}

// The number by which an index knows that an instance stands where it stood.
TEST_F(Paths, LeadToAnInstanceWhileItStandsInItsClass) {
  const auto loose = node->AllocateInstance({});
  loose->SetPropertyValue("Name", TCIMValue("loose"), {});
  EXPECT_EQ(Own(loose).Standing(), TInmemInstance::kNotStanding);
  loose->AddToNamespace({});
  const auto first = Own(loose).Standing();
  EXPECT_NE(first, TInmemInstance::kNotStanding);
  loose->Delete({});
  EXPECT_EQ(Own(loose).Standing(), TInmemInstance::kNotStanding);
  loose->AddToNamespace({});
  EXPECT_NE(Own(loose).Standing(), TInmemInstance::kNotStanding);
  EXPECT_NE(Own(loose).Standing(), first);
}

// The number has an end; from there on nothing is known of the instance.
TEST_F(Paths, DoNotTellOfAnInstanceThatHasComeAndGoneTooOften) {
  const auto instance = Node("a");
  for (int time = 1; time < TInmemInstance::kNotStanding; ++time) {
    node->RemoveInstance(instance, {});
    node->AddInstance(instance, {});
    ASSERT_EQ(Own(instance).Standing(), time);
  }
  for (int time = 0; time < 3; ++time) {
    node->RemoveInstance(instance, {});
    node->AddInstance(instance, {});
    EXPECT_EQ(Own(instance).Standing(), TInmemInstance::kNotStanding);
  }
}

TEST_F(Paths, DoNotTellOfAnInstanceThatIsStoredInAnotherClassToo) {
  const auto instance = Node("a");
  base->AddInstance(instance, {});
  EXPECT_EQ(Own(instance).Standing(), TInmemInstance::kNotStanding);
  const auto elsewhere = node->AllocateInstance({});
  base->AddInstance(elsewhere, {});
  EXPECT_EQ(Own(elsewhere).Standing(), TInmemInstance::kNotStanding);
}

TEST_F(Paths, OfInstancesWithKeysOfTextAreWrittenWithoutMemory) {
  const auto instance = Node("a \"b\"");
  TPathText text;
  {
    const FailingAllocation failure(0);
    EXPECT_TRUE(Own(instance).PutPath(text));
    EXPECT_FALSE(failure.HasFailed());
  }
  EXPECT_EQ(std::string(std::string_view(text)), PathOf(instance));
}

TEST_F(Paths, NeedTheKeysOfAClassLookedForOnce) {
  repository.Property(node, "Size", TCIMValue(true));
  node->EnumerateKeyNames([](const std::string*) { return true; }, {});
  int keys = 0;
  const FailingAllocation failure(0);
  Own(node).KeyDecls();
  EXPECT_FALSE(failure.HasFailed());
  node->EnumerateKeyNames([&](const std::string*) { return ++keys, true; }, {});
  EXPECT_EQ(keys, 1);
}

// An index is made for the second question.
struct Links : Paths {
  ClassPtr link = repository.Association("Link", "From", node, "To", node);
};

TEST_F(Links, AreIndexedForTheSecondQuestion) {
  EXPECT_FALSE(Own(link).Links());
  EXPECT_FALSE(Own(link).CurrentLinks());
  const auto* links = Own(link).Links();
  EXPECT_TRUE(links);
  EXPECT_EQ(Own(link).Links(), links);
  EXPECT_EQ(Own(link).CurrentLinks(), links);
}

TEST_F(Links, AreIndexedAnewForTheSecondQuestionAfterTheInstancesAreCleared) {
  Own(link).Links();
  Own(link).Links();
  repository.ns->ClearInstances();
  EXPECT_FALSE(Own(link).CurrentLinks());
  EXPECT_FALSE(Own(link).Links());
  EXPECT_TRUE(Own(link).Links());
}

TEST_F(Links, AreIndexedAnewOnceADeclarationHasBecomeAReference) {
  Own(link).Links();
  Own(link).Links();
  repository.Property(base, "End", TCIMValue(true))
      ->SetDefaultValue(TCIMValue::NullReference(node), {});
  EXPECT_FALSE(Own(link).CurrentLinks());
  EXPECT_TRUE(Own(link).Links());
  EXPECT_TRUE(Own(link).CurrentLinks());
}

TEST_F(Links, OfProcessorsAreNeverIndexed) {
  const auto cpu = repository.Association("ORVSG_CPU", "From", node, "To", node);
  for (int question = 0; question < 3; ++question) EXPECT_FALSE(Own(cpu).Links());
}

// Whether a class that is listed for the first time could close a circle is known without a look
// at what is below it.
struct Listing : Paths {
  // The allocations that listing a class with so many subclasses takes.
  std::size_t OfOneWithSubclasses(int count, const ClassPtr& above) const {
    const auto top = repository.Allocate("Top" + std::to_string(count));
    for (int i = 0; i < count; ++i)
      top->AddSubclass(repository.Allocate("Sub" + std::to_string(i)), {});
    const FailingAllocation allocations(1000000);
    above->AddSubclass(top, {});
    return allocations.Count();
  }
};

TEST_F(Listing, UnderAClassThatNoneListsCostsWhatOneClassCosts) {
  EXPECT_EQ(OfOneWithSubclasses(1000, repository.Allocate("New")),
            OfOneWithSubclasses(0, repository.Allocate("New")));
}

TEST_F(Listing, UnderAClassThatNoneListsAnyMoreCostsNoMore) {
  const auto once = repository.Allocate("Once");
  base->AddSubclass(once, {});
  base->RemoveSubclass(once, {});
  EXPECT_EQ(OfOneWithSubclasses(1000, once), OfOneWithSubclasses(0, repository.Allocate("New")));
}

// A walk over the populated associations of a class, each step of which may lack memory.
struct PopulatedAssociations : Paths {
  ClassPtr Association(const std::string& name) const {
    const auto cls = repository.Association(name, "From", node, "To", node);
    cls->AddInstance(cls->AllocateInstance({}), {});
    return cls;
  }
  static std::vector<std::string> Names(const ClassPtr& cls, const std::function<void()>& act) {
    std::vector<std::string> names;
    Own(cls).EnumeratePopulatedAssociations([&](ClassPtr association) {
      if (names.empty()) act();
      names.push_back(association->GetName({}));
      return true;
    });
    return names;
  }

  ClassPtr one = Association("One");
  ClassPtr two = Association("Two");
  ClassPtr three = Association("Three");
};

TEST_F(PopulatedAssociations, AreAllVisitedThoughOneGoesWhileThereIsNoMemory) {
  EXPECT_EQ(Names(node,
                  [&] {
                    const FailingAllocation failure(0, FailingAllocation::kFromThenOn);
                    node->RemoveAssociation(two, {});
                  }),
            (std::vector<std::string>{"One", "Two", "Three"}));
}

TEST_F(PopulatedAssociations,
       AreAllVisitedThoughAnAncestorOfAnotherMakeTakesOneAndThereIsNoMemory) {
  struct Taking : ForeignClass {
    using ForeignClass::ForeignClass;
    std::function<void()> whenAsked;
    void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback, const std::string& c,
                                     const std::string& r, TOptions o) const override {
      whenAsked();
      ForeignClass::EnumerateAssociationClasses(callback, c, r, o);
    }
  };
  const auto above = boost::make_shared<Taking>(base);
  const auto under = repository.Class("Under", above);
  under->AddAssociation(one, {});
  under->AddAssociation(two, {});
  above->whenAsked = [&] {
    const FailingAllocation failure(0, FailingAllocation::kFromThenOn);
    under->RemoveAssociation(one, {});
  };
  EXPECT_EQ(Names(under, [] {}), (std::vector<std::string>{"One", "Two"}));
}

}  // namespace
}  // namespace havtest

// Hierarchies of 10,000 levels: no walk and no destruction goes down the stack with them.
#include "support/Instances.h"
#include "support/LoggedRepository.h"
#include "support/SmallStack.h"

namespace havtest {
namespace {

constexpr int kLevels = 10000;

// Level0 <- Level1 <- … , linked by hand, with one instance in the first and one in the
// last, and an association that refers to the first.
struct DeepHierarchy {
  DeepHierarchy() {
    top = repository.Class("Level0");
    repository.Association("Link", "One", top, "Two", top);
    bottom = top;
    for (int level = 1; level < kLevels; ++level) {
      auto next = repository.Allocate("Level" + std::to_string(level), bottom);
      bottom->AddSubclass(next, {});
      bottom = next;
    }
    repository.Instance(top, {{"Name", TCIMValue("top")}});
    repository.Instance(bottom, {{"Name", TCIMValue("bottom")}});
  }

  Repository repository;
  ClassPtr top;
  ClassPtr bottom;
};

class DeepHierarchyWalk : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    OnSmallStack([] { deep = new DeepHierarchy; });
  }
  static void TearDownTestSuite() {
    OnSmallStack([] { delete deep; });
    deep = nullptr;
  }
  static DeepHierarchy* deep;
};

DeepHierarchy* DeepHierarchyWalk::deep = nullptr;

TEST_F(DeepHierarchyWalk, InheritsFromTopToBottom) {
  OnSmallStack([&] {
    EXPECT_EQ(deep->bottom->GetPropertyDecl("Name", {}), deep->top->GetPropertyDecl("Name", {}));
  });
}

TEST_F(DeepHierarchyWalk, IsAReachesTheTop) {
  OnSmallStack([&] {
    EXPECT_TRUE(deep->bottom->IsA(deep->top, {}));
    EXPECT_FALSE(deep->top->IsA(deep->bottom, {}));
  });
}

TEST_F(DeepHierarchyWalk, FindsTheInstancesOfAllLevels) {
  OnSmallStack([&] {
    EXPECT_EQ(Paths([&](auto callback) { deep->top->EnumerateInstances(callback, true, {}); }),
              (Names{"Level0.Name=\"top\"", "Level9999.Name=\"bottom\""}));
  });
}

TEST_F(DeepHierarchyWalk, FindsTheAssociationsOfTheTopFromTheBottom) {
  OnSmallStack([&] {
    EXPECT_EQ(AssociationNames(deep->bottom), Names{"Link"});
    EXPECT_EQ(AssociatedNames(deep->bottom), Names{"Level0"});
  });
}

TEST_F(DeepHierarchyWalk, RefusesToCloseTheCircle) {
  OnSmallStack([&] { EXPECT_STATUS(16, deep->bottom->AddSubclass(deep->top, {})); });
}

TEST(DeepHierarchyEnd, ComesWhenItsNamespaceGoes) {
  OnSmallStack([] {
    DeepHierarchy deep;
    boost::weak_ptr<ICIMClass> top = deep.top;
    boost::weak_ptr<ICIMClass> bottom = deep.bottom;
    deep.top.reset();
    deep.bottom.reset();
    deep.repository.ns.reset();
    EXPECT_TRUE(top.expired());
    EXPECT_TRUE(bottom.expired());
  });
}

TEST(DeepHierarchyEnd, ComesWhenItsTopGoes) {
  OnSmallStack([] {
    DeepHierarchy deep;
    boost::weak_ptr<ICIMClass> bottom = deep.bottom;
    deep.bottom.reset();
    deep.repository.ns.reset();
    EXPECT_FALSE(bottom.expired());
    deep.top.reset();
    EXPECT_TRUE(bottom.expired());
  });
}

TEST(DeepHierarchyEnd, ComesForAssociationsOfAssociationsToo) {
  OnSmallStack([] {
    Repository repository;
    auto first = repository.Allocate("Level0");
    auto last = first;
    for (int level = 1; level < kLevels; ++level) {
      auto next = repository.Allocate("Level" + std::to_string(level));
      last->AddAssociation(next, {});
      last = next;
    }
    const boost::weak_ptr<ICIMClass> end = last;
    last.reset();
    first.reset();
    EXPECT_TRUE(end.expired());
  });
}

TEST(DeepHierarchyEnd, LeavesTheBottomToWhoeverHoldsIt) {
  OnSmallStack([] {
    DeepHierarchy deep;
    deep.top.reset();
    deep.repository.ns.reset();
    EXPECT_EQ(deep.bottom->GetName({}), "Level9999");
    EXPECT_FALSE(deep.bottom->GetSuperClass({}));
  });
}

TEST(DeepHierarchyEnd, ComesForRegisteredClassesToo) {
  OnSmallStack([&] {
    boost::weak_ptr<ICIMClass> top;
    boost::weak_ptr<ICIMClass> bottom;
    {
      Repository repository;
      auto cls = repository.Class("Level0");
      top = cls;
      for (int level = 1; level < kLevels; ++level)
        cls = repository.Class("Level" + std::to_string(level), cls);
      bottom = cls;
      EXPECT_EQ(repository.ns->GetClass("Level9999", {}), cls);
    }
    EXPECT_TRUE(top.expired());
    EXPECT_TRUE(bottom.expired());
  });
}

}  // namespace
}  // namespace havtest

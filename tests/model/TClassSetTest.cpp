#include "inmem/model/TClassSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/FailingAllocations.h"
#include "support/Repository.h"

namespace {

using namespace havtest;

using Classes = TClassSet::TClasses;

struct TClassSetOf : testing::Test {
  ClassPtr Make() { return repository.Allocate("Any" + std::to_string(m_made++)); }
  Classes Make(std::size_t count) {
    Classes classes;
    for (std::size_t i = 0; i < count; ++i) classes.push_back(Make());
    return classes;
  }
  static Classes Rest(TClassSet::TWalk& walk) {
    Classes rest;
    while (walk.Next()) rest.push_back(walk.Current());
    return rest;
  }

  Repository repository;

 private:
  int m_made = 0;
};

TEST_F(TClassSetOf, AnySizeHasEachClassOnceInTheOrderInWhichItCame) {
  for (const std::size_t count : {1u, 16u, 17u, 200u}) {
    TClassSet many;
    const Classes classes = Make(count);
    for (int time = 0; time < 2; ++time)
      for (const auto& cls : classes) many.Add(cls);
    EXPECT_EQ(many.All(), classes);
    EXPECT_EQ(many.Size(), count);
    EXPECT_TRUE(many.Contains(classes.back().get()));
    EXPECT_FALSE(many.Contains(Make().get()));
    EXPECT_FALSE(many.Contains(nullptr));
  }
}

TEST_F(TClassSetOf, AnySizeLosesWhatIsRemovedAndKeepsTheOrder) {
  for (const std::size_t count : {5u, 16u, 200u}) {
    TClassSet many;
    Classes classes = Make(count);
    for (const auto& cls : classes) many.Add(cls);
    for (std::size_t i = 0; classes.size() > 2; i = (i + 7) % classes.size()) {
      const auto place = classes.begin() + static_cast<std::ptrdiff_t>(i % classes.size());
      EXPECT_TRUE(many.Remove(place->get()));
      EXPECT_FALSE(many.Remove(place->get()));
      EXPECT_FALSE(many.Contains(place->get()));
      classes.erase(place);
      ASSERT_EQ(many.All(), classes);
      ASSERT_EQ(many.Size(), classes.size());
    }
    const auto last = Make();
    many.Add(last);
    classes.push_back(last);
    EXPECT_EQ(many.All(), classes);
  }
}

TEST_F(TClassSetOf, AWalkVisitsWhatWasThereWhateverBecomesOfIt) {
  const Classes classes = Make(40);
  {
    TClassSet walked;
    for (const auto& cls : classes) walked.Add(cls);
    TClassSet::TWalk changed(walked);
    TClassSet::TWalk second(walked);
    changed.Prepare();
    second.Prepare();
    ASSERT_EQ(changed.Next(), classes[0].get());
    walked.Add(Make());
    for (std::size_t i = 0; i < 30; ++i) walked.Remove(classes[i].get());
    EXPECT_TRUE(changed.Covers(classes[5].get()));
    EXPECT_EQ(Rest(changed), Classes(classes.begin() + 1, classes.end()));
    EXPECT_EQ(Rest(second), classes);
    EXPECT_EQ(changed.Next(), nullptr);
  }
  TClassSet emptied;
  for (const auto& cls : classes) emptied.Add(cls);
  TClassSet::TWalk walk(emptied);
  walk.Prepare();
  emptied.TakeAll();
  EXPECT_EQ(emptied.Size(), 0u);
  EXPECT_EQ(Rest(walk), classes);
}

TEST_F(TClassSetOf, AnySequenceOfChangesLeavesWhatAListWouldHave) {
  const Classes classes = Make(60);
  std::mt19937 random(7);
  for (int run = 0; run < 40; ++run) {
    TClassSet sets[2];
    Classes lists[2];
    for (int step = 0; step < 400; ++step) {
      TClassSet& set = sets[step % 2];
      Classes& list = lists[step % 2];
      const auto& cls = classes[random() % classes.size()];
      const auto found = std::find(list.begin(), list.end(), cls);
      // Grows for a while, shrinks for a while.
      if (random() % 10 < (step % 200 < 100 ? 8u : 2u)) {
        set.Add(cls);
        if (found == list.end()) list.push_back(cls);
      } else {
        EXPECT_EQ(set.Remove(cls.get()), found != list.end());
        if (found != list.end()) list.erase(found);
      }
      if (random() % 50 == 0) {
        sets[0].Swap(sets[1]);
        lists[0].swap(lists[1]);
      }
      if (random() % 80 == 0) {
        Classes taken = set.TakeAll();
        taken.erase(std::remove(taken.begin(), taken.end(), nullptr), taken.end());
        EXPECT_EQ(taken, list);
        list.clear();
      }
      for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(sets[i].All(), lists[i]) << run << ", " << step;
        ASSERT_EQ(sets[i].Size(), lists[i].size());
        ASSERT_EQ(sets[i].Contains(cls.get()),
                  std::count(lists[i].begin(), lists[i].end(), cls) == 1);
      }
    }
  }
}

TEST_F(TClassSetOf, AWalkVisitsWhatItsSetHadBeforeARemovalOrASwap) {
  const Classes classes = Make(4);
  TClassSet removed, swapped, other;
  for (const auto& cls : classes) removed.Add(cls);
  TClassSet::TWalk first(removed);
  first.Prepare();
  removed.Remove(classes[2].get());
  EXPECT_EQ(Rest(first), classes);
  for (const auto& cls : classes) swapped.Add(cls);
  other.Add(classes[3]);
  TClassSet::TWalk second(swapped);
  TClassSet::TWalk third(other);
  second.Prepare();
  third.Prepare();
  swapped.Swap(other);
  EXPECT_EQ(Rest(second), classes);
  EXPECT_EQ(Rest(third), Classes{classes[3]});
}

TEST_F(TClassSetOf, WalksEndInAnyOrder) {
  const Classes classes = Make(3);
  TClassSet walked;
  for (const auto& cls : classes) walked.Add(cls);
  auto first = std::make_unique<TClassSet::TWalk>(walked);
  TClassSet::TWalk second(walked);
  auto third = std::make_unique<TClassSet::TWalk>(walked);
  first.reset();
  walked.Remove(classes[0].get());
  third.reset();
  walked.Remove(classes[1].get());
  EXPECT_EQ(Rest(second), classes);
}

TEST_F(TClassSetOf, AWalkThatIsPreparedLetsItsSetChangeWithoutMemory) {
  const Classes classes = Make(40);
  TClassSet walked;
  for (const auto& cls : classes) walked.Add(cls);
  TClassSet::TWalk walk(walked);
  walk.Prepare();
  {
    FailingAllocation failure(0);
    walked.Remove(classes[7].get());
    walk.Prepare();  // it has its own by now
    EXPECT_FALSE(failure.HasFailed());
  }
  EXPECT_EQ(Rest(walk), classes);
}

TEST_F(TClassSetOf, AnAdditionThatLacksMemoryChangesNothing) {
  for (std::size_t count = 0; count < 70; ++count) {
    const Classes classes = Make(count);
    const auto one = Make();
    const auto other = Make();
    for (std::size_t allowed = 0;; ++allowed) {
      TClassSet set;
      for (const auto& cls : classes) set.Add(cls);
      bool failed = false;
      {
        FailingAllocation failure(allowed);
        try {
          set.Add(one);
        } catch (const std::bad_alloc&) {
          failed = true;
        }
        ASSERT_EQ(failure.HasFailed(), failed);
      }
      if (!failed) break;
      ASSERT_FALSE(set.Contains(one.get())) << count << ", " << allowed;
      ASSERT_EQ(set.All(), classes);
      ASSERT_FALSE(set.Remove(one.get()));
      // Nor does it stand in another's place.
      set.Add(other);
      ASSERT_FALSE(set.Contains(one.get())) << count << ", " << allowed;
      set.Add(one);
      ASSERT_EQ(set.All().size(), count + 2);
      ASSERT_EQ(set.All().back(), one);
    }
  }
}

TEST_F(TClassSetOf, AnySizeHasNoEmptyClassWhateverIsRemoved) {
  TClassSet set;
  const Classes classes = Make(60);
  for (std::size_t i = 0; i < classes.size(); ++i) {
    set.Add(classes[i]);
    if (i % 5 == 4) {
      EXPECT_TRUE(set.Remove(classes[i - 2].get()));
    }
    EXPECT_FALSE(set.Contains(nullptr)) << i;
    EXPECT_FALSE(set.Remove(nullptr)) << i;
  }
  EXPECT_EQ(set.Size(), 48u);
}

// A place in a table for each class; what they stand in doubles.
TEST_F(TClassSetOf, AnySizeGrowsByAnAllocationForEachClass) {
  const Classes classes = Make(1000);
  TClassSet set;
  const FailingAllocation allocations(1000000);
  for (const auto& cls : classes) set.Add(cls);
  EXPECT_LE(allocations.Count(), 1060u);
}

// As many as a set ever had at a time, and as many again that it has lost.
TEST_F(TClassSetOf, MemoryIsThatOfTheClassesThatAreThere) {
  for (const std::size_t size : {1u, 2u, 6u, 40u}) {
    const Classes classes = Make(size);
    TClassSet set;
    const auto cycle = [&](int times) {
      FailingAllocation count(1000000);
      for (int time = 0; time < times; ++time) {
        for (const auto& cls : classes) set.Add(cls);
        for (const auto& cls : classes) set.Remove(cls.get());
      }
      return count.Count();
    };
    cycle(20);
    const auto once = cycle(10);
    EXPECT_EQ(cycle(1000), 100 * once) << size;
  }
}

TEST_F(TClassSetOf, AWalkOutlivesTheSet) {
  const Classes classes = Make(3);
  auto walked = std::make_unique<TClassSet>();
  for (const auto& cls : classes) walked->Add(cls);
  TClassSet::TWalk walk(*walked);
  walk.Prepare();
  walked.reset();
  EXPECT_EQ(Rest(walk), classes);
}

TEST_F(TClassSetOf, AnySizeEndsAWalkThatLacksMemoryWhenItChangesWithBadAlloc) {
  TClassSet many;
  const Classes classes = Make(5);
  for (const auto& cls : classes) many.Add(cls);
  TClassSet::TWalk walk(many);
  EXPECT_EQ(walk.Next(), classes[0].get());
  {
    FailingAllocation failure(0, FailingAllocation::kFromThenOn);
    EXPECT_TRUE(many.Remove(classes[1].get()));
    EXPECT_TRUE(failure.HasFailed());
  }
  EXPECT_THROW(walk.Next(), std::bad_alloc);
  EXPECT_EQ(many.All(), (Classes{classes[0], classes[2], classes[3], classes[4]}));
}

TEST_F(TClassSetOf, AnySizeGoesOnWithAPreparedWalkWhateverMemoryThereIs) {
  TClassSet many;
  const Classes classes = Make(5);
  for (const auto& cls : classes) many.Add(cls);
  TClassSet::TWalk walk(many);
  walk.Prepare();
  {
    FailingAllocation failure(0, FailingAllocation::kFromThenOn);
    EXPECT_TRUE(many.Remove(classes[1].get()));
    EXPECT_FALSE(failure.HasFailed());
  }
  EXPECT_EQ(Rest(walk), classes);
}

}  // namespace

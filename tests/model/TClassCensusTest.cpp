// What a namespace knows of the classes that it allocated: those that are still there let go what
// they hold when it goes, however many have come and gone meanwhile.

#include <gtest/gtest.h>

#include "support/FailingAllocations.h"
#include "support/Repository.h"

namespace {

using namespace havtest;

TEST(TClassCensus, ReachesEveryClassThatIsLeftHoweverManyHaveGone) {
  std::vector<ClassPtr> held;
  std::vector<boost::weak_ptr<ICIMInstance>> stored;
  {
    Repository repository;
    for (int i = 0; i < 1000; ++i) {
      const auto cls = repository.Allocate("Any" + std::to_string(i));
      if (i % 7 != 0) continue;
      repository.Key(cls, "Name");
      held.push_back(cls);
      stored.push_back(repository.Instance(cls, {{"Name", TCIMValue("a")}}));
      ASSERT_FALSE(stored.back().expired());
    }
  }
  for (const auto& instance : stored) EXPECT_TRUE(instance.expired());
  for (const auto& cls : held) EXPECT_STATUS(15, cls->AddInstance(cls->AllocateInstance({}), {}));
}

TEST(TClassCensus, TakesNoMoreMemoryForClassesThatHaveGone) {
  Repository repository;
  const auto comeAndGo = [&](int classes) {
    FailingAllocation count(10000000);
    for (int i = 0; i < classes; ++i) repository.Allocate("Any");
    return count.Count();
  };
  comeAndGo(200);
  const auto each = comeAndGo(1);
  // None beside those of the classes themselves: it grows no more.
  EXPECT_EQ(comeAndGo(5000), 5000 * each);
}

}  // namespace

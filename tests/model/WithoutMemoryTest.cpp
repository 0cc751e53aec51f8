// What may do without memory does: nothing is lost, and nothing throws.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inmem/values/TSlotLayout.h"
#include "support/FailingAllocations.h"
#include "support/Instances.h"

namespace {

using namespace havtest;
using namespace NORVHAV20;

TEST(WithoutMemory, ClassesEndAllTheSame) {
  std::vector<boost::weak_ptr<ICIMClass>> ended;
  {
    ClassPtr last;
    {
      Repository repository;
      last = repository.Class("Top");
      const auto above = repository.Class("Above", last);
      ended = {last, above};
      for (const std::string name : {"A", "B", "C"}) {
        const auto cls = repository.Class(name, above);
        ended.insert(ended.end(), {cls, repository.Class(name + "Below", cls)});
      }
    }
    const FailingAllocation failing(0, FailingAllocation::kFromThenOn);
    last.reset();
    EXPECT_TRUE(failing.HasFailed());
  }
  for (const auto& cls : ended) EXPECT_TRUE(cls.expired());
}

// Texts are shared once there have been many; where the pool cannot be made they stay what they
// are until there have been as many again.
TEST(WithoutMemory, TextsStayWhatTheyAre) {
  constexpr int kMany = 1024;
  const TSlotLayout layout(std::vector<TSlotLayout::TEntry>{{"text", {}}});
  const TCIMValue first(std::string(100, 't'));
  const TCIMValue second(std::string(100, 't'));
  for (int given = 1; given < kMany; ++given) EXPECT_EQ(&layout.Share(0, first), &first);
  {
    const FailingAllocation failing(0);
    EXPECT_EQ(&layout.Share(0, first), &first);
    EXPECT_TRUE(failing.HasFailed());
  }
  for (int given = 1; given < kMany; ++given) EXPECT_EQ(&layout.Share(0, second), &second);
  layout.Share(0, first);
  EXPECT_NE(&layout.Share(0, second), &second);
  EXPECT_EQ(layout.Share(0, second), second);
}

}  // namespace

// What may do without memory does: nothing is lost, and nothing throws.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

}  // namespace

#include "inmem/values/ReferenceDefaults.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "inmem/values/ModelClock.h"

namespace havtest {
namespace {

using NORVHAV20::ModelClock;
using NORVHAV20::ReferenceDefaults;

TEST(ReferenceDefaults, CountWhatBecomesAReferenceOrWasOne) {
  const struct {
    bool was, is, changed, retyped;
  } rows[] = {{false, false, false, false},
              {false, true, true, true},
              {true, false, true, true},
              {true, true, true, false}};
  for (const auto& [was, is, changed, retyped] : rows) {
    const std::uint64_t changes = ReferenceDefaults::Changed();
    const std::uint64_t retypings = ReferenceDefaults::Retyped();
    ReferenceDefaults::Count(was, is);
    EXPECT_EQ(ReferenceDefaults::Changed() != changes, changed) << was << is;
    EXPECT_EQ(ReferenceDefaults::Retyped() != retypings, retyped) << was << is;
  }
}

TEST(ModelClock, IsAnotherTimeAfterEachChange) {
  const std::uint64_t before = ModelClock::Qualifiers();
  EXPECT_EQ(ModelClock::Qualifiers(), before);
  ModelClock::QualifiersChanged();
  const std::uint64_t after = ModelClock::Qualifiers();
  EXPECT_NE(after, before);
  ModelClock::QualifiersChanged();
  EXPECT_NE(ModelClock::Qualifiers(), after);
}

}  // namespace
}  // namespace havtest

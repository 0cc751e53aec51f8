// The texts that instances share, where memory is lacking.
#include "inmem/values/TTextPool.h"

#include <string_view>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <gtest/gtest.h>

#include "inmem/values/TSlotLayout.h"
#include "support/FailingAllocations.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

std::string_view TextOf(const TCIMValue& value) { return static_cast<std::string_view>(value); }

boost::intrusive_ptr<const TSlotLayout> LayoutOfOne() {
  return new TSlotLayout(std::vector<TSlotLayout::TEntry>(1));
}

// After how many texts a layout has a pool.
constexpr int kManyTexts = 1024;

void ExpectAPoolAfterManyTexts(const TSlotLayout& layout) {
  for (int i = 1; i < kManyTexts; ++i) {
    const TCIMValue early("text");
    ASSERT_EQ(&layout.Share(0, early), &early) << i;
  }
  const TCIMValue first("text");
  ASSERT_EQ(&layout.Share(0, first), &first);
  ASSERT_EQ(TextOf(layout.Share(0, TCIMValue("text"))).data(), TextOf(first).data());
}

TEST(TTextPool, IsThereFromTheTextOnThatMakesThemMany) {
  const auto layout = LayoutOfOne();
  ExpectAPoolAfterManyTexts(*layout);
}

TEST(TTextPool, ThatLacksMemoryIsTriedAgainAfterAsManyTexts) {
  const auto layout = LayoutOfOne();
  const TCIMValue text("text");
  for (int i = 1; i < kManyTexts; ++i) layout->Share(0, text);
  {
    const FailingAllocation failure(0);
    EXPECT_EQ(&layout->Share(0, text), &text);
    EXPECT_TRUE(failure.HasFailed());
  }
  ExpectAPoolAfterManyTexts(*layout);
}

}  // namespace
}  // namespace havtest

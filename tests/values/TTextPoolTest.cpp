// Texts that instances of a class share, and names of properties in any spelling.

#include <gtest/gtest.h>

#include "inmem/values/TSlotLayout.h"
#include "inmem/values/TTextPool.h"

namespace NORVHAV20 {
namespace {

std::string_view TextOf(const TCIMValue& value) { return static_cast<std::string_view>(value); }

TEST(TTextPool, AnswersEqualTextsWithTheFirst) {
  TTextPool pool(1);
  const TCIMValue first("vendor");
  EXPECT_EQ(TextOf(pool.Share(0, first)).data(), TextOf(first).data());
  for (int i = 0; i < 5000; ++i) {
    const TCIMValue again("vendor");
    EXPECT_EQ(TextOf(pool.Share(0, again)).data(), TextOf(first).data());
  }
}

TEST(TTextPool, AnswersEveryTextAsItIs) {
  TTextPool pool(2);
  for (int i = 0; i < 20000; ++i) {
    const TCIMValue text(std::string(static_cast<std::size_t>(i % 7), 'x') +
                         std::to_string(i % 1500));
    ASSERT_EQ(pool.Share(static_cast<std::size_t>(i % 2), text), text);
  }
}

TEST(TTextPool, LeavesASlotAloneWhoseTextsAreAllDifferent) {
  TTextPool pool(2);
  const TCIMValue shared("shared");
  for (int i = 0; i < 5000; ++i) {
    const TCIMValue text(std::to_string(i));
    pool.Share(0, text);
    EXPECT_EQ(TextOf(pool.Share(1, TCIMValue("shared"))), "shared");
  }
  const TCIMValue last("49999");
  pool.Share(0, last);
  const TCIMValue again("49999");
  EXPECT_EQ(TextOf(pool.Share(0, again)).data(), TextOf(again).data());
}

TEST(TSlotLayout, FindsANameInAnySpelling) {
  std::vector<TSlotLayout::TEntry> entries;
  for (const char* name : {"", "_", "a", "a1", "caption", "description", "systemcreationclassname",
                           "systemname", "z_9"})
    entries.push_back({name, {}});
  const TSlotLayout layout(entries);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(layout.Find(entries[i].name), i);
    EXPECT_EQ(layout.FindSpelt(entries[i].name), i);
    std::string upper = entries[i].name;
    for (char& c : upper)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    EXPECT_EQ(layout.FindSpelt(upper), i);
  }
  EXPECT_EQ(layout.FindSpelt("SystemCreationClassName"), 6u);
}

TEST(TSlotLayout, FindsNothingThatDiffersInMoreThanCase) {
  const TSlotLayout layout({{"a_b", {}}, {"a1", {}}});
  // All of them fold to the same bits.
  for (const std::string name : {"a\x7f"
                                 "b",
                                 "a\x11",
                                 "A\x5f"
                                 "B\x20",
                                 "a b", "\xc1_b", "a_b "})
    EXPECT_EQ(layout.FindSpelt(name), TSlotLayout::kNone) << name;
  EXPECT_EQ(layout.FindSpelt("A_b"), 0u);
}

}  // namespace
}  // namespace NORVHAV20

#include "inmem/values/TSlotLayout.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/AllocationMeter.h"

using namespace NORVHAV20;

namespace {

// Names of every length about that of a machine word, with letters, digits and underscores.
std::vector<std::string> Names() {
  const std::string pattern = "a_1z9_b0y_2c3d_4x";
  std::vector<std::string> names{""};
  for (std::size_t size = 1; size <= pattern.size(); ++size)
    names.push_back(pattern.substr(0, size));
  return names;
}

TSlotLayout LayoutOf(const std::vector<std::string>& names) {
  std::vector<TSlotLayout::TEntry> entries;
  for (const std::string& name : names) entries.push_back({name, {}});
  return TSlotLayout(std::move(entries));
}

}  // namespace

TEST(TSlotLayout, FindsAFoldedNameInAnySpelling) {
  const auto names = Names();
  const TSlotLayout layout = LayoutOf(names);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::string upper = names[i];
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(layout.Find(names[i]), i) << names[i];
    EXPECT_EQ(layout.FindSpelt(names[i]), i) << names[i];
    EXPECT_EQ(layout.FindSpelt(upper), i) << upper;
  }
}

TEST(TSlotLayout, NoOtherByteStandsForOneOfAName) {
  for (const std::string& name : Names()) {
    const TSlotLayout layout = LayoutOf({name});
    for (std::size_t at = 0; at < name.size(); ++at)
      for (int byte = 0; byte < 256; ++byte) {
        std::string other = name;
        other[at] = static_cast<char>(byte);
        const bool isSame = byte == name[at] || (name[at] >= 'a' && byte == name[at] - 32);
        EXPECT_EQ(layout.FindSpelt(other) != TSlotLayout::kNone, isSame) << name << ' ' << byte;
      }
  }
}

TEST(TSlotLayout, FindsANameInMixedSpelling) {
  const TSlotLayout layout =
      LayoutOf({"", "_", "caption", "systemcreationclassname", "systemname", "z_9"});
  EXPECT_EQ(layout.FindSpelt("SystemCreationClassName"), 3u);
  EXPECT_EQ(layout.FindSpelt("SystemName"), 4u);
  EXPECT_EQ(layout.FindSpelt("Z_9"), 5u);
}

TEST(TSlotLayout, FindsNothingThatDiffersInMoreThanCase) {
  const TSlotLayout layout = LayoutOf({"a_b", "a1"});
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

TEST(TSlotLayout, HasATableOfTwiceAsManyPlacesAsNamesRoundedUp) {
  const struct {
    std::size_t names;
    std::size_t places;
  } rows[] = {{0, 4}, {1, 4}, {2, 4}, {3, 8}, {4, 8}, {5, 16}, {8, 16}, {9, 32}, {100, 256}};
  for (const auto& [names, places] : rows) {
    std::vector<TSlotLayout::TEntry> entries;
    for (std::size_t i = 0; i < names; ++i) entries.push_back({"n" + std::to_string(i), {}});
    const havtest::AllocationMeter meter;
    const TSlotLayout layout(std::move(entries));
    EXPECT_EQ(meter.Bytes(), places * sizeof(std::uint32_t)) << names;
    EXPECT_EQ(layout.Size(), names);
  }
}

#include "inmem/model/TIdTable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

namespace {

using namespace NORVHAV20;

// Numbers whose hash is one of few, or always the same, so that they stand in each other's way.
void ExpectAsAMap(std::uint64_t hashes) {
  const auto hashOf = [&](std::uint32_t id) {
    const std::uint64_t which = id % hashes;
    return which << 32 | which * 7;
  };
  TIdTable table;
  std::map<std::uint32_t, bool> expected;
  std::mt19937 random(static_cast<unsigned>(hashes));
  for (int step = 0; step < 700; ++step) {
    const std::uint32_t id = static_cast<std::uint32_t>(random() % 60);
    bool& isThere = expected[id];
    if (isThere && random() % 3 != 0)
      table.Erase(id, hashOf);
    else if (!isThere)
      table.Insert(id, hashOf);
    else
      continue;
    isThere = !isThere;
    for (const auto& [known, there] : expected) {
      const auto found =
          table.Find(hashOf(known), [&, wanted = known](std::uint32_t it) { return it == wanted; });
      ASSERT_EQ(found, there ? known : TIdTable::kNone) << hashes << ", " << step;
    }
  }
}

TEST(TIdTable, FindsWhatIsThereWhateverHasTheSameHash) {
  for (const std::uint64_t hashes : {1u, 2u, 5u, 40u, 60u}) ExpectAsAMap(hashes);
}

TEST(TIdTable, IsEmptyWhenItIsMade) {
  const TIdTable table;
  EXPECT_EQ(table.Find(0, [](std::uint32_t) { return true; }), TIdTable::kNone);
}

// How many numbers are looked at, of as many as there are.
TEST(TIdTable, LooksAtFewNumbersHoweverManyThereAre) {
  const auto hashOf = [](std::uint32_t id) { return id * 0x9E3779B97F4A7C15ULL; };
  for (const std::uint32_t count : {100u, 1000u, 10000u}) {
    TIdTable table;
    for (std::uint32_t id = 0; id < count; ++id) table.Insert(id, hashOf);
    std::size_t looked = 0;
    for (std::uint32_t id = 0; id < count; ++id)
      table.Find(hashOf(id), [&](std::uint32_t it) { return ++looked, it == id; });
    EXPECT_LT(looked, 4 * count);
  }
}

}  // namespace

// The order of the store, kept from one walk to the next: whatever came and went in between, a
// walk visits what an ordered map of the paths holds.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "support/Instances.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

// Many more than stand in one chunk of the order.
constexpr int kNames = 1200;

struct Model {
  Repository repository;
  ClassPtr cls = repository.Class("Thing");
  std::map<std::string, InstancePtr> expected;

  void Add(int number) {
    const std::string name = std::to_string(number);
    expected["Thing.Name=\"" + name + "\""] = repository.Instance(cls, {{"Name", TCIMValue(name)}});
  }
  void Delete(int number) {
    const auto found = expected.find("Thing.Name=\"" + std::to_string(number) + "\"");
    if (found == expected.end()) return;
    found->second->Delete({});
    expected.erase(found);
  }
  Names Expected() const {
    Names names;
    for (const auto& entry : expected) names.push_back(entry.first);
    return names;
  }
};

TEST(TInstanceStore, AWalkVisitsWhatIsStoredInOrderWhateverCameAndWent) {
  Model model;
  std::mt19937 random(20);
  for (int step = 0; step < 6000; ++step) {
    // Grows for the first half, shrinks for the second.
    if (random() % 10 < (step < 3000 ? 8u : 3u))
      model.Add(static_cast<int>(random() % kNames));
    else
      model.Delete(static_cast<int>(random() % kNames));
    if (step % 40 >= 3) continue;
    ASSERT_EQ(Stored(model.cls), model.Expected()) << step;
  }
  for (int number = 0; number < kNames; ++number) model.Delete(number);
  EXPECT_EQ(Stored(model.cls), Names());
}

TEST(TInstanceStore, AWalkVisitsWhatWasThereWhenItBegan) {
  Model model;
  std::mt19937 random(21);
  for (int number = 0; number < kNames; number += 2) model.Add(number);
  for (int walk = 0; walk < 6; ++walk) {
    const Names before = model.Expected();
    Names visited;
    model.cls->EnumerateInstances(
        [&](InstancePtr instance) {
          visited.push_back(PathOf(instance));
          const int number = static_cast<int>(random() % kNames);
          if (random() % 2 == 0)
            model.Add(number);
          else
            model.Delete(number);
          // A walk within the walk sees what is there now.
          const bool within = visited.size() % 200 == 0;
          EXPECT_TRUE(!within || Stored(model.cls) == model.Expected());
          return true;
        },
        false, {});
    ASSERT_EQ(visited, before);
    ASSERT_EQ(Stored(model.cls), model.Expected());
  }
}

// Few are put where they belong, many are ordered with all the rest; either also while a walk goes
// on over the order that was.
TEST(TInstanceStore, FewOrManyAddedSinceAWalkStandInOrder) {
  for (const int many : {3, 200}) {
    Model model;
    for (int number = 500; number < 600; ++number) model.Add(number);
    const auto before = model.Expected();
    Names walked;
    bool added = false;
    model.cls->EnumerateInstances(
        [&](InstancePtr instance) {
          walked.push_back(PathOf(instance));
          if (std::exchange(added, true)) return true;
          for (int number = 499 + many; number >= 500; --number) model.Add(number + 100);
          model.Add(1);
          EXPECT_EQ(Stored(model.cls), model.Expected());
          return true;
        },
        false, {});
    EXPECT_EQ(walked, before) << many;
    for (int number = 0; number < many; ++number) model.Add(9000 - number);
    EXPECT_EQ(Stored(model.cls), model.Expected()) << many;
  }
}

TEST(TInstanceStore, TwoPathsOfOneHashStandBesideEachOther) {
  // Among so many paths some have the same hash: the store uses 32 bits of the standard one.
  std::unordered_map<std::uint32_t, int> first;
  std::vector<std::pair<int, int>> pairs;
  for (int number = 0; pairs.size() < 3; ++number) {
    const std::string path = "Thing.Name=\"" + std::to_string(number) + "\"";
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(path));
    const auto [known, isNew] = first.emplace(hash, number);
    if (!isNew) pairs.emplace_back(known->second, number);
    ASSERT_LT(number, 3000000);
  }
  Model model;
  for (const auto& [one, other] : pairs) {
    model.Add(one);
    EXPECT_EQ(Stored(model.cls), model.Expected());
    model.Add(other);
    EXPECT_EQ(Stored(model.cls), model.Expected());
    for (const auto& [path, instance] : model.expected)
      EXPECT_EQ(model.repository.ns->GetInstance(TCIMReference::Parse(path, {}), {}), instance);
  }
  for (const auto& [one, other] : pairs) {
    model.Delete(one);
    EXPECT_EQ(Stored(model.cls), model.Expected());
    for (const auto& [path, instance] : model.expected)
      EXPECT_EQ(model.repository.ns->GetInstance(TCIMReference::Parse(path, {}), {}), instance);
  }
}

TEST(TInstanceStore, AnInstanceDeletedAfterAWalkIsFreed) {
  Model model;
  for (int number = 0; number < 10; ++number) model.Add(number);
  EXPECT_EQ(Stored(model.cls).size(), 10u);
  const boost::weak_ptr<ICIMInstance> watch = model.expected.begin()->second;
  model.Delete(0);
  EXPECT_TRUE(watch.expired());
}

}  // namespace

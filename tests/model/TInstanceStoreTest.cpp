// The order of the store, kept from one walk to the next: whatever came and went in between, a
// walk visits what an ordered map of the paths holds.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemClass.h"
#include "support/ForeignInstance.h"
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

TEST(TInstanceStore, SwapsAllThatItHas) {
  Repository repository;
  const auto thing = repository.Class("Thing")->AllocateInstance({});
  const auto foreign = boost::make_shared<ForeignInstance>(thing);
  TInstanceStore store;
  TInstanceStore other;
  store.Add("own", thing);
  store.Add("foreign", foreign);
  store.Swap(other);
  EXPECT_EQ(store.Size(), 0u);
  EXPECT_EQ(store.All()->Size(), 0u);
  EXPECT_EQ(store.Find("own"), nullptr);
  EXPECT_FALSE(store.Remove(*foreign));
  EXPECT_FALSE(store.Remove(*thing));
  EXPECT_EQ(other.Size(), 2u);
  EXPECT_EQ(other.Find("own"), thing);
  EXPECT_TRUE(other.Remove(*foreign));
  EXPECT_TRUE(other.Remove(*thing));
  EXPECT_EQ(other.Size(), 0u);
}

TEST(TInstanceStore, AnInstanceOfAHostsMakingIsFoundUnderThePathThatItWasStoredWithLast) {
  Repository repository;
  const auto thing = repository.Class("Thing")->AllocateInstance({});
  const auto foreign = boost::make_shared<ForeignInstance>(thing);
  TInstanceStore store;
  store.Add("1", foreign);
  store.Add("2", foreign);
  EXPECT_EQ(store.Size(), 1u);
  EXPECT_EQ(store.Find("1"), nullptr);
  EXPECT_EQ(store.Find("2"), foreign);
  EXPECT_TRUE(store.Remove(*foreign));
  EXPECT_FALSE(store.Remove(*foreign));
  EXPECT_EQ(store.Size(), 0u);
}

// In two stores it remembers its place in the first; when it has left that, it stays in the other.
TEST(TInstanceStore, AnInstanceInTwoStoresIsFoundInEach) {
  Repository repository;
  const auto thing = repository.Class("Thing")->AllocateInstance({});
  TInstanceStore first;
  TInstanceStore second;
  first.Add("1", thing);
  second.Add("2", thing);
  EXPECT_TRUE(first.Remove(*thing));
  EXPECT_EQ(second.Find("2"), thing);
  second.Add("3", thing);
  first.Add("4", thing);
  EXPECT_EQ(second.Find("2"), nullptr);
  EXPECT_EQ(second.Size(), 1u);
  EXPECT_TRUE(second.Remove(*thing));
  EXPECT_TRUE(first.Remove(*thing));
  EXPECT_EQ(first.Size() + second.Size(), 0u);
}

// The end of a host's instance stores the others again, while their class lets them go.
TEST(TInstanceStore, WhatIsStoredAgainWhileItsClassIsClearedIsFoundByItsLinks) {
  Repository repository;
  const auto node = repository.Class("Node");
  const auto link = repository.Association("Link", "From", node, "To", node);
  std::vector<InstancePtr> nodes;
  std::vector<InstancePtr> links;
  for (int i = 0; i < 12; ++i) {
    if (i == 6) {
      const auto behind = node->AllocateInstance({});
      behind->SetPropertyValue("Name", TCIMValue("host"), {});
      node->AddInstance(boost::make_shared<ForeignInstance>(behind,
                                                            [&] {
                                                              for (const auto& it : nodes)
                                                                node->AddInstance(it, {});
                                                            }),
                        {});
    }
    nodes.push_back(repository.Instance(node, {{"Name", TCIMValue(std::to_string(i))}}));
    links.push_back(repository.Link(link, "From", nodes.back(), "To", nodes.back()));
  }
  dynamic_cast<TInmemClass&>(*node).ClearInstances();
  EXPECT_EQ(Stored(node).size(), nodes.size());
  for (int time = 0; time < 3; ++time)
    for (std::size_t i = 0; i < nodes.size(); ++i)
      EXPECT_EQ(References(nodes[i]), Names{PathOf(links[i])}) << i;
  for (const auto& it : nodes) it->Delete({});
  EXPECT_EQ(Stored(node), Names());
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

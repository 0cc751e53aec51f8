// What the store of instances asks of memory, and what it does without it. On Windows each library
// has operators of its own, so that what one makes and another frees would be counted once.
#if !defined(_WIN32)

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "inmem/model/TIdTable.h"
#include "inmem/model/TInstanceList.h"
#include "inmem/model/TInstanceStore.h"
#include "support/FailingAllocations.h"
#include "support/Repository.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

constexpr std::size_t kNever = 1000000;

template <class F>
std::size_t AllocationsOf(F&& part) {
  const FailingAllocation none(kNever);
  part();
  return none.Count();
}

// Which of `count` steps ask for more memory than the others.
template <class Step>
std::vector<int> StepsThatAskForMore(int count, std::size_t others, Step&& step) {
  std::vector<int> more;
  for (int i = 1; i <= count; ++i)
    if (AllocationsOf([&] { step(i); }) > others) more.push_back(i);
  return more;
}

// A store, and instances to put into it.
struct Stock {
  explicit Stock(int count) {
    for (int i = 0; i < count; ++i) {
      paths.push_back(std::to_string(1000 + i));
      instances.push_back(thing->AllocateInstance({}));
    }
  }
  void Add(int i) {
    const auto at = static_cast<std::size_t>(i);
    store.Add(paths[at], instances[at]);
  }
  bool Remove(int i) { return store.Remove(*instances[static_cast<std::size_t>(i)]); }

  Repository repository;
  ClassPtr thing = repository.Class("Thing");
  Names paths;
  std::vector<InstancePtr> instances;
  TInstanceStore store;
};

Names PathsIn(const TInstanceStore& store) {
  Names paths;
  store.ForEachEntry([&](const auto& entry) { paths.emplace_back(TInstanceStore::PathOf(entry)); });
  return paths;
}

std::vector<const ICIMInstance*> In(const TInstanceList& list) {
  std::vector<const ICIMInstance*> instances;
  list.ForEachItem([&](const auto& item) { instances.push_back(item.instance.get()); });
  return instances;
}

TEST(StoreMemory, ATableOfNumbersGrowsWhenItIsThreeQuartersFull) {
  const auto hashOf = [](std::uint32_t id) { return std::uint64_t{id}; };
  TIdTable table;
  EXPECT_EQ(StepsThatAskForMore(
                100, 0, [&](int i) { table.Insert(static_cast<std::uint32_t>(i), hashOf); }),
            (std::vector<int>{1, 13, 25, 49, 97}));
}

TEST(StoreMemory, ATableOfNumbersGrowsByThoseThatAreThere) {
  const auto hashOf = [](std::uint32_t id) { return std::uint64_t{id}; };
  TIdTable table;
  EXPECT_EQ(AllocationsOf([&] {
              for (std::uint32_t round = 0; round < 1000; ++round) {
                table.Insert(round, hashOf);
                table.Erase(round, hashOf);
              }
            }),
            1u);
}

TEST(StoreMemory, AStoreGrowsWhenItIsThreeQuartersFull) {
  Stock stock(60);
  EXPECT_EQ(StepsThatAskForMore(60, 1, [&](int i) { stock.Add(i - 1); }),
            (std::vector<int>{1, 7, 13, 25, 49}));
  // An entry and the table; there is nothing to put in order before a walk.
  Stock another(1);
  EXPECT_EQ(AllocationsOf([&] { another.Add(0); }), 2u);
}

TEST(StoreMemory, AStoreGrowsByThoseThatAreThere) {
  Stock stock(2);
  stock.Add(0);
  EXPECT_EQ(AllocationsOf([&] {
              for (int round = 0; round < 1000; ++round) {
                stock.Add(1);
                stock.Remove(1);
              }
            }),
            1000u);
  EXPECT_EQ(stock.store.Size(), 1u);
}

TEST(StoreMemory, WhatComesAfterAWalkAsksForMoreRoomSeldom) {
  Stock stock(300);
  for (const int walked : {0, 100}) {
    for (int i = 0; i < walked; ++i) stock.Add(i);
    stock.store.All();
    EXPECT_LE(
        StepsThatAskForMore(300 - walked, 1, [&](int i) { stock.Add(walked + i - 1); }).size(),
        14u);
    for (int i = 0; i < 300; ++i) stock.Remove(i);
  }
}

TEST(StoreMemory, AnAdditionThatHadNoMemoryChangesNothing) {
  Stock stock(60);
  stock.store.All();
  for (int i = 0; i < 60; ++i)
    for (std::size_t allowed = 0;; ++allowed) {
      bool failed = false;
      {
        const FailingAllocation failing(allowed);
        try {
          stock.Add(i);
        } catch (const std::bad_alloc&) {
          failed = true;
        }
      }
      EXPECT_EQ(stock.store.Size(), static_cast<std::size_t>(failed ? i : i + 1));
      if (!failed) break;
      EXPECT_EQ(stock.store.Find(stock.paths[static_cast<std::size_t>(i)]), nullptr);
    }
  EXPECT_EQ(PathsIn(stock.store), stock.paths);
}

// The list is only copied while a walk has it.
TEST(StoreMemory, AChangeAfterAWalkCopiesNothing) {
  Stock stock(12);
  for (int i = 0; i < 11; ++i) stock.Add(i);
  stock.store.All();
  stock.Add(11);
  EXPECT_EQ(AllocationsOf([&] { stock.store.All(); }), 0u);
  EXPECT_EQ(AllocationsOf([&] { stock.Remove(5); }), 0u);
  stock.paths.erase(stock.paths.begin() + 5);
  EXPECT_EQ(PathsIn(stock.store), stock.paths);
}

TEST(StoreMemory, AWalkHasWhatItBeganWithWhateverComesAndGoes) {
  Stock stock(200);
  for (int i = 0; i < 60; ++i) stock.Add(2 * i);
  const auto begun = stock.store.All();
  const auto before = In(*begun);
  const auto expect = [&](const auto& list) { EXPECT_EQ(In(*list), before); };
  stock.Add(3);
  const auto next = stock.store.All();
  expect(begun);
  EXPECT_EQ(next->Size(), 61u);
  stock.Remove(4);
  expect(begun);
  EXPECT_EQ(next->Size(), 61u);
  EXPECT_EQ(stock.store.All()->Size(), 60u);
  // So many that the order is made anew.
  for (int i = 120; i < 200; ++i) stock.Add(i);
  EXPECT_EQ(stock.store.All()->Size(), 140u);
  expect(begun);
  for (int i = 199; i >= 120; i -= 2) EXPECT_TRUE(stock.Remove(i));
  Names expected;
  for (int i = 0; i < 200; ++i)
    if ((i < 120 && i % 2 == 0 && i != 4) || i == 3 || (i >= 120 && i % 2 == 0))
      expected.push_back(stock.paths[static_cast<std::size_t>(i)]);
  EXPECT_EQ(PathsIn(stock.store), expected);
  expect(begun);
}

TEST(StoreMemory, WithoutMemoryToKeepAWalkApartTheNextOneMakesTheOrderAnew) {
  Stock stock(4);
  for (const int i : {0, 1, 2}) stock.Add(i);
  const auto begun = stock.store.All();
  const auto before = In(*begun);
  stock.Add(3);
  {
    const FailingAllocation failing(0);
    EXPECT_TRUE(stock.Remove(1));
    EXPECT_TRUE(failing.HasFailed());
  }
  stock.paths.erase(stock.paths.begin() + 1);
  for (int time = 0; time < 3; ++time) EXPECT_EQ(PathsIn(stock.store), stock.paths);
  EXPECT_EQ(In(*begun), before);
  EXPECT_TRUE(stock.Remove(3));
  EXPECT_EQ(stock.store.All()->Size(), 2u);
}

}  // namespace

#endif

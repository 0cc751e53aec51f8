#include "inmem/model/TInstanceList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "support/Repository.h"

namespace {

using namespace havtest;

constexpr std::size_t kChunk = 256;

constexpr auto kIsBefore = [](const void* a, const void* b) {
  return *static_cast<const int*>(a) < *static_cast<const int*>(b);
};

// Entries are numbers; what stands for the instances is one and the same.
struct Numbers {
  explicit Numbers(int count) : all(static_cast<std::size_t>(count)) {
    std::iota(all.begin(), all.end(), 0);
  }
  TInstanceList::TItem Item(int number) {
    return {&all[static_cast<std::size_t>(number)], instance};
  }
  void Insert(TInstanceList& list, int number) { list.Insert(Item(number), kIsBefore); }
  void Remove(TInstanceList& list, int number) {
    list.Remove(&all[static_cast<std::size_t>(number)], kIsBefore);
  }

  std::vector<int> all;
  Repository repository;
  InstancePtr instance = repository.Class("Thing")->AllocateInstance({});
};

std::vector<int> In(const TInstanceList& list) {
  std::vector<int> numbers;
  list.ForEachItem([&](const auto& item) { numbers.push_back(*static_cast<int*>(item.entry)); });
  return numbers;
}

TEST(TInstanceList, HasItsItemsInOrderAndTheirNumberWhereverTheyAreInserted) {
  Numbers numbers(2000);
  TInstanceList list;
  EXPECT_EQ(list.Size(), 0u);
  std::vector<int> expected;
  for (int number = 0; number < 2000; number += 2) {
    list.Append(numbers.Item(number));
    expected.push_back(number);
    ASSERT_EQ(list.Size(), expected.size());
  }
  EXPECT_EQ(In(list), expected);
  for (const int number : {999, 255, 257, 1, 1999, 511, 513, 509, 3}) {
    numbers.Insert(list, number);
    expected.insert(std::lower_bound(expected.begin(), expected.end(), number), number);
    ASSERT_EQ(In(list), expected);
    ASSERT_EQ(list.Size(), expected.size());
  }
  for (const int number : {0, 1999, 1000, 256, 512, 3}) {
    numbers.Remove(list, number);
    expected.erase(std::find(expected.begin(), expected.end(), number));
    ASSERT_EQ(In(list), expected);
    ASSERT_EQ(list.Size(), expected.size());
  }
}

TEST(TInstanceList, BeginsWithWhatIsInsertedWhenItIsEmpty) {
  Numbers numbers(2);
  TInstanceList list;
  for (int time = 0; time < 2; ++time) {
    numbers.Insert(list, 1);
    numbers.Insert(list, 0);
    EXPECT_EQ(In(list), (std::vector<int>{0, 1}));
    numbers.Remove(list, 0);
    numbers.Remove(list, 1);
    EXPECT_EQ(list.Size(), 0u);
    EXPECT_EQ(In(list), std::vector<int>());
  }
}

TEST(TInstanceList, AChangeToACopyCopiesTheChunkThatChangesAndNothingElse) {
  constexpr int kCount = 2000;
  Numbers numbers(kCount);
  TInstanceList list;
  for (int number = 0; number < kCount; ++number)
    if (number != 700) list.Append(numbers.Item(number));
  const std::vector<int> before = In(list);
  const long shared = numbers.instance.use_count();
  TInstanceList inserted = list;
  numbers.Insert(inserted, 700);
  EXPECT_LE(numbers.instance.use_count() - shared, static_cast<long>(kChunk) + 1);
  EXPECT_GT(numbers.instance.use_count(), shared);
  EXPECT_EQ(In(list), before);
  EXPECT_EQ(inserted.Size(), list.Size() + 1);
  const long now = numbers.instance.use_count();
  TInstanceList removed = list;
  numbers.Remove(removed, 900);
  EXPECT_LE(numbers.instance.use_count() - now, static_cast<long>(kChunk));
  TInstanceList appended = list;
  appended.Append(numbers.Item(kCount - 1));
  EXPECT_EQ(In(list), before);
}

// For a walk that has the memory of several of them on its way.
TEST(TInstanceList, TellsOfWhatComesSoonAndOfWhatComesVerySoon) {
  Numbers numbers(0);
  for (const int count : {0, 1, 4, 5, 8, 9, 20}) {
    std::vector<InstancePtr> instances;
    TInstanceList list;
    for (int i = 0; i < count; ++i) {
      instances.push_back(numbers.instance->GetClass({})->AllocateInstance({}));
      list.Append({nullptr, instances.back()});
    }
    const auto numberOf = [&](const ICIMInstance& instance) {
      int number = 0;
      while (instances[static_cast<std::size_t>(number)].get() != &instance) ++number;
      return std::to_string(number);
    };
    std::vector<std::string> events;
    list.ForEachFetched(
        [&](const ICIMInstance& instance, bool verySoon) {
          events.push_back((verySoon ? "very soon " : "soon ") + numberOf(instance));
        },
        [&](const InstancePtr& instance) { events.push_back("now " + numberOf(*instance)); });
    std::vector<std::string> expected;
    for (int i = 0; i < count; ++i) {
      if (i + 8 < count) expected.push_back("soon " + std::to_string(i + 8));
      if (i + 4 < count) expected.push_back("very soon " + std::to_string(i + 4));
      expected.push_back("now " + std::to_string(i));
    }
    EXPECT_EQ(events, expected);
  }
}

}  // namespace

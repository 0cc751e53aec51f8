#include "inmem/model/TDeclTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "support/Repository.h"

namespace {

using namespace havtest;

using Table = TDeclTable<ICIMPropertyDecl>;
using Expected = std::map<std::string, PropertyDeclPtr>;

Expected Contents(const Table& table) {
  Expected contents;
  std::string before;
  table.ForEach([&](const Table::TEntry& entry) {
    EXPECT_LT(before, entry.name);
    before = entry.name;
    contents.emplace(entry.name, entry.decl);
    return true;
  });
  EXPECT_EQ(table.Size(), contents.size());
  return contents;
}

struct TDeclTableOf : testing::Test {
  void Set(Table& table, const std::string& name, std::uint64_t declarer = 1) {
    table.Set(new Table::TEntry(name, Make(), declarer));
  }
  PropertyDeclPtr Make() { return cls->AllocatePropertyDecl("Any", TCIMValue(true), {}); }

  Repository repository;
  ClassPtr cls = repository.Allocate("Any");
};

TEST_F(TDeclTableOf, AnyChangesHoldsWhatAMapHolds) {
  std::mt19937 random(7);
  Table table;
  Expected expected;
  std::vector<std::pair<Table, Expected>> copies;
  for (int step = 0; step < 3000; ++step) {
    const std::string name = "n" + std::to_string(random() % 200);
    if (random() % 3 == 0) {
      table.Remove(name);
      expected.erase(name);
    } else {
      const PropertyDeclPtr decl = Make();
      table.Set(new Table::TEntry(name, decl, 1));
      expected[name] = decl;
    }
    const auto found = expected.find(name);
    EXPECT_EQ(table.Find(name), found == expected.end() ? nullptr : found->second);
    if (step % 300 == 0) copies.emplace_back(table, expected);
  }
  EXPECT_EQ(Contents(table), expected);
  for (const auto& [copy, then] : copies) EXPECT_EQ(Contents(copy), then);
}

TEST_F(TDeclTableOf, OnesOwnKnowsWhoDeclaredEach) {
  Table table;
  Set(table, "a", 1);
  Set(table, "b", 2);
  Set(table, "a", 3);
  std::vector<std::uint64_t> declarers;
  table.ForEach([&](const Table::TEntry& entry) {
    declarers.push_back(entry.declaredBy);
    return true;
  });
  EXPECT_EQ(declarers, (std::vector<std::uint64_t>{3, 2}));
}

TEST_F(TDeclTableOf, AnySizeIsWalkedUntilTheVisitorHasEnough) {
  Table table;
  for (int i = 0; i < 9; ++i) Set(table, std::to_string(i));
  std::string seen;
  EXPECT_FALSE(table.ForEach([&](const Table::TEntry& entry) {
    seen += entry.name;
    return entry.name != "4";
  }));
  EXPECT_EQ(seen, "01234");
}

TEST_F(TDeclTableOf, AnySizeSwapsWithAnother) {
  Table one;
  Table other;
  Set(one, "a");
  Set(one, "b");
  const Expected before = Contents(one);
  one.Swap(other);
  EXPECT_EQ(Contents(one), Expected());
  EXPECT_EQ(Contents(other), before);
}

// The fewest entries of a tree of a height, one of whose sides is at most one level lower.
std::size_t FewestOf(int height) {
  return height < 2 ? static_cast<std::size_t>(height)
                    : FewestOf(height - 1) + FewestOf(height - 2) + 1;
}

TEST_F(TDeclTableOf, NamesInAnyOrderHasSidesOfAboutOneHeight) {
  std::vector<std::string> names;
  for (char first = 'a'; first <= 'z'; ++first)
    for (char second = 'a'; second <= 'e'; ++second) names.push_back({first, second});
  const std::vector<std::string> ascending = names;
  const std::vector<std::string> descending(names.rbegin(), names.rend());
  std::shuffle(names.begin(), names.end(), std::mt19937(7));
  for (const auto& order : {ascending, descending, names}) {
    Table table;
    EXPECT_EQ(table.Height(), 0);
    for (const auto& name : order) {
      Set(table, name);
      ASSERT_LE(FewestOf(table.Height()), table.Size());
    }
    for (const auto& name : order) {
      table.Remove(name);
      ASSERT_LE(FewestOf(table.Height()), table.Size());
    }
  }
}

// In order, as the names of a schema come, and in a tree: neither goes down the stack.
TEST_F(TDeclTableOf, NamesInTheirOrderIsNoList) {
  Table table;
  const PropertyDeclPtr decl = Make();
  char name[8];
  for (int i = 0; i < 20000; ++i) {
    std::snprintf(name, sizeof(name), "n%05d", i);
    table.Set(new Table::TEntry(name, decl, 1));
  }
  EXPECT_LE(table.Height(), 20);
  for (int i = 0; i < 19990; ++i) {
    std::snprintf(name, sizeof(name), "n%05d", i);
    table.Remove(name);
  }
  EXPECT_EQ(table.Size(), 10u);
  EXPECT_LE(table.Height(), 5);
}

}  // namespace

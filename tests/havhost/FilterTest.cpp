// Conditions as long and as deep as a program may write them, on a small stack.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "havhost/THostError.h"
#include "havhost/report/TFilter.h"
#include "support/SmallStack.h"

namespace havtest {
namespace {

using havhost::TFilter;
using havhost::TInstanceReport;
using NORVHAV20::TCIMValue;

TInstanceReport Disk(std::uint32_t size) {
  TInstanceReport disk;
  havhost::TPropertyReport property;
  property.name = "Size";
  property.value = TCIMValue(size);
  disk.properties.push_back(std::move(property));
  return disk;
}

bool IsMet(const std::string& condition, std::uint32_t size) {
  bool isMet = false;
  OnSmallStack([&] { isMet = TFilter(condition).Matches(Disk(size)); });
  return isMet;
}

std::string Joined(const std::string& word, int from, int to) {
  std::string all;
  for (int i = from; i < to; ++i)
    all += (all.empty() ? "" : " " + word + " ") + ("Size = " + std::to_string(i));
  return all;
}

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

constexpr int kMany = 20000;

TEST(Filter, TermsAreAsManyAsAnybodyWrites) {
  const auto any = Joined("or", 0, kMany);
  EXPECT_TRUE(IsMet(any, kMany - 1));
  EXPECT_FALSE(IsMet(any, kMany));
  const auto none = "not (" + any + ")";
  EXPECT_FALSE(IsMet(none, 7));
  EXPECT_TRUE(IsMet(none, kMany));
  const auto all = Times(kMany, "Size > 2 and ") + "Size < 4";
  EXPECT_TRUE(IsMet(all, 3));
  EXPECT_FALSE(IsMet(all, 2));
  EXPECT_FALSE(IsMet(all, 4));
}

TEST(Filter, GroupsAreAsManyAsAnybodyWrites) {
  const auto groups = Times(kMany, "(Size = 1 or not Size = 2) and ") + "Size <> 3";
  EXPECT_TRUE(IsMet(groups, 1));
  EXPECT_FALSE(IsMet(groups, 2));
  EXPECT_FALSE(IsMet(groups, 3));
  EXPECT_TRUE(IsMet(groups, 4));
}

TEST(Filter, AndComesBeforeOr) {
  const std::string mixed = "Size = 1 or Size > 1 and Size < 3 or Size = 5";
  EXPECT_TRUE(IsMet(mixed, 1));
  EXPECT_TRUE(IsMet(mixed, 2));
  EXPECT_FALSE(IsMet(mixed, 3));
  EXPECT_TRUE(IsMet(mixed, 5));
}

TEST(Filter, ParenthesesAndNotNestAHundredDeep) {
  EXPECT_TRUE(IsMet(Times(100, "(") + "Size = 1" + Times(100, ")"), 1));
  EXPECT_TRUE(IsMet(Times(100, "not ") + "Size = 1", 1));
  EXPECT_FALSE(IsMet(Times(99, "not ") + "Size = 1", 1));
  EXPECT_TRUE(IsMet(Times(50, "not (") + "Size = 1" + Times(50, ")"), 1));
}

// The place is where it goes too deep, however much deeper it goes on.
TEST(Filter, WhatNestsDeeperIsRefusedWithPlaceAndLimit) {
  const std::string tooDeep = "--where: parentheses and 'not' nest deeper than 100 at character ";
  const auto error = [](const std::string& condition) {
    std::string text = "none";
    OnSmallStack([&] {
      try {
        const TFilter filter(condition);
      } catch (const havhost::TUsageError& failure) {
        text = failure.what();
      }
    });
    return text;
  };
  for (const int depth : {101, 1000000}) {
    const auto parentheses = Times(depth, "(") + "Size = 1" + Times(depth, ")");
    EXPECT_EQ(error(parentheses),
              tooDeep + "101 of '..." + Times(60, "(") + parentheses.substr(100, 60) + "...'");
    const auto negations = Times(depth, "not ") + "Size = 1";
    EXPECT_EQ(error(negations), tooDeep + "401 of '..." + Times(15, "not ") +
                                    negations.substr(400, 60) + (depth > 101 ? "...'" : "'"));
  }
  const auto behind = "Size = 1 and (" + Times(100, "not ") + "Size = 1)";
  EXPECT_EQ(error(behind), tooDeep + "411 of '..." + behind.substr(350) + "'");
}

TEST(Filter, OfALongConditionTheErrorShowsWhatIsAroundItsPlace) {
  const auto error = [](const std::string& condition) {
    try {
      const TFilter filter(condition);
    } catch (const havhost::TUsageError& failure) {
      return std::string(failure.what());
    }
    return std::string("none");
  };
  const auto terms = Times(1000, "Size = 1 or ");
  EXPECT_EQ(error(terms + "Size 1 or " + terms + "Size = 1"),
            "--where: a comparison, such as = or >, is expected at character 12006 of '...= 1 or " +
                Times(4, "Size = 1 or ") + "Size 1 or " + Times(4, "Size = 1 or ") + "Size = ...'");
  // Characters stay whole: the first of the 60 bytes before the place is the second of one.
  const auto accents = Times(100, "\xC3\xA9");
  EXPECT_EQ(error("Name = '" + accents + "'  1 " + accents),
            "--where: 'and', 'or' or the end is expected at character 112 of '..." +
                accents.substr(0, 56) + "'  1 " + accents.substr(0, 58) + "...'");
}

}  // namespace
}  // namespace havtest

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "mof/TMofText.h"

namespace {

using hav::mof::TMofOffset;
using hav::mof::TMofText;
using TOffsets = std::vector<TMofOffset>;

// Every way to end a line, and characters of two and of four bytes.
const std::string kText =
    "one\ntwo\r\nthr\xC3\xA4"
    "e\rfour\n\r\rsix\n\nseven\r\n\r\n\xF0\x9F\x98\x80 end";

// Not within a character or a pair that ends a line.
TOffsets Places() {
  TOffsets places;
  for (TMofOffset at = 1; at < kText.size(); ++at)
    if ((static_cast<unsigned char>(kText[at]) & 0xC0U) != 0x80U &&
        (kText[at] != '\n' || kText[at - 1] != '\r'))
      places.push_back(at);
  return places;
}

TEST(TMofText, PositionsCountLinesAndCharacters) {
  const TMofText text("a.mof", "\xEF\xBB\xBF" + kText);
  const auto placeOf = [&](const char* what) {
    return text.DescribePlace(static_cast<TMofOffset>(kText.find(what)));
  };
  EXPECT_EQ("a.mof:1:1", placeOf("one"));
  EXPECT_EQ("a.mof:2:1", placeOf("two"));
  EXPECT_EQ("a.mof:3:5", placeOf("e\rfour"));
  EXPECT_EQ("a.mof:4:1", placeOf("four"));
  EXPECT_EQ("a.mof:7:1", placeOf("six"));
  EXPECT_EQ("a.mof:9:1", placeOf("seven"));
  EXPECT_EQ("a.mof:11:3", placeOf("end"));
  EXPECT_EQ("a.mof:11:6", text.DescribePlace(static_cast<TMofOffset>(kText.size())));
}

TEST(TMofText, PositionsAreTheSameHoweverTheTextIsCut) {
  const TMofText whole("a.mof", kText);
  const auto places = Places();
  for (const auto first : places) {
    for (const auto second : places) {
      TMofText text("a.mof", kText);
      text.CutUp(first < second ? TOffsets{first, second} : TOffsets{first}, {});
      for (TMofOffset at = 0; at <= kText.size(); ++at)
        EXPECT_EQ(whole.DescribePlace(at), text.DescribePlace(at)) << first << ' ' << second;
    }
  }
}

TEST(TMofText, PiecesAreWhatStandsBetweenTheCuts) {
  TMofText text("a.mof", "one two three");
  text.CutUp({4, 8}, {});
  EXPECT_EQ("one ", text.PartAt(3).text);
  EXPECT_EQ("two ", text.PartAt(4).text);
  EXPECT_EQ(4u, text.PartAt(7).begin);
  EXPECT_EQ("three", text.PartAt(8).text);
  EXPECT_EQ("three", text.PartAt(13).text);  // the end
  EXPECT_EQ("one ", text.PartAt(0).text);
}

TEST(TMofText, APieceGoesWhenItWasLetGoAsOftenAsItWasHeld) {
  TMofText text("a.mof", "one two three");
  text.CutUp({4, 8}, {});
  text.Hold(4);
  text.Hold(6);
  text.LetGo(5);
  EXPECT_EQ("two ", text.PartAt(4).text);
  text.LetGo(7);
  EXPECT_EQ("", text.PartAt(4).text);
  EXPECT_EQ("one ", text.PartAt(0).text);
  EXPECT_EQ("three", text.PartAt(8).text);
}

TEST(TMofText, WhatWasNeverHeldStays) {
  TMofText text("a.mof", "one two");
  text.LetGo(0);
  EXPECT_EQ("one two", text.PartAt(0).text);
}

TEST(TMofText, PositionsOfMarksAndOfOtherPiecesStayKnownWithoutTheText) {
  const TMofText whole("a.mof", kText);
  const auto places = Places();
  for (const auto cut : places) {
    TMofText text("a.mof", kText);
    text.CutUp({cut}, places);
    text.Hold(0);
    text.LetGo(0);
    for (const auto place : places)
      EXPECT_EQ(whole.DescribePlace(place), text.DescribePlace(place));
    for (TMofOffset at = cut; at <= kText.size(); ++at)
      EXPECT_EQ(whole.DescribePlace(at), text.DescribePlace(at)) << cut;
  }
}

}  // namespace

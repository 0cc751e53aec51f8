// Texts that are cut into many pieces, each of which goes as soon as its instances are made.
#include <gtest/gtest.h>

#include <string>

#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

const std::string kClasses =
    "class Thing { [Key] string Name; uint32 Size; };\n"
    "[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; };\n";

std::string Thing(int i, const std::string& alias = "") {
  return "instance of Thing" + (alias.empty() ? "" : " as " + alias) + " { Name = \"thing " +
         std::to_string(i) + "\"; Size = " + std::to_string(i) + "; };\n";
}

std::string Link(int from, int to) {
  const auto path = [](int i) { return "\"Thing.Name=\\\"thing " + std::to_string(i) + "\\\"\""; };
  return "instance of Link { From = " + path(from) + "; To = " + path(to) + "; };\n";
}

// One a line.
std::string Things(int from, int to) {
  std::string text;
  for (int i = from; i < to; ++i) text += Thing(i);
  return text;
}

constexpr int kMany = 5000;  // four pieces

class LargeTexts : public testing::Test {
 protected:
  // Behind kQualifiers and kClasses, on the fourth line.
  void LoadText(const std::string& text) {
    m_loaded = havtest::LoadText(kClasses + text);
    if (m_loaded.ns) {
      m_loaded.ns->GetClass("Thing", {})->EnumerateInstances(Count(m_things), true, {});
      m_loaded.ns->GetClass("Link", {})->EnumerateInstances(Count(m_links), true, {});
    }
  }
  static boost::function<bool(boost::shared_ptr<NORVHAV20::ICIMInstance>)> Count(int& count) {
    return [&count](const auto&) { return ++count != 0; };
  }

  RecordingLogger m_logger;
  Loaded m_loaded;
  int m_things = 0;
  int m_links = 0;
};

TEST_F(LargeTexts, LoadWhole) {
  std::string text;
  for (int i = 0; i < kMany; ++i) text += Link(i, kMany - 1 - i) + Thing(i);
  LoadText(text);
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ(kMany, m_things);
  EXPECT_EQ(kMany, m_links);
}

TEST_F(LargeTexts, OfUtf16LoadWhole) {
  std::string text = "\xFF\xFE";
  for (const char c : kQualifiers + kClasses + Things(0, kMany)) (text += c) += '\0';
  const auto loaded = Load({{"a.mof", text}}, {"a.mof"});
  EXPECT_EQ(Lines{}, loaded.messages);
  EXPECT_EQ(static_cast<std::size_t>(kMany), loaded.report.instances);
}

TEST_F(LargeTexts, ClassesMayStandInTheMiddleAndAtTheEnd) {
  const auto loaded =
      Load({{"a.mof", kQualifiers + Things(0, kMany) + kClasses +
                          "class Box : Thing { string Place = \"here\"; };\n" +
                          Things(kMany, 2 * kMany) + "instance of Box { Name = \"box\"; };\n" +
                          "class Crate : Box { };\n"}},
           {"a.mof"});
  EXPECT_EQ(Lines{}, loaded.messages);
  EXPECT_EQ(4u, loaded.report.classes);
  EXPECT_EQ(2u * kMany + 1, loaded.report.instances);
}

TEST_F(LargeTexts, AliasesReachFromTheirEndToTheirBeginning) {
  LoadText("instance of Link { From = $first; To = $last; };\n" + Thing(0, "$first") +
           Things(1, kMany) + Thing(kMany, "$last") +
           "instance of Link { From = $last; To = $first; };\n");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ(kMany + 1, m_things);
  EXPECT_EQ(2, m_links);
}

TEST_F(LargeTexts, PlacesOfWhatIsGivenTwiceAreThoseOfTheFile) {
  LoadText(Things(0, kMany) + "  " + Thing(7) + Things(kMany, 2 * kMany) + Thing(8) + Link(1, 2) +
           Things(2 * kMany, 3 * kMany) + Link(1, 2));
  EXPECT_EQ(
      (Lines{"a.mof:5004:15: error: instance Thing.Name=\"thing 7\" is given twice, first at "
             "a.mof:11:13",
             "a.mof:10005:13: error: instance Thing.Name=\"thing 8\" is given twice, first at "
             "a.mof:12:13",
             "a.mof:15007:13: error: instance Link.From=\"Thing.Name=\\\"thing 1\\\"\",To="
             "\"Thing.Name=\\\"thing 2\\\"\" is given twice, first at a.mof:10006:13"}),
      m_loaded.messages);
}

TEST_F(LargeTexts, PlacesOfAliasesThatAreGivenTwiceAreThoseOfTheFile) {
  LoadText(Thing(0, "$a") + Things(1, kMany) + Thing(kMany, "$a"));
  EXPECT_EQ((Lines{"a.mof:5004:22: error: alias '$a' is given twice, first at a.mof:4:22"}),
            m_loaded.messages);
}

// The one that stands first waits, so that the other is stored before it.
TEST_F(LargeTexts, TheLaterOneIsTheOneThatIsGivenTwice) {
  LoadText("instance of Link { From = $a; To = $a; };\n" + Things(1, kMany) + Link(0, 0) +
           Things(kMany, 2 * kMany) + Thing(0, "$a"));
  EXPECT_EQ((Lines{"a.mof:5004:13: error: instance Link.From=\"Thing.Name=\\\"thing 0\\\"\",To="
                   "\"Thing.Name=\\\"thing 0\\\"\" is given twice, first at a.mof:4:13"}),
            m_loaded.messages);
}

TEST_F(LargeTexts, PlacesInFilesThatIncludeOthersAreThoseOfTheFile) {
  const auto loaded =
      Load({{"a.mof", kQualifiers + kClasses + Things(0, kMany) + "#pragma include (\"b.mof\")\n" +
                          Things(kMany, 2 * kMany) + Thing(3)},
            {"b.mof", Things(2 * kMany, 3 * kMany) + Thing(4) + Thing(2 * kMany)}},
           {"a.mof"});
  EXPECT_EQ(
      (Lines{"b.mof:5001:13: error: instance Thing.Name=\"thing 4\" is given twice, first at "
             "a.mof:8:13",
             "b.mof:5002:13: error: instance Thing.Name=\"thing 10000\" is given twice, first "
             "at b.mof:1:13",
             "a.mof:10005:13: error: instance Thing.Name=\"thing 3\" is given twice, first at "
             "a.mof:7:13"}),
      loaded.messages);
}

TEST_F(LargeTexts, WhatIsLeftOutHasItsPlace) {
  LoadText(Things(0, kMany) + Link(1, 99999) + Things(kMany, 2 * kMany));
  EXPECT_EQ((Lines{"a.mof:5004:58: warning: the instance is left out: property 'To' refers to "
                   "Thing.Name=\"thing 99999\", which is not there in the namespace"}),
            m_loaded.messages);
  EXPECT_EQ(2 * kMany, m_things);
  EXPECT_EQ(0, m_links);
}

TEST_F(LargeTexts, ErrorsOfValuesHaveTheirPlaces) {
  LoadText(Things(0, kMany) + "instance of Thing { Name = 1; };\n" + Things(kMany, 2 * kMany) +
           "instance of Thing { Size = 1; };\n");
  EXPECT_EQ((Lines{"a.mof:5004:28: error: expected a value of type string, found '1'",
                   "a.mof:10005:13: error: key property 'Name' of this instance of 'Thing' has no "
                   "value"}),
            m_loaded.messages);
}

}  // namespace
}  // namespace havtest

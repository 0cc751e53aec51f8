#include "inmem/values/ValueMap.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "inmem/values/DisplayText.h"
#include "inmem/values/IQualifierFinder.h"
#include "support/Status.h"
#include "tests/values/FakeDecl.h"

namespace havtest {
namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

FakeDecl Mapped(const Strings& patterns, const Strings& texts, ECIMType type = kCIMUInt64) {
  FakeDecl decl(type);
  decl.With("Values", Texts(texts)).With("ValueMap", Texts(patterns));
  return decl;
}

std::string Shown(FakeDecl decl, const TCIMValue& value) { return DisplayText(decl, value); }
std::string Shown(FakeDecl decl, std::uint64_t value) {
  return DisplayText(decl, TCIMValue(value));
}

// What the map of one pattern, or of a pattern behind others, makes of it: "low-high".
std::string EntryOf(const std::string& pattern, const Strings& before = {}) {
  Strings patterns = before;
  patterns.push_back(pattern);
  FakeDecl decl = Mapped(patterns, Strings(patterns.size(), "text"));
  TValueMap map;
  EXPECT_TRUE(BuildValueMap(decl, map));
  if (map.entries.empty()) return "none";
  return std::to_string(map.entries.back().low) + "-" + std::to_string(map.entries.back().high);
}

TEST(ValueMap, NumberNamesItself) {
  EXPECT_EQ("Other", Shown(Mapped({"1", "2"}, {"Other", "Unknown"}), 1));
  EXPECT_EQ("Unknown", Shown(Mapped({"1", "2"}, {"Other", "Unknown"}), 2));
}

TEST(ValueMap, ClosedRangeNamesBothItsEnds) {
  const auto decl = Mapped({"3..15"}, {"Reserved"});
  EXPECT_EQ("2", Shown(decl, 2));
  EXPECT_EQ("Reserved", Shown(decl, 3));
  EXPECT_EQ("Reserved", Shown(decl, 15));
  EXPECT_EQ("16", Shown(decl, 16));
}

TEST(ValueMap, OpenRangeEndsBeforeTheNextNumber) {
  const auto decl = Mapped({"16..", "100"}, {"Vendor", "Hundred"});
  EXPECT_EQ("15", Shown(decl, 15));
  EXPECT_EQ("Vendor", Shown(decl, 16));
  EXPECT_EQ("Vendor", Shown(decl, 99));
  EXPECT_EQ("Hundred", Shown(decl, 100));
  EXPECT_EQ("101", Shown(decl, 101));
}

TEST(ValueMap, OpenRangeEndsBeforeTheNextRange) {
  const auto decl = Mapped({"16..", "100..200"}, {"Vendor", "Hundreds"});
  EXPECT_EQ("Vendor", Shown(decl, 99));
  EXPECT_EQ("Hundreds", Shown(decl, 100));
}

TEST(ValueMap, LastOpenRangeHasNoEnd) {
  EXPECT_EQ("Vendor", Shown(Mapped({"16.."}, {"Vendor"}), kLargest));
}

TEST(ValueMap, OpenRangeIsNotEndedByARangeWithoutBeginning) {
  const auto decl = Mapped({"16..", "..20", "30"}, {"Vendor", "Twenty", "Thirty"});
  EXPECT_EQ("Vendor", Shown(decl, 17));
  EXPECT_EQ("Vendor", Shown(decl, 30));
  EXPECT_EQ("Vendor", Shown(decl, kLargest));
}

TEST(ValueMap, OpenRangeIsNotEndedByTheDefault) {
  const auto decl = Mapped({"16..", "..", "30"}, {"Vendor", "Default", "Thirty"});
  EXPECT_EQ("Vendor", Shown(decl, 29));
  EXPECT_EQ("Thirty", Shown(decl, 30));
}

TEST(ValueMap, OpenRangeBeforeZeroStaysOpen) {
  const auto decl = Mapped({"5..", "0"}, {"Open", "Zero"});
  EXPECT_EQ("Open", Shown(decl, kLargest));
  EXPECT_EQ("Zero", Shown(decl, 0));
}

TEST(ValueMap, RangeUpToTheLargestNumberCountsAsOpen) {
  const auto decl = Mapped({"5..18446744073709551615", "7"}, {"Range", "Seven"});
  EXPECT_EQ("Range", Shown(decl, 6));
  EXPECT_EQ("Seven", Shown(decl, 7));
  EXPECT_EQ("8", Shown(decl, 8));
}

TEST(ValueMap, RangeWithoutBeginningBeginsAtZero) {
  const auto decl = Mapped({"..5"}, {"Low"});
  EXPECT_EQ("Low", Shown(decl, 0));
  EXPECT_EQ("Low", Shown(decl, 5));
  EXPECT_EQ("6", Shown(decl, 6));
}

TEST(ValueMap, RangeWithoutBeginningBeginsAfterANumber) {
  EXPECT_EQ("11-20", EntryOf("..20", {"10"}));
}

TEST(ValueMap, RangeWithoutBeginningBeginsAfterARange) {
  EXPECT_EQ("16-20", EntryOf("..20", {"3..15"}));
  EXPECT_EQ("6-20", EntryOf("..20", {"..5"}));
}

TEST(ValueMap, RangeWithoutBeginningBeginsAfterTheBeginningOfAnOpenRange) {
  EXPECT_EQ("17-20", EntryOf("..20", {"16.."}));
}

TEST(ValueMap, DefaultDoesNotMoveWhereTheNextRangeBegins) {
  EXPECT_EQ("11-20", EntryOf("..20", {"10", ".."}));
}

TEST(ValueMap, DefaultNamesWhatNothingElseNames) {
  const auto decl = Mapped({"1", ".."}, {"One", "Reserved"});
  EXPECT_EQ("One", Shown(decl, 1));
  EXPECT_EQ("Reserved", Shown(decl, 0));
  EXPECT_EQ("Reserved", Shown(decl, kLargest));
}

TEST(ValueMap, LastDefaultCounts) {
  EXPECT_EQ("Second", Shown(Mapped({"..", ".."}, {"First", "Second"}), 7));
}

TEST(ValueMap, EmptyDefaultCountsAsNone) { EXPECT_EQ("7", Shown(Mapped({".."}, {""}), 7)); }

TEST(ValueMap, LaterEmptyDefaultHidesAnEarlierOne) {
  EXPECT_EQ("7", Shown(Mapped({"..", ".."}, {"First", ""}), 7));
}

TEST(ValueMap, NumberWithoutNameIsShownInDecimal) {
  auto decl = Mapped({"1"}, {"One"});
  decl.With("BASE", TCIMValue(std::uint8_t{16}));
  EXPECT_EQ("255", Shown(decl, 255));
}

TEST(ValueMap, EmptyTextOfAnEntryIsShown) { EXPECT_EQ("", Shown(Mapped({"1"}, {""}), 1)); }

TEST(ValueMap, FirstOfOverlappingEntriesCounts) {
  EXPECT_EQ("Wide", Shown(Mapped({"1..9", "5"}, {"Wide", "Five"}), 5));
  EXPECT_EQ("Five", Shown(Mapped({"5", "1..9"}, {"Five", "Wide"}), 5));
}

TEST(ValueMap, RangeThatEndsBeforeItBeginsNamesNothing) {
  EXPECT_EQ("6", Shown(Mapped({"9..5"}, {"Never"}), 6));
  EXPECT_EQ("6-7", EntryOf("..7", {"9..5"}));
}

TEST(ValueMap, WithoutPatternsTextsStandForTheirPlace) {
  FakeDecl decl(kCIMUInt16);
  decl.With("Values", Texts({"Zero", "One"}));
  EXPECT_EQ("Zero", Shown(decl, TCIMValue(std::uint16_t{0})));
  EXPECT_EQ("One", Shown(decl, TCIMValue(std::uint16_t{1})));
  EXPECT_EQ("2", Shown(decl, TCIMValue(std::uint16_t{2})));
}

TEST(ValueMap, NullPatternsCountAsNone) {
  FakeDecl decl(kCIMUInt16);
  decl.With("Values", Texts({"Zero", "One"})).With("ValueMap", Null(ArrayOf(kCIMString)));
  EXPECT_EQ("One", Shown(decl, TCIMValue(std::uint16_t{1})));
}

TEST(ValueMap, PatternsThatAreNoArrayOfStringsCountAsNone) {
  FakeDecl decl(kCIMUInt16);
  decl.With("Values", Texts({"Zero", "One"})).With("ValueMap", TCIMValue("5"));
  EXPECT_EQ("One", Shown(decl, TCIMValue(std::uint16_t{1})));
  decl.With("ValueMap", TCIMValue(kCIMUInt16, {std::uint16_t{5}, std::uint16_t{6}}));
  EXPECT_EQ("One", Shown(decl, TCIMValue(std::uint16_t{1})));
}

TEST(ValueMap, NeedsAsManyPatternsAsTexts) {
  EXPECT_EQ("1", Shown(Mapped({"1", "2"}, {"One"}), 1));
  EXPECT_EQ("1", Shown(Mapped({"1"}, {"One", "Two"}), 1));
  EXPECT_EQ("1", Shown(Mapped({}, {"One"}), 1));
}

TEST(ValueMap, EmptyMapNamesNothing) {
  EXPECT_EQ("1", Shown(Mapped({}, {}), 1));
  FakeDecl decl = Mapped({}, {});
  TValueMap map;
  EXPECT_TRUE(BuildValueMap(decl, map));
}

TEST(ValueMap, NeedsTexts) {
  FakeDecl decl(kCIMUInt64);
  decl.With("ValueMap", Texts({"1"}));
  TValueMap map;
  EXPECT_FALSE(BuildValueMap(decl, map));
  decl.With("Values", Null(ArrayOf(kCIMString)));
  EXPECT_FALSE(BuildValueMap(decl, map));
  decl.With("Values", TCIMValue("One"));
  EXPECT_FALSE(BuildValueMap(decl, map));
  decl.With("Values", TCIMValue(kCIMUInt8, {std::uint8_t{1}}));
  EXPECT_FALSE(BuildValueMap(decl, map));
}

TEST(ValueMap, PatternsAreNotLookedUpWithoutTexts) {
  FakeDecl decl(kCIMUInt64);
  TValueMap map;
  EXPECT_FALSE(BuildValueMap(decl, map));
  EXPECT_EQ(Strings{"Values"}, decl.Lookups());
}

TEST(ValueMap, NullTextIsEmpty) {
  FakeDecl decl(kCIMUInt64);
  decl.With("Values", TCIMValue(kCIMString, {Null(kCIMString), "One"}));
  EXPECT_EQ("", Shown(decl, 0));
  EXPECT_EQ("One", Shown(decl, 1));
}

TEST(ValueMap, NullPatternReadsAsZero) {
  FakeDecl decl(kCIMUInt64);
  decl.With("Values", Texts({"Null"}));
  decl.With("ValueMap", TCIMValue(kCIMString, {Null(kCIMString)}));
  EXPECT_EQ("Null", Shown(decl, 0));
  EXPECT_EQ("1", Shown(decl, 1));
}

TEST(ValueMap, NullDefaultCountsAsNone) {
  FakeDecl decl(kCIMUInt64);
  decl.With("Values", TCIMValue(kCIMString, {Null(kCIMString)})).With("ValueMap", Texts({".."}));
  EXPECT_EQ("7", Shown(decl, 7));
}

TEST(ValueMap, EveryTypeThatHasNamesIsLookedUpByItsNumber) {
  const Strings patterns{"0", "1", "255", "65535", "4294967295", "18446744073709551615"};
  const Strings texts{"0", "1", "8 bits", "16 bits", "32 bits", "64 bits"};
  EXPECT_EQ("1", Shown(Mapped(patterns, texts, kCIMBoolean), TCIMValue(true)));
  EXPECT_EQ("0", Shown(Mapped(patterns, texts, kCIMBoolean), TCIMValue(false)));
  EXPECT_EQ("8 bits", Shown(Mapped(patterns, texts, kCIMUInt8), TCIMValue(std::uint8_t{0xFF})));
  EXPECT_EQ("16 bits",
            Shown(Mapped(patterns, texts, kCIMUInt16), TCIMValue(std::uint16_t{0xFFFF})));
  EXPECT_EQ("32 bits",
            Shown(Mapped(patterns, texts, kCIMUInt32), TCIMValue(std::uint32_t{0xFFFFFFFF})));
  EXPECT_EQ("64 bits", Shown(Mapped(patterns, texts, kCIMUInt64), TCIMValue(kLargest)));
}

TEST(ValueMap, BooleanWithoutNameIsShownAsSuch) {
  EXPECT_EQ("TRUE", Shown(Mapped({"0"}, {"Off"}, kCIMBoolean), TCIMValue(true)));
}

TEST(ValueMap, OtherTypesHaveNoNames) {
  const Strings one{"One"};
  EXPECT_EQ("1", Shown(Mapped({"1"}, one, kCIMSInt8), TCIMValue(std::int8_t{1})));
  EXPECT_EQ("1", Shown(Mapped({"1"}, one, kCIMSInt16), TCIMValue(std::int16_t{1})));
  EXPECT_EQ("1", Shown(Mapped({"1"}, one, kCIMSInt32), TCIMValue(std::int32_t{1})));
  EXPECT_EQ("1", Shown(Mapped({"1"}, one, kCIMSInt64), TCIMValue(std::int64_t{1})));
  EXPECT_EQ("1", Shown(Mapped({"1"}, one, kCIMString), TCIMValue("1")));
}

TEST(ValueMap, LookupRefusesEveryOtherType) {
  const TValueMap map;
  EXPECT_STATUS(1, LookupValueMap(TCIMValue(std::int32_t{1}), map));
  EXPECT_STATUS(1, LookupValueMap(TCIMValue("1"), map));
  EXPECT_STATUS(1, LookupValueMap(TCIMValue(), map));
  EXPECT_STATUS(1, LookupValueMap(TCIMValue(kCIMUInt8, {}), map));
}

TEST(ValueMap, LookupRefusesNull) {
  EXPECT_STATUS(14, LookupValueMap(Null(kCIMUInt8), TValueMap()));
  EXPECT_STATUS(14, LookupValueMap(Null(kCIMBoolean), TValueMap()));
}

TEST(ValueMap, ValueOfATypeThatTheDeclarationNoLongerHasIsRefused) {
  EXPECT_STATUS(1, Shown(Mapped({"1"}, {"One"}, kCIMUInt32), TCIMValue("1")));
}

TEST(ValueMap, KeepsItsTextsWhenTheQualifierGoes) {
  FakeDecl decl = Mapped({"1"}, {"a text that is too long to stand in a short string"});
  TValueMap map;
  ASSERT_TRUE(BuildValueMap(decl, map));
  decl.Without("Values");
  EXPECT_EQ("a text that is too long to stand in a short string",
            LookupValueMap(TCIMValue(std::uint8_t{1}), map));
}

// A declaration that keeps the value map that was read last, as those of the plug-in do.
class TKeepingDecl : public FakeDecl, public IQualifierFinder {
 public:
  explicit TKeepingDecl(const FakeDecl& decl) : FakeDecl(decl) {}

  boost::shared_ptr<ICIMQualifier> FindOrNull(const std::string& name) const override {
    try {
      return const_cast<TKeepingDecl*>(this)->GetQualifier(name, {});
    } catch (const THAVException&) {
      return {};
    }
  }
  boost::shared_ptr<const TKnownValueMap>* KnownValueMap() const noexcept override {
    return &m_known;
  }

 private:
  mutable boost::shared_ptr<const TKnownValueMap> m_known;
};

TEST(ValueMap, IsKeptAndIndexedWhereItCanBeKept) {
  TKeepingDecl decl(Mapped({"1", "3..5"}, {"One", "Some"}));
  const auto map = FindValueMap(decl);
  ASSERT_TRUE(map);
  EXPECT_EQ(FindValueMap(decl), map);
  EXPECT_FALSE(map->steps.empty());
  EXPECT_EQ("Some", LookupValueMap(TCIMValue(std::uint8_t{4}), *map));
}

TEST(ValueMap, IsNeitherKeptNorIndexedWhereItCannotBeKept) {
  FakeDecl decl = Mapped({"1", "3..5"}, {"One", "Some"});
  const auto map = FindValueMap(decl);
  ASSERT_TRUE(map);
  EXPECT_TRUE(map->steps.empty());
  EXPECT_NE(FindValueMap(decl), map);
}

TEST(ValueMap, IsReadAnewWhenOneOfItsQualifiersChanges) {
  TKeepingDecl decl(Mapped({"1", "2"}, {"One", "Two"}));
  const auto map = FindValueMap(decl);
  decl.With("Values", Texts({"Eins", "Zwei"}));
  EXPECT_EQ("Eins", LookupValueMap(TCIMValue(std::uint8_t{1}), *FindValueMap(decl)));
  decl.With("ValueMap", Texts({"2", "1"}));
  EXPECT_EQ("Zwei", LookupValueMap(TCIMValue(std::uint8_t{1}), *FindValueMap(decl)));
  decl.Without("ValueMap");
  EXPECT_EQ("Eins", LookupValueMap(TCIMValue(std::uint8_t{0}), *FindValueMap(decl)));
  decl.With("ValueMap", Texts({"1"}));
  EXPECT_FALSE(FindValueMap(decl));
  EXPECT_FALSE(FindValueMap(decl));
  decl.Without("Values");
  EXPECT_FALSE(FindValueMap(decl));
  EXPECT_EQ("One", LookupValueMap(TCIMValue(std::uint8_t{1}), *map));
}

// The steps of an index: "number: text", or "number" where no entry counts.
Strings Steps(const Strings& patterns) {
  FakeDecl decl = Mapped(patterns, patterns);
  TValueMap map;
  EXPECT_TRUE(BuildValueMap(decl, map));
  IndexValueMap(map);
  Strings steps;
  for (const auto& [low, entry] : map.steps)
    steps.push_back(std::to_string(low) +
                    (entry ? ": " + static_cast<std::string>(*entry->text) : ""));
  return steps;
}

TEST(ValueMap, AnIndexHasAStepWhereAnotherEntryMayCount) {
  EXPECT_EQ((Strings{"0"}), Steps({}));
  EXPECT_EQ((Strings{"0: 0", "1"}), Steps({"0"}));
  EXPECT_EQ((Strings{"0", "1: 1", "2"}), Steps({"1"}));
  EXPECT_EQ((Strings{"0", "1: 1", "2: 2..5", "6"}), Steps({"1", "2..5"}));
  EXPECT_EQ((Strings{"0", "1: 1..3", "3: 1..3", "4"}), Steps({"1..3", "3"}));
  EXPECT_EQ((Strings{"0", "3: 3", "4: 4..9", "5: 5", "6: 4..9", "10"}),
            Steps({"5", "3", "4..9", "3"}));
  EXPECT_EQ((Strings{"0", "7: 7.."}), Steps({"7.."}));
  EXPECT_EQ((Strings{"0"}), Steps({"9..5", ".."}));
}

TEST(ValueMap, AnIndexedMapNamesWhatTheMapNames) {
  FakeDecl decl = Mapped({"5", "1..9", "3..", "..", "..20", "18446744073709551615", "0"},
                         {"a", "b", "c", "d", "e", "f", "g"});
  TValueMap plain;
  TValueMap indexed;
  ASSERT_TRUE(BuildValueMap(decl, plain));
  ASSERT_TRUE(BuildValueMap(decl, indexed));
  IndexValueMap(indexed);
  for (std::uint64_t number = 0; number < 30; ++number)
    for (const TCIMValue& value : {TCIMValue(number), TCIMValue(kLargest - number)})
      EXPECT_EQ(LookupValueMap(value, indexed), LookupValueMap(value, plain)) << number;
}

// How patterns read.

TEST(ValueMapPattern, LeadingZeroXIsHexadecimal) {
  EXPECT_EQ("255-255", EntryOf("0xFF"));
  EXPECT_EQ("255-255", EntryOf("0Xff"));
  EXPECT_EQ("16-31", EntryOf("0x10..0x1f"));
}

TEST(ValueMapPattern, LeadingZeroIsOctal) {
  EXPECT_EQ("8-8", EntryOf("010"));
  EXPECT_EQ("8-15", EntryOf("010..017"));
  EXPECT_EQ("0-0", EntryOf("0"));
}

TEST(ValueMapPattern, OctalNumberEndsBeforeADigitThatItDoesNotHave) {
  EXPECT_EQ("0-0", EntryOf("08"));
  EXPECT_EQ("1-1", EntryOf("019"));
  EXPECT_EQ("0-0", EntryOf("00x5"));
}

TEST(ValueMapPattern, NegativeNumberWraps) {
  EXPECT_EQ("18446744073709551615-18446744073709551615", EntryOf("-1"));
  EXPECT_EQ("18446744073709551611-18446744073709551611", EntryOf("-5"));
  EXPECT_EQ("18446744073709551600-18446744073709551600", EntryOf("-0x10"));
  EXPECT_EQ("1-1", EntryOf("-18446744073709551615"));
}

TEST(ValueMapPattern, PlusSignIsRead) { EXPECT_EQ("5-7", EntryOf("+5..+7")); }

TEST(ValueMapPattern, TooLargeANumberReadsAsTheLargest) {
  EXPECT_EQ("18446744073709551615-18446744073709551615", EntryOf("18446744073709551616"));
  EXPECT_EQ("18446744073709551615-18446744073709551615", EntryOf("-18446744073709551616"));
  EXPECT_EQ("18446744073709551615-18446744073709551615", EntryOf("0x10000000000000000..5"));
  EXPECT_EQ("5-18446744073709551615", EntryOf("5..99999999999999999999"));
}

TEST(ValueMapPattern, WhatIsNoNumberReadsAsZero) {
  EXPECT_EQ("0-0", EntryOf(""));
  EXPECT_EQ("0-0", EntryOf("x"));
  EXPECT_EQ("0-0", EntryOf("-"));
  EXPECT_EQ("0-0", EntryOf("- 5"));
  EXPECT_EQ("0-0", EntryOf("0x"));
  EXPECT_EQ("0-0", EntryOf("0xg"));
  EXPECT_EQ("0-0", EntryOf("x..5"));
}

TEST(ValueMapPattern, WhatIsNoNumberAfterTheDotsReadsAsZero) {
  EXPECT_EQ("3-0", EntryOf("3..x"));
  EXPECT_EQ("3-0", EntryOf("3...5"));
  EXPECT_EQ("0-0", EntryOf("..x"));
  EXPECT_EQ("11-0", EntryOf("..x", {"10"}));
  EXPECT_EQ("11-0", EntryOf(".. ", {"10"}));
  EXPECT_EQ("1-9", EntryOf("..9", {"10", "..x"}));
}

TEST(ValueMapPattern, OneDotIsNoRange) {
  EXPECT_EQ("3-3", EntryOf("3."));
  EXPECT_EQ("3-3", EntryOf("3.5"));
  EXPECT_EQ("0-0", EntryOf("."));
  EXPECT_EQ("0-0", EntryOf(".5"));
}

TEST(ValueMapPattern, WhatFollowsIsIgnored) {
  EXPECT_EQ("3-3", EntryOf("3abc"));
  EXPECT_EQ("3-3", EntryOf("3-5"));
  EXPECT_EQ("3-15", EntryOf("3..15xyz"));
  EXPECT_EQ("0-5", EntryOf("..5..7"));
}

TEST(ValueMapPattern, BlanksAreSkipped) {
  EXPECT_EQ("3-5", EntryOf(" 3 .. 5 "));
  EXPECT_EQ("3-5", EntryOf("\t3. .\n5"));
  EXPECT_EQ("0-5", EntryOf(".. 5"));
  EXPECT_EQ("3-18446744073709551615", EntryOf("3.. "));
}

TEST(ValueMapPattern, BlanksBeforeDotsMakeThemNoNumber) {
  EXPECT_EQ("0-0", EntryOf(" .."));
  EXPECT_EQ("0-0", EntryOf(" ..5"));
}

TEST(ValueMapPattern, UnreadablePatternAlsoEndsAnOpenRange) {
  const auto decl = Mapped({"5..", "x", "9"}, {"Open", "Junk", "Nine"});
  EXPECT_EQ("Open", Shown(decl, 9));
  EXPECT_EQ("Junk", Shown(decl, 0));
}

TEST(ValueMapPattern, NumbersAfterTheLargestBeginAtZeroAgain) {
  EXPECT_EQ("0-5", EntryOf("..5", {"18446744073709551615"}));
}

}  // namespace
}  // namespace havtest

#include "inmem/values/DisplayText.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "inmem/values/IQualifierFinder.h"
#include "support/Status.h"
#include "tests/values/FakeDecl.h"

namespace havtest {
namespace {

constexpr ECIMType kUInt8Array = ArrayOf(kCIMUInt8);

TCIMValue Bytes(const std::vector<std::uint8_t>& numbers) {
  return {kCIMUInt8, std::vector<TCIMValue>(numbers.begin(), numbers.end())};
}

FakeDecl Plain(ECIMType type) { return FakeDecl(type); }

FakeDecl Scaled(ECIMType type) {
  FakeDecl decl(type);
  decl.With("UNITS", TCIMValue("Bytes"))
      .With("DISPLAYFIXEDUNITS", Null(kCIMString))
      .With("ABBREVIATEUNITS", Null(kCIMBoolean));
  return decl;
}

FakeDecl Named(ECIMType type) {
  FakeDecl decl(type);
  decl.With("Values", Texts({"Zero", "One"})).With("ValueMap", Texts({"0", "1"}));
  return decl;
}

std::string Shown(FakeDecl decl, const TCIMValue& value) { return DisplayText(decl, value); }
Strings AllShown(FakeDecl decl, const TCIMValue& value) { return DisplayTexts(decl, value); }

// Plain numbers.

TEST(PlainNumber, IsDecimal) {
  EXPECT_EQ("255", Shown(Plain(kCIMUInt8), TCIMValue(std::uint8_t{255})));
  EXPECT_EQ("-255", Shown(Plain(kCIMSInt16), TCIMValue(std::int16_t{-255})));
}

TEST(PlainNumber, HasTheRadixOfBase) {
  auto decl = Plain(kCIMUInt32).With("BASE", TCIMValue(std::uint8_t{16}));
  EXPECT_EQ("deadbeef", Shown(decl, TCIMValue(std::uint32_t{0xDEADBEEF})));
  decl.With("BASE", TCIMValue(std::uint8_t{2}));
  EXPECT_EQ("101", Shown(decl, TCIMValue(std::uint32_t{5})));
  decl.With("BASE", TCIMValue(std::uint8_t{8}));
  EXPECT_EQ("17", Shown(decl, TCIMValue(std::uint32_t{15})));
}

TEST(PlainNumber, SignedHasTheRadixOfBase) {
  EXPECT_EQ("-ff", Shown(Plain(kCIMSInt32).With("BASE", TCIMValue(std::uint8_t{16})),
                         TCIMValue(std::int32_t{-255})));
}

TEST(PlainNumber, BaseThatIsNullIsIgnored) {
  EXPECT_EQ("255",
            Shown(Plain(kCIMUInt8).With("BASE", Null(kCIMUInt8)), TCIMValue(std::uint8_t{255})));
}

TEST(PlainNumber, BaseOfAnotherTypeIsIgnored) {
  auto decl = Plain(kCIMUInt8).With("BASE", TCIMValue(std::uint16_t{16}));
  EXPECT_EQ("255", Shown(decl, TCIMValue(std::uint8_t{255})));
  decl.With("BASE", TCIMValue("16"));
  EXPECT_EQ("255", Shown(decl, TCIMValue(std::uint8_t{255})));
  decl.With("BASE", Bytes({16}));
  EXPECT_EQ("255", Shown(decl, TCIMValue(std::uint8_t{255})));
}

TEST(PlainNumber, BaseThatIsNoRadixCountsAsTen) {
  EXPECT_EQ("255", Shown(Plain(kCIMUInt8).With("BASE", TCIMValue(std::uint8_t{0})),
                         TCIMValue(std::uint8_t{255})));
  EXPECT_EQ("255", Shown(Plain(kCIMUInt8).With("BASE", TCIMValue(std::uint8_t{37})),
                         TCIMValue(std::uint8_t{255})));
}

TEST(PlainNumber, ArrayAsAWholeHasTheRadixOfBase) {
  EXPECT_EQ("{a, ff}",
            Shown(Plain(kUInt8Array).With("BASE", TCIMValue(std::uint8_t{16})), Bytes({10, 255})));
}

TEST(PlainNumber, TextIsShownAsItIs) {
  EXPECT_EQ("a \"text\"", Shown(Plain(kCIMString), TCIMValue("a \"text\"")));
  EXPECT_EQ("", Shown(Plain(kCIMString), TCIMValue("")));
}

// NULL.

TEST(NullText, IsThatOfNullDisplay) {
  EXPECT_EQ(
      "Not Available",
      Shown(Plain(kCIMUInt32).With("NULLDISPLAY", TCIMValue("Not Available")), Null(kCIMUInt32)));
}

TEST(NullText, IsEmptyWhenNullDisplayIsNull) {
  EXPECT_EQ("", Shown(Plain(kCIMUInt32).With("NULLDISPLAY", Null(kCIMString)), Null(kCIMUInt32)));
}

TEST(NullText, IsEmptyWhenNullDisplayIsNoString) {
  EXPECT_EQ("", Shown(Plain(kCIMUInt32).With("NULLDISPLAY", TCIMValue(std::uint8_t{5})),
                      Null(kCIMUInt32)));
  EXPECT_EQ("", Shown(Plain(kCIMUInt32).With("NULLDISPLAY", Texts({"no"})), Null(kCIMUInt32)));
}

TEST(NullText, IsThePlainOneWithoutNullDisplay) {
  auto decl = Plain(kCIMUInt32);
  EXPECT_EQ("NULL", DisplayText(decl, Null(kCIMUInt32)));
  EXPECT_EQ((Strings{"NULLDISPLAY", "BASE"}), decl.Lookups());
}

TEST(NullText, IsNeverLookedUpInAValueMap) {
  auto decl = Named(kCIMUInt32).With("NULLDISPLAY", TCIMValue("nothing"));
  EXPECT_EQ("nothing", DisplayText(decl, Null(kCIMUInt32)));
  EXPECT_EQ(Strings{"NULLDISPLAY"}, decl.Lookups());
}

TEST(NullText, HasNoUnits) {
  EXPECT_EQ("nothing",
            Shown(Scaled(kCIMUInt64).With("NULLDISPLAY", TCIMValue("nothing")), Null(kCIMUInt64)));
}

TEST(NullText, IsTheSameForEveryType) {
  for (const ECIMType type : {kCIMNone, kCIMBoolean, kCIMString, kCIMDateTime, kUInt8Array})
    EXPECT_EQ("nothing", Shown(Plain(type).With("NULLDISPLAY", TCIMValue("nothing")), Null(type)));
}

// Which rule applies.

TEST(DisplayText, NamesComeBeforeUnits) {
  auto decl = Scaled(kCIMUInt64).With("Values", Texts({"Zero", "One"}));
  EXPECT_EQ("One", Shown(decl, TCIMValue(std::uint64_t{1})));
  EXPECT_EQ("2048", Shown(decl, TCIMValue(std::uint64_t{2048})));
}

TEST(DisplayText, UnitsApplyWithoutUsableNames) {
  auto decl = Scaled(kCIMUInt64).With("Values", Texts({"Zero", "One"}));
  decl.With("ValueMap", Texts({"0"}));
  EXPECT_EQ("2 Kilobytes", Shown(decl, TCIMValue(std::uint64_t{2048})));
}

TEST(DisplayText, ArrayAsAWholeHasNeitherNamesNorUnits) {
  auto decl = Scaled(kUInt8Array).With("Values", Texts({"Zero", "One"}));
  EXPECT_EQ("{0, 1}", DisplayText(decl, Bytes({0, 1})));
  EXPECT_EQ(Strings{"BASE"}, decl.Lookups());
}

TEST(DisplayText, TheTypeOfThePropertyDecidesAboutNames) {
  EXPECT_EQ("1", Shown(Named(kCIMSInt32), TCIMValue(std::uint32_t{1})));
}

TEST(DisplayText, QualifiersAreReadAnewEveryTime) {
  auto decl = Named(kCIMUInt8);
  EXPECT_EQ("One", DisplayText(decl, TCIMValue(std::uint8_t{1})));
  decl.With("Values", Texts({"Zero", "Uno"}));
  EXPECT_EQ("Uno", DisplayText(decl, TCIMValue(std::uint8_t{1})));
  decl.Without("Values");
  EXPECT_EQ("1", DisplayText(decl, TCIMValue(std::uint8_t{1})));
}

// Arrays, element by element.

TEST(DisplayTexts, NameEveryElement) {
  EXPECT_EQ((Strings{"One", "Zero", "7"}), AllShown(Named(kUInt8Array), Bytes({1, 0, 7})));
}

TEST(DisplayTexts, EveryArrayTypeThatHasNames) {
  EXPECT_EQ((Strings{"One", "Zero"}),
            AllShown(Named(ArrayOf(kCIMBoolean)), TCIMValue(kCIMBoolean, {true, false})));
  EXPECT_EQ(Strings{"One"}, AllShown(Named(kUInt8Array), Bytes({1})));
  EXPECT_EQ(Strings{"One"},
            AllShown(Named(ArrayOf(kCIMUInt16)), TCIMValue(kCIMUInt16, {std::uint16_t{1}})));
  EXPECT_EQ(Strings{"One"},
            AllShown(Named(ArrayOf(kCIMUInt32)), TCIMValue(kCIMUInt32, {std::uint32_t{1}})));
  EXPECT_EQ(Strings{"One"},
            AllShown(Named(ArrayOf(kCIMUInt64)), TCIMValue(kCIMUInt64, {std::uint64_t{1}})));
}

TEST(DisplayTexts, OtherArrayTypesHaveNoNames) {
  EXPECT_EQ(Strings{"1"},
            AllShown(Named(ArrayOf(kCIMSInt8)), TCIMValue(kCIMSInt8, {std::int8_t{1}})));
  EXPECT_EQ(Strings{"1"}, AllShown(Named(ArrayOf(kCIMString)), Texts({"1"})));
}

TEST(DisplayTexts, FormatEveryElementWithoutNames) {
  EXPECT_EQ((Strings{"1 Bytes", "200 Bytes"}), AllShown(Scaled(kUInt8Array), Bytes({1, 200})));
  EXPECT_EQ(
      (Strings{"a", "ff"}),
      AllShown(Plain(kUInt8Array).With("BASE", TCIMValue(std::uint8_t{16})), Bytes({10, 255})));
}

TEST(DisplayTexts, AnEmptyArrayHasNone) {
  EXPECT_EQ(Strings{}, AllShown(Named(kUInt8Array), Bytes({})));
  EXPECT_EQ(Strings{}, AllShown(Plain(kUInt8Array), Bytes({})));
}

TEST(DisplayTexts, NullElementHasTheNullText) {
  EXPECT_EQ((Strings{"5", "nothing"}),
            AllShown(Plain(kUInt8Array).With("NULLDISPLAY", TCIMValue("nothing")),
                     TCIMValue(kCIMUInt8, {std::uint8_t{5}, TCIMValue()})));
}

TEST(DisplayTexts, NullElementHasNoName) {
  EXPECT_STATUS(14, AllShown(Named(kUInt8Array).With("NULLDISPLAY", TCIMValue("nothing")),
                             TCIMValue(kCIMUInt8, {TCIMValue()})));
}

TEST(DisplayTexts, NullArrayIsTheNullTextAlone) {
  EXPECT_EQ(
      Strings{"nothing"},
      AllShown(Plain(kUInt8Array).With("NULLDISPLAY", TCIMValue("nothing")), Null(kUInt8Array)));
}

TEST(DisplayTexts, NullArrayWhoseNullTextIsNullIsEmpty) {
  EXPECT_EQ(Strings{},
            AllShown(Plain(kUInt8Array).With("NULLDISPLAY", Null(kCIMString)), Null(kUInt8Array)));
}

TEST(DisplayTexts, NullArrayWithoutNullTextIsNotFound) {
  EXPECT_STATUS(15, AllShown(Plain(kUInt8Array), Null(kUInt8Array)));
}

TEST(DisplayTexts, NullArrayIsNotLookedUpInAValueMap) {
  auto decl = Named(kUInt8Array).With("NULLDISPLAY", TCIMValue("nothing"));
  EXPECT_EQ(Strings{"nothing"}, DisplayTexts(decl, Null(kUInt8Array)));
  EXPECT_EQ(Strings{"NULLDISPLAY"}, decl.Lookups());
}

TEST(DisplayTexts, ScalarHasOneAndNoName) {
  EXPECT_EQ(Strings{"1"}, AllShown(Named(kCIMUInt8), TCIMValue(std::uint8_t{1})));
  EXPECT_EQ(Strings{"2 Kilobytes"}, AllShown(Scaled(kCIMUInt64), TCIMValue(std::uint64_t{2048})));
}

TEST(DisplayTexts, NullScalarHasTheNullText) {
  EXPECT_EQ(Strings{"nothing"},
            AllShown(Plain(kCIMUInt8).With("NULLDISPLAY", "nothing"), Null(kCIMUInt8)));
  EXPECT_EQ(Strings{""},
            AllShown(Plain(kCIMUInt8).With("NULLDISPLAY", Null(kCIMString)), Null(kCIMUInt8)));
  EXPECT_EQ(Strings{"NULL"}, AllShown(Plain(kCIMUInt8), Null(kCIMUInt8)));
}

TEST(DisplayTexts, FailureIsHiddenBehindTheNullText) {
  EXPECT_EQ(Strings{"nothing"},
            AllShown(Plain(kUInt8Array).Failing("BASE", 25).With("NULLDISPLAY", "nothing"),
                     Bytes({1, 2})));
  EXPECT_EQ(Strings{"nothing"},
            AllShown(Plain(kCIMUInt8).Failing("BASE", 25).With("NULLDISPLAY", "nothing"),
                     TCIMValue(std::uint8_t{1})));
}

TEST(DisplayTexts, FailureWithoutNullTextIsNotFound) {
  EXPECT_STATUS(15, AllShown(Plain(kCIMUInt8).Failing("BASE", 25), TCIMValue(std::uint8_t{1})));
}

TEST(DisplayTexts, FailureOfTheNullTextItselfIsThrown) {
  EXPECT_STATUS(31, AllShown(Plain(kCIMUInt8).Failing("BASE", 25).Failing("NULLDISPLAY", 31),
                             TCIMValue(std::uint8_t{1})));
}

TEST(DisplayTexts, NullTextOfAnotherTypeIsShownAsText) {
  EXPECT_EQ(Strings{"50"},
            AllShown(Plain(kUInt8Array).With("NULLDISPLAY", std::uint8_t{50}), Null(kUInt8Array)));
}

TEST(DisplayTexts, FailureKeepsTheTextsMadeBefore) {
  auto decl = Plain(ArrayOf(kCIMUInt64))
                  .With("UNITS", TCIMValue("Seconds"))
                  .With("DISPLAYCPUTIME", TCIMValue(true))
                  .With("NULLDISPLAY", Null(kCIMString));
  const TCIMValue numbers(kCIMUInt64, {std::uint64_t{1}, std::uint64_t{2},
                                       std::uint64_t{8640000000000}, std::uint64_t{3}});
  EXPECT_EQ((Strings{"00:00:01", "00:00:02"}), DisplayTexts(decl, numbers));
}

TEST(DisplayTexts, FailureOfAValueMapIsThrown) {
  EXPECT_STATUS(
      25, AllShown(Named(kUInt8Array).Failing("Values", 25).With("NULLDISPLAY", "x"), Bytes({1})));
  EXPECT_STATUS(25, AllShown(Named(kUInt8Array).Failing("ValueMap", 25).With("NULLDISPLAY", "x"),
                             Bytes({1})));
}

// The order of look-ups, and what their failures do. Each row: a property, a value, and the
// qualifiers that are asked for.

struct Row {
  const char* name;
  FakeDecl decl;
  TCIMValue value;
  Strings lookups;
};

std::vector<Row> Rows() {
  const TCIMValue number(std::uint64_t{5});
  auto duration = FakeDecl(kCIMUInt64)
                      .With("UNITS", TCIMValue("MilliSeconds"))
                      .With("DISPLAYCPUTIME", Null(kCIMBoolean));
  auto otherUnits = FakeDecl(kCIMUInt64).With("UNITS", TCIMValue("Hertz"));
  return {
      {"named", Named(kCIMUInt64), number, {"Values", "ValueMap"}},
      {"scaled",
       Scaled(kCIMUInt64),
       number,
       {"Values", "UNITS", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS"}},
      {"duration", duration, number, {"Values", "UNITS", "DISPLAYCPUTIME"}},
      {"no units", FakeDecl(kCIMUInt64), number, {"Values", "UNITS", "BASE"}},
      {"other units", otherUnits, number, {"Values", "UNITS", "BASE"}},
      {"not fixed",
       Scaled(kCIMUInt64).Without("DISPLAYFIXEDUNITS"),
       number,
       {"Values", "UNITS", "DISPLAYFIXEDUNITS", "BASE"}},
      {"not abbreviated",
       Scaled(kCIMUInt64).Without("ABBREVIATEUNITS"),
       number,
       {"Values", "UNITS", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS", "BASE"}},
      {"no processor time",
       duration.Without("DISPLAYCPUTIME"),
       number,
       {"Values", "UNITS", "DISPLAYCPUTIME", "BASE"}},
      {"boolean", FakeDecl(kCIMBoolean), TCIMValue(true), {"Values", "BASE"}},
      {"string", FakeDecl(kCIMString), TCIMValue("text"), {"BASE"}},
      {"NULL", FakeDecl(kCIMUInt64), Null(kCIMUInt64), {"NULLDISPLAY", "BASE"}},
      {"NULL with text",
       FakeDecl(kCIMUInt64).With("NULLDISPLAY", "nothing"),
       Null(kCIMUInt64),
       {"NULLDISPLAY"}},
  };
}

TEST(DisplayLookups, StandInThisOrder) {
  for (Row& row : Rows()) {
    DisplayText(row.decl, row.value);
    EXPECT_EQ(row.lookups, row.decl.Lookups()) << row.name;
  }
}

TEST(DisplayLookups, AnyOtherFailureIsThrownWhenItIsReached) {
  for (const Row& row : Rows()) {
    Strings reached;
    for (const std::string& name : row.lookups) {
      FakeDecl decl = row.decl;
      decl.Failing(name, 28);
      EXPECT_STATUS(28, DisplayText(decl, row.value)) << row.name << ", " << name;
      reached.push_back(name);
      EXPECT_EQ(reached, decl.Lookups()) << row.name << ", " << name;
    }
  }
}

TEST(DisplayLookups, AFailureThatIsNotReachedIsNotSeen) {
  auto decl = Named(kCIMUInt8).Failing("UNITS", 28).Failing("BASE", 28);
  EXPECT_EQ("7", DisplayText(decl, TCIMValue(std::uint8_t{7})));
}

TEST(DisplayLookups, TheQualifierOfADurationIsAskedForBeforeTheDurationIsMade) {
  auto decl = FakeDecl(kCIMUInt64).With("UNITS", TCIMValue("Seconds"));
  EXPECT_EQ("8640000000000", DisplayText(decl, TCIMValue(std::uint64_t{8640000000000})));
  EXPECT_EQ((Strings{"Values", "UNITS", "DISPLAYCPUTIME", "BASE"}), decl.Lookups());
}

// A declaration that finds qualifiers without an exception, and refuses to be asked otherwise.
class FindingDecl : public FakeDecl, public IQualifierFinder {
 public:
  using FakeDecl::FakeDecl;

  boost::shared_ptr<ICIMQualifier> FindOrNull(const std::string& name) const override {
    asked.push_back(name);
    if (name == "Values") return {};
    return boost::make_shared<FakeQualifier>(name, TCIMValue(std::uint8_t{16}));
  }

  mutable Strings asked;
};

TEST(DisplayLookups, ADeclarationThatCanSayThatAQualifierIsAbsentIsAskedInThatWay) {
  FindingDecl decl(kCIMBoolean);
  EXPECT_EQ("TRUE", DisplayText(decl, TCIMValue(true)));
  EXPECT_EQ((Strings{"Values", "BASE"}), decl.asked);
  EXPECT_EQ(Strings{}, decl.Lookups());
}

}  // namespace
}  // namespace havtest

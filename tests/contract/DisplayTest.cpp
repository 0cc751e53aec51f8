// Display text through the slot: value maps, radix, units, durations, NULL, arrays and
// previous values. One case for each rule; the tables are tested where the formatting is.
#include <memory>

#include <boost/make_shared.hpp>

#include "support/ForeignQualifier.h"
#include "support/Instances.h"

namespace havtest {
namespace {

TCIMValue Texts(const std::vector<std::string>& texts) {
  return TCIMValue(kCIMString, std::vector<TCIMValue>(texts.begin(), texts.end()));
}
TCIMValue Number(std::uint32_t number) { return TCIMValue(number); }

// What a property with these qualifiers is asked for its texts with.
struct Shown {
  Shown(const TCIMValue& value, const Qualifiers& qualifiers) {
    auto cls = repository.Allocate("Holder");
    repository.Property(cls, "P", TCIMValue::Null(value.GetType()), qualifiers);
    instance = cls->AllocateInstance({});
    slot = instance->GetProperty("P", {});
    slot->SetValue(value, {});
  }

  Repository repository;
  InstancePtr instance;
  PropertyPtr slot;
};

std::string Text(const TCIMValue& value, const Qualifiers& qualifiers = {}) {
  return Shown(value, qualifiers).slot->GetDisplayValue({});
}
std::vector<std::string> AllTexts(const TCIMValue& value, const Qualifiers& qualifiers = {}) {
  return Shown(value, qualifiers).slot->GetDisplayValues({});
}

// The four qualifiers that unit text needs; the last two may be NULL.
Qualifiers Units(const std::string& units, const TCIMValue& fixed = TCIMValue::Null(kCIMString),
                 const TCIMValue& abbreviate = TCIMValue::Null(kCIMBoolean)) {
  return {{"UNITS", TCIMValue(units)},
          {"DISPLAYFIXEDUNITS", fixed},
          {"ABBREVIATEUNITS", abbreviate},
          {"DISPLAYCPUTIME", TCIMValue::Null(kCIMBoolean)}};
}

const Qualifiers kStates{{"Values", Texts({"Unknown", "Good", "Poor", "Reserved"})},
                         {"ValueMap", Texts({"0", "1..4", "5..", ".."})}};

TEST(Display, WithoutQualifiersIsThePlainText) {
  EXPECT_EQ(Text(Number(255)), "255");
  EXPECT_EQ(Text(TCIMValue("as it is")), "as it is");
  EXPECT_EQ(Text(TCIMValue(true)), "TRUE");
  EXPECT_EQ(Text(TCIMValue(std::int32_t{-5})), "-5");
}

TEST(Display, ValuesAloneCountFromZero) {
  const Qualifiers qualifiers{{"Values", Texts({"Off", "On"})}};
  EXPECT_EQ(Text(TCIMValue(std::uint8_t{1}), qualifiers), "On");
  EXPECT_EQ(Text(TCIMValue(false), qualifiers), "Off");
  EXPECT_EQ(Text(TCIMValue(std::uint8_t{2}), qualifiers), "2");
}

TEST(Display, AValueMapNamesValuesAndRanges) {
  EXPECT_EQ(Text(Number(0), kStates), "Unknown");
  EXPECT_EQ(Text(Number(1), kStates), "Good");
  EXPECT_EQ(Text(Number(4), kStates), "Good");
  EXPECT_EQ(Text(TCIMValue(~std::uint64_t{0}), kStates), "Poor");
}

TEST(Display, AnOpenRangeEndsBeforeTheNextNumber) {
  const Qualifiers qualifiers{{"Values", Texts({"Low", "High", "Rest"})},
                              {"ValueMap", Texts({"1..", "10", ".."})}};
  EXPECT_EQ(Text(Number(9), qualifiers), "Low");
  EXPECT_EQ(Text(Number(10), qualifiers), "High");
  EXPECT_EQ(Text(Number(11), qualifiers), "Rest");
  EXPECT_EQ(Text(Number(0), qualifiers), "Rest");
}

TEST(Display, ARangeOpenToTheLeftStartsAfterTheOneBefore) {
  const Qualifiers qualifiers{{"Values", Texts({"Low", "High"})},
                              {"ValueMap", Texts({"5", "..9"})}};
  EXPECT_EQ(Text(Number(4), qualifiers), "4");
  EXPECT_EQ(Text(Number(5), qualifiers), "Low");
  EXPECT_EQ(Text(Number(6), qualifiers), "High");
  EXPECT_EQ(Text(Number(9), qualifiers), "High");
  EXPECT_EQ(Text(Number(10), qualifiers), "10");
}

TEST(Display, AValueMapReadsHexadecimalAndOctal) {
  const Qualifiers qualifiers{{"Values", Texts({"Hex", "Octal"})},
                              {"ValueMap", Texts({"0x10", "020..021"})}};
  EXPECT_EQ(Text(Number(16), qualifiers), "Hex");
  EXPECT_EQ(Text(Number(17), qualifiers), "Octal");
}

TEST(Display, AValueMapOfAnotherLengthIsNoValueMap) {
  const Qualifiers qualifiers{{"Values", Texts({"One", "Two"})}, {"ValueMap", Texts({"1"})}};
  EXPECT_EQ(Text(Number(1), qualifiers), "1");
}

TEST(Display, AValueMapFollowsItsQualifiers) {
  Shown shown(Number(2), kStates);
  const auto text = [&] { return shown.slot->GetDisplayValue({}); };
  auto decl = shown.slot->GetDecl({});
  const auto qualify = [&](const std::string& name, const TCIMValue& value) {
    shown.repository.Qualify(*decl, {{name, value}});
  };
  EXPECT_EQ(text(), "Good");
  EXPECT_EQ(text(), "Good");
  decl->GetQualifier("ValueMap", {})->SetValue(Texts({"0", "1", "2..", ".."}), {});
  EXPECT_EQ(text(), "Poor");
  decl->GetQualifier("Values", {})->SetValue(Texts({"a", "b", "c", "d"}), {});
  EXPECT_EQ(text(), "c");
  qualify("Values", Texts({"a", "b", "C", "d"}));
  EXPECT_EQ(text(), "C");
  qualify("ValueMap", Texts({"too few"}));
  EXPECT_EQ(text(), "2");
  EXPECT_EQ(text(), "2");
  qualify("ValueMap", TCIMValue::Null(ArrayOf(kCIMString)));
  EXPECT_EQ(text(), "C");
  qualify("ValueMap", Texts({"7", "2", "2..9", ".."}));
  EXPECT_EQ(text(), "b");
  shown.slot->SetValue(Number(10), {});
  EXPECT_EQ(text(), "d");
}

TEST(Display, AValueMapOfAHostsQualifierFollowsIt) {
  Shown shown(Number(1), kStates);
  auto decl = shown.slot->GetDecl({});
  EXPECT_EQ(shown.slot->GetDisplayValue({}), "Good");
  auto values =
      boost::make_shared<ForeignQualifier>(shown.repository.Declaration("Values"), Texts({"x"}));
  decl->AddQualifier(values, {});
  EXPECT_EQ(shown.slot->GetDisplayValue({}), "1");
  values->Become(Texts({"0", "one", "2", "3"}));
  EXPECT_EQ(shown.slot->GetDisplayValue({}), "one");
}

TEST(Display, ASignedValueHasNoValueMap) {
  EXPECT_EQ(Text(TCIMValue(std::int32_t{1}), kStates), "1");
}

TEST(Display, TheBaseIsTheRadix) {
  EXPECT_EQ(Text(Number(255), {{"BASE", TCIMValue(std::uint8_t{16})}}), "ff");
  EXPECT_EQ(Text(Number(5), {{"BASE", TCIMValue(std::uint8_t{2})}}), "101");
}

TEST(Display, ABaseThatIsNullOrNoUint8IsTen) {
  EXPECT_EQ(Text(Number(255), {{"BASE", TCIMValue::Null(kCIMUInt8)}}), "255");
  EXPECT_EQ(Text(Number(255), {{"BASE", TCIMValue(std::uint16_t{16})}}), "255");
}

TEST(Display, UnitsScaleAboveTheirFactor) {
  EXPECT_EQ(Text(Number(1024), Units("Bytes")), "1024 Bytes");
  EXPECT_EQ(Text(Number(1536), Units("Bytes")), "1.5 Kilobytes");
  EXPECT_EQ(Text(Number(1048576), Units("Bytes")), "1024 Kilobytes");
  EXPECT_EQ(Text(Number(2048), Units("KiloBytes")), "2 Megabytes");
}

TEST(Display, BitsPerSecondScaleByAThousandAndBitsByTwoToTheTen) {
  EXPECT_EQ(Text(Number(2000000), Units("Bits per Second")), "2 Megabits per second");
  EXPECT_EQ(Text(Number(2048), Units("Bits")), "2 Kilobits");
}

TEST(Display, FixedUnitsStopTheScaling) {
  const TCIMValue bytes(std::uint64_t{5} * 1024 * 1024 * 1024 * 1024);
  EXPECT_EQ(Text(bytes, Units("Bytes", TCIMValue("Mega"))), "5242880 Megabytes");
  EXPECT_EQ(Text(bytes, Units("Bytes")), "5 Terabytes");
}

TEST(Display, AbbreviatedUnits) {
  const TCIMValue yes(true);
  const TCIMValue none = TCIMValue::Null(kCIMString);
  EXPECT_EQ(Text(Number(1536), Units("Bytes", none, yes)), "1.5 KB");
  EXPECT_EQ(Text(Number(3145728), Units("Bytes per Second", none, yes)), "3 MB/s");
  EXPECT_EQ(Text(Number(100000000), Units("Bits per Second", none, yes)), "100 Mbps");
  EXPECT_EQ(Text(Number(2048), Units("Bits", none, yes)), "2 KBits");
}

TEST(Display, UnitsNeedAllTheirQualifiers) {
  for (const char* absent : {"UNITS", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS"}) {
    Qualifiers qualifiers;
    for (const auto& qualifier : Units("Bytes"))
      if (qualifier.first != absent) qualifiers.push_back(qualifier);
    EXPECT_EQ(Text(Number(1536), qualifiers), "1536") << absent;
  }
}

TEST(Display, UnknownUnitsAreThePlainNumber) {
  EXPECT_EQ(Text(Number(1536), Units("Hertz")), "1536");
}

TEST(Display, SecondsAreADuration) {
  TCIMDateTime interval;
  interval.Set(1, 1, 1, 1, 1000);
  EXPECT_EQ(Text(Number(90061001), Units("MilliSeconds")), interval.ToUIString());
  interval.Set(0, 0, 1, 30, 0);
  EXPECT_EQ(Text(Number(90), Units("Seconds")), interval.ToUIString());
}

TEST(Display, ADurationNeedsDisplayCpuTime) {
  EXPECT_EQ(Text(Number(90), {{"UNITS", TCIMValue("Seconds")}}), "90");
}

TEST(Display, ADurationTooLongIsThePlainNumberWithoutDisplayCpuTime) {
  const TCIMValue allOnes(~std::uint64_t{0});
  EXPECT_EQ(Text(allOnes, {{"UNITS", TCIMValue("Seconds")}}), "18446744073709551615");
  EXPECT_STATUS(14, Text(allOnes, Units("Seconds")));
}

TEST(Display, AQualifierMayChangeWhatIsShown) {
  Shown shown(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue(std::uint8_t{2})}), {});
  const auto base = boost::make_shared<ForeignQualifier>(
      shown.repository.Declaration("BASE", TCIMValue(std::uint8_t{})), TCIMValue(std::uint8_t{2}));
  base->whenAskedForValue = [&] { shown.slot->SetValue(TCIMValue(kCIMUInt8, {}), {}); };
  shown.slot->GetDecl({})->AddQualifier(base, {});
  EXPECT_EQ(shown.slot->GetDisplayValues({}), (std::vector<std::string>{"1", "10"}));
  EXPECT_EQ(shown.slot->GetDisplayValues({}), std::vector<std::string>{});
}

TEST(Display, AQualifierMayDropTheLastOwnerOfWhatIsShown) {
  auto shown = std::make_unique<Shown>(TCIMValue(std::string(100, 'x')), Qualifiers{});
  PropertyPtr slot = shown->slot;
  const auto base = boost::make_shared<ForeignQualifier>(
      shown->repository.Declaration("BASE", TCIMValue(std::uint8_t{})), TCIMValue(std::uint8_t{2}));
  slot->GetDecl({})->AddQualifier(base, {});
  ICIMProperty* const bare = slot.get();
  base->whenAskedForValue = [&] {
    shown.reset();
    slot.reset();
  };
  EXPECT_EQ(bare->GetDisplayValue({}), std::string(100, 'x'));
}

TEST(Display, NullHasItsOwnText) {
  const TCIMValue null = TCIMValue::Null(kCIMUInt32);
  EXPECT_EQ(Text(null, {{"NULLDISPLAY", TCIMValue("not known")}}), "not known");
  EXPECT_EQ(Text(null, {{"NULLDISPLAY", TCIMValue::Null(kCIMString)}}), "");
  EXPECT_EQ(Text(null, {{"NULLDISPLAY", TCIMValue(true)}}), "");
  EXPECT_EQ(Text(null), "NULL");
}

TEST(Display, OptionsChangeNothing) {
  Shown shown(Number(255), {});
  EXPECT_EQ(shown.slot->GetDisplayValue({{"BASE", TCIMValue(std::uint8_t{16})}}), "255");
}

TEST(Display, OfTheDefaultWhileNothingIsAssigned) {
  Repository repository;
  auto cls = repository.Allocate("Holder");
  repository.Property(cls, "P", Number(1), kStates);
  EXPECT_EQ(cls->AllocateInstance({})->GetProperty("P", {})->GetDisplayValue({}), "Good");
}

TEST(Display, OfThePreviousValue) {
  Shown shown(Number(1), kStates);
  EXPECT_EQ(shown.slot->GetPrevDisplayValue({}), "Good");
  shown.slot->SetPrevValue(Number(0), {});
  EXPECT_EQ(shown.slot->GetPrevDisplayValue({}), "Unknown");
  EXPECT_EQ(shown.slot->GetDisplayValue({}), "Good");
  shown.slot->ClearPrevValue({});
  EXPECT_EQ(shown.slot->GetPrevDisplayValue({}), "NULL");
}

TEST(Display, AnArrayHasOneTextForEachElement) {
  const TCIMValue numbers(kCIMUInt32, {Number(0), Number(3), Number(7)});
  EXPECT_EQ(AllTexts(numbers, kStates), (std::vector<std::string>{"Unknown", "Good", "Poor"}));
  EXPECT_EQ(AllTexts(numbers), (std::vector<std::string>{"0", "3", "7"}));
  EXPECT_EQ(AllTexts(TCIMValue(kCIMUInt32, {Number(1536)}), Units("Bytes")),
            (std::vector<std::string>{"1.5 Kilobytes"}));
  EXPECT_EQ(AllTexts(TCIMValue(kCIMUInt32, {})), std::vector<std::string>{});
}

TEST(Display, TheTextsOfAScalarAreOneWithoutTheValueMap) {
  EXPECT_EQ(AllTexts(Number(1), kStates), (std::vector<std::string>{"1"}));
}

TEST(Display, TheTextsOfANullArrayAreItsNullText) {
  const TCIMValue null = TCIMValue::Null(ArrayOf(kCIMUInt32));
  EXPECT_EQ(AllTexts(null, {{"NULLDISPLAY", TCIMValue("none")}}),
            (std::vector<std::string>{"none"}));
  EXPECT_EQ(AllTexts(null, {{"NULLDISPLAY", TCIMValue::Null(kCIMString)}}),
            std::vector<std::string>{});
}

TEST(Display, TheTextsOfANullArrayWithoutNullTextThrow15) {
  EXPECT_STATUS(15, AllTexts(TCIMValue::Null(ArrayOf(kCIMUInt32))));
}

TEST(Display, LogsNothing) {
  RecordingLogger log;
  Text(Number(1), kStates);
  Text(Number(1536), Units("Bytes"));
  Text(TCIMValue::Null(kCIMUInt32));
  EXPECT_EQ(log.Take(), LogLines{});
}

}  // namespace
}  // namespace havtest

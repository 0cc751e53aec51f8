#include "mof/TMofSchemaChecks.h"

#include <gtest/gtest.h>

#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

const std::string kMoreQualifiers =
    "Qualifier ValueMap : string[], Scope(property, method, parameter);"
    "Qualifier UNITS : string, Scope(property);"
    "Qualifier DISPLAYFIXEDUNITS : string, Scope(property);"
    "Qualifier ABBREVIATEUNITS : boolean, Scope(property);"
    "Qualifier DISPLAYCPUTIME : boolean, Scope(property);"
    "Qualifier BASE : uint8, Scope(property);"
    "Qualifier Exception : boolean, Scope(class);"
    "Qualifier EmbeddedInstance : string, Scope(property, method, parameter);";

// What a load that checks tells of the text, which begins on the second line.
Lines Checked(const std::string& text) {
  const RecordingLogger logger;
  TextSource source({{"a.mof", kMoreQualifiers + kQualifiers + text}});
  hav::mof::TMofLoader loader(*Provider(), source);
  loader.SetChecks(true);
  hav::mof::TMofReport report;
  loader.Load({"a.mof"}, report);
  return Messages(report);
}

// The same of one property, `declaration`, that stands on the second line behind "class T { ".
Lines OfProperty(const std::string& declaration) {
  return Checked("class T { " + declaration + "; [Key] string K; };");
}

TEST(TMofSchemaChecks, NothingIsSaidOfASchemaThatMeansWhatItSays) {
  EXPECT_EQ(Lines{}, Checked(R"(
    [Abstract] class Element { string Caption; };
    class Disk : Element {
      [Key] string Name;
      [Override("Caption")] string Caption;
      [Values{"Off", "On"}, ValueMap{"0", "1.."}] uint8 State;
      [UNITS("KiloBytes"), DISPLAYFIXEDUNITS("Giga"), ABBREVIATEUNITS] uint64 Size;
      [UNITS("Seconds"), DISPLAYCPUTIME] uint32 Age;
      [UNITS("MegaHertz")] uint32 Speed;
      [BASE(16)] uint32 Address;
    };
    [Association] class Link { [Key] Disk REF A; [Key] Disk REF B; };
  )"));
}

TEST(TMofSchemaChecks, ALoadThatDoesNotCheckSaysNothing) {
  EXPECT_EQ(Lines{}, LoadText("class T { };").messages);
}

TEST(TMofSchemaChecks, AClassWithoutKeysIsTold) {
  EXPECT_EQ(
      Lines{"a.mof:2:7: warning: class 'T' has no key, so its instances cannot be told apart"},
      Checked("class T { string p; };"));
}

TEST(TMofSchemaChecks, ClassesThatNeedNoKeyAreNot) {
  EXPECT_EQ(Lines{}, Checked("[Abstract] class T { };"));
  EXPECT_EQ(Lines{}, Checked("[Indication] class T { };"));
  EXPECT_EQ(Lines{}, Checked("[Exception] class T { };"));
  EXPECT_EQ(Lines{}, Checked("class K { [Key] string k; }; class T : K { };"));
}

TEST(TMofSchemaChecks, WhatIsEmbeddedNeedsNoKeyAndNeitherDoItsSubclasses) {
  EXPECT_EQ(Lines{}, Checked("class T { }; class U : T { };"
                             "class K { [Key] string k; [EmbeddedInstance(\"t\")] string p; };"));
  EXPECT_EQ(Lines{}, Checked("class T { }; class K { [Key] string k;"
                             "uint32 m([EmbeddedInstance(\"T\")] string p); };"));
}

TEST(TMofSchemaChecks, AnEmbeddedClassHasToBeThere) {
  EXPECT_EQ(Lines{"a.mof:2:29: warning: class 'Gone' is not declared"},
            OfProperty("[EmbeddedInstance(\"Gone\")] string p"));
}

TEST(TMofSchemaChecks, AnAssociationNeedsReferences) {
  EXPECT_EQ(Lines{"a.mof:2:21: warning: association 'T' has no reference, and associates nothing"},
            Checked("[Association] class T { [Key] string k; };"));
  EXPECT_EQ(Lines{}, Checked("[Association, Abstract] class T { };"));
}

TEST(TMofSchemaChecks, WhatReplacesAnInheritedPropertyWithoutOverrideIsTold) {
  EXPECT_EQ(Lines{"a.mof:2:57: warning: property 'p' takes the place of that of class 'A' without "
                  "Override, because of its Key, and changes its type from uint8 to string"},
            Checked("class A { [Key] uint8 p; }; class B : A { [Key] string  p; };"));
  EXPECT_EQ(Lines{"a.mof:2:69: warning: property 'PortType' takes the place of that of class 'A' "
                  "without Override, because of its name"},
            Checked("class A { [Key] uint8 k; uint8 PortType; }; class B : A { uint8     "
                    "PortType; };"));
}

TEST(TMofSchemaChecks, WhatIsLeftOutIsToldOnce) {
  EXPECT_EQ(Lines{"a.mof:2:59: warning: property 'p' is left out: class 'A' has it, and this one "
                  "does not override it"},
            Checked("class A { [Key] uint8 k; uint8 p; }; class B : A { string p; };"));
}

TEST(TMofSchemaChecks, AnOverrideNeedsSomethingToOverride) {
  EXPECT_EQ(Lines{"a.mof:2:12: warning: property 'p' overrides nothing: no superclass has it, and "
                  "it is declared as a new one"},
            OfProperty("[Override(\"p\")] string p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: method 'm' overrides nothing: no superclass has it, and "
                  "it is declared as a new one"},
            OfProperty("[Override] uint32 m()"));
}

TEST(TMofSchemaChecks, AnOverrideIsByTheNameOfTheProperty) {
  EXPECT_EQ(Lines{"a.mof:2:53: warning: property 'k' cannot override 'p': it overrides what has "
                  "its own name"},
            Checked("class A { [Key] uint8 k; }; class B : A { [Override(\"p\")] uint8 k; };"));
}

TEST(MofDisplayChecks, ValuesAndValueMapHaveOneSize) {
  EXPECT_EQ(
      Lines{"a.mof:2:12: warning: 'p': Values has 2 texts and ValueMap 1 pattern, so no value is "
            "shown by a name"},
      OfProperty("[Values{\"a\", \"b\"}, ValueMap{\"1\"}] uint8 p"));
  EXPECT_EQ(
      Lines{"a.mof:2:21: warning: 'p': Values has 1 text and ValueMap 2 patterns, so no value is "
            "shown by a name"},
      OfProperty("uint32 m([Values{\"a\"}, ValueMap{\"1\", \"2\"}] uint8 p)"));
}

// Of the one pattern, behind "[Values{"a"}, ValueMap{".
Lines OfPattern(const std::string& pattern, const std::string& type = "uint8") {
  return OfProperty("[Values{\"a\"}, ValueMap{\"" + pattern + "\"}] " + type + " p");
}

TEST(MofDisplayChecks, PatternsThatAreNumbersOrRangesAreRight) {
  for (const auto* const pattern :
       {"0", "255", "0xff", "07", "..", "..3", "3..", "3..4", "3 .. 5", " 7"})
    EXPECT_EQ(Lines{}, OfPattern(pattern)) << pattern;
}

TEST(MofDisplayChecks, PatternsThatAreNotAreTold) {
  for (const auto* const pattern : {"", "abc", "1-2", "..x", "1..x", "-1", "0x", "09", "1.5"})
    EXPECT_EQ(Lines{"a.mof:2:34: warning: 'p': pattern '" + std::string(pattern) +
                    "' is neither a number nor a range of numbers"},
              OfPattern(pattern));
}

TEST(MofDisplayChecks, PatternsThatDoNotMeanWhatTheyLookLike) {
  const std::string place = "a.mof:2:34: warning: 'p': pattern ";
  EXPECT_EQ(Lines{place + "'7..3' ends before it begins"}, OfPattern("7..3"));
  EXPECT_EQ(Lines{place + "'256' is more than uint8 holds"}, OfPattern("256"));
  EXPECT_EQ(Lines{place + "'2' is more than boolean holds"}, OfPattern("2", "boolean"));
  EXPECT_EQ(Lines{place + "'010' is read as octal, '010' as 8"}, OfPattern("010"));
}

TEST(MofDisplayChecks, PatternsOfTextsAreNotRead) {
  EXPECT_EQ(Lines{}, OfPattern("abc", "string"));
}

TEST(MofDisplayChecks, ValuesNameUnsignedNumbers) {
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': Values names numbers of unsigned types and booleans "
                  "only, and this is sint8"},
            OfProperty("[Values{\"a\"}] sint8 p"));
}

TEST(MofDisplayChecks, UnitsNeedTheQualifiersOfTheirDisplay) {
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': a number of 'MegaBytes' is shown without its unit, "
                  "because DISPLAYFIXEDUNITS and ABBREVIATEUNITS are missing"},
            OfProperty("[UNITS(\"MegaBytes\")] uint64 p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': a number of 'Bits per Second' is shown without its "
                  "unit, because ABBREVIATEUNITS is missing"},
            OfProperty("[UNITS(\"Bits per Second\"), DISPLAYFIXEDUNITS] uint64 p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': a number of 'MilliSeconds' is shown without its unit, "
                  "because DISPLAYCPUTIME is missing"},
            OfProperty("[UNITS(\"MilliSeconds\"), DISPLAYFIXEDUNITS, ABBREVIATEUNITS] uint64 p"));
}

TEST(MofDisplayChecks, InheritedQualifiersCount) {
  EXPECT_EQ(Lines{}, Checked("class A { [Key] string k; [UNITS(\"Bytes\"), DISPLAYFIXEDUNITS, "
                             "ABBREVIATEUNITS] uint64 p; };"
                             "class B : A { [Override(\"p\"), UNITS(\"KiloBytes\")] uint64 p; };"));
}

TEST(MofDisplayChecks, UnitsThatCannotBeShownAreToldWhereTheDisplayIsAskedFor) {
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': without UNITS there is no unit to show"},
            OfProperty("[DISPLAYFIXEDUNITS(\"Giga\")] uint64 p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': units are shown of unsigned integers only, and this "
                  "is sint64"},
            OfProperty("[UNITS(\"Bytes\"), DISPLAYFIXEDUNITS] sint64 p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': numbers of 'bytes' are shown as they are: units are "
                  "Bytes, Bits, each also per Second, and Seconds"},
            OfProperty("[UNITS(\"bytes\"), ABBREVIATEUNITS] uint64 p"));
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': durations in 'KiloSeconds' are shown as no time at "
                  "all"},
            OfProperty("[UNITS(\"KiloSeconds\"), DISPLAYCPUTIME] uint64 p"));
}

TEST(MofDisplayChecks, LimitsOfScalingHaveNames) {
  EXPECT_EQ(Lines{"a.mof:2:28: warning: 'p': DISPLAYFIXEDUNITS says 'GB', which is not Kilo, Mega, "
                  "Giga, Tera or Peta, and is taken as Peta"},
            OfProperty("[UNITS(\"Bytes\"), DISPLAYFIXEDUNITS(\"GB\"), ABBREVIATEUNITS] uint64 p"));
}

TEST(MofDisplayChecks, TheRadixIsOneThatNumbersHave) {
  EXPECT_EQ(Lines{"a.mof:2:12: warning: 'p': BASE is 1, not from 2 to 36, and counts as 10"},
            OfProperty("[BASE(1)] uint64 p"));
}

}  // namespace
}  // namespace havtest

#include "mof/TMofWriter.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/CompareNamespaces.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::TMofWriter;
using namespace NORVHAV20;

std::string Literal(const TCIMValue& value) {
  std::string text;
  TMofWriter(text).WriteValue(value);
  return text;
}

TEST(TMofWriter, Literals) {
  EXPECT_EQ("NULL", Literal(TCIMValue::Null(kCIMString)));
  EXPECT_EQ("NULL", Literal(TCIMValue::Null(ArrayOf(kCIMString))));
  EXPECT_EQ("TRUE", Literal(TCIMValue(true)));
  EXPECT_EQ("-128", Literal(TCIMValue(std::int8_t{-128})));
  EXPECT_EQ("18446744073709551615", Literal(TCIMValue(std::uint64_t{18446744073709551615u})));
  EXPECT_EQ("{1, NULL}", Literal(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue()})));
  EXPECT_EQ("{}", Literal(TCIMValue(kCIMUInt8, {})));
}

TEST(TMofWriter, StringsAndCharactersAreEscaped) {
  EXPECT_EQ(R"("a\"b\\c\n\t\r\f\b'")", Literal(TCIMValue("a\"b\\c\n\t\r\f\b'")));
  EXPECT_EQ(R"("\x00011\x007F")", Literal(TCIMValue(std::string("\x01"
                                                                "1\x7F"))));
  EXPECT_EQ(R"("\x0000")", Literal(TCIMValue(std::string(1, '\0'))));
  EXPECT_EQ("\"\xC3\xA9\"", Literal(TCIMValue("\xC3\xA9")));
  EXPECT_EQ("'x'", Literal(TCIMValue(u'x')));
  EXPECT_EQ(R"('\'')", Literal(TCIMValue(u'\'')));
  EXPECT_EQ("'\"'", Literal(TCIMValue(u'"')));
  EXPECT_EQ(R"('\x0000')", Literal(TCIMValue(u'\0')));
  EXPECT_EQ(R"('\xD800')", Literal(TCIMValue(static_cast<char16_t>(0xD800))));
}

TEST(TMofWriter, RealsHaveAPoint) {
  EXPECT_EQ("1.0", Literal(TCIMValue(1.0)));
  EXPECT_EQ("-0.5", Literal(TCIMValue(-0.5f)));
  EXPECT_EQ("1.0e+300", Literal(TCIMValue(1e300)));
  EXPECT_EQ("NULL", Literal(TCIMValue(std::numeric_limits<double>::infinity())));
  EXPECT_EQ("NULL", Literal(TCIMValue(std::nan(""))));
}

// Loads the text, writes it, and loads what was written.
std::string RoundTrip(const std::string& text) {
  RecordingLogger logger;
  const auto first = LoadText(text);
  EXPECT_EQ(Lines{}, first.messages);
  if (!first.ns) return {};
  const auto written = Written(*first.ns);
  const auto second = Load({{"written.mof", written}}, {"written.mof"});
  EXPECT_EQ(Lines{}, second.messages) << written;
  if (!second.ns) return {};
  EXPECT_EQ(Lines{}, Differences(*first.ns, *second.ns));
  return written.substr(written.find("class "));
}

// Of a qualifier that may be overridden, it would become the class's own.
TEST(TMofWriter, AssociationsAndIndicationsAlwaysSayWhatTheyAre) {
  const auto written = RoundTrip(
      "[Abstract, Association] class A {}; [Description(\"d\")] class B : A {};"
      "[Indication] class I {}; class J : I {};");
  EXPECT_NE(std::string::npos, written.find("[Association,\n Description (\"d\")]\nclass B : A"));
  EXPECT_NE(std::string::npos, written.find("[Indication]\nclass J : I"));
  RecordingLogger logger;
  const auto loaded = Load({{"a.mof",
                             "Qualifier Association : boolean, Scope(association);"
                             "[Association] class A {}; class B : A {};"}},
                           {"a.mof"});
  EXPECT_NE(std::string::npos, Written(*loaded.ns).find("\nclass B : A"));
  EXPECT_EQ(std::string::npos, Written(*loaded.ns).find("[Association]\nclass B : A"));
}

TEST(TMofWriter, AClassReadsAsItWasWritten) {
  EXPECT_EQ(
      R"(class A
{
  [Description ("p"),
   Key]
  string p = "x\"y";
  B REF q;
  A REF b;
  [Description ("m")]
  uint32 m(
    [In]
    string Names[7],
    A REF Self,
    object REF Other);
  [Values {"a", NULL} : DisableOverride ToSubclass]
  uint8 r[3] = {1, 2};
  boolean k();
};

[Association,
 Description ("sub")]
class B : A
{
  [Description ("p"),
   Key,
   Override ("p")]
  string p = NULL;
};

instance of A
{
  p = "1";
  r = NULL;
};

)",
      RoundTrip("[Association] class A { [Key, Description(\"p\")] string p = \"x\\\"y\";"
                " B REF q; A REF b; [Description(\"m\")] uint32 m([In] string Names[7], A REF Self,"
                " object REF Other); [Values {\"a\", NULL} : DisableOverride]"
                " uint8 r[3] = {1, 2}; boolean k(); };"
                "[Description(\"sub\")] class B : A { [Override(\"p\")] string p = NULL; };"
                "instance of A { p = \"1\"; r = NULL; };"));
}

TEST(TMofWriter, EveryTypeOfValueRoundTrips) {
  RoundTrip(
      "class T { [Key] string k; boolean a = TRUE; uint8 b = 255; sint8 c = -128; uint16 d = 65535;"
      " sint16 e = -32768; uint32 f = 4294967295; sint32 g = -2147483648;"
      " uint64 h = 18446744073709551615; sint64 i = -9223372036854775808;"
      " real32 j = 0.1; real64 l = 1.7976931348623157E+308; char16 m = '\\xFFFF';"
      " string n = \"\\x0\\x1F\\xD83D\\xDE00\\x7f\"; datetime o = \"00000001020304.000005:000\";"
      " string p[] = {\"a\", NULL, \"\"}; real64 q[] = {-1.0, 2.5E-10}; char16 r[] = {'a', 'b'};"
      " datetime s = \"202402291234**.******+060\"; };"
      "instance of T { k = \"\\\"\\\\\\n\"; j = -0.0; l = 5.0e-324; };");
}

TEST(TMofWriter, ReferencesRoundTrip) {
  RoundTrip(
      "class T { [Key] string k; [Key] datetime d; };"
      "[Association] class L { [Key] T REF a; [Key] T REF b; U REF c = \"U.n=1\"; };"
      "class U { [Key] uint8 n; }; instance of U { n = 1; };"
      "instance of L { a = $t; b = \"T\"; };"
      "instance of T as $t { k = \"a\\\\\\\"b,c=d\"; d = \"00000001020304.000005:000\"; };");
}

TEST(TMofWriter, QualifiersAndFlavorsRoundTrip) {
  RoundTrip(
      "Qualifier N : sint64 = -5, Scope(any), Flavor(DisableOverride, Restricted, ToInstance);"
      "Qualifier None : string, Scope();"
      "Qualifier R : real32[] = {1.5, NULL}, Scope(class);"
      "[N(7) : EnableOverride Translatable, R {2.0}, Description(NULL), Abstract(false)] class T "
      "{};"
      "[N, Description(\"x\") : DisableOverride] class U : T {};"
      "[Description(\"x\") : DisableOverride] class V : U {};");
}

TEST(TMofWriter, WhatALoaderDidNotMakeIsWrittenToo) {
  RecordingLogger logger;
  Repository repository;
  const auto thing = repository.Class("Thing");
  const auto link = repository.Association("Link", "From", thing, "To", thing);
  const auto one = repository.Instance(thing, {{"Name", TCIMValue("1")}});
  repository.Link(link, "From", one, "To", one);
  const auto loaded = Load({{"a.mof", Written(*repository.ns)}}, {"a.mof"});
  EXPECT_EQ(Lines{}, loaded.messages);
  ASSERT_TRUE(loaded.ns);
  EXPECT_EQ(Lines{}, Differences(*repository.ns, *loaded.ns));
}

TEST(CompareNamespaces, SeesEveryDifference) {
  RecordingLogger logger;
  const std::string base =
      "[Description(\"d\")] class A { [Key] uint8 k; uint8 p = 1; uint8 m([In] uint8 q); };"
      "class B : A {}; instance of A { k = 1; };";
  const auto differences = [&](const std::string& from, const std::string& to) {
    auto text = base;
    text.replace(text.find(from), from.size(), to);
    const auto a = LoadText(base);
    const auto b = LoadText(text);
    EXPECT_EQ(Lines{}, b.messages);
    return b.ns ? Differences(*a.ns, *b.ns) : Lines{};
  };
  EXPECT_EQ(Lines{}, differences("uint8 p", "uint8 p"));
  EXPECT_EQ(
      (Lines{"A qualifier Description: first: string d flavor 11; second: string e flavor 11",
             "B qualifier Description: first: string d flavor 11 propagated; second: string e "
             "flavor 11 propagated"}),
      differences("\"d\"", "\"e\""));
  EXPECT_EQ(
      (Lines{"A property p: first: uint8 1 from A; second: uint16 1 from A",
             "B property p: first: uint8 1 from A; second: uint16 1 from A",
             "instance A.k=1 property p: first: uint8 1 by default; second: uint16 1 by default"}),
      [&] {
        auto lines = differences("uint8 p", "uint16 p");
        std::sort(lines.begin(), lines.end());
        return lines;
      }());
  EXPECT_EQ((Lines{"A method m parameter q: first: uint8 is NULL; second: string is NULL",
                   "B method m parameter q: first: uint8 is NULL; second: string is NULL"}),
            differences("uint8 q", "string q"));
  EXPECT_EQ((Lines{"A method m parameter q qualifier In: first: boolean TRUE flavor 2; second: "
                   "boolean FALSE flavor 2",
                   "B method m parameter q qualifier In: first: boolean TRUE flavor 2; second: "
                   "boolean FALSE flavor 2"}),
            differences("[In]", "[In(false)]"));
  EXPECT_EQ((Lines{"first: instance A.k=1; second: instance A.k=2"}),
            differences("k = 1", "k = 2"));
  EXPECT_EQ((Lines{"first: class B; second: class C"}), differences("class B", "class C"));
}

}  // namespace
}  // namespace havtest

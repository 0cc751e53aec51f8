#include "mof/TMofSchemaBuilder.h"

#include <gtest/gtest.h>

#include "havcore/client/Declared.h"
#include "support/RecordingLogger.h"
#include "support/Walks.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

class TMofSchemaBuilder : public testing::Test {
 protected:
  // The class `name` of the loaded text.
  ClassPtr Class(const std::string& text, const std::string& name) {
    m_loaded = LoadText(text);
    EXPECT_EQ(Lines{}, m_loaded.messages);
    return m_loaded.ns ? m_loaded.ns->GetClass(name, {}) : ClassPtr();
  }
  // The default of the property "p" that is declared as `declaration`.
  TCIMValue Default(const std::string& declaration) {
    const auto cls = Class("class T { " + declaration + "; };", "T");
    return cls ? cls->GetPropertyDecl("p", {})->GetDefaultValue({}) : TCIMValue();
  }
  static TCIMValue ValueOf(ICIMNamedElement& element, const std::string& qualifier) {
    return element.GetQualifier(qualifier, {})->GetValue({});
  }

  RecordingLogger m_logger;
  Loaded m_loaded;
};

TEST_F(TMofSchemaBuilder, IntegersInEveryNotation) {
  EXPECT_EQ(TCIMValue(std::uint8_t{255}), Default("uint8 p = 255"));
  EXPECT_EQ(TCIMValue(std::int8_t{-128}), Default("sint8 p = -128"));
  EXPECT_EQ(TCIMValue(std::uint16_t{15}), Default("uint16 p = 017"));
  EXPECT_EQ(TCIMValue(std::int16_t{-255}), Default("sint16 p = -0xFF"));
  EXPECT_EQ(TCIMValue(std::uint32_t{5}), Default("uint32 p = 101b"));
  EXPECT_EQ(TCIMValue(std::int32_t{7}), Default("sint32 p = +7"));
  EXPECT_EQ(TCIMValue(std::uint64_t{18446744073709551615u}),
            Default("uint64 p = 18446744073709551615"));
  EXPECT_EQ(TCIMValue(std::numeric_limits<std::int64_t>::min()),
            Default("sint64 p = -9223372036854775808"));
  EXPECT_EQ(TCIMValue(std::uint8_t{0}), Default("uint8 p = -0"));
}

TEST_F(TMofSchemaBuilder, ValuesOfTheOtherTypes) {
  EXPECT_EQ(TCIMValue(true), Default("boolean p = TRUE"));
  EXPECT_EQ(TCIMValue(false), Default("boolean p = false"));
  EXPECT_EQ(TCIMValue(1.5f), Default("real32 p = 1.5"));
  EXPECT_EQ(TCIMValue(-2.5e300), Default("real64 p = -2.5E+300"));
  EXPECT_EQ(TCIMValue(3.0), Default("real64 p = 3"));
  EXPECT_EQ(TCIMValue(u'x'), Default("char16 p = 'x'"));
  EXPECT_EQ(TCIMValue(u'A'), Default("char16 p = 65"));
  EXPECT_EQ(TCIMValue("a\"b"), Default("string p = \"a\" \"\\\"b\""));
  for (const auto* const offset : {"+840", "-720"}) {
    const auto text = std::string("20240229123456.123456") + offset;
    EXPECT_EQ(TCIMValue(TCIMDateTime::Parse(text)), Default("datetime p = \"" + text + "\""));
  }
  EXPECT_EQ(TCIMValue(TCIMDateTime::Parse("20240229123456.123456+060")),
            Default("datetime p = \"20240229123456.123456+060\""));
}

TEST_F(TMofSchemaBuilder, NullAndNoDefaultAreTypedNull) {
  EXPECT_EQ(TCIMValue::Null(kCIMUInt8), Default("uint8 p"));
  EXPECT_EQ(TCIMValue::Null(kCIMDateTime), Default("datetime p = NULL"));
  EXPECT_EQ(TCIMValue::Null(ArrayOf(kCIMString)), Default("string p[] = null"));
}

TEST_F(TMofSchemaBuilder, Arrays) {
  EXPECT_EQ(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue::Null(kCIMUInt8)}),
            Default("uint8 p[] = {1, NULL}"));
  EXPECT_EQ(TCIMValue(kCIMString, {}), Default("string p[5] = {}"));
}

struct WrongValue {
  const char* declaration;
  const char* message;
};
std::ostream& operator<<(std::ostream& out, const WrongValue& wrong) {
  return out << wrong.declaration;
}

class WrongValues : public testing::TestWithParam<WrongValue> {};

TEST_P(WrongValues, AreReportedWhereTheyStand) {
  RecordingLogger logger;
  const auto loaded = LoadText(std::string("class T { ") + GetParam().declaration + "; };");
  EXPECT_EQ((Lines{std::string("a.mof:2:") + GetParam().message}), loaded.messages);
  EXPECT_FALSE(loaded.ns);
}

INSTANTIATE_TEST_SUITE_P(
    TMofSchemaBuilder, WrongValues,
    testing::Values(
        WrongValue{"uint8 p = 300", "21: error: '300' is out of range for uint8"},
        WrongValue{"uint8 p = -1", "21: error: '-1' is out of range for uint8"},
        WrongValue{"sint8 p = 128", "21: error: '128' is out of range for sint8"},
        WrongValue{"sint8 p = -129", "21: error: '-129' is out of range for sint8"},
        WrongValue{"uint64 p = 18446744073709551616",
                   "22: error: '18446744073709551616' is out of range for uint64"},
        WrongValue{"sint64 p = 0x8000000000000000",
                   "22: error: '0x8000000000000000' is out of range for sint64"},
        WrongValue{"char16 p = 65536", "22: error: '65536' is out of range for char16"},
        WrongValue{"real32 p = 1.0e39", "22: error: '1.0e39' is out of range for real32"},
        WrongValue{"real64 p = 0x10000000000000000",
                   "22: error: '0x10000000000000000' is out of range for real64"},
        WrongValue{"uint8 p[] = {1, 256}", "27: error: '256' is out of range for uint8"},
        WrongValue{"uint8 p = 1.5", "21: error: expected a value of type uint8, found '1.5'"},
        WrongValue{"uint8 p = \"1\"", "21: error: expected a value of type uint8, found \"1\""},
        WrongValue{"uint8 p = true", "21: error: expected a value of type uint8, found 'true'"},
        WrongValue{"uint8 p = $a", "21: error: expected a value of type uint8, found '$a'"},
        WrongValue{"boolean p = 1", "23: error: expected a value of type boolean, found '1'"},
        WrongValue{"string p = 'x'", "22: error: expected a value of type string, found ''x''"},
        WrongValue{"real64 p = \"1.0\"",
                   "22: error: expected a value of type real64, found \"1.0\""},
        WrongValue{"datetime p = 1", "24: error: expected a value of type datetime, found '1'"},
        WrongValue{"datetime p = \"today\"", "24: error: \"today\" is not a datetime"},
        WrongValue{"datetime p = \"20240229123456.123456+841\"",
                   "24: error: \"20240229123456.123456+841\" is not a datetime: offsets from UTC "
                   "go from -720 to +840"},
        WrongValue{"datetime p = \"20240229123456.123456-721\"",
                   "24: error: \"20240229123456.123456-721\" is not a datetime: offsets from UTC "
                   "go from -720 to +840"},
        WrongValue{"uint8 p = {1}", "21: error: expected a value of type uint8, found an array"},
        WrongValue{"uint8 p[] = 1", "23: error: expected a value of type uint8[], found '1'"},
        WrongValue{"uint8 p[2] = {1, 2, 3}",
                   "24: error: the default has 3 elements, the array has 2"}));

TEST_F(TMofSchemaBuilder, QualifierDeclarationsHaveImpliedFlavors) {
  Class(
      "Qualifier A : uint8 = 7, Scope(class, method);"
      "Qualifier B : string[], Scope(any), Flavor(DisableOverride, Restricted, ToInstance,"
      " Translatable);",
      "<root>");
  const auto a = m_loaded.ns->GetQualifierDecl("a", {});
  EXPECT_EQ(TCIMValue(std::uint8_t{7}), a->GetDefaultValue({}));
  EXPECT_EQ(ICIMQualifierDecl::kScopeClass | ICIMQualifierDecl::kScopeMethod, a->GetScope({}));
  EXPECT_EQ(ICIMQualifierDecl::kFlavorOverridable | ICIMQualifierDecl::kFlavorToSubclass,
            a->GetFlavor({}));
  const auto b = m_loaded.ns->GetQualifierDecl("B", {});
  EXPECT_EQ(TCIMValue::Null(ArrayOf(kCIMString)), b->GetDefaultValue({}));
  EXPECT_EQ(ICIMQualifierDecl::kFlavorToInstance | ICIMQualifierDecl::kFlavorTranslatable,
            b->GetFlavor({}));
}

TEST_F(TMofSchemaBuilder, QualifiersHaveValueAndFlavor) {
  const auto cls = Class(
      "[Description (\"d\") : DisableOverride Restricted] class T {"
      " [Key, MaxLen (5), Values {\"a\", \"b\"}] string p; [MaxLen] string q; };",
      "T");
  const auto description = cls->GetQualifier("Description", {});
  EXPECT_EQ(TCIMValue("d"), description->GetValue({}));
  EXPECT_EQ(ICIMQualifierDecl::kFlavorTranslatable, description->GetFlavor({}));
  const auto p = cls->GetPropertyDecl("p", {});
  EXPECT_EQ(TCIMValue(true), ValueOf(*p, "Key"));
  EXPECT_EQ(ICIMQualifierDecl::kFlavorToSubclass, p->GetQualifier("Key", {})->GetFlavor({}));
  EXPECT_EQ(TCIMValue(std::uint32_t{5}), ValueOf(*p, "MaxLen"));
  EXPECT_EQ(TCIMValue(kCIMString, {TCIMValue("a"), TCIMValue("b")}), ValueOf(*p, "Values"));
  EXPECT_EQ(TCIMValue::Null(kCIMUInt32), ValueOf(*cls->GetPropertyDecl("q", {}), "MaxLen"));
}

TEST_F(TMofSchemaBuilder, MethodsHaveTypesParametersAndQualifiers) {
  const auto cls = Class(
      "class T { [Description(\"m\")] uint32 Run([In] string Names[], [In(false)] T REF Where,"
      " T REF All[]); };",
      "T");
  const auto method = cls->GetMethodDecl("Run", {});
  EXPECT_EQ(kCIMUInt32, method->GetType({}));
  EXPECT_EQ(TCIMValue("m"), ValueOf(*method, "Description"));
  EXPECT_EQ(ArrayOf(kCIMString), method->GetParameter("Names", {})->GetType({}));
  EXPECT_EQ(TCIMValue(false), ValueOf(*method->GetParameter("Where", {}), "In"));
  EXPECT_EQ(kCIMReference, method->GetParameter("Where", {})->GetType({}));
  EXPECT_EQ(ArrayOf(kCIMReference), method->GetParameter("All", {})->GetType({}));
  EXPECT_EQ("T", hav::client::ReferencedClassOf(*method->GetParameter("Where", {})));
  EXPECT_FALSE(m_loaded.ns->GetQualifierDecl("HAV_ReferenceClass", {}));
}

TEST_F(TMofSchemaBuilder, SuperclassesMayComeLater) {
  const auto cls =
      Class("class C : B {}; class B : a { uint8 b; }; class A { [Key] uint8 a; };", "C");
  EXPECT_EQ("B", cls->GetSuperClass({})->GetName({}));
  EXPECT_EQ("A", cls->GetPropertyDecl("a", {})->GetClass({})->GetName({}));
  EXPECT_EQ((Names{"A"}), RootClassNames(m_loaded.ns));
}

TEST_F(TMofSchemaBuilder, SiblingsKeepTheOrderOfTheirText) {
  const auto cls = Class("class Z : R {}; class A : R {}; class R {}; class M : R {};", "R");
  EXPECT_EQ((Names{"Z", "A", "M"}), SubclassNames(cls));
}

TEST_F(TMofSchemaBuilder, ReferencesMayPointForwardAndInCircles) {
  const auto link = Class(
      "[Association] class Link { [Key] Sub REF A; [Key] Link REF B; [Key] Later REF C; };"
      "[Association] class Sub : Link {}; class Later { [Key] uint8 k; };",
      "Link");
  EXPECT_EQ(m_loaded.ns->GetClass("Sub", {}),
            link->GetReferenceDecl("A", {})->GetDefaultValue({}).GetReferencedClass());
  EXPECT_EQ(link, link->GetReferenceDecl("B", {})->GetDefaultValue({}).GetReferencedClass());
  const auto later = m_loaded.ns->GetClass("Later", {});
  EXPECT_EQ(later, link->GetReferenceDecl("C", {})->GetDefaultValue({}).GetReferencedClass());
  Names associations;
  later->EnumerateAssociationClasses(
      [&](ClassPtr cls) {
        associations.push_back(cls->GetName({}));
        return true;
      },
      "", "", {});
  std::sort(associations.begin(), associations.end());
  EXPECT_EQ((Names{"Link", "Sub"}), associations);
}

TEST_F(TMofSchemaBuilder, OverridingElementsTakeWhatTheyDoNotSay) {
  const auto cls = Class(
      "class A { [Key, Description(\"a\"), MaxLen(5)] string p = \"x\";"
      "  [Description(\"m\")] uint8 m([In, Description(\"q\")] uint8 q); };"
      "class B : A { [Override(\"p\"), Description(\"b\")] string p; [Override] uint8 m(uint8 q); "
      "};",
      "B");
  const auto p = cls->GetPropertyDecl("p", {});
  EXPECT_EQ(cls, p->GetClass({}));
  EXPECT_EQ((Names{"Description", "Key", "MaxLen", "Override"}), QualifierNames(p));
  EXPECT_EQ(TCIMValue("b"), ValueOf(*p, "Description"));
  EXPECT_EQ(TCIMValue("x"), p->GetDefaultValue({}));
  const auto m = cls->GetMethodDecl("m", {});
  EXPECT_EQ(TCIMValue("m"), ValueOf(*m, "Description"));
  EXPECT_EQ(TCIMValue("q"), ValueOf(*m->GetParameter("q", {}), "Description"));
}

TEST_F(TMofSchemaBuilder, AnOverrideMayTakeTheDefaultAway) {
  const auto cls =
      Class("class A { string p = \"x\"; }; class B : A { [Override] string p = NULL; };", "B");
  EXPECT_EQ(TCIMValue::Null(kCIMString), cls->GetPropertyDecl("p", {})->GetDefaultValue({}));
}

struct WrongSchema {
  const char* text;
  Lines messages;
};
std::ostream& operator<<(std::ostream& out, const WrongSchema& wrong) { return out << wrong.text; }

class WrongSchemas : public testing::TestWithParam<WrongSchema> {};

TEST_P(WrongSchemas, AreReportedAndLoadNothing) {
  RecordingLogger logger;
  const auto loaded = LoadText(GetParam().text);
  EXPECT_EQ(GetParam().messages, loaded.messages);
  EXPECT_FALSE(loaded.ns);
}

INSTANTIATE_TEST_SUITE_P(
    TMofSchemaBuilder, WrongSchemas,
    testing::Values(
        WrongSchema{"class A : X {}; class B : A {};",
                    {"a.mof:2:11: error: superclass 'X' is not declared"}},
        WrongSchema{"class A : A {};", {"a.mof:2:11: error: class 'A' is its own ancestor"}},
        WrongSchema{"class A : B {}; class B : C {}; class C : B {}; class D : A {};",
                    {"a.mof:2:27: error: class 'B' is its own ancestor"}},
        WrongSchema{"class A {};\nclass a { uint8 p; };",
                    {"a.mof:3:7: error: class 'a' is declared twice and differently, first at "
                     "a.mof:2:7"}},
        WrongSchema{
            "Qualifier key : boolean, Scope(any);",
            {"a.mof:2:11: error: qualifier 'key' is declared twice and differently, first at "
             "a.mof:1:11"}},
        WrongSchema{"Qualifier X : uint8 = 256, Scope(any);",
                    {"a.mof:2:23: error: '256' is out of range for uint8"}},
        WrongSchema{"class A { uint8 p; string P; };",
                    {"a.mof:2:27: error: property 'P' is declared twice"}},
        WrongSchema{"class A { uint8 m(); string M(); };",
                    {"a.mof:2:29: error: method 'M' is declared twice"}},
        WrongSchema{"class A { uint8 m(uint8 x, string X); };",
                    {"a.mof:2:35: error: parameter 'X' is declared twice"}},
        WrongSchema{"class A { A REF r; };",
                    {"a.mof:2:11: error: reference 'r' stands in class 'A', which is no "
                     "association"}},
        WrongSchema{"[Association] class A { X REF r; };",
                    {"a.mof:2:25: error: class 'X' is not declared"}},
        WrongSchema{"class A { uint8 m(X REF r); };",
                    {"a.mof:2:19: error: class 'X' is not declared"}},
        WrongSchema{"[Foo] class A { [Bar] uint8 p; };",
                    {"a.mof:2:2: error: qualifier 'Foo' is not declared",
                     "a.mof:2:18: error: qualifier 'Bar' is not declared"}},
        WrongSchema{"[Description(\"a\"), description(\"b\")] class A {};",
                    {"a.mof:2:20: error: qualifier 'description' is given twice"}},
        WrongSchema{"class A { [MaxLen(\"x\")] uint8 p; };",
                    {"a.mof:2:19: error: expected a value of type uint32, found \"x\""}},
        WrongSchema{"class A { [Values(\"x\")] uint8 p; };",
                    {"a.mof:2:19: error: expected a value of type string[], found \"x\""}},
        WrongSchema{"class A { [Key {true}] uint8 p; };",
                    {"a.mof:2:16: error: expected a value of type boolean, found an array"}},
        WrongSchema{"class A { [Key] uint8 p; }; class B : A { [Override, Key(false)] uint8 p; };",
                    {"a.mof:2:54: error: qualifier 'Key' contradicts the inherited one, which may "
                     "not be overridden"}},
        WrongSchema{"class A { uint8 p = 300; uint8 q r; }; class B : X {};",
                    {"a.mof:2:21: error: '300' is out of range for uint8",
                     "a.mof:2:34: error: expected ';' after property declaration, found 'r'",
                     "a.mof:2:50: error: superclass 'X' is not declared"}},
        WrongSchema{"[Foo] class A { [Foo] uint8 p; }; [foo] class B {};",
                    {"a.mof:2:2: error: qualifier 'Foo' is not declared"}},
        WrongSchema{"Qualifier hav_Order : string, Scope(any);",
                    {"a.mof:2:11: error: qualifier 'hav_Order' has a name of the program's own: "
                     "they begin with 'HAV_'"}},
        // What is missing may be in what could not be read.
        WrongSchema{"class ; class A : X { [Foo] uint8 p; };",
                    {"a.mof:2:7: error: expected the name of a class, found ';'"}}));

struct DoubtfulSchema {
  const char* text;
  const char* warning;
};
std::ostream& operator<<(std::ostream& out, const DoubtfulSchema& doubtful) {
  return out << doubtful.text;
}

class DoubtfulSchemas : public testing::TestWithParam<DoubtfulSchema> {};

TEST_P(DoubtfulSchemas, AreLoadedWithAWarning) {
  RecordingLogger logger;
  const auto loaded = LoadText(GetParam().text);
  EXPECT_EQ((Lines{std::string("a.mof:2:") + GetParam().warning}), loaded.messages);
  EXPECT_TRUE(loaded.ns);
}

INSTANTIATE_TEST_SUITE_P(
    TMofSchemaBuilder, DoubtfulSchemas,
    testing::Values(
        DoubtfulSchema{"[Key] class A {};", "2: warning: qualifier 'Key' is not meant for a class"},
        DoubtfulSchema{"[Association, Key] class A {};",
                       "15: warning: qualifier 'Key' is not meant for an association"},
        DoubtfulSchema{"[Indication, Key] class A {};",
                       "14: warning: qualifier 'Key' is not meant for an indication"},
        DoubtfulSchema{"class A { [In] uint8 p; };",
                       "12: warning: qualifier 'In' is not meant for a property"},
        DoubtfulSchema{"[Association] class A { [MaxLen(1)] A REF p; A REF q; };",
                       "26: warning: qualifier 'MaxLen' is not meant for a reference"},
        DoubtfulSchema{"class A { [Key] uint8 m(); };",
                       "12: warning: qualifier 'Key' is not meant for a method"},
        DoubtfulSchema{"class A { uint8 m([Key] uint8 p); };",
                       "20: warning: qualifier 'Key' is not meant for a parameter"},
        DoubtfulSchema{"class A { uint8 p; }; class B : A { uint8 p; };",
                       "43: warning: property 'p' is left out: class 'A' has it, and this one "
                       "does not override it"},
        DoubtfulSchema{"class A { uint8 p; }; class B : A { [Override] string p; };",
                       "55: warning: property 'p' is left out: class 'A' has it with type uint8, "
                       "and an override keeps the type"},
        DoubtfulSchema{"class A { uint8 m(); }; class B : A { uint8 m(); };",
                       "45: warning: method 'm' is left out: class 'A' has it, and this one does "
                       "not override it"},
        DoubtfulSchema{"class A { uint8 m(); }; class B : A { [Override] string m(); };",
                       "57: warning: method 'm' is left out: class 'A' has it with type uint8, "
                       "and an override keeps the type"},
        DoubtfulSchema{"[Association] class A { A REF r; }; [Association] class B : A {};",
                       "21: warning: association 'A' has one reference, and associates nothing"}));

// The first declaration counts.
TEST_F(TMofSchemaBuilder, WhatIsDeclaredAgainIdenticallyIsTakenOnce) {
  const auto cls = Class(
      "qualifier KEY : boolean = FALSE, Scope(property, reference), Flavor(disableoverride);"
      "[Description(\"a\" \"b\")] class A { [Key] uint8 P; uint8 m([In] A ref X); };"
      "class B : A {};"
      "[description(\"ab\")] CLASS a { [key] UINT8 p; uint8 M([in] a REF x); };",
      "A");
  ASSERT_TRUE(cls);
  EXPECT_EQ("A", cls->GetName({}));
  EXPECT_EQ(2u, m_loaded.report.classes);
  EXPECT_EQ(9u, m_loaded.report.qualifierDecls);
}

// What the author chose, where it is not the order of the names.
TEST_F(TMofSchemaBuilder, OrderAndArraySizesAreKept) {
  const auto cls = Class(
      "class A { uint8 z; uint8 stop(uint8 y[2], uint8 x); uint8 a[3]; };"
      "class B : A { uint8 m; [Override] uint8 z; uint8 c; };",
      "B");
  ASSERT_TRUE(cls);
  const auto a = cls->GetSuperClass({});
  Lines names;
  for (const auto& decl : hav::client::PropertyDeclsOf(*cls)) names.push_back(decl->GetName({}));
  EXPECT_EQ((Lines{"a", "m", "z", "c"}), names);
  names.clear();
  for (const auto& member : hav::client::OwnDeclsOf(*a))
    names.push_back(member.property ? member.property->GetName({}) : member.method->GetName({}));
  EXPECT_EQ((Lines{"z", "stop", "a"}), names);
  names.clear();
  const auto stop = hav::client::MethodDeclsOf(*cls).at(0);
  for (const auto& parameter : hav::client::ParametersOf(*stop))
    names.push_back(parameter->GetName({}));
  EXPECT_EQ((Lines{"y", "x"}), names);
  EXPECT_EQ(3u, hav::client::ArraySizeOf(*a->GetPropertyDecl("a", {})));
  EXPECT_EQ(0u, hav::client::ArraySizeOf(*a->GetPropertyDecl("z", {})));
  EXPECT_EQ(2u, hav::client::ArraySizeOf(*stop->GetParameter("y", {})));
}

// Nobody sees what it is kept in, and nothing inherits it.
TEST_F(TMofSchemaBuilder, KeepingShowsNowhere) {
  const auto cls =
      Class("class A { uint8 z[3]; uint8 a; }; class B : A { [Override] uint8 z[]; };", "A");
  ASSERT_TRUE(cls);
  EXPECT_EQ((Names{"HAV_DeclaredOrder"}), QualifierNames(cls));
  EXPECT_TRUE(hav::client::QualifiersOf(*cls).empty());
  EXPECT_TRUE(hav::client::QualifiersOf(*cls->GetPropertyDecl("z", {})).empty());
  const auto sub = m_loaded.ns->GetClass("B", {});
  EXPECT_EQ(Names{}, QualifierNames(sub));
  EXPECT_EQ((Names{"Override"}), QualifierNames(sub->GetPropertyDecl("z", {})));
  EXPECT_FALSE(m_loaded.ns->GetQualifierDecl("HAV_DeclaredOrder", {}));
}

// Each level is named before its superclass.
TEST_F(TMofSchemaBuilder, DeepHierarchiesLoad) {
  std::string text;
  for (int i = 2999; i > 0; --i)
    text += "class C" + std::to_string(i) + " : C" + std::to_string(i - 1) + " {};";
  const auto cls = Class(text + "class C0 { [Key] uint8 k; };", "C2999");
  ASSERT_TRUE(cls);
  EXPECT_EQ("C0", cls->GetPropertyDecl("k", {})->GetClass({})->GetName({}));
}

}  // namespace
}  // namespace havtest

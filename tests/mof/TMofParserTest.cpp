#include "mof/TMofParser.h"

#include <gtest/gtest.h>

#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::TMofFile;
using hav::mof::TMofParser;
using hav::mof::TMofPragma;
using hav::mof::TMofReport;
using namespace NORVHAV20;

class Parsed {
 public:
  explicit Parsed(const std::string& text) : file("a.mof", text) {
    TMofReport report;
    TMofParser::Parse(file, report);
    messages = Messages(report);
  }
  TMofFile file;
  Lines messages;
};

TEST(TMofParser, AClassWithEverything) {
  const Parsed parsed(R"(
[Association, Description ("a" "b") : DisableOverride Restricted, Values {"x", NULL}]
CLASS Test_A as $A : Test_B {
  [Key] uint8 Number = 0x10;
  String Texts[] = {"a", "b"};
  sint64 Sized[5];
  Test_C ref Other = NULL;
  boolean Run([In] real32 Speed, Test_C REF Where, uint16 Codes[3]);
  datetime Stop();
};)");
  EXPECT_EQ(Lines{}, parsed.messages);
  ASSERT_EQ(1u, parsed.file.classes.size());
  const auto& cls = parsed.file.classes[0];
  EXPECT_EQ("Test_A", cls.name.text);
  EXPECT_EQ("$A", cls.alias.text);
  EXPECT_EQ("Test_B", cls.superclass.text);
  EXPECT_FALSE(cls.isDamaged);

  ASSERT_EQ(3u, cls.qualifiers.size());
  EXPECT_FALSE(cls.qualifiers[0].value);
  EXPECT_EQ(3u, cls.qualifiers[0].flavor.AppliedTo(3));
  EXPECT_EQ("\"a\" \"b\"", cls.qualifiers[1].value->scalar.text);
  EXPECT_EQ(0u, cls.qualifiers[1].flavor.AppliedTo(3));
  EXPECT_TRUE(cls.qualifiers[2].value->isArray);
  EXPECT_EQ(2u, cls.qualifiers[2].value->elements.size());

  ASSERT_EQ(4u, cls.properties.size());
  EXPECT_EQ(kCIMUInt8, cls.properties[0].type.element);
  EXPECT_EQ("0x10", cls.properties[0].defaultValue->scalar.text);
  EXPECT_EQ("Key", cls.properties[0].qualifiers.at(0).name.text);
  EXPECT_EQ(kCIMString, cls.properties[1].type.element);
  EXPECT_TRUE(cls.properties[1].type.isArray);
  EXPECT_EQ(5u, cls.properties[2].type.arraySize);
  EXPECT_FALSE(cls.properties[2].defaultValue);
  EXPECT_EQ(kCIMReference, cls.properties[3].type.element);
  EXPECT_EQ("Test_C", cls.properties[3].type.referenced.text);

  ASSERT_EQ(2u, cls.methods.size());
  EXPECT_EQ(kCIMBoolean, cls.methods[0].returnType.element);
  ASSERT_EQ(3u, cls.methods[0].parameters.size());
  EXPECT_EQ(kCIMReal32, cls.methods[0].parameters[0].type.element);
  EXPECT_EQ("In", cls.methods[0].parameters[0].qualifiers.at(0).name.text);
  EXPECT_EQ(kCIMReference, cls.methods[0].parameters[1].type.element);
  EXPECT_TRUE(cls.methods[0].parameters[2].type.isArray);
  EXPECT_TRUE(cls.methods[1].parameters.empty());
}

TEST(TMofParser, EveryDataType) {
  const Parsed parsed(
      "class A { boolean a; uint8 b; sint8 c; uint16 d; sint16 e; uint32 f; sint32 g; uint64 h;"
      " sint64 i; real32 j; real64 k; char16 l; string m; datetime n; };");
  EXPECT_EQ(Lines{}, parsed.messages);
  std::uint32_t type = kCIMBoolean;
  for (const auto& property : parsed.file.classes.at(0).properties)
    EXPECT_EQ(type++, property.type.element);
  EXPECT_EQ(static_cast<std::uint32_t>(kCIMReference), type);
}

TEST(TMofParser, QualifierDeclarations) {
  const Parsed parsed(
      "Qualifier A : boolean = true, Scope(any), Flavor(DisableOverride, Restricted);\n"
      "Qualifier B : string[], Scope(class, association, indication, property, reference, method,"
      " parameter);\n"
      "Qualifier C : uint8, Scope(Class, PROPERTY), Flavor(EnableOverride, ToSubclass, ToInstance,"
      " Translatable);\n"
      "Qualifier D : uint8, Scope(schema);\n");
  EXPECT_EQ(Lines{}, parsed.messages);
  const auto& decls = parsed.file.qualifierDecls;
  ASSERT_EQ(4u, decls.size());
  EXPECT_EQ(127u, decls[0].scope);
  EXPECT_EQ(0u, decls[0].flavor.AppliedTo(3));
  EXPECT_EQ(127u, decls[1].scope);
  EXPECT_EQ(3u, decls[1].flavor.AppliedTo(3));
  EXPECT_TRUE(decls[1].type.isArray);
  EXPECT_EQ(9u, decls[2].scope);
  EXPECT_EQ(15u, decls[2].flavor.AppliedTo(0));
  EXPECT_EQ(0u, decls[3].scope);
}

TEST(TMofParser, Instances) {
  Parsed parsed(
      "Instance Of A as $a { Name = \"x\"; Numbers = {1, 2}; Other = $b; Nothing = NULL; };");
  EXPECT_EQ(Lines{}, parsed.messages);
  TMofReport deaf(0);
  hav::mof::TMofInstance instance;
  ASSERT_EQ(1u, parsed.file.instances.size());
  ASSERT_TRUE(TMofParser(parsed.file, deaf).ReadInstance(parsed.file.instances[0], instance));
  EXPECT_EQ("A", instance.className.text);
  EXPECT_EQ("$a", instance.alias.text);
  ASSERT_EQ(4u, instance.assignments.size());
  EXPECT_EQ("Numbers", instance.assignments[1].name.text);
  EXPECT_EQ(2u, instance.assignments[1].value.elements.size());
  EXPECT_EQ("$b", instance.assignments[2].value.scalar.text);
}

TEST(TMofParser, Pragmas) {
  const Parsed parsed(
      "#pragma locale (\"en_US\")\n#pragma include (\"b\" \".mof\")\n"
      "#PRAGMA Namespace (\"root/x\")\n#pragma instancelocale(\"de_DE\")");
  EXPECT_EQ(Lines{}, parsed.messages);
  ASSERT_EQ(2u, parsed.file.pragmas.size());
  EXPECT_EQ(TMofPragma::EKind::kInclude, parsed.file.pragmas[0].kind);
  EXPECT_EQ("b.mof", parsed.file.pragmas[0].value);
  EXPECT_EQ(TMofPragma::EKind::kNamespace, parsed.file.pragmas[1].kind);
  EXPECT_EQ("root/x", parsed.file.pragmas[1].value);
}

TEST(TMofParser, UnknownPragmasAreWarnedAbout) {
  EXPECT_EQ((Lines{"a.mof:1:9: warning: pragma 'frobnicate' is not known and has no effect"}),
            ParseMessages("#pragma frobnicate (\"x\")"));
}

// Whatever their parameters are, and without any.
TEST(TMofParser, PragmasOfOtherReadersAreWarnedAbout) {
  EXPECT_EQ((Lines{"a.mof:1:9: warning: pragma 'autorecover' is not known and has no effect",
                   "a.mof:2:9: warning: pragma 'deleteclass' is not known and has no effect",
                   "a.mof:3:9: warning: pragma 'classflags' is not known and has no effect"}),
            ParseMessages("#pragma autorecover\n#pragma deleteclass(\"A\", nofail)\n"
                          "#pragma classflags(\"forceupdate\", 7)\nclass A {};"));
  EXPECT_EQ((Lines{"a.mof:1:9: warning: pragma 'x' is not known and has no effect",
                   "a.mof:2:1: error: expected ')' after the parameters of a pragma, found "
                   "'#pragma'"}),
            ParseMessages("#pragma x (\"a\"\n#pragma locale (\"b\")"));
}

TEST(TMofParser, QualifiersOfInstancesAreWarnedAbout) {
  EXPECT_EQ((Lines{"a.mof:1:14: warning: the qualifiers of an instance are not kept",
                   "a.mof:1:35: warning: the qualifiers of an instance are not kept"}),
            ParseMessages("[Description]instance of A      { [Key] a = 1; };"));
}

struct WrongText {
  const char* text;
  const char* message;
};
std::ostream& operator<<(std::ostream& out, const WrongText& wrong) { return out << wrong.text; }

class TMofParserErrors : public testing::TestWithParam<WrongText> {};

TEST_P(TMofParserErrors, SayWhatWasExpectedAndFound) {
  EXPECT_EQ((Lines{std::string("a.mof:1:") + GetParam().message}), ParseMessages(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Declarations, TMofParserErrors,
    testing::Values(
        WrongText{"foo", "1: error: expected a declaration, found 'foo'"},
        WrongText{"[Key] foo;",
                  "7: error: expected 'class' or 'instance' after qualifiers, "
                  "found 'foo'"},
        WrongText{"[Key", "5: error: expected ']' after qualifiers, found the end of the file"},
        WrongText{"[] class", "2: error: expected the name of a qualifier, found ']'"},
        WrongText{"[A(1, 2)] class",
                  "5: error: expected ')' after the value of a qualifier, "
                  "found ','"},
        WrongText{"[A: B] class", "5: error: expected a flavor after ':', found 'B'"},
        WrongText{"#pragma \"x\"", "9: error: expected the name of a pragma, found \"x\""},
        WrongText{"#pragma include \"x\"",
                  "17: error: expected '(' after the name of a pragma, "
                  "found \"x\""},
        WrongText{"#pragma include (x)", "18: error: expected a string in a pragma, found 'x'"},
        WrongText{"#pragma include (\"x\"",
                  "21: error: expected ')' after the string of a pragma, "
                  "found the end of the file"}));

INSTANTIATE_TEST_SUITE_P(
    QualifierDeclarations, TMofParserErrors,
    testing::Values(
        WrongText{"Qualifier 1;", "11: error: expected the name of a qualifier, found '1'"},
        WrongText{"Qualifier A;",
                  "12: error: expected ':' after the name of a qualifier, "
                  "found ';'"},
        WrongText{"Qualifier A : foo;", "15: error: expected a data type after ':', found 'foo'"},
        WrongText{"Qualifier A : foo, Scope(any);", "15: error: unknown type 'foo'"},
        WrongText{"Qualifier A : B REF, Scope(any);",
                  "15: error: a qualifier cannot be a reference"},
        WrongText{"Qualifier A : string;",
                  "21: error: expected ',' and a scope in qualifier "
                  "declaration, found ';'"},
        WrongText{"Qualifier A : string, Flavor(Restricted);",
                  "23: error: expected 'Scope' after ',', found 'Flavor'"},
        WrongText{"Qualifier A : string, Scope(foo);",
                  "29: error: expected a kind of element in a scope, found 'foo'"},
        WrongText{"Qualifier A : string, Scope(any), foo;",
                  "35: error: expected 'Flavor' after ',', found 'foo'"},
        WrongText{"Qualifier A : string, Scope(any), Flavor(foo);",
                  "42: error: expected a flavor, found 'foo'"},
        WrongText{"Qualifier A : string, Scope(any), Flavor(Restricted, ToSubclass);",
                  "54: error: flavor 'ToSubclass' contradicts one before it"},
        WrongText{"Qualifier A : string, Scope(any)",
                  "33: error: expected ';' after qualifier declaration, found the end of the "
                  "file"}));

INSTANTIATE_TEST_SUITE_P(
    Classes, TMofParserErrors,
    testing::Values(
        WrongText{"class {};", "7: error: expected the name of a class, found '{'"},
        WrongText{"class A as B {};", "12: error: expected an alias after 'as', found 'B'"},
        WrongText{"class A : {};", "11: error: expected the name of a superclass, found '{'"},
        WrongText{"class A;", "8: error: expected '{' to begin class 'A', found ';'"},
        WrongText{"class A {}",
                  "11: error: expected ';' after class 'A', found the end of the "
                  "file"},
        WrongText{"class A { uint8 a;",
                  "19: error: expected '}' to end class 'A', found the end of "
                  "the file"},
        WrongText{"class A { foo a; };", "11: error: unknown type 'foo'"},
        WrongText{"class A { Void Run(); };",
                  "11: error: no value is of type 'Void'; a method returns one, uint32 where there "
                  "is no other"},
        WrongText{"class A { foo; };", "11: error: expected a property or method, found 'foo'"},
        WrongText{"class A { uint8; };",
                  "16: error: expected the name of a property or method, "
                  "found ';'"},
        WrongText{"class A { uint8 a foo; };",
                  "19: error: expected ';' after property declaration, "
                  "found 'foo'"},
        WrongText{"class A { uint8 a = ; };", "21: error: expected a value, found ';'"},
        WrongText{"class A { uint8 a = foo; };", "21: error: expected a value, found 'foo'"},
        WrongText{"class A { uint8 a[] = {1 2}; };",
                  "26: error: expected '}' after the elements of "
                  "an array, found '2'"},
        WrongText{"class A { uint8 a[x]; };",
                  "19: error: expected ']' after '[' or the size of an "
                  "array, found 'x'"},
        WrongText{"class A { uint8 a[0]; };",
                  "19: error: the size of an array is a decimal number "
                  "from 1 to 4294967295, not '0'"},
        WrongText{"class A { B REF a[]; };",
                  "18: error: a property cannot be an array of references"},
        WrongText{"class A { B REF a(); };", "11: error: a method cannot return a reference"},
        WrongText{"class A { uint8 a(uint8); };",
                  "24: error: expected the name of a parameter, "
                  "found ')'"},
        WrongText{"class A { uint8 a(foo b); };", "19: error: unknown type 'foo'"},
        WrongText{"class A { uint8 a(uint8 b; };",
                  "26: error: expected ')' after the parameters of "
                  "a method, found ';'"},
        WrongText{"class A { uint8 a() };",
                  "21: error: expected ';' after method declaration, "
                  "found '}'"}));

INSTANTIATE_TEST_SUITE_P(
    Instances, TMofParserErrors,
    testing::Values(
        WrongText{"instance A {};", "10: error: expected 'of' after 'instance', found 'A'"},
        WrongText{"instance of {};", "13: error: expected the name of a class, found '{'"},
        WrongText{"instance of A;", "14: error: expected '{' to begin an instance, found ';'"},
        WrongText{"instance of A { a 1; };",
                  "19: error: expected '=' after the name of a property, "
                  "found '1'"},
        WrongText{"instance of A { a = 1 };",
                  "23: error: expected ';' after the value of a "
                  "property, found '}'"},
        WrongText{"instance of A { = 1; };",
                  "17: error: expected the name of a property, "
                  "found '='"},
        WrongText{"instance of A { a = 1;",
                  "23: error: expected '}' to end instance of 'A', found "
                  "the end of the file"}));

TEST(TMofParser, LongTokensAreCutInMessages) {
  EXPECT_EQ((Lines{"a.mof:1:1: error: expected a declaration, found "
                   "\"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa..."}),
            ParseMessages("\"" + std::string(100, 'a') + "\""));
}

TEST(TMofParser, ReadingGoesOnBehindAnError) {
  const Parsed parsed(
      "class A { uint8 a b; uint8 c; foo d[] = {1}; uint8 e(; uint8 f; };\n"
      "Qualifier B;\n"
      "class C { uint8 a\n"
      "class D { };\n"
      "instance of E { a 1; b = 2; };\n"
      "class F { };");
  EXPECT_EQ((Lines{"a.mof:1:19: error: expected ';' after property declaration, found 'b'",
                   "a.mof:1:31: error: unknown type 'foo'",
                   "a.mof:1:54: error: expected a parameter, found ';'",
                   "a.mof:2:12: error: expected ':' after the name of a qualifier, found ';'",
                   "a.mof:4:1: error: expected ';' after property declaration, found 'class'",
                   "a.mof:5:19: error: expected '=' after the name of a property, found '1'"}),
            parsed.messages);
  Lines names;
  for (const auto& cls : parsed.file.classes)
    names.push_back(std::string(cls.name.text) + (cls.isDamaged ? " damaged" : ""));
  EXPECT_EQ((Lines{"A damaged", "C damaged", "D", "F"}), names);
  Lines properties;
  for (const auto& property : parsed.file.classes[0].properties)
    properties.emplace_back(property.name.text);
  EXPECT_EQ((Lines{"c", "f"}), properties);
  EXPECT_TRUE(parsed.file.isDamaged);
}

TEST(TMofParser, ErrorsAreCappedAndCounted) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += "foo;";
  TMofFile file("a.mof", text);
  TMofReport report;
  TMofParser::Parse(file, report);
  EXPECT_EQ(TMofReport::kDefaultLimit, report.GetMessages().size());
  const auto shown = report.ToString();
  const std::string note = "note: reading stopped after 100 errors\n";
  EXPECT_EQ(note, shown.substr(shown.size() - note.size()));
}

// Nothing in the language nests, and nothing recurses.
TEST(TMofParser, DeepBracketsDoNotExhaustTheStack) {
  for (const char c : {'{', '[', '('}) {
    const auto deep = std::string(2000000, c);
    EXPECT_EQ(1u, ParseMessages("class A { uint8 a[] = " + deep).size());
  }
}

}  // namespace
}  // namespace havtest

#include "mof/TMofInstanceBuilder.h"

#include <gtest/gtest.h>

#include "support/RecordingLogger.h"
#include "support/Walks.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

// Behind kQualifiers, on the second line.
const std::string kClasses =
    "class Thing { [Key] string Name; uint8 Size = 7; uint8 Parts[]; };"
    "class Box : Thing { };"
    "[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; Link REF Next; };\n";

Loaded LoadInstances(const std::string& text) { return LoadText(kClasses + text); }

class TMofInstanceBuilder : public testing::Test {
 protected:
  void LoadSound(const std::string& text) {
    m_loaded = LoadInstances(text);
    EXPECT_EQ(Lines{}, m_loaded.messages);
    ASSERT_TRUE(m_loaded.ns);
  }
  Names PathsOf(const std::string& cls) const {
    Names paths;
    m_loaded.ns->GetClass(cls, {})->EnumerateInstances(
        [&](InstancePtr instance) {
          paths.push_back(instance->GetReference({}).GetPath());
          return true;
        },
        true, {});
    return paths;
  }
  InstancePtr Instance(const std::string& path) const {
    return m_loaded.ns->GetInstance(TCIMReference::Parse(path, m_loaded.ns), {});
  }

  RecordingLogger m_logger;
  Loaded m_loaded;
};

TEST_F(TMofInstanceBuilder, ValuesHaveTheDeclaredTypes) {
  LoadSound("instance of thing { NAME = \"a\"; size = 0x10; Parts = {1, NULL}; };");
  const auto instance = Instance("Thing.Name=\"a\"");
  ASSERT_TRUE(instance);
  EXPECT_EQ(TCIMValue(std::uint8_t{16}), instance->GetProperty("Size", {})->GetValue({}));
  EXPECT_EQ(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue::Null(kCIMUInt8)}),
            instance->GetProperty("Parts", {})->GetValue({}));
  EXPECT_EQ(1u, m_loaded.report.instances);
}

TEST_F(TMofInstanceBuilder, WhatIsNotGivenStaysDefault) {
  LoadSound("instance of Thing { Name = \"a\"; Parts = NULL; };");
  const auto instance = Instance("Thing.Name=\"a\"");
  EXPECT_EQ(TCIMValue(std::uint8_t{7}), instance->GetProperty("Size", {})->GetValue({}));
  EXPECT_TRUE(instance->GetProperty("Size", {})->IsValueDefault({}));
  EXPECT_FALSE(instance->GetProperty("Parts", {})->IsValueDefault({}));
}

TEST_F(TMofInstanceBuilder, InstancesMayComeBeforeTheirClasses) {
  m_loaded = LoadText("instance of T { k = 1; }; class T { [Key] uint8 k; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ((Names{"T.k=1"}), PathsOf("T"));
}

TEST_F(TMofInstanceBuilder, AliasesReferForwardAndBackward) {
  LoadSound(
      "instance of Link { From = $a; To = $b; };"
      "instance of Thing as $A { Name = \"1\"; };"
      "instance of Box as $b { Name = \"2\"; };"
      "instance of Link { From = $b; To = $a; };");
  EXPECT_EQ((Names{R"(Link.From="Box.Name=\"2\"",To="Thing.Name=\"1\"")",
                   R"(Link.From="Thing.Name=\"1\"",To="Box.Name=\"2\"")"}),
            PathsOf("Link"));
}

TEST_F(TMofInstanceBuilder, PathsReferForwardAndBackward) {
  LoadSound(
      "instance of Link { From = \"Thing.Name=\\\"1\\\"\"; To = \"Box.Name=\\\"2\\\"\"; };"
      "instance of Thing { Name = \"1\"; };"
      "instance of Box { Name = \"2\"; };");
  EXPECT_EQ(1u, PathsOf("Link").size());
}

// An association is stored only when what it refers to is there.
TEST_F(TMofInstanceBuilder, AssociationsMayReferToLaterAssociations) {
  LoadSound(
      "instance of Link { From = $a; To = $a; Next = $l; };"
      "instance of Link as $l { From = $a; To = $b; Next = $m; };"
      "instance of Link as $m { From = $b; To = $b; };"
      "instance of Thing as $a { Name = \"1\"; };"
      "instance of Thing as $b { Name = \"2\"; };");
  EXPECT_EQ(3u, PathsOf("Link").size());
}

TEST_F(TMofInstanceBuilder, AliasedKeysMayDependOnAliasedKeys) {
  m_loaded = LoadText(
      "class T { [Key] uint8 k; };"
      "[Association] class L { [Key] T REF a; [Key] T REF b; };"
      "[Association] class M { [Key] L REF l; [Key] T REF t; };"
      "instance of M { l = $l; t = $t; }; instance of L as $l { a = $t; b = $t; };"
      "instance of T as $t { k = 1; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ((Names{R"(M.l="L.a=\"T.k=1\",b=\"T.k=1\"",t="T.k=1")"}), PathsOf("M"));
}

TEST_F(TMofInstanceBuilder, AnAliasMayStandForAClass) {
  m_loaded = LoadText(
      "class T as $t { [Key] uint8 k; };"
      "[Association] class L { [Key] T REF a; [Key] T REF b; };"
      "instance of L { a = $t; b = \"T\"; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ((Names{"L.a=\"T\",b=\"T\""}), PathsOf("L"));
}

TEST_F(TMofInstanceBuilder, DefaultsOfReferencesMayNameInstances) {
  m_loaded = LoadText(
      "[Association] class L { [Key] uint8 k; T REF a = $t; T REF b = \"T.k=1\"; };"
      "class T { [Key] uint8 k; }; instance of T as $t { k = 1; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  for (const auto* name : {"a", "b"}) {
    const auto value =
        m_loaded.ns->GetClass("L", {})->GetPropertyDecl(name, {})->GetDefaultValue({});
    EXPECT_EQ("T.k=1", static_cast<const TCIMReference&>(value).GetPath());
    EXPECT_EQ("T", value.GetReferencedClassName());
  }
}

struct WrongInstances {
  const char* text;
  Lines messages;
};
std::ostream& operator<<(std::ostream& out, const WrongInstances& wrong) {
  return out << wrong.text;
}

class WrongInstanceTexts : public testing::TestWithParam<WrongInstances> {};

TEST_P(WrongInstanceTexts, AreReportedAndLoadNothing) {
  RecordingLogger logger;
  const auto loaded = LoadInstances(GetParam().text);
  EXPECT_EQ(GetParam().messages, loaded.messages);
  EXPECT_FALSE(loaded.ns);
}

INSTANTIATE_TEST_SUITE_P(
    TMofInstanceBuilder, WrongInstanceTexts,
    testing::Values(
        WrongInstances{"instance of X { a = 1; };",
                       {"a.mof:3:13: error: class 'X' is not declared"}},
        WrongInstances{"instance of Thing { Name = \"a\"; Colour = 1; };",
                       {"a.mof:3:33: error: class 'Thing' has no property 'Colour'"}},
        WrongInstances{"instance of Thing { Name = \"a\"; name = \"b\"; };",
                       {"a.mof:3:33: error: property 'name' is given twice"}},
        WrongInstances{"instance of Thing { Name = \"a\"; Size = 256; };",
                       {"a.mof:3:40: error: '256' is out of range for uint8"}},
        WrongInstances{"instance of Thing { Name = 1; };",
                       {"a.mof:3:28: error: expected a value of type string, found '1'"}},
        WrongInstances{"instance of Thing { Size = 1; };",
                       {"a.mof:3:13: error: key property 'Name' of this instance of 'Thing' has no "
                        "value"}},
        WrongInstances{"instance of Thing { Name = \"a\"; };\ninstance of Thing { Name = \"a\"; };",
                       {"a.mof:4:13: error: instance Thing.Name=\"a\" is given twice, first at "
                        "a.mof:3:13"}},
        // However the keys are written, and whatever other keys there are.
        WrongInstances{
            "instance of Thing { Size = 1; Name = \"a\\x41\"; };\n"
            "instance of Box { Name = \"aA\"; };\ninstance of Thing { Name = \"AA\"; };\n"
            "instance of THING { NAME = \"a\" \"A\"; };",
            {"a.mof:6:13: error: instance Thing.Name=\"aA\" is given twice, first at "
             "a.mof:3:13"}},
        WrongInstances{"class Two { [Key] uint8 a; [Key] string b = \"b\"; };\n"
                       "instance of Two { a = 1; };\ninstance of Two { b = \"c\"; a = 1; };\n"
                       "instance of Two { b = \"b\"; a = 0x1; };",
                       {"a.mof:6:13: error: instance Two.a=1,b=\"b\" is given twice, first at "
                        "a.mof:4:13"}},
        // A link by its paths, by an alias, and once more, before what it refers to.
        WrongInstances{
            "instance of Link { From = \"Thing.Name=\\\"a\\\"\"; To = \"THING.name=\\\"b\\\"\"; "
            "};\n"
            "instance of Link as $l { From = \"Thing.Name=\\\"a\\\"\"; To = $b; };\n"
            "instance of Link { To = \"thing.Name=\\\"b\\\"\"; From = \"Thing.Name=\\\"a\\\"\"; "
            "};\n"
            "instance of Thing { Name = \"a\"; };\ninstance of Thing as $b { Name = \"b\"; };",
            {"a.mof:4:13: error: instance "
             "Link.From=\"Thing.Name=\\\"a\\\"\",To=\"Thing.Name=\\\"b\\\"\" is given twice, first "
             "at "
             "a.mof:3:13",
             "a.mof:5:13: error: instance "
             "Link.From=\"Thing.Name=\\\"a\\\"\",To=\"Thing.Name=\\\"b\\\"\" is given twice, first "
             "at "
             "a.mof:3:13"}},
        WrongInstances{"instance of Thing as $a { Name = \"a\"; };\n"
                       "instance of Link { From = $a; To = $a; };\ninstance of Link as $l { From = "
                       "$a; To = $a; };",
                       {"a.mof:5:13: error: instance "
                        "Link.From=\"Thing.Name=\\\"a\\\"\",To=\"Thing.Name=\\\"a\\\"\" is given "
                        "twice, first at "
                        "a.mof:4:13"}},
        WrongInstances{"instance of Thing as $a { Name = \"a\"; };\n"
                       "instance of Thing as $A { Name = \"b\"; };",
                       {"a.mof:4:22: error: alias '$A' is given twice, first at a.mof:3:22"}},
        WrongInstances{"instance of Link { From = $x; To = $x; };",
                       {"a.mof:3:27: error: alias '$x' stands for no object",
                        "a.mof:3:36: error: alias '$x' stands for no object"}},
        WrongInstances{"instance of Thing { Name = $x; };",
                       {"a.mof:3:28: error: expected a value of type string, found '$x'"}},
        WrongInstances{"instance of Thing as $a { Name = \"a\"; };"
                       "instance of Link { From = $a; To = \"=\"; };",
                       {"a.mof:3:76: error: \"=\" is not an object path"}},
        WrongInstances{
            "instance of Thing as $a { Name = \"a\"; };\n"
            "instance of Link as $l { From = $a; To = $l; };",
            {"a.mof:4:13: error: the keys of this instance of 'Link' depend on themselves "
             "through aliases"}},
        WrongInstances{"instance of Thing as $a { Name = \"a\"; };\n"
                       "instance of Link as $l { From = $a; To = $a; };\n"
                       "instance of Link { From = $l; To = $a; };",
                       {"a.mof:5:27: error: property 'From' refers to a 'Thing', and 'Link' is "
                        "none"}},
        WrongInstances{"[Association] class D { [Key] uint8 k; Thing REF t = "
                       "\"Box.Name=\\\"x\\\"\"; Thing REF u; };",
                       {"a.mof:3:54: error: the default of a reference to 'Thing' is an object of "
                        "that very class"}},
        WrongInstances{"[Abstract] class None { [Key] uint8 k; }; instance of None { k = 1; };",
                       {"a.mof:3:55: error: class 'None' is abstract, and has no instances"}},
        WrongInstances{"class Two { [Key] uint8 k; uint8 a[2]; };"
                       "instance of Two { k = 1; a = {1, 2, 3}; };",
                       {"a.mof:3:71: error: the value has 3 elements, the array has 2"}},
        // Every one that is wrong is told of.
        WrongInstances{"instance of Thing { Size = 1; };\ninstance of Thing { Size = 2; };",
                       {"a.mof:3:13: error: key property 'Name' of this instance of 'Thing' has no "
                        "value",
                        "a.mof:4:13: error: key property 'Name' of this instance of 'Thing' has no "
                        "value"}},
        // What could not be read is not missed.
        WrongInstances{
            "class Odd { [Key] uint8 k; uint8; }; instance of Odd { k = 1; other = 2; };",
            {"a.mof:3:33: error: expected the name of a property or method, found "
             "';'"}},
        WrongInstances{"instance of Thing as $a { Name 1; }; "
                       "instance of Link { From = $a; To = $a; };",
                       {"a.mof:3:32: error: expected '=' after the name of a property, found "
                        "'1'"}}));

// A chain that has to be stored from its far end.
TEST_F(TMofInstanceBuilder, LongChainsOfAssociationsLoad) {
  std::string text = "instance of Thing as $a { Name = \"a\"; };";
  constexpr int length = 5000;
  for (int i = 0; i < length; ++i) {
    const auto name = std::to_string(i);
    text += "instance of Thing as $t" + name + " { Name = \"" + name + "\"; };" +
            "instance of Link as $l" + name + " { From = $t" + name + "; To = $a;" +
            (i + 1 < length ? " Next = $l" + std::to_string(i + 1) + "; };" : " };");
  }
  LoadSound(text);
  EXPECT_EQ(static_cast<std::size_t>(length), PathsOf("Link").size());
}

// The classes of what follows, behind kQualifiers.
const std::string kEmbedding =
    "Qualifier EmbeddedInstance : string, Scope(property);"
    "Qualifier EmbeddedObject : boolean = false, Scope(property);"
    "class Part { string Text; uint8 Two[2]; };"
    "[Abstract] class Odd : Part {};"
    "class Whole { [Key] string Name; [EmbeddedInstance(\"Part\")] string One;"
    " [EmbeddedInstance(\"Part\")] string Many[]; [EmbeddedObject] string Any;"
    " [EmbeddedInstance(\"Nest\")] string Nested; };"
    "class Nest { [EmbeddedInstance(\"Part\")] string Inner;"
    " [EmbeddedInstance(\"Nest\")] string Self; };\n";

Lines EmbeddingMessages(const std::string& text) {
  RecordingLogger logger;
  return LoadText(kEmbedding + text).messages;
}

class EmbeddedObjects : public TMofInstanceBuilder {
 protected:
  std::string ValueOf(const std::string& path, const std::string& property) const {
    return Instance(path)->GetProperty(property, {})->GetValue({}).ToString(10);
  }
};

// The alias of an instance that has no path of its own is that value and nothing else.
TEST_F(EmbeddedObjects, AnAliasIsTheTextOfItsInstance) {
  m_loaded = LoadText(kEmbedding +
                      "instance of Whole { Name = \"w\"; One = $p; Many = {$q, $p};"
                      " Any = $x; Nested = $n; };"
                      "instance of Nest as $n { Inner = $q; };"
                      "instance of Part as $p { Text = \"1\"; };"
                      "instance of Part as $q { Text = \"2\"; };"
                      "instance of Whole as $x { Name = \"x\"; One = $p; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  ASSERT_TRUE(m_loaded.ns);
  EXPECT_EQ((Names{"Whole.Name=\"w\"", "Whole.Name=\"x\""}), PathsOf("Whole"));
  EXPECT_EQ(Names{}, PathsOf("Part"));
  EXPECT_EQ(Names{}, PathsOf("Nest"));
  const std::string one = "instance of Part\n{\n  Text = \"1\";\n};";
  const std::string two = "instance of Part\n{\n  Text = \"2\";\n};";
  EXPECT_EQ(one, ValueOf("Whole.Name=\"w\"", "One"));
  EXPECT_EQ(one, ValueOf("Whole.Name=\"x\"", "One"));
  EXPECT_EQ("{" + two + ", " + one + "}", ValueOf("Whole.Name=\"w\"", "Many"));
  EXPECT_NE(std::string::npos, ValueOf("Whole.Name=\"w\"", "Any").find("Name = \"x\";\n  One = "));
  EXPECT_NE(std::string::npos, ValueOf("Whole.Name=\"w\"", "Nested").find("Inner = \"instance"));
  const auto again = Load({{"b.mof", Written(*m_loaded.ns)}}, {"b.mof"});
  EXPECT_EQ(Lines{}, again.messages);
}

TEST_F(EmbeddedObjects, AnAliasMayStandForAClass) {
  m_loaded = LoadText(kEmbedding +
                      "class C as $c { uint8 k; };"
                      "instance of Whole { Name = \"w\"; Any = $c; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  ASSERT_TRUE(m_loaded.ns);
  EXPECT_EQ("class C\n{\n  uint8 k;\n};", ValueOf("Whole.Name=\"w\"", "Any"));
}

TEST_F(EmbeddedObjects, WhatCannotBeEmbeddedIsReported) {
  EXPECT_EQ((Lines{"a.mof:3:39: error: alias '$w' stands for no object"}),
            EmbeddingMessages("instance of Whole { Name = \"v\"; One = $w; };\n"
                              "instance of Whole as $w { Name = \"w\"; };"));
  EXPECT_EQ((Lines{"a.mof:3:13: error: this instance of 'Nest' embeds itself through aliases",
                   "a.mof:4:13: error: this instance of 'Nest' embeds itself through aliases"}),
            EmbeddingMessages("instance of Nest as $m { Self = $n; };\n"
                              "instance of Nest as $n { Self = $m; };"));
}

struct Embedded {
  const char* property;
  const char* text;
  const char* wrong;  // empty: nothing
};
std::ostream& operator<<(std::ostream& out, const Embedded& embedded) {
  return out << embedded.text;
}

class EmbeddedTexts : public testing::TestWithParam<Embedded> {};

TEST_P(EmbeddedTexts, AreCheckedAsFilesOfTheirOwn) {
  const auto& [property, text, wrong] = GetParam();
  const auto messages = EmbeddingMessages("instance of Whole { Name = \"v\";\n" +
                                          std::string(property) + " = \"" + text + "\"; };");
  if (std::string(wrong).empty())
    EXPECT_EQ(Lines{}, messages);
  else
    EXPECT_EQ((Lines{"a.mof:4:7: error: in the embedded object, " + std::string(wrong)}), messages);
}

INSTANTIATE_TEST_SUITE_P(
    TMofInstanceBuilder, EmbeddedTexts,
    testing::Values(
        Embedded{"One", "instance of Part { Text = \\\"x\\\"; Two = {1, 2}; };", ""},
        Embedded{"Any", "class X { uint8 a; };", ""},
        Embedded{"Any", "instance of Whole { Name = \\\"x\\\"; };", ""},
        Embedded{"One", "", "expected one instance"},
        Embedded{"One", "class X {};", "expected one instance"},
        Embedded{"One", "instance of Part {}; instance of Part {};", "expected one instance"},
        Embedded{"Any", "class X {}; class Y {};", "expected one instance or one class"},
        Embedded{"One", "instance of Part { Text 1; };",
                 "1:25: expected '=' after the name of a property, found '1'"},
        Embedded{"One", "instance of Nowhere {};", "1:13: class 'Nowhere' is not declared"},
        Embedded{"One", "instance of Whole {};",
                 "1:13: expected an instance of 'Part', and 'Whole' is none"},
        Embedded{"One", "instance of Odd {};", "1:13: class 'Odd' is abstract"},
        Embedded{"One", "instance of Part { Colour = 1; };",
                 "1:20: class 'Part' has no property 'Colour'"},
        Embedded{"One", "instance of Part { Text = 1; };",
                 "1:27: expected a value of type string, found '1'"},
        Embedded{"One", "instance of Part { Two = {1, 2, 3}; };",
                 "1:26: the value has 3 elements, the array has 2"}));

// What refers to nothing costs its own instance only.
class Dangling : public TMofInstanceBuilder {
 protected:
  void LoadNamed(const std::string& text, bool strict = false) {
    m_loaded.report = hav::mof::TMofReport();
    TextSource source({{"a.mof", kQualifiers + kClasses + text}});
    hav::mof::TMofLoader loader(*Provider(), source);
    loader.SetNamespaceName("root/home");
    loader.SetStrict(strict);
    m_loaded.ns = loader.Load({"a.mof"}, m_loaded.report);
    m_loaded.messages = Messages(m_loaded.report);
  }
  void ExpectLeftOut(const std::string& link, const Lines& what) {
    const std::string text = "instance of Thing as $a { Name = \"a\"; };\n" + link;
    Lines warnings;
    Lines errors;
    for (const auto& one : what) {
      const auto place = one.substr(0, one.find(' '));
      warnings.push_back("a.mof:" + place +
                         " warning: the instance is left out:" + one.substr(place.size()));
      errors.push_back("a.mof:" + place + " error:" + one.substr(place.size()));
    }
    LoadNamed(text);
    EXPECT_EQ(warnings, m_loaded.messages);
    ASSERT_TRUE(m_loaded.ns);
    EXPECT_EQ(Names{}, PathsOf("Link"));
    EXPECT_EQ((Names{"Thing.Name=\"a\""}), PathsOf("Thing"));
    EXPECT_EQ(1u, m_loaded.report.instances);
    LoadNamed(text, true);
    EXPECT_EQ(errors, m_loaded.messages);
    EXPECT_FALSE(m_loaded.ns);
  }
};

TEST_F(Dangling, AReferenceToAnObjectThatIsNotThere) {
  ExpectLeftOut("instance of Link { From = $a; To = \"Thing.Name=\\\"b\\\"\"; };",
                {"4:36: property 'To' refers to Thing.Name=\"b\", which is not there in namespace "
                 "'root/home'"});
}

TEST_F(Dangling, AReferenceToAClassThatIsNotThere) {
  ExpectLeftOut("instance of Link { From = $a; To = \"Other.Name=\\\"b\\\"\"; };",
                {"4:36: property 'To' refers to Other.Name=\"b\", which is not there in namespace "
                 "'root/home'"});
}

TEST_F(Dangling, AReferenceIntoAnotherNamespace) {
  ExpectLeftOut("instance of Link { From = $a; To = \"root/other:Thing.Name=\\\"a\\\"\"; };",
                {"4:36: property 'To' refers to Thing.Name=\"a\" in namespace 'root/other', and "
                 "only namespace 'root/home' is loaded"});
}

TEST_F(Dangling, WhatRefersToIt) {
  ExpectLeftOut(
      "instance of Link { From = $a; To = $a; Next = $l; };\n"
      "instance of Link as $l { From = $a; To = \"Thing.Name=\\\"b\\\"\"; };",
      {"4:47: property 'Next' refers to Link.From=\"Thing.Name=\\\"a\\\"\",To=\"Thing.Name=\\\"b"
       "\\\"\", which is not there in namespace 'root/home'",
       "5:42: property 'To' refers to Thing.Name=\"b\", which is not there in namespace "
       "'root/home'"});
}

TEST_F(Dangling, ReferencesThatNameTheirOwnNamespaceAreThere) {
  LoadNamed(
      "instance of Thing { Name = \"a\"; };"
      "instance of Link { From = \"root/home:Thing.Name=\\\"a\\\"\";"
      " To = \"ROOT/Home:Thing.Name=\\\"a\\\"\"; };");
  EXPECT_EQ(Lines{}, m_loaded.messages);
  EXPECT_EQ(1u, PathsOf("Link").size());
}

}  // namespace
}  // namespace havtest

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
        WrongInstances{"instance of Thing as $a { Name = \"a\"; };\n"
                       "instance of Link { From = $a; To = \"Thing.Name=\\\"b\\\"\"; };",
                       {"a.mof:4:13: error: the instance refers to Thing.Name=\"b\", which is not "
                        "there"}},
        WrongInstances{
            "[Association] class D { [Key] uint8 k; Thing REF t = \"Box.Name=\\\"x\\\"\"; };",
            {"a.mof:3:54: error: the default of a reference to 'Thing' is an object of "
             "that very class"}},
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

}  // namespace
}  // namespace havtest

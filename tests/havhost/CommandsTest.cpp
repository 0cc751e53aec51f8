// The commands over a small model, in text and JSON.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using TJson = nlohmann::ordered_json;

class Commands : public ::testing::Test, public ModelTest {
 protected:
  // The output of a command that has nothing to complain of.
  std::string Text(const std::vector<std::string>& arguments) const {
    const auto outcome = RunOn(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }
  TJson Json(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--format", "json"});
    return TJson::parse(Text(arguments));
  }
  // The error line of a command that fails.
  std::string Error(const std::vector<std::string>& arguments) const {
    const auto outcome = RunOn(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
  }
};

TEST_F(Commands, ClassesStandBelowTheirSuperclasses) {
  EXPECT_EQ(Text({"classes"}),
            "T_CacheOf       association     1 instance\n"
            "T_Contains      association     3 instances\n"
            "T_Element       abstract class\n"
            "  T_Cache       class           1 instance\n"
            "  T_Cpu         class           1 instance\n"
            "  T_Disk        class           1 instance\n"
            "    T_FastDisk  class           1 instance\n"
            "  T_Partition   class           1 instance\n"
            "  T_System      class           1 instance\n"
            "T_OnDisk        association     1 instance\n");
  EXPECT_EQ(Text({"classes", "--class", "t_disk"}),
            "T_Disk        class  1 instance\n"
            "  T_FastDisk  class  1 instance\n");
}

TEST_F(Commands, ClassesAsJsonHaveTheirKind) {
  EXPECT_EQ(Json({"classes", "--class", "T_FastDisk"}), TJson::parse(R"({
    "version": 1, "namespace": "root/cimv2",
    "classes": [{"name": "T_FastDisk", "superclass": "T_Disk", "association": false,
                 "abstract": false, "indication": false, "instances": 1}]})"));
  EXPECT_EQ(Json({"classes"})["classes"][2], TJson::parse(R"(
    {"name": "T_Element", "superclass": null, "association": false, "abstract": true,
     "indication": false, "instances": 0})"));
}

TEST_F(Commands, ShowTellsAllOfAClass) {
  EXPECT_EQ(Text({"show", "T_Disk"}),
            "Class       T_Disk\n"
            "Kind        class\n"
            "Superclass  T_Element\n"
            "Subclasses  T_FastDisk\n"
            "Instances   1\n"
            "\n"
            "Qualifiers\n"
            "  Description  A disk.\n"
            "\n"
            "Properties\n"
            "  Name  string  key, from T_Element\n"
            "    Key  TRUE\n"
            "  Size  uint64\n"
            "    ABBREVIATEUNITS    TRUE\n"
            "    DISPLAYFIXEDUNITS  Peta\n"
            "    UNITS              Bytes\n"
            "  State  uint8  default 1\n"
            "    Values  {Off, On}\n"
            "  Labels  string[]\n"
            "    NULLDISPLAY  None\n"
            "\n"
            "Methods\n"
            "  uint32 Reset(uint16 Mode, string Reason)\n"
            "    Description  Starts it anew.\n"
            "    Mode  uint16\n"
            "    Reason  string\n");
  EXPECT_EQ(Text({"show", "T_OnDisk"}),
            "Class       T_OnDisk\n"
            "Kind        association\n"
            "Superclass  none\n"
            "Subclasses  none\n"
            "Instances   1\n"
            "\n"
            "Qualifiers\n"
            "  Association  TRUE\n"
            "\n"
            "Properties\n"
            "  Antecedent  T_Disk REF  key\n"
            "    Key  TRUE\n"
            "  Dependent  T_Partition REF  key\n"
            "    Key  TRUE\n");
}

// What the author said, and not what keeps it.
TEST_F(Commands, ShowKeepsTheOrderOfTheAuthor) {
  const TemporaryFolder folder;
  const auto file =
      folder.File("order.mof",
                  "Qualifier Association : boolean, Scope(association), Flavor(DisableOverride);"
                  "Qualifier Description : string, Scope(any); Qualifier Key : boolean, Scope(any);"
                  "class T { [Key] string Zulu; uint8 Bravo[4];"
                  "  uint32 Run(T REF To, string From[2], object REF Any[]); };"
                  "[Description(\"d\"), Association] class L { [Key] T REF To; T REF From; };");
  const auto shown = Havhost({"show", "T", "--mof", file});
  EXPECT_EQ("", shown.err);
  EXPECT_EQ(shown.out.substr(shown.out.find("Instances")),
            "Instances   0\n"
            "\n"
            "Properties\n"
            "  Zulu  string  key\n"
            "    Key  TRUE\n"
            "  Bravo  uint8[4]\n"
            "\n"
            "Methods\n"
            "  uint32 Run(T REF To, string[2] From, object REF[] Any)\n"
            "    To  T REF\n"
            "    From  string[2]\n"
            "    Any  object REF[]\n");
  const auto cls = TJson::parse(Havhost({"show", "T", "--mof", file, "--format", "json"}).out);
  EXPECT_EQ(cls["qualifiers"], TJson::object());
  EXPECT_EQ(cls["properties"][1]["type"], "uint8[4]");
  EXPECT_EQ(cls["methods"][0]["parameters"], TJson::parse(R"(
    [{"name": "To", "type": "T REF", "qualifiers": {}},
     {"name": "From", "type": "string[2]", "qualifiers": {}},
     {"name": "Any", "type": "object REF[]", "qualifiers": {}}])"));
  const auto mof = Havhost({"mof", "L", "--mof", file}).out;
  EXPECT_EQ(mof,
            "[Association,\n Description (\"d\")]\nclass L\n{\n  [Key]\n  T REF To;\n  T REF "
            "From;\n};\n\n");
}

TEST_F(Commands, LoadLeavesOutWhatRefersToNothingUnlessItIsStrict) {
  const TemporaryFolder folder;
  const auto file = folder.File(
      "link.mof",
      "Qualifier Key : boolean, Scope(any);"
      "Qualifier Association : boolean, Scope(association), Flavor(DisableOverride);"
      "class T { [Key] uint8 k; }; [Association] class L { [Key] T REF a; [Key] T REF b; };\n"
      "instance of T { k = 1; }; instance of L { a = \"T.k=1\"; b = \"T.k=2\"; };");
  const auto what = "property 'b' refers to T.k=2, which is not there in namespace 'root/cimv2'\n";
  const auto loaded = Havhost({"load", file});
  EXPECT_EQ(0, loaded.status);
  EXPECT_EQ("havhost: " + file + ":2:60: warning: the instance is left out: " + what, loaded.err);
  EXPECT_NE(std::string::npos, loaded.out.find("Instances                 1\n"));
  const auto strict = Havhost({"load", "--strict", file});
  EXPECT_EQ(1, strict.status);
  EXPECT_EQ("havhost: " + file + ":2:60: error: " + what +
                "havhost: nothing is loaded: the MOF has 1 error\n",
            strict.err);
}

TEST_F(Commands, LoadSaysThatItStoppedAfterAHundredErrors) {
  const TemporaryFolder folder;
  std::string text;
  for (int i = 0; i < 200; ++i) text += "foo;\n";
  const auto outcome = Havhost({"load", folder.File("a.mof", text)});
  EXPECT_EQ(1, outcome.status);
  EXPECT_NE(std::string::npos, outcome.err.find("a.mof:100:1: error: expected a declaration"));
  EXPECT_NE(std::string::npos,
            outcome.err.find("havhost: note: reading stopped after 100 errors\n"
                             "havhost: nothing is loaded: the MOF has 100 errors\n"))
      << outcome.err;
}

TEST_F(Commands, ShowAsJsonHasEveryDeclaration) {
  const auto cls = Json({"show", "t_fastdisk"});
  EXPECT_EQ(cls["name"], "T_FastDisk");
  EXPECT_EQ(cls["superclass"], "T_Disk");
  EXPECT_EQ(cls["subclasses"], TJson::array());
  EXPECT_EQ(cls["instances"], 1);
  EXPECT_EQ(cls["qualifiers"], TJson::parse(R"({"Description": "A disk."})"));
  ASSERT_EQ(cls["properties"].size(), 5u);
  EXPECT_EQ(cls["properties"][0], TJson::parse(R"(
    {"name": "Name", "type": "string", "origin": "T_Element", "key": true, "default": null,
     "qualifiers": {"Key": true}})"));
  EXPECT_EQ(cls["properties"][2], TJson::parse(R"(
    {"name": "State", "type": "uint8", "origin": "T_Disk", "key": false, "default": 1,
     "qualifiers": {"Values": ["Off", "On"]}})"));
  EXPECT_EQ(cls["methods"], TJson::parse(R"(
    [{"name": "Reset", "type": "uint32", "origin": "T_Disk",
      "parameters": [{"name": "Mode", "type": "uint16", "qualifiers": {}},
                     {"name": "Reason", "type": "string", "qualifiers": {}}],
      "qualifiers": {"Description": "Starts it anew."}}])"));
}

TEST_F(Commands, InstancesShowDisplayText) {
  EXPECT_EQ(Text({"instances", "T_Disk"}),
            "T_Disk.Name=\"disk2\"\n"
            "  Labels  a, b\n"
            "  Name    disk2\n"
            "  Size    1.5 KB\n"
            "  State   On\n");
  EXPECT_EQ(Text({"instances", "T_Partition"}), "T_Partition.Name=\"part\"\n  Name  part\n");
}

TEST_F(Commands, DeepInstancesAreThoseOfSubclassesToo) {
  EXPECT_EQ(Text({"instances", "T_Disk", "--deep", "--raw"}),
            "T_Disk.Name=\"disk2\"\n"
            "  Labels  a, b    [{a, b}]\n"
            "  Name    disk2   [disk2]\n"
            "  Size    1.5 KB  [1536]\n"
            "  State   On      [1]\n"
            "\n"
            "T_FastDisk.Name=\"disk10\"\n"
            "  Name   disk10  [disk10]\n"
            "  Speed  0.5     [0.5]\n"
            "  State  Off     [0]\n");
}

TEST_F(Commands, InstancesAsJsonHaveRawAndDisplay) {
  EXPECT_EQ(Json({"instances", "T_FastDisk"}), TJson::parse(R"({
    "version": 1, "namespace": "root/cimv2",
    "instances": [{
      "path": "T_FastDisk.Name=\"disk10\"", "class": "T_FastDisk",
      "properties": {
        "Labels": {"type": "string[]", "value": null, "display": "None"},
        "Name": {"type": "string", "value": "disk10", "display": "disk10"},
        "Size": {"type": "uint64", "value": null, "display": "NULL"},
        "Speed": {"type": "real64", "value": 0.5, "display": "0.5"},
        "State": {"type": "uint8", "value": 0, "display": "Off"}}}]})"));
  EXPECT_EQ(Json({"instances", "T_Disk"})["instances"][0]["properties"]["Labels"],
            TJson::parse(R"({"type": "string[]", "value": ["a", "b"], "display": ["a", "b"]})"));
  EXPECT_EQ(Json({"instances", "T_Element"}),
            TJson::parse(R"({"version": 1, "namespace": "root/cimv2", "instances": []})"));
}

TEST_F(Commands, GetFindsAnInstanceByItsPath) {
  const std::string expected =
      "T_Disk.Name=\"disk2\"\n"
      "  Labels  a, b\n"
      "  Name    disk2\n"
      "  Size    1.5 KB\n"
      "  State   On\n";
  EXPECT_EQ(Text({"get", "T_Disk.Name=\"disk2\""}), expected);
  EXPECT_EQ(Text({"get", "root/cimv2:t_disk.name=\"disk2\""}), expected);
  EXPECT_EQ(Json({"get", "T_Cpu.Name=\"cpu\""}), TJson::parse(R"({
    "version": 1, "path": "T_Cpu.Name=\"cpu\"", "class": "T_Cpu",
    "properties": {"Name": {"type": "string", "value": "cpu", "display": "cpu"}}})"));
}

TEST_F(Commands, WhatIsNotThereIsNamed) {
  EXPECT_EQ(Error({"show", "T_None"}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"show", ""}), "havhost: no such class: ''\n");
  EXPECT_EQ(Error({"show", "a\x1b-b"}), "havhost: no class name: 'a\\x1b-b'\n");
  EXPECT_EQ(Error({"instances", "T_None"}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"mof", "T_None"}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"classes", "--class", "T_None"}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"inventory", "--class", "T_None"}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"get", "T_None.Name=\"a\""}), "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"get", "T_Disk.Name=\"a\""}),
            "havhost: no such instance: 'T_Disk.Name=\"a\"'\n");
  EXPECT_EQ(Error({"get", "T_Disk"}), "havhost: 'T_Disk' names a class, and no instance\n");
  EXPECT_EQ(Error({"get", "T_Disk.=1"}),
            "havhost: no object path: 'T_Disk.=1' "
            "(a path looks like Class.Key=\"text\",OtherKey=1)\n");
  EXPECT_EQ(Error({"get", "root/other:T_Disk.Name=\"disk2\""}),
            "havhost: the path names the namespace root/other, and this is root/cimv2\n");
  EXPECT_EQ(Error({"associators", "T_Disk", "--assoc-class", "T_None"}),
            "havhost: no such class: 'T_None'\n");
  EXPECT_EQ(Error({"references", "T_Cpu.Name=\"cpu\"", "--result-class", "T_None"}),
            "havhost: no such class: 'T_None'\n");
}

// Keys of every type, with what makes a path hard to print and to read.
const char kPaths[] = R"mof(
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
class T_Text { [Key] string Name; };
instance of T_Text { Name = ""; };
instance of T_Text { Name = " x "; };
instance of T_Text { Name = "--help"; };
instance of T_Text { Name = "a,Name=b=c.d:e"; };
instance of T_Text { Name = "q\"uote'$`\\"; };
instance of T_Text { Name = "\\n\\x41\n\t\r\x1b[2J\x7f\x9b"; };
instance of T_Text { Name = "\xe4\x20ac \xfeff"; };
instance of T_Text { Name = "[1,2]"; };
instance of T_Text { Name = "%%{}"; };
class T_Number { [Key] sint64 I; [Key] uint64 U; [Key] real64 R; [Key] boolean B; };
instance of T_Number { I = -9223372036854775808; U = 18446744073709551615; R = 0.1; B = true; };
instance of T_Number { I = 9223372036854775807; U = 0; R = -1.5e-300; B = false; };
instance of T_Number { I = 10; U = 0; R = 1.0e300; B = false; };
instance of T_Number { I = 2; U = 0; R = 16777217.0; B = false; };
class T_Small { [Key] real32 R; [Key] char16 C; [Key] datetime D; [Key] sint8 I; [Key] uint8 U; };
instance of T_Small { R = 0.1; C = '"'; D = "20261121120000.123456+060"; I = -128; U = 255; };
instance of T_Small { R = 3.4e38; C = '\\'; D = "00000001******.******:000"; I = 0; U = 0; };
[Association] class T_Link { [Key] T_Text REF One; [Key] T_Text REF Other; };
instance of T_Text as $Quote { Name = "\"'\\"; };
instance of T_Text as $Control { Name = "\n\x1b"; };
instance of T_Link as $Link { One = $Quote; Other = $Control; };
[Association] class T_Deep { [Key] T_Link REF One; [Key] T_Text REF Other; };
instance of T_Deep { One = $Link; Other = $Quote; };
)mof";

TEST(Paths, AsPrintedAreAcceptedWhateverIsInThem) {
  const TemporaryFolder folder;
  const auto file = folder.File("paths.mof", kPaths);
  std::size_t count = 0;
  for (const std::string cls : {"T_Text", "T_Number", "T_Small", "T_Link", "T_Deep"}) {
    const auto text = Havhost({"instances", cls, "--mof", file});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_EQ(text.err, "");
    std::string together;
    std::istringstream lines(text.out);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line[0] == ' ') continue;
      const auto one = Havhost({"get", "--mof", file, "--", line});
      EXPECT_EQ(one.err, "") << line;
      together += (together.empty() ? "" : "\n") + one.out;
      ++count;
    }
    EXPECT_EQ(together, text.out);
    const auto listing =
        TJson::parse(Havhost({"instances", cls, "--format", "json", "--mof", file}).out);
    for (const auto& instance : listing["instances"]) {
      const auto one = Havhost({"get", "--format", "json", "--mof", file, "--", instance["path"]});
      TJson expected = {{"version", 1}};
      expected.update(instance);
      EXPECT_EQ(TJson::parse(one.out), expected);
    }
  }
  EXPECT_EQ(count, 19u);
}

TEST(Paths, InListingsOrderByTheNumbersInThem) {
  const TemporaryFolder folder;
  const auto file = folder.File("numbers.mof", R"mof(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
class T_N { [Key] sint32 Id; };
instance of T_N { Id = 10; };
instance of T_N { Id = 9; };
instance of T_N { Id = -9; };
instance of T_N { Id = -10; };
instance of T_N { Id = 100; };
)mof");
  const auto listing =
      TJson::parse(Havhost({"instances", "T_N", "--format", "json", "--mof", file}).out);
  std::vector<int> ids;
  for (const auto& instance : listing["instances"])
    ids.push_back(instance["properties"]["Id"]["value"]);
  EXPECT_EQ(ids, (std::vector<int>{-10, -9, 9, 10, 100}));
}

// What a shell of this system makes of a path that is written as the hint says.
std::string InTheShell(const std::string& path) {
#if defined(_WIN32)
  std::string argument;
  for (const char c : path) argument += c == '"' ? "\\\"" : std::string(1, c);
  return "\"" + argument + "\"";
#else
  return "'" + path + "'";
#endif
}

TEST_F(Commands, APathWithoutItsQuotesGetsAHint) {
  const auto hint = [](const std::string& path) {
    return " (the shell has taken its quotes away; write " + InTheShell(path) + ")\n";
  };
  EXPECT_EQ(Error({"get", "T_Disk.Name=disk2"}),
            "havhost: no object path: 'T_Disk.Name=disk2'" + hint("T_Disk.Name=\"disk2\""));
  EXPECT_EQ(Error({"get", "root/cimv2:t_disk.name=a, b"}),
            "havhost: no object path: 'root/cimv2:t_disk.name=a, b'" +
                hint("root/cimv2:t_disk.name=\"a, b\""));
  EXPECT_EQ(Error({"references",
                   "T_Contains.GroupComponent=T_System.Name=box,"
                   "PartComponent=T_Cpu.Name=cpu"}),
            "havhost: no object path: 'T_Contains.GroupComponent=T_System.Name=box,"
            "PartComponent=T_Cpu.Name=cpu'" +
                hint("T_Contains.GroupComponent=\"T_System.Name=box\","
                     "PartComponent=\"T_Cpu.Name=cpu\""));
  // A number is a value without quotes, too.
  const TemporaryFolder folder;
  const auto file = folder.File("seven.mof", R"mof(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
class T_Text { [Key] string Name; };
instance of T_Text { Name = "7"; };
)mof");
  EXPECT_EQ(Havhost({"get", "T_Text.Name=7", "--mof", file}).err,
            "havhost: no such instance: 'T_Text.Name=7'" + hint("T_Text.Name=\"7\""));
  EXPECT_EQ(Havhost({"get", "T_Text.Name=8", "--mof", file}).err,
            "havhost: no such instance: 'T_Text.Name=8'\n");
}

TEST_F(Commands, ReferencesOfAnInstance) {
  EXPECT_EQ(Text({"references", "T_Cpu.Name=\"cpu\"", "--role", "partcomponent"}),
            "T_Contains.GroupComponent=\"T_System.Name=\\\"box\\\"\","
            "PartComponent=\"T_Cpu.Name=\\\"cpu\\\"\"\n"
            "  GroupComponent  T_System.Name=\"box\"\n"
            "  PartComponent   T_Cpu.Name=\"cpu\"\n");
  EXPECT_EQ(Json({"references", "T_Disk.Name=\"disk2\""})["instances"].size(), 2u);
  const auto onDisk =
      Json({"references", "T_Disk.Name=\"disk2\"", "--result-class", "T_OnDisk"})["instances"];
  ASSERT_EQ(onDisk.size(), 1u);
  EXPECT_EQ(onDisk[0]["properties"]["Dependent"], TJson::parse(R"(
    {"type": "reference", "value": "T_Partition.Name=\"part\"",
     "display": "T_Partition.Name=\"part\""})"));
  EXPECT_EQ(Text({"references", "T_Cpu.Name=\"cpu\"", "--role", "GroupComponent"}), "");
}

TEST_F(Commands, ReferencesOfAClass) {
  EXPECT_EQ(Text({"references", "T_FastDisk"}),
            "T_OnDisk    association  1 instance\n"
            "T_Contains  association  3 instances\n");
  EXPECT_EQ(Text({"references", "T_FastDisk", "--role", "antecedent"}),
            "T_OnDisk  association  1 instance\n");
  EXPECT_EQ(Text({"references", "T_FastDisk", "--result-class", "T_Contains"}),
            "T_Contains  association  3 instances\n");
}

// The paths of the instances, or the names of the classes, of a listing.
std::vector<std::string> Found(const TJson& listing) {
  std::vector<std::string> found;
  if (listing.contains("classes"))
    for (const auto& cls : listing["classes"]) found.push_back(cls["name"]);
  else
    for (const auto& instance : listing["instances"]) found.push_back(instance["path"]);
  return found;
}

using Paths = std::vector<std::string>;

TEST_F(Commands, AssociatorsOfAnInstance) {
  const std::string disk = "T_Disk.Name=\"disk2\"";
  EXPECT_EQ(Text({"associators", disk, "--assoc-class", "T_OnDisk"}),
            "T_Partition.Name=\"part\"\n  Name  part\n");
  EXPECT_EQ(Found(Json({"associators", disk})),
            (Paths{"T_Partition.Name=\"part\"", "T_System.Name=\"box\""}));
  EXPECT_EQ(Found(Json({"associators", disk, "--result-class", "T_System"})),
            Paths{"T_System.Name=\"box\""});
  EXPECT_EQ(Found(Json({"associators", disk, "--result-role", "Dependent"})),
            Paths{"T_Partition.Name=\"part\""});
  EXPECT_EQ(Found(Json({"associators", "T_System.Name=\"box\"", "--role", "PartComponent",
                        "--result-class", "T_Cpu"})),
            Paths{});
  EXPECT_EQ(Found(Json({"associators", "T_System.Name=\"box\"", "--result-class", "T_Element"})),
            (Paths{"T_Cpu.Name=\"cpu\"", "T_Disk.Name=\"disk2\"", "T_FastDisk.Name=\"disk10\""}));
}

TEST_F(Commands, TheRoleIsThatOfTheStartAndTheResultRoleThatOfTheOtherEnd) {
  const std::string disk = "T_Disk.Name=\"disk2\"";
  EXPECT_EQ(Found(Json({"associators", disk, "--role", "Antecedent"})),
            Paths{"T_Partition.Name=\"part\""});
  EXPECT_EQ(Found(Json({"associators", disk, "--result-role", "Antecedent"})), Paths{});
  EXPECT_EQ(Found(Json({"associators", disk, "--role", "PartComponent", "--result-role",
                        "GroupComponent"})),
            Paths{"T_System.Name=\"box\""});
  EXPECT_EQ(
      Found(Json({"associators", disk, "--role", "PartComponent", "--result-role", "Dependent"})),
      Paths{});
}

TEST_F(Commands, AssociatorsOfAClass) {
  EXPECT_EQ(Found(Json({"associators", "T_Partition"})), (Paths{"T_Disk", "T_System"}));
  EXPECT_EQ(Found(Json({"associators", "T_Disk", "--assoc-class", "T_OnDisk"})),
            Paths{"T_Partition"});
  EXPECT_EQ(Found(Json({"associators", "T_Disk", "--role", "Antecedent"})), Paths{"T_Partition"});
  EXPECT_EQ(Found(Json({"associators", "T_Disk", "--result-role", "GroupComponent"})),
            Paths{"T_System"});
  EXPECT_EQ(Found(Json({"associators", "T_Disk", "--result-class", "T_Partition"})),
            Paths{"T_Partition"});
}

TEST_F(Commands, MofOfOneClass) {
  const auto mof = Text({"mof", "T_Partition"});
  EXPECT_NE(mof.find("class T_Partition : T_Element"), std::string::npos) << mof;
  EXPECT_EQ(mof.find("T_Disk"), std::string::npos) << mof;
}

TEST_F(Commands, MofOfEverythingLoadsAgain) {
  const TemporaryFolder folder;
  const auto file = folder.File("again.mof", Text({"mof"}));
  const auto again = Havhost({"mof", "--mof", file});
  EXPECT_EQ(again.err, "");
  EXPECT_EQ(again.out, Text({"mof"}));
}

TEST_F(Commands, LoadSumsUp) {
  const auto outcome = Havhost({"load", File()});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "Namespace                 root/cimv2\n"
            "Qualifier declarations    9\n"
            "Classes                   10\n"
            "  ordinary                7\n"
            "  associations            3\n"
            "  indications             0\n"
            "  abstract, of all these  1\n"
            "Instances                 6\n"
            "Associations              5\n");
  EXPECT_EQ(TJson::parse(Havhost({"load", File(), "--format", "json"}).out), TJson::parse(R"({
    "version": 1, "namespace": "root/cimv2", "qualifierDeclarations": 9,
    "classes": {"total": 10, "ordinary": 7, "association": 3, "indication": 0, "abstract": 1},
    "instances": 6, "associations": 5})"));
}

TEST_F(Commands, NamespaceIsNamedByTheOptionElseByTheMof) {
  const TemporaryFolder folder;
  const auto file = folder.File("a.mof", "#pragma namespace (\"root/other\")\n");
  EXPECT_EQ(TJson::parse(Havhost({"load", file, "--format", "json"}).out)["namespace"],
            "root/other");
  EXPECT_EQ(TJson::parse(
                Havhost({"load", file, "--format", "json", "--namespace", "a/b"}).out)["namespace"],
            "a/b");
  EXPECT_EQ(Json({"classes", "--namespace", "a/b"})["namespace"], "a/b");
}

TEST_F(Commands, IncludedFilesAreLookedForInTheSearchPath) {
  const TemporaryFolder folder;
  folder.File("parts/a.mof", "Qualifier Key : boolean = false, Scope(property);\n");
  folder.File("more/b.mof", "class T_B { [Key] string Name; };\n");
  const auto file =
      folder.File("main.mof", "#pragma include (\"a.mof\")\n#pragma include (\"b.mof\")\n");
  const auto outcome = Havhost({"classes", "--mof", file, "--include", folder.Path("parts"),
                                "--include", folder.Path("more")});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "T_B  class\n");
}

TEST_F(Commands, EveryErrorOfTheMofIsALineWithItsPlace) {
  const TemporaryFolder folder;
  const auto file = folder.File("bad.mof", "class T_A : T_None { };\nclass 1;\n");
  const auto outcome = Havhost({"load", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("havhost: " + file + ":2:7: error: "), std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find("havhost: nothing is loaded: the MOF has "), std::string::npos)
      << outcome.err;
}

TEST_F(Commands, MissingMofFileIsNamed) {
  const auto outcome = Havhost({"load", "nowhere.mof"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "havhost: nowhere.mof: error: file 'nowhere.mof' is not found\n"
            "havhost: nothing is loaded: the MOF has 1 error\n");
}

// A model with what is empty, what keeps books and what people filter by.
const char kPorts[] = R"mof(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Values : string[], Scope(property), Flavor(EnableOverride, ToSubclass);
Qualifier NULLDISPLAY : string = null, Scope(property), Flavor(EnableOverride, ToSubclass);
class T_Port {
  [Key] string CreationClassName;
  [Key] string Name;
  datetime DateTimeOfCollection;
  datetime Since;
  datetime Seen[];
  [NULLDISPLAY("None yet")] string Note;
  string Tags[];
  uint64 Octets;
  sint32 Level;
  real32 Load;
  boolean Up;
  [Values{"Down", "Up"}] uint8 State;
};
instance of T_Port { CreationClassName = "T_Port"; Name = "eth10"; Octets = 18446744073709551615;
  Level = -2; Up = true; State = 1; Tags = {"a", "b"}; Since = "20261121204724.810021+060";
  DateTimeOfCollection = "20261121204724.810021+000"; };
instance of T_Port { CreationClassName = "T_Port"; Name = "eth2"; Octets = 18446744073709551614;
  Level = 3; Load = 0.5; Up = false; State = 0; Note = "say \"hi\", you"; Tags = {"b"};
  Seen = {"20260301101500.000000+000", "00000003010203.000000:000"}; };
instance of T_Port { CreationClassName = "T_Port"; Name = "lo"; Note = " ";
  DateTimeOfCollection = "20261121204724.810021+000"; };
)mof";

class Ports : public ::testing::Test {
 protected:
  Outcome Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--mof", m_file});
    return Havhost(arguments);
  }
  std::string Text(const std::vector<std::string>& arguments) const {
    const auto outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }
  // The names of the ports that meet the condition.
  std::string Where(const std::string& condition) const {
    const auto outcome = Run({"instances", "T_Port", "--where", condition, "-c", "Name", "-fcsv"});
    EXPECT_EQ(outcome.err, "") << condition;
    std::string names;
    std::istringstream lines(outcome.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "Name");
    while (std::getline(lines, line)) names += (names.empty() ? "" : " ") + line;
    return names;
  }
  std::string Wrong(const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {"instances", "T_Port"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
  }

 private:
  TemporaryFolder m_folder;
  std::string m_file = m_folder.File("ports.mof", kPorts);
};

TEST_F(Ports, WhatIsEmptyOrKeepsBooksIsShownWithAllOnly) {
  EXPECT_EQ(Text({"get", "T_Port.CreationClassName=\"T_Port\",Name=\"eth10\""}),
            "T_Port.CreationClassName=\"T_Port\",Name=\"eth10\"\n"
            "  Level   -2\n"
            "  Name    eth10\n"
            "  Octets  18446744073709551615\n"
            "  Since   2026-11-21 20:47:24.810021 +01:00\n"
            "  State   Up\n"
            "  Tags    a, b\n"
            "  Up      TRUE\n");
  EXPECT_EQ(Text({"get", "T_Port.CreationClassName=\"T_Port\",Name=\"lo\""}),
            "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"\n"
            "  Name  lo\n");
  EXPECT_EQ(Text({"get", "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"", "--all"}),
            "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"\n"
            "  CreationClassName     T_Port\n"
            "  DateTimeOfCollection  2026-11-21 20:47:24.810021 +00:00\n"
            "  Level                 NULL\n"
            "  Load                  NULL\n"
            "  Name                  lo\n"
            "  Note\n"
            "  Octets                NULL\n"
            "  Seen                  NULL\n"
            "  Since                 NULL\n"
            "  State                 NULL\n"
            "  Tags                  NULL\n"
            "  Up                    NULL\n");
}

TEST_F(Ports, DatetimesReadAsDatesAlsoInArrays) {
  EXPECT_EQ(Text({"instances", "T_Port", "-c", "Name,Seen", "-w", "Seen is not null"}),
            "Name  Seen\n"
            "eth2  2026-03-01 10:15:00 +00:00, 3 days 01:02:03\n");
}

TEST_F(Ports, ColumnsAreATableInTheOrderAskedFor) {
  EXPECT_EQ(Text({"instances", "T_Port", "--columns", "octets,NAME,State,Note"}),
            "Octets                Name   State  Note\n"
            "18446744073709551614  eth2   Down   say \"hi\", you\n"
            "18446744073709551615  eth10  Up     None yet\n"
            "NULL                  lo     NULL\n");
  EXPECT_EQ(Text({"instances", "T_Port", "--columns", "State", "--raw"}),
            "State\nDown [0]\nUp [1]\nNULL [NULL]\n");
  EXPECT_EQ(Text({"instances", "T_Port", "-c", "__class", "-c", "__PATH", "-w", "Name = 'lo'"}),
            "__CLASS  __PATH\n"
            "T_Port   T_Port.CreationClassName=\"T_Port\",Name=\"lo\"\n");
  EXPECT_EQ(Text({"instances", "T_Port", "--columns", "Name", "--where", "Name = 'x'"}), "");
}

TEST_F(Ports, NamesOnlyAreThePaths) {
  EXPECT_EQ(Text({"instances", "T_Port", "--names-only"}),
            "T_Port.CreationClassName=\"T_Port\",Name=\"eth2\"\n"
            "T_Port.CreationClassName=\"T_Port\",Name=\"eth10\"\n"
            "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"\n");
  EXPECT_EQ(TJson::parse(Text({"instances", "T_Port", "-N", "-f", "json", "-w", "Name = 'lo'"})),
            TJson::parse(R"({"version": 1, "namespace": "root/cimv2", "instances": [
              {"path": "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"", "class": "T_Port",
               "properties": {}}]})"));
}

TEST_F(Ports, SortIsByValueAndNullStandsLast) {
  EXPECT_EQ(Text({"instances", "T_Port", "-c", "Name", "--sort", "level"}),
            "Name\neth10\neth2\nlo\n");
  EXPECT_EQ(Text({"instances", "T_Port", "-c", "Name", "--sort", "Octets", "--reverse"}),
            "Name\nlo\neth10\neth2\n");
  EXPECT_EQ(Text({"instances", "T_Port", "-c", "Name", "-s", "Note,Name"}),
            "Name\nlo\neth2\neth10\n");
}

TEST_F(Ports, CsvHasRawValuesQuotedWhereNeeded) {
  EXPECT_EQ(Text({"instances", "T_Port", "--format", "csv", "-c", "Name,Note,State,Tags,Octets"}),
            "Name,Note,State,Tags,Octets\n"
            "eth2,\"say \"\"hi\"\", you\",0,{b},18446744073709551614\n"
            "eth10,,1,\"{a, b}\",18446744073709551615\n"
            "lo, ,,,\n");
  EXPECT_EQ(Text({"instances", "T_Port", "-f", "csv", "-w", "Name = 'lo'"}),
            "CreationClassName,Name,DateTimeOfCollection,Since,Seen,Note,Tags,Octets,Level,Load,Up,"
            "State\n"
            "T_Port,lo,20261121204724.810021+000,,, ,,,,,,\n");
  EXPECT_EQ(Text({"classes", "-f", "csv"}), "Name,Superclass,Kind,Instances\nT_Port,,class,3\n");
}

TEST_F(Ports, MofOfInstancesLoadsAgain) {
  EXPECT_EQ(Text({"instances", "T_Port", "-f", "mof", "-w", "Name = 'lo'"}),
            "instance of T_Port\n{\n  CreationClassName = \"T_Port\";\n"
            "  DateTimeOfCollection = \"20261121204724.810021+000\";\n  Name = \"lo\";\n"
            "  Note = \" \";\n};\n\n");
  EXPECT_EQ(Text({"get", "T_Port.CreationClassName=\"T_Port\",Name=\"lo\"", "-f", "mof"}),
            Text({"instances", "T_Port", "-f", "mof", "-w", "Name = 'lo'"}));
}

TEST_F(Ports, ConditionsCompareByType) {
  EXPECT_EQ(Where(""), "eth2 eth10 lo");
  EXPECT_EQ(Where("Octets = 18446744073709551615"), "eth10");
  EXPECT_EQ(Where("octets < 0xFFFFFFFFFFFFFFFF"), "eth2");
  EXPECT_EQ(Where("Octets >= 1.8e19"), "eth2 eth10");
  EXPECT_EQ(Where("Level > -3 AND Level <= -2"), "eth10");
  EXPECT_EQ(Where("Level <> 3"), "eth10");
  EXPECT_EQ(Where("Load=.5"), "eth2");
  EXPECT_EQ(Where("Up = TRUE"), "eth10");
  EXPECT_EQ(Where("State = 'Up'"), "eth10");
  EXPECT_EQ(Where("State = 0"), "eth2");
  EXPECT_EQ(Where("Name < 'eth10'"), "eth2");
  EXPECT_EQ(Where("Tags = \"b\""), "eth2 eth10");
  EXPECT_EQ(Where("Tags == 'a'"), "eth10");
  EXPECT_EQ(Where("Since > '2026-11'"), "eth10");
  EXPECT_EQ(Where("Since = '20261121204724.810021+060'"), "eth10");
}

TEST_F(Ports, ConditionsAreCombined) {
  EXPECT_EQ(Where("Level = 3 or Level = -2 and Up = false"), "eth2");
  EXPECT_EQ(Where("(Level = 3 or Level = -2) and not Up = false"), "eth10");
  EXPECT_EQ(Where("not (Name = 'lo')"), "eth2 eth10");
}

TEST_F(Ports, NullMeetsNoComparisonButTheOneWithNull) {
  EXPECT_EQ(Where("Level is null"), "lo");
  EXPECT_EQ(Where("Level = NULL"), "lo");
  EXPECT_EQ(Where("Level is not null"), "eth2 eth10");
  EXPECT_EQ(Where("Level != null"), "eth2 eth10");
  EXPECT_EQ(Where("Level != 7"), "eth2 eth10");
}

TEST_F(Ports, LikeTakesWildcardsAndEitherCase) {
  EXPECT_EQ(Where("Name like 'ETH%'"), "eth2 eth10");
  EXPECT_EQ(Where("Name like 'eth_'"), "eth2");
  EXPECT_EQ(Where("Name like '%1%'"), "eth10");
  EXPECT_EQ(Where("Note like '%''%'"), "");
  EXPECT_EQ(Where("Note like '%\"\"%'"), "");
  EXPECT_EQ(Where("Note like \"%\"\"HI\"\"%\""), "eth2");
  EXPECT_EQ(Where("State like 'u%'"), "eth10");
}

TEST_F(Ports, WrongConditionsSayWhere) {
  const std::pair<const char*, const char*> wrong[] = {
      {"Level >",
       "a number, a text in quotation marks, true, false or null is expected at the end "
       "of 'Level >'"},
      {"Level 3", "a comparison, such as = or >, is expected at character 7 of 'Level 3'"},
      {"Level = 3x", "a number is expected at character 9 of 'Level = 3x'"},
      {"Level = 3 Up", "'and', 'or' or the end is expected at character 11 of 'Level = 3 Up'"},
      {"(Level = 3", "')' is expected at the end of '(Level = 3'"},
      {"Name = 'x", "the quotation mark ' is expected at the end of 'Name = 'x'"},
      {"3 = Level", "the name of a property is expected at character 1 of '3 = Level'"},
      {"Level < null", "= or != before null is expected at the end of 'Level < null'"},
      {"Name like 3", "a text in quotation marks is expected at character 11 of 'Name like 3'"},
  };
  for (const auto& [condition, error] : wrong)
    EXPECT_EQ(Wrong({"--where", condition}), "havhost: --where: " + std::string(error) + "\n");
  EXPECT_EQ(
      Wrong({"--where", std::string(1000, '(')}),
      "havhost: --where: parentheses and 'not' nest deeper than 100 at character 101 of '..." +
          std::string(120, '(') + "...'\n");
}

TEST_F(Ports, PropertiesThatAreNotThereAreNamed) {
  const std::string rest =
      ": no such property: 'Nam' (there are CreationClassName, Name, DateTimeOfCollection, Since, "
      "Seen, Note, Tags, Octets, Level, Load, Up, State)\n";
  EXPECT_EQ(Wrong({"--columns", "Nam"}), "havhost: --columns" + rest);
  EXPECT_EQ(Wrong({"--sort", "Nam"}), "havhost: --sort" + rest);
  EXPECT_EQ(Wrong({"--where", "Nam = 1"}), "havhost: --where" + rest);
}

TEST_F(Ports, OptionsThatDoNotGoTogetherAreRefused) {
  EXPECT_EQ(Wrong({"--format", "mof", "--names-only"}),
            "havhost: --format mof writes whole instances: it goes with neither --columns nor "
            "--names-only\n");
  EXPECT_EQ(Wrong({"--columns", "Name", "--names-only"}),
            "havhost: --names-only does not go with --columns\n");
  const auto classes = Run({"associators", "T_Port", "--where", "Name = 1"});
  EXPECT_EQ(classes.status, 2);
  EXPECT_EQ(classes.err,
            "havhost: --where, --sort and --columns are for instances, and these are classes\n");
}

TEST_F(Commands, ClassNamesAloneAreListed) {
  EXPECT_EQ(Text({"classes", "--class", "T_Disk", "--names-only"}), "T_Disk\nT_FastDisk\n");
}

TEST_F(Commands, ClassAsMofIsWhatTheMofCommandWrites) {
  EXPECT_EQ(Text({"show", "T_Disk", "-f", "mof"}), Text({"mof", "T_Disk"}));
}

TEST_F(Commands, LoadReadsStandardInput) {
  const std::string mof =
      "Qualifier Key : boolean = false, Scope(property);\n"
      "class T_A { [Key] string Name; };\n";
  const auto outcome = Havhost({"load", "-"}, mof);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_NE(outcome.out.find("Classes                   1\n"), std::string::npos) << outcome.out;
  EXPECT_EQ(Havhost({"classes", "--mof", "-"}, mof).out, "T_A  class\n");
  const auto wrong = Havhost({"load", "-"}, mof + "class 1;\n");
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.err.rfind("havhost: standard input:3:7: error: ", 0), 0u) << wrong.err;
}

}  // namespace
}  // namespace havtest

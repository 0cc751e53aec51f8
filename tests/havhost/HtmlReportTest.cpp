// The HTML report as the program writes it: its data, and that no text gets out of it.
#include <gtest/gtest.h>

#include <set>

#include <nlohmann/json.hpp>

#include "havhost/report/HtmlReport.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using TJson = nlohmann::ordered_json;

constexpr char kDataBegin[] = "<script type=\"application/json\" id=\"data\">";

// The text of the page's data element.
std::string DataText(const std::string& page) {
  const auto begin = page.find(kDataBegin) + sizeof kDataBegin - 1;
  return page.substr(begin, page.find("</script>", begin) - begin);
}

TJson DataOf(const Outcome& outcome) {
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  return TJson::parse(DataText(outcome.out));
}

TJson ClassNamed(const TJson& data, const std::string& name) {
  for (const auto& cls : data["classes"])
    if (cls["name"] == name) return cls;
  return nullptr;
}

TJson InstanceTitled(const TJson& data, const std::string& title) {
  for (const auto& instance : data["instances"])
    if (instance["title"] == title) return instance;
  return nullptr;
}

std::size_t CountOf(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

TEST(HtmlReport, PageIsWholeAndLoadsNothing) {
  const auto page = ModelTest().RunOn({"inventory", "--format", "html"}).out;
  EXPECT_EQ(page.rfind("<!doctype html>", 0), 0u);
  EXPECT_EQ(page.substr(page.size() - 8), "</html>\n");
  EXPECT_EQ(CountOf(page, "src="), 0u);
  EXPECT_EQ(CountOf(page, "<link "), 1u);
  EXPECT_NE(page.find("<link rel=\"icon\" href=\"data:,\">"), std::string::npos);
}

TEST(HtmlReport, PolicyAllowsTheScriptsOfThePageAlone) {
  const std::string policy(havhost::HtmlReportPolicy());
  EXPECT_EQ(policy.rfind("default-src 'none'; script-src 'sha256-", 0), 0u) << policy;
  EXPECT_EQ(CountOf(policy, "'sha256-"), 3u) << policy;
  EXPECT_EQ(CountOf(policy, "unsafe"), 0u) << policy;
  const auto page = ModelTest().RunOn({"inventory", "--format", "html"}).out;
  EXPECT_NE(page.find("<meta http-equiv=\"Content-Security-Policy\" content=\"" + policy + "\">"),
            std::string::npos);
}

TEST(HtmlReport, InstancesHaveCellsInTheOrderOfTheColumns) {
  const auto data = DataOf(ModelTest().RunOn({"inventory", "--format", "html"}));
  EXPECT_EQ(data["namespace"], "root/cimv2");
  EXPECT_EQ(data["program"], "havhost " HAVHOST_VERSION);
  EXPECT_EQ(ClassNamed(data, "T_Disk")["columns"],
            TJson::parse(R"([["Labels", "string[]"], ["Name", "string"], ["Size", "uint64"],
                             ["State", "uint8"]])"));
  const auto disk = InstanceTitled(data, "disk2");
  EXPECT_EQ(disk["path"], "T_Disk.Name=\"disk2\"");
  EXPECT_EQ(data["classes"][disk["class"].get<std::size_t>()]["name"], "T_Disk");
  EXPECT_EQ(data["instances"][disk["parent"].get<std::size_t>()]["title"], "box");
  EXPECT_EQ(data["classes"][disk["via"].get<std::size_t>()]["name"], "T_Contains");
  EXPECT_EQ(disk["cells"],
            TJson::parse(R"([[["a", "b"], ["a", "b"]], "disk2", ["1.5 KB", 1536], ["On", 1]])"));
  EXPECT_EQ(
      InstanceTitled(data, "disk10")["cells"],
      TJson::parse(R"([["None", null], "disk10", ["NULL", null], ["0.5", 0.5], ["Off", 0]])"));
  EXPECT_FALSE(InstanceTitled(data, "box").contains("parent"));
}

TEST(HtmlReport, AssociationsFollowTheInstancesTheyLink) {
  const auto data = DataOf(ModelTest().RunOn({"inventory", "--format", "html"}));
  ASSERT_EQ(data["instances"].size(), 11u);
  for (std::size_t i = 0; i < data["instances"].size(); ++i) {
    const auto cls = data["instances"][i]["class"].get<std::size_t>();
    EXPECT_EQ(data["classes"][cls]["kind"], i < 6 ? "class" : "association") << i;
  }
  const auto link = InstanceTitled(
      data, R"(T_OnDisk.Antecedent="T_Disk.Name=\"disk2\"",Dependent="T_Partition.Name=\"part\"")");
  EXPECT_EQ(link["cells"],
            TJson::parse(R"(["T_Disk.Name=\"disk2\"", "T_Partition.Name=\"part\""])"));
}

TEST(HtmlReport, ClassesDeclareEachPropertyOnce) {
  const auto data = DataOf(ModelTest().RunOn({"inventory", "--format", "html"}));
  EXPECT_EQ(data["classes"].size(), 10u);
  EXPECT_EQ(ClassNamed(data, "T_FastDisk")["superclass"], "T_Disk");
  EXPECT_EQ(ClassNamed(data, "T_FastDisk")["properties"],
            TJson::parse(R"([{"name": "Speed", "type": "real64", "qualifiers": []}])"));
  EXPECT_EQ(ClassNamed(data, "T_Element")["properties"],
            TJson::parse(R"([{"name": "Name", "type": "string", "qualifiers": [["Key", true]],
                              "key": true}])"));
  EXPECT_EQ(ClassNamed(data, "T_Element")["abstract"], true);
  EXPECT_EQ(ClassNamed(data, "T_Disk")["qualifiers"],
            TJson::parse(R"([["Description", "A disk."]])"));
  EXPECT_EQ(ClassNamed(data, "T_Disk")["methods"],
            TJson::parse(R"([{"name": "Reset", "type": "uint32",
                              "qualifiers": [["Description", "Starts it anew."]],
                              "parameters": [
                                {"name": "Mode", "type": "uint16", "qualifiers": []},
                                {"name": "Reason", "type": "string", "qualifiers": []}]}])"));
}

TEST(HtmlReport, OneClassBringsWhatHangsOnItsInstances) {
  const auto data =
      DataOf(ModelTest().RunOn({"inventory", "--class", "T_Disk", "--format", "html"}));
  EXPECT_EQ(data["instances"].size(), 4u);
  EXPECT_EQ(data["instances"][0]["title"], "disk2");
  EXPECT_EQ(data["instances"][1]["title"], "part");
}

// A namespace of one class with keys and a value of a kind each.
TJson CellsOf(const std::string& declaration, const std::string& value) {
  const TemporaryFolder folder;
  const auto file = folder.File("value.mof",
                                "Qualifier Key : boolean = false, Scope(property);\n"
                                "class T { [Key] string K; " +
                                    declaration +
                                    " };\n"
                                    "instance of T { K = \"k\"; V = " +
                                    value + "; };\n");
  return DataOf(Havhost({"inventory", "--format", "html", "--mof", file}))["instances"][0]["cells"];
}

TEST(HtmlReport, IntegersThatABrowserWouldRoundAreTexts) {
  EXPECT_EQ(CellsOf("uint64 V;", "9007199254740992")[1],
            TJson::parse(R"(["9007199254740992", 9007199254740992])"));
  EXPECT_EQ(CellsOf("uint64 V;", "18446744073709551615")[1], "18446744073709551615");
  EXPECT_EQ(CellsOf("sint64 V;", "-9223372036854775808")[1], "-9223372036854775808");
  EXPECT_EQ(CellsOf("uint64 V[];", "{1, 9007199254740993}")[1],
            TJson::parse(R"([["1", "9007199254740993"], [1, "9007199254740993"]])"));
}

TEST(HtmlReport, DateTimesReadAsDates) {
  EXPECT_EQ(CellsOf("datetime V;", "\"20240301101500.000000+060\"")[1],
            TJson::parse(R"(["2024-03-01 10:15:00 +01:00", "20240301101500.000000+060"])"));
  EXPECT_EQ(CellsOf("datetime V[];", "{\"20240301101500.000000+060\", NULL}")[1],
            TJson::parse(R"([["2024-03-01 10:15:00 +01:00", "NULL"],
                             ["20240301101500.000000+060", null]])"));
}

TEST(HtmlReport, NoTextEndsTheData) {
  const std::string hostile = "</script><script>alert(1)</script><!-- <img src=x onerror=alert(1)>";
  const TemporaryFolder folder;
  const auto file = folder.File("hostile.mof",
                                "Qualifier Key : boolean = false, Scope(property);\n"
                                "Qualifier Description : string = null, Scope(any);\n"
                                "[Description(\"" +
                                    hostile +
                                    "\")] class T { [Key] string Name; };\n"
                                    "instance of T { Name = \"" +
                                    hostile + "\"; };\n");
  const auto outcome = Havhost({"inventory", "--format", "html", "--mof", file});
  EXPECT_EQ(CountOf(DataText(outcome.out), "<"), 0u);
  EXPECT_EQ(CountOf(outcome.out, "</script>"), 3u);
  const auto data = DataOf(outcome);
  EXPECT_EQ(data["instances"][0]["title"], hostile);
  EXPECT_EQ(data["classes"][0]["qualifiers"][0][1], hostile);
}

TEST(HtmlReport, LinksLeadToPathsThatAreNoUtf8) {
  const TemporaryFolder folder;
  const auto file =
      folder.File("bytes.mof",
                  "Qualifier Association : boolean = false, Scope(association);\n"
                  "Qualifier Key : boolean = false, Scope(property, reference);\n"
                  "class T { [Key] string Name; };\n"
                  "[Association] class A { [Key] T REF Antecedent; [Key] T REF Dependent; };\n"
                  "instance of T as $A { Name = \"a\xFF\"; };\n"
                  "instance of T as $B { Name = \"a\xFE\"; };\n"
                  "instance of A { Antecedent = $A; Dependent = $B; };\n");
  const auto outcome = Havhost({"inventory", "--format", "html", "--mof", file});
  const auto data = TJson::parse(DataText(outcome.out));
  ASSERT_EQ(data["instances"].size(), 3u) << outcome.err;
  std::set<TJson> ends;
  for (const auto& cell : data["instances"][2]["cells"]) ends.insert(cell[1]);
  EXPECT_EQ(ends, (std::set<TJson>{data["instances"][0]["path"], data["instances"][1]["path"]}));
  EXPECT_EQ(ends.size(), 2u);
}

TEST(HtmlReport, EmptyNamespaceIsAReportOfNothing) {
  const TemporaryFolder folder;
  const auto data = DataOf(Havhost(
      {"inventory", "--format", "html", "--mof", folder.File("empty.mof", "// nothing\n")}));
  EXPECT_EQ(data["classes"], TJson::array());
  EXPECT_EQ(data["instances"], TJson::array());
}

TEST(HtmlReport, OtherCommandsHaveNone) {
  const auto outcome = RunPlain({"classes", "--format", "html"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "havhost: --format: html not in {text,json,csv} (see havhost classes --help)\n");
}

TEST(OutputFile, TakesWhatStandardOutputWouldGet) {
  const ModelTest model;
  const TemporaryFolder folder;
  for (const char* format : {"text", "json", "html"}) {
    const auto file = folder.Path("report");
    const auto outcome = model.RunOn({"inventory", "--format", format, "-o", file});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(ReadFile(file), model.RunOn({"inventory", "--format", format}).out);
  }
}

TEST(OutputFile, MayBeTheFileThatWasRead) {
  const ModelTest model;
  const auto mof = model.RunOn({"mof"}).out;
  EXPECT_EQ(model.RunOn({"mof", "--output", model.File()}).status, 0);
  EXPECT_EQ(ReadFile(model.File()), mof);
}

TEST(OutputFile, IsLeftAsItWasWhenTheCommandFails) {
  const ModelTest model;
  const TemporaryFolder folder;
  const auto file = folder.File("kept", "as it was");
  EXPECT_EQ(model.RunOn({"show", "T_None", "-o", file}).status, 1);
  EXPECT_EQ(ReadFile(file), "as it was");
}

TEST(OutputFile, SaysWhyItCannotBeWritten) {
  const TemporaryFolder folder;
  const auto file = folder.Path("none/report");
  const auto outcome = ModelTest().RunOn({"classes", "-o", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "havhost: cannot write " + file + ": No such file or directory\n");
}

}  // namespace
}  // namespace havtest

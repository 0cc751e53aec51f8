// What is different: between two snapshots, and on a machine from one inventory to the next.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/havhost/Havhost.h"

#if !defined(_WIN32)
#include "tests/inventory/FakeMachine.h"
#endif

namespace havtest {
namespace {

using TJson = nlohmann::ordered_json;

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  const auto at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  return text.replace(at, what.size(), with);
}

class Diff : public testing::Test {
 protected:
  // The model with some text of it replaced, as a file.
  std::string Model(const std::string& name, const std::string& what = "",
                    const std::string& with = "") const {
    return m_folder.File(name, what.empty() ? kModel : Replaced(kModel, what, with));
  }
  std::string Json(const std::string& mof) const {
    const auto path = mof + ".json";
    EXPECT_EQ(Havhost({"inventory", "--mof", mof, "--format", "json", "-o", path}).status, 0);
    return path;
  }

  TemporaryFolder m_folder;
  std::string m_before = Model("before.mof");
};

TEST_F(Diff, OfASnapshotWithItselfIsEmptyAndStatusIsZero) {
  const auto outcome = Havhost({"diff", m_before, m_before});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Diff, ShowsOldTextBesideNewAndStatusIsOne) {
  const auto after = Model("after.mof", "Size = 1536; Labels = {\"a\", \"b\"}",
                           "Size = 3072; Labels = {\"a\"}; State = 0");
  const auto outcome = Havhost({"diff", m_before, after});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, R"(~ T_Disk.Name="disk2"
    Labels  a, b    ->  a
    Size    1.5 KB  ->  3 KB
    State   On      ->  Off
)");
}

TEST_F(Diff, ShowsRawValuesWhereTheTextsAreAlike) {
  const auto after = Model("after.mof", "Size = 1536", "Size = 1537");
  EXPECT_EQ(Havhost({"diff", m_before, after}).out, R"(~ T_Disk.Name="disk2"
    Size  1536  ->  1537
)");
}

TEST_F(Diff, NamesWhatAppearedAndWhatDisappeared) {
  const auto after = Model("after.mof", "instance of T_Cpu as $Cpu { Name = \"cpu\"; };",
                           "instance of T_Cpu as $Cpu { Name = \"cpu0\"; };");
  const auto outcome = Havhost({"diff", m_before, after});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("- T_Cpu.Name=\"cpu\"\n+ T_Cpu.Name=\"cpu0\"\n"), std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find("+ T_Contains."), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("- T_Contains."), std::string::npos) << outcome.out;
}

TEST_F(Diff, TakesJsonAndMofInAnyPair) {
  const auto after = Model("after.mof", "Size = 1536", "Size = 4096");
  const auto said = Havhost({"diff", m_before, after}).out;
  EXPECT_EQ(said, "~ T_Disk.Name=\"disk2\"\n    Size  1.5 KB  ->  4 KB\n");
  EXPECT_EQ(Havhost({"diff", Json(m_before), after}).out, said);
  EXPECT_EQ(Havhost({"diff", m_before, Json(after)}).out, said);
  EXPECT_EQ(Havhost({"diff", Json(m_before), Json(after)}).out, said);
  EXPECT_EQ(Havhost({"diff", Json(m_before), m_before}).status, 0);
}

TEST_F(Diff, IsADocumentForPrograms) {
  const auto after = Model("after.mof", "Size = 1536", "Size = 4096");
  const auto outcome = Havhost({"diff", m_before, after, "--format", "json"});
  EXPECT_EQ(outcome.status, 1);
  const auto document = TJson::parse(outcome.out);
  EXPECT_EQ(document["version"], 1);
  EXPECT_EQ(document["appeared"], TJson::array());
  EXPECT_EQ(document["disappeared"], TJson::array());
  ASSERT_EQ(document["changed"].size(), 1u);
  const auto& change = document["changed"][0];
  EXPECT_EQ(change["path"], "T_Disk.Name=\"disk2\"");
  EXPECT_EQ(change["class"], "T_Disk");
  EXPECT_EQ(change["properties"].size(), 1u);
  EXPECT_EQ(change["properties"]["Size"]["before"]["value"], 1536);
  EXPECT_EQ(change["properties"]["Size"]["after"]["display"], "4 KB");
}

TEST_F(Diff, PropertyThatOnlyOneSideHasIsAChange) {
  const auto after = Model("after.mof", "[NULLDISPLAY(\"Not known\")] string Location;",
                           "[NULLDISPLAY(\"Not known\")] string Location; uint8 Slots = 4;");
  EXPECT_EQ(Havhost({"diff", m_before, after}).out,
            "~ T_System.Name=\"box\"\n    Slots  (none)  ->  4\n");
}

TEST_F(Diff, WhatCannotBeReadIsStatusTwoAndNamed) {
  const auto missing = m_folder.Path("missing.json");
  auto outcome = Havhost({"diff", m_before, missing});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "havhost: cannot read " + missing + "\n");
  const auto other = m_folder.File("other.json", "{\"version\": 7}");
  outcome = Havhost({"diff", other, m_before});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "havhost: " + other + ": the document's version is not 1\n");
  const auto broken = m_folder.File("broken.mof", "class A {");
  EXPECT_EQ(Havhost({"diff", broken, m_before}).status, 2);
  const auto strange =
      m_folder.File("strange.json", R"({"version": 1, "instances": [{"path": 5}]})");
  EXPECT_EQ(Havhost({"diff", strange, m_before}).status, 2);
}

TEST_F(Diff, WantsTwoFiles) {
  EXPECT_EQ(Havhost({"diff"}).status, 2);
  EXPECT_EQ(Havhost({"diff", m_before}).status, 2);
  EXPECT_EQ(Havhost({"diff", m_before, m_before, m_before}).status, 2);
}

#if !defined(_WIN32)

TEST(Watch, SaysNothingOfAMachineThatStaysAsItIs) {
  FakeMachine machine;
  machine.Processors(1, 1);
  const auto outcome = Havhost({"watch", "--rounds", "2", "--interval", "0.01", "--schema",
                                HAVHOST_SCHEMA, "--root", machine.Machine().Root()});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
}

TEST(Watch, RefusesAnIntervalThatIsNone) {
  EXPECT_EQ(Havhost({"watch", "--interval", "0"}).status, 2);
  EXPECT_EQ(Havhost({"watch", "--rounds", "0"}).status, 2);
  EXPECT_EQ(Havhost({"watch", "--format", "html"}).status, 2);
}

#endif

}  // namespace
}  // namespace havtest

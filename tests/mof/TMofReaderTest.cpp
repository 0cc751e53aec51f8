#include "mof/TMofReader.h"

#include <gtest/gtest.h>

#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::TMofReader;
using hav::mof::TMofReport;

struct Files {
  Lines names;
  Lines messages;
  bool isComplete;
};

Files Read(std::map<std::string, std::string> texts, const Lines& names) {
  TextSource source(std::move(texts));
  TMofReport report;
  TMofReader reader(source, report, {});
  reader.Read(names);
  Files files{{}, Messages(report), reader.IsComplete()};
  for (const auto& file : reader.GetFiles()) files.names.push_back(file->text.GetName());
  return files;
}

std::string Include(const std::string& name) { return "#pragma include (\"" + name + "\")\n"; }

TEST(TMofReader, ReadsIncludesWhereTheyStand) {
  const auto files = Read(
      {{"a", Include("b") + Include("c")}, {"b", Include("d")}, {"c", ""}, {"d", ""}, {"e", ""}},
      {"a", "e"});
  EXPECT_EQ((Lines{"a", "b", "d", "c", "e"}), files.names);
  EXPECT_EQ(Lines{}, files.messages);
  EXPECT_TRUE(files.isComplete);
}

TEST(TMofReader, ReadsARepeatedIncludeOnce) {
  const auto files =
      Read({{"a", Include("b") + Include("c") + Include("b")}, {"b", ""}, {"c", Include("b")}},
           {"a", "a"});
  EXPECT_EQ((Lines{"a", "b", "c"}), files.names);
  EXPECT_EQ(Lines{}, files.messages);
}

TEST(TMofReader, WarnsOfFilesThatIncludeThemselves) {
  const auto files = Read(
      {{"a", Include("b")}, {"b", "\n" + Include("c")}, {"c", Include("a") + Include("c")}}, {"a"});
  EXPECT_EQ((Lines{"a", "b", "c"}), files.names);
  EXPECT_EQ((Lines{"c:1:18: warning: file 'a' includes itself; it is read once",
                   "c:2:18: warning: file 'c' includes itself; it is read once"}),
            files.messages);
  EXPECT_TRUE(files.isComplete);
}

TEST(TMofReader, ReportsFilesThatAreNotThere) {
  const auto files = Read({{"a", "\n" + Include("b")}}, {"a", "c"});
  EXPECT_EQ((Lines{"a:2:18: error: file 'b' is not found", "c: error: file 'c' is not found"}),
            files.messages);
  EXPECT_FALSE(files.isComplete);
}

TEST(TMofReader, ReportsFilesThatCannotBeRead) {
  const auto files = Read({{"a", Include("b")}, {"b", "unreadable"}}, {"a"});
  EXPECT_EQ((Lines{"a:1:18: error: file 'b': the file cannot be read"}), files.messages);
  EXPECT_FALSE(files.isComplete);
}

TEST(TMofReader, RefusesIncludesNestedTooDeep) {
  std::map<std::string, std::string> texts;
  for (int i = 0; i < 1000; ++i) texts[std::to_string(i)] = Include(std::to_string(i + 1));
  const auto files = Read(texts, {"0"});
  EXPECT_EQ(TMofReader::kMaxIncludeDepth + 1, files.names.size());
  EXPECT_EQ((Lines{"256:1:18: error: files are included more than 256 levels deep"}),
            files.messages);
  EXPECT_FALSE(files.isComplete);
}

TEST(TMofReader, ALostDeclarationLeavesTheTreesIncomplete) {
  EXPECT_FALSE(Read({{"a", "class ;"}}, {"a"}).isComplete);
  EXPECT_FALSE(Read({{"a", "class A {}; /* class B {};"}}, {"a"}).isComplete);
  EXPECT_TRUE(Read({{"a", "class A { uint8; };"}}, {"a"}).isComplete);
}

TEST(TMofReader, TellsHowFarItIs) {
  TextSource source({{"a", Include("b") + Include("c")}, {"b", ""}, {"c", ""}});
  TMofReport report;
  std::vector<std::pair<std::size_t, std::size_t>> steps;
  TMofReader reader(source, report,
                    [&](std::size_t done, std::size_t total) { steps.emplace_back(done, total); });
  reader.Read({"a"});
  EXPECT_EQ((std::vector<std::pair<std::size_t, std::size_t>>{{1, 3}, {2, 3}, {3, 3}}), steps);
}

}  // namespace
}  // namespace havtest

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

// Errors come in the order of what is read, an included file standing where it is included.
TEST(TMofReader, MessagesComeInTheOrderOfReading) {
  const auto files =
      Read({{"a", "foo;\n" + Include("b") + "class ;\n" + Include("x") + "bar;"}, {"b", "\nfoo;"}},
           {"a"});
  EXPECT_EQ((Lines{"a:1:1: error: expected a declaration, found 'foo'",
                   "b:2:1: error: expected a declaration, found 'foo'",
                   "a:3:7: error: expected the name of a class, found ';'",
                   "a:4:18: error: file 'x' is not found",
                   "a:5:1: error: expected a declaration, found 'bar'"}),
            files.messages);
}

std::string Utf16(const std::u16string& text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(TMofReader, ReadsUtf16BehindAByteOrderMark) {
  const std::u16string text = u"\xFEFF// \xE9 \xD83D\xDE00\nclass A { \xE9 };";
  for (const bool bigEndian : {false, true}) {
    const auto files = Read({{"a", Utf16(text, bigEndian)}}, {"a"});
    EXPECT_EQ((Lines{"a:2:11: error: unexpected character '\xC3\xA9'"}), files.messages);
  }
}

TEST(TMofReader, ReadsUtf16WithoutAMark) {
  const std::u16string text = u"class A { \xE9 };";
  for (const bool bigEndian : {false, true}) {
    const auto files = Read({{"a", Utf16(text, bigEndian)}}, {"a"});
    EXPECT_EQ((Lines{"a:1:11: error: unexpected character '\xC3\xA9'"}), files.messages);
  }
}

TEST(TMofReader, RefusesWhatIsNoUtf16BehindItsMark) {
  for (const auto& text : {Utf16(u"\xFEFF\xD83D", false), Utf16(u"\xFEFF\xDE00", false),
                           Utf16(u"\xFEFF\xD83D!", true), Utf16(u"\xFEFF", true) + "a"}) {
    const auto files = Read({{"a", text}}, {"a"});
    EXPECT_EQ((Lines{"a: error: file 'a' begins as UTF-16 and does not go on so"}), files.messages);
    EXPECT_FALSE(files.isComplete);
  }
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
  EXPECT_EQ((std::vector<std::pair<std::size_t, std::size_t>>{{1, 2}, {2, 3}, {3, 3}}), steps);
}

}  // namespace
}  // namespace havtest

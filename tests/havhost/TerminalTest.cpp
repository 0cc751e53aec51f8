// What is shown on a terminal: colour, width, what trees are drawn with, the pager.
#include <gtest/gtest.h>

#include <sstream>

#include "havcore/ICIMClass.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/TPluginLoader.h"
#include "havhost/Program.h"
#include "havhost/report/Changes.h"
#include "havhost/report/InstanceReport.h"
#include "havhost/report/Text.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using namespace hav::client;
using namespace havhost;

TEST(Text, LinesAreBrokenAtBlanksElseWhereTheyEnd) {
  using TLines = std::vector<std::string>;
  EXPECT_EQ(Wrap("", 5), TLines{""});
  EXPECT_EQ(Wrap("abcde", 5), TLines{"abcde"});
  EXPECT_EQ(Wrap("ab cd ef", 5), (TLines{"ab cd", "ef"}));
  EXPECT_EQ(Wrap("abcdefgh", 5), (TLines{"abcde", "fgh"}));
  EXPECT_EQ(Wrap("a bcdefgh", 5), (TLines{"a", "bcdef", "gh"}));
  EXPECT_EQ(Wrap("  abcdefgh", 5), (TLines{"  abc", "defgh"}));
  EXPECT_EQ(Wrap("\xC3\xA4\xC3\xA4\xC3\xA4", 2), (TLines{"\xC3\xA4\xC3\xA4", "\xC3\xA4"}));
}

TEST(Text, RowsFitIntoTheWidthAndGoOnBelowThemselves) {
  TTextStyle style;
  style.width = 24;
  std::ostringstream out;
  PrintRows(out, "| ", {{"Name", "one two three four five"}, {"X", "y"}}, 40, style);
  EXPECT_EQ(out.str(),
            "| Name  one two three\n"
            "|       four five\n"
            "| X     y\n");
}

TEST(Text, LinesOfWhatProgramsReadAreMadePrintable) {
  EXPECT_EQ(PrintableLines("a\x1b\nb\xE2\x80\xAE\n"), "a\\x1b\nb\\xe2\\x80\\xae\n");
}

TEST(Text, JsonIsMadePrintableWithItsOwnEscapes) {
  EXPECT_EQ(PrintableJson("{\n\"a\x7f\": \"\u202E\u200B\u0085\U000E0041 \u00E4\U0001F600\"\n}\n"),
            "{\n\"a\\u007f\": \"\\u202e\\u200b\\u0085\\udb40\\udc41 \u00E4\U0001F600\"\n}\n");
}

TEST(Changes, OldIsRedAndNewIsGreen) {
  const auto state = [](const char* text) {
    return TJson{{"type", "string"}, {"value", text}, {"display", text}};
  };
  const TChanges changes = {
      {TInstanceChange::kAppeared, "T.N=1", "T", {}},
      {TInstanceChange::kChanged, "T.N=2", "T", {{"Size", state("old"), state("new")}}},
      {TInstanceChange::kDisappeared, "T.N=3", "T", {}}};
  TTextStyle style;
  style.colour = true;
  std::ostringstream out;
  PrintChanges(out, changes, style);
  EXPECT_EQ(out.str(),
            "\x1b[32m+ T.N=1\x1b[0m\n\x1b[33m~ T.N=2\x1b[0m\n"
            "    \x1b[36mSize\x1b[0m  \x1b[31mold\x1b[0m  \x1b[2m->\x1b[0m  "
            "\x1b[32mnew\x1b[0m\n\x1b[31m- T.N=3\x1b[0m\n");
}

TEST(Changes, FitIntoTheWidth) {
  const auto state = [](const char* text) {
    return TJson{{"type", "string"}, {"value", text}, {"display", text}};
  };
  const TChanges changes = {{TInstanceChange::kChanged,
                             "T.N=2",
                             "T",
                             {{"Text", state("one two three"), state("four five six")}}}};
  TTextStyle style;
  style.width = 32;
  std::ostringstream out;
  PrintChanges(out, changes, style);
  EXPECT_EQ(out.str(), "~ T.N=2\n    Text  one two   ->  four\n          three         five six\n");
}

class Terminal : public ::testing::Test, public ModelTest {
 protected:
  Terminal() {
    m_terminal.isThere = true;
    m_terminal.height = 100;
  }

  std::string Shown(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--mof", File(), "--plugin", HAVHOST_PLUGIN});
    std::ostringstream out;
    std::ostringstream err;
    std::istringstream in;
    EXPECT_EQ(havhost::Run(arguments, {out, err, false, &in, m_terminal}), 0);
    EXPECT_EQ(err.str(), "");
    return out.str();
  }

  TTerminal m_terminal;
  TemporaryFolder m_folder;
};

TEST_F(Terminal, NamesAreColoured) {
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}),
            "\x1b[1mT_Cpu.Name=\"cpu\"\x1b[0m\n  \x1b[36mName\x1b[0m  cpu\n");
  const std::string plain = "T_Cpu.Name=\"cpu\"\n  Name  cpu\n";
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\"", "--color", "never"}), plain);
  m_terminal.hasColour = false;
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}), plain);
  m_terminal.isThere = false;
  m_terminal.hasColour = true;
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}), plain);
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\"", "--color", "always"}),
            "\x1b[1mT_Cpu.Name=\"cpu\"\x1b[0m\n  \x1b[36mName\x1b[0m  cpu\n");
}

TEST_F(Terminal, TreeIsDrawnInAsciiWhereTheLocaleHasNoBoxes) {
  m_terminal.isUtf8 = false;
  EXPECT_EQ(Shown({"inventory", "--class", "T_System", "--color", "never"}),
            "T_System  box\n|  Name  box\n|\n+- T_Cpu  cpu\n|  |  Name  cpu\n|  |\n"
            "|  `- T_Cache  cache\\x1b[2J\n|        Name  cache\\x1b[2J\n|\n"
            "+- T_Disk  disk2\n|  |  Labels  a, b\n|  |  Name    disk2\n|  |  Size    1.5 KB\n"
            "|  |  State   On\n|  |\n|  `- T_Partition  part\n|        Name  part\n|\n"
            "`- T_FastDisk  disk10\n      Name   disk10\n      Speed  0.5\n      State  Off\n");
}

TEST_F(Terminal, WhatIsLongerThanTheScreenIsPaged) {
  std::string paged;
  m_terminal.height = 2;
  m_terminal.hasColour = false;
  m_terminal.page = [&](const std::string& text) {
    paged = text;
    return true;
  };
  const std::string text = "T_Cpu.Name=\"cpu\"\n  Name  cpu\n";
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}), "");
  EXPECT_EQ(paged, text);
  paged.clear();
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\"", "--no-pager"}), text);
  m_terminal.height = 3;
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}), text);
  EXPECT_EQ(paged, "");
  m_terminal.height = 2;
  m_terminal.page = [](const std::string&) { return false; };
  EXPECT_EQ(Shown({"get", "T_Cpu.Name=\"cpu\""}), text);
}

TEST_F(Terminal, HeadersOfTablesAreBold) {
  EXPECT_EQ(Shown({"instances", "T_Disk", "--columns", "Name,Size"}),
            "\x1b[1mName\x1b[0m   \x1b[1mSize\x1b[0m\ndisk2  1.5 KB\n");
}

// A file or a pipe gets nothing then.
TEST_F(Terminal, WhatIsEmptyIsSaid) {
  m_terminal.hasColour = false;
  const std::vector<std::string> none = {"instances", "T_Disk", "--where", "Size > 9999"};
  EXPECT_EQ(Shown(none), "no instances\n");
  EXPECT_EQ(RunOn(none).out, "");
  std::ostringstream out, err;
  EXPECT_EQ(havhost::Run({"diff", File(), File(), "--plugin", HAVHOST_PLUGIN},
                         {out, err, false, nullptr, m_terminal}),
            0);
  EXPECT_EQ(out.str(), "nothing is different\n");
}

TEST_F(Terminal, SummariesAndComparisonsLookLikeTheRest) {
  std::ostringstream out, err;
  EXPECT_EQ(havhost::Run({"load", File(), "--plugin", HAVHOST_PLUGIN},
                         {out, err, false, nullptr, m_terminal}),
            0);
  EXPECT_NE(out.str().find("\n\x1b[36mInstances\x1b[0m                 6\n"), std::string::npos)
      << out.str();
  const auto changed = m_folder.File("changed.mof", ReadFile(File()) + "class T_More { };");
  EXPECT_EQ(havhost::Run({"check", changed, "--plugin", HAVHOST_PLUGIN},
                         {out, err, false, nullptr, m_terminal}),
            1);
  EXPECT_NE(out.str().find("\x1b[33mwarning: \x1b[0mclass 'T_More' has no key"), std::string::npos)
      << out.str();
}

TEST_F(Terminal, JsonStaysJsonWhateverTheTextsHold) {
  const auto mof = m_folder.File(
      "odd.mof", "#pragma include(\"" + File() +
                     "\")\ninstance of T_Cpu { Name = \"a\x7f\u202E\u200B\U000E0041\u0085z\"; };");
  const std::vector<std::string> commands[] = {
      {"instances", "T_Cpu", "--mof", mof, "--format", "json"},
      {"diff", File(), mof, "--format", "json"}};
  for (auto arguments : commands) {
    arguments.insert(arguments.end(), {"--plugin", HAVHOST_PLUGIN});
    const auto piped = RunPlain(arguments);
    std::ostringstream out, err;
    EXPECT_EQ(havhost::Run(arguments, {out, err, false, nullptr, m_terminal}), piped.status);
    EXPECT_EQ(out.str(), PrintableJson(out.str()));
    EXPECT_NE(out.str().find("a\\u007f\\u202e\\u200b\\udb40\\udc41\\u0085z"), std::string::npos)
        << out.str();
    EXPECT_NE(piped.out.find("a\x7f\u202E\u200B\U000E0041\u0085z"), std::string::npos);
    EXPECT_EQ(TJson::parse(out.str()), TJson::parse(piped.out));
  }
}

TEST_F(Terminal, HelpFitsTheWidthAndStacksWhereItIsNarrow) {
  m_terminal.width = 60;
  m_terminal.hasColour = false;
  const auto help = [&] {
    std::ostringstream out, err;
    EXPECT_EQ(havhost::Run({"get", "--help"}, {out, err, false, nullptr, m_terminal}), 0);
    return out.str();
  };
  EXPECT_NE(help().find("  -o,--output FILE           File to write to, replaced when\n"
                        "                             all went well (else standard\n"),
            std::string::npos)
      << help();
  m_terminal.width = 40;
  EXPECT_NE(help().find("  -o,--output FILE\n      File to write to, replaced when\n"
                        "      all went well (else standard\n      output)\n"),
            std::string::npos)
      << help();
}

// The previous value of a datetime, as `watch` shows it.
TEST(PreviousDisplay, OfADatetimeIsADate) {
  const TemporaryFolder folder;
  TPluginLoader plugin(HAVHOST_PLUGIN);
  hav::mof::TMofFolderSource source;
  hav::mof::TMofReport report;
  const auto target = hav::mof::TMofLoader(plugin.GetProvider(), source)
                          .Load({folder.File("dates.mof", R"mof(
Qualifier Key : boolean = false, Scope(property);
class T_Event { [Key] string Name; datetime Last; datetime All[]; uint8 Size; };
instance of T_Event { Name = "e"; Last = "20260301101500.000000+060"; Size = 3;
  All = {"20260301101500.000000+060", "00000001020304.000000:000"}; };
)mof")},
                                report);
  ASSERT_TRUE(target) << report.ToString();
  const auto instance = InstancesOf(*target->GetClass("T_Event", {}), false).at(0);
  const auto texts = [&](const char* name) {
    const auto slot = instance->GetProperty(name, {});
    slot->SetPrevValue(slot->GetValue({}), {});
    return PreviousDisplayTexts(*slot);
  };
  using TTexts = std::vector<std::string>;
  EXPECT_EQ(texts("Last"), TTexts{"2026-03-01 10:15:00 +01:00"});
  EXPECT_EQ(texts("All"), (TTexts{"2026-03-01 10:15:00 +01:00", "1 day 02:03:04"}));
  EXPECT_EQ(texts("Size"), TTexts{"3"});
}

}  // namespace
}  // namespace havtest

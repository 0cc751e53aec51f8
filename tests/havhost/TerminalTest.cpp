// What is shown on a terminal: colour, width, what trees are drawn with, the pager.
#include <gtest/gtest.h>

#include <sstream>

#include "havhost/Program.h"
#include "havhost/report/Text.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using namespace havhost;

TEST(Text, LinesAreBrokenAtBlanksElseWhereTheyEnd) {
  using TLines = std::vector<std::string>;
  EXPECT_EQ(Wrap("", 5), TLines{""});
  EXPECT_EQ(Wrap("abcde", 5), TLines{"abcde"});
  EXPECT_EQ(Wrap("ab cd ef", 5), (TLines{"ab cd", "ef"}));
  EXPECT_EQ(Wrap("abcdefgh", 5), (TLines{"abcde", "fgh"}));
  EXPECT_EQ(Wrap("a bcdefgh", 5), (TLines{"a", "bcdef", "gh"}));
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

}  // namespace
}  // namespace havtest

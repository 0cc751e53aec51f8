// havhost shell: a script on one open namespace, and what words can become.
#include <sstream>

#include <gtest/gtest.h>

#include "havhost/Program.h"
#include "havhost/THostError.h"
#include "havhost/shell/Words.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using havhost::WordsOf;
using Words = std::vector<std::string>;

class Shell : public ModelTest, public testing::Test {
 protected:
  Outcome Of(const std::string& script) const {
    std::istringstream in(script);
    std::ostringstream out, err;
    const int status = havhost::Run({"shell", "--mof", File(), "--plugin", HAVHOST_PLUGIN},
                                    {out, err, false, &in});
    return {status, out.str(), err.str()};
  }
};

TEST_F(Shell, CommandsWriteWhatTheyWriteOutside) {
  for (const Words& command :
       {Words{"inventory"}, Words{"instances", "T_Disk"}, Words{"get", "T_Disk.Name=\"disk2\""},
        Words{"references", "T_Disk.Name=\"disk2\""}, Words{"associators", "T_Cpu"},
        Words{"show", "T_Disk"}, Words{"classes", "--format", "json"}, Words{"mof"}}) {
    std::string line;
    for (const auto& word : command) line += word + " ";
    const auto outcome = Of(line + "\n");
    EXPECT_EQ(outcome.out, RunOn(command).out) << line;
    EXPECT_EQ(outcome.err, "") << line;
    EXPECT_EQ(outcome.status, 0) << line;
  }
}

TEST_F(Shell, ErrorsDoNotEndIt) {
  const auto outcome =
      Of("frob\nget T_Disk.Name=\"gone\"\nshow T_Gone\nget 'T\nclasses --class T_Cpu\n");
  EXPECT_EQ(outcome.out, RunOn({"classes", "--class", "T_Cpu"}).out);
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')),
            "havhost: no such command: frob (help lists them)");
  EXPECT_NE(outcome.err.find("\nhavhost: a quotation mark ' does not end\n"), std::string::npos)
      << outcome.err;
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(Shell, QuitEndsItAndCommentsAndEmptyLinesDoNothing) {
  const auto outcome = Of("# nothing\n\n   \n quit \nfrob\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(Shell, TheNamespaceIsOpenAndNotOpenedAgain) {
  const auto outcome = Of("classes --mof other.mof\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err, "");
}

TEST_F(Shell, HelpTellsOfItsOwnCommands) {
  const auto outcome = Of("help\n");
  EXPECT_NE(outcome.out.find("  references  "), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find("serve"), std::string::npos) << outcome.out;
  const auto more = Of("help get\n");
  EXPECT_NE(more.out.find("Object path of the instance"), std::string::npos) << more.out;
  EXPECT_EQ(more.out.find("--mof"), std::string::npos) << more.out;
}

TEST(Words, PathsStandAsTheyAreShown) {
  EXPECT_EQ((Words{"get", "T.Name=\"a b\",Key=\"c\\\" d\""}),
            WordsOf("get  T.Name=\"a b\",Key=\"c\\\" d\" "));
}

TEST(Words, QuotesThatBeginAWordGo) {
  EXPECT_EQ((Words{"get", "T.Name=\"a b\""}), WordsOf("get 'T.Name=\"a b\"'"));
  EXPECT_EQ((Words{"--where", "Size > 1", ""}), WordsOf("--where \"Size > 1\" ''"));
  EXPECT_EQ(Words{}, WordsOf(" \t"));
}

TEST(Words, AQuoteThatDoesNotEndIsRefused) {
  EXPECT_THROW(WordsOf("get T.Name=\"a"), havhost::TUsageError);
  EXPECT_THROW(WordsOf("'"), havhost::TUsageError);
}

}  // namespace
}  // namespace havtest

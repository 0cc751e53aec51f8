// What a command line can become: of the program's own, as the scripts for bash and zsh ask for it.
#include <gtest/gtest.h>

#include "havhost/completion/FileNames.h"
#include "havhost/completion/TBashLine.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using havhost::FileNamesFrom;
using havhost::TBashLine;
using TWords = std::vector<std::string>;

// What bash's COMP_WORDBREAKS holds.
constexpr char kBreaks[] = " \t\n\"'><=;|&(:";

TEST(BashLine, WordsLoseTheirQuotes) {
  const auto line = TBashLine::Of("havhost get 'a b' \"c\\\"d\" e\\ f ''  las", kBreaks);
  EXPECT_EQ(line.before, (TWords{"havhost", "get", "a b", "c\"d", "e f", ""}));
  EXPECT_EQ(line.word, "las");
  EXPECT_EQ(line.kept, "");
  EXPECT_EQ(line.quote, '\0');
}

TEST(BashLine, BehindABlankAWordBegins) {
  const auto line = TBashLine::Of("havhost get ", kBreaks);
  EXPECT_EQ(line.before, (TWords{"havhost", "get"}));
  EXPECT_EQ(line.word, "");
}

TEST(BashLine, ReplyIsEscapedWhereNoQuoteIsOpen) {
  const auto line = TBashLine::Of("havhost get T", kBreaks);
  EXPECT_EQ(line.Reply("T.Name=\"a b\""), "T.Name=\\\"a\\ b\\\"");
}

TEST(BashLine, ReplyLeavesOutWhatBashKeeps) {
  const auto line = TBashLine::Of("havhost get T.Name=", kBreaks);
  EXPECT_EQ(line.kept, "T.Name=");
  EXPECT_EQ(line.Reply("T.Name=\"a\""), "\\\"a\\\"");
  EXPECT_EQ(TBashLine::Of("havhost get T.Name\\=", kBreaks).kept, "");
}

TEST(BashLine, ReplyInAnOpenQuoteFitsIt) {
  const auto single = TBashLine::Of("havhost get x'T.Name=", kBreaks);
  EXPECT_EQ(single.quote, '\'');
  EXPECT_EQ(single.word, "xT.Name=");
  EXPECT_EQ(single.Reply("xT.Name=\"it's\""), "T.Name=\"it'\\''s\"");
  const auto both = TBashLine::Of("havhost get \"T.Name=", kBreaks);
  EXPECT_EQ(both.Reply("T.Name=\"a\\\\b$\""), "T.Name=\\\"a\\\\\\\\b\\$\\\"");
}

class Completion : public testing::Test, public ModelTest {
 protected:
  // What is proposed for the last of the words; the first line says what else there can be.
  std::string Of(TWords words) const {
    words.insert(words.begin(), {"complete", "zsh", "--"});
    const auto outcome = RunPlain(words);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }
  std::string OnModel(TWords words) const {
    words.insert(words.begin() + 1, {"--plugin", HAVHOST_PLUGIN, "--mof=" + File()});
    return Of(words);
  }
};

TEST_F(Completion, FirstWordIsACommandOrAnOptionOfTheProgram) {
  EXPECT_EQ(Of({"in"}),
            "\n"
            "instances\tList the instances of a class with their properties\n"
            "inventory\tShow what this machine consists of, as a tree\n");
  EXPECT_EQ(Of({"--v"}), "\n--version\tPrint the version and exit\n");
  EXPECT_EQ(Of({"help", "pas"}),
            "\npasswd\tGive a user of the server a password, which is read from standard input\n");
}

TEST_F(Completion, HiddenCommandsStayHidden) {
  EXPECT_EQ(Of({"comple"}),
            "\ncompletion\tWrite the script that completes command lines in bash or zsh\n");
  EXPECT_EQ(Of({"man"}), "\n");
}

TEST_F(Completion, OptionsAreThoseOfTheCommand) {
  EXPECT_EQ(Of({"instances", "--wh"}),
            "\n--where\tOnly instances that meet this condition, such as 'Size > 1000000'\n");
  EXPECT_EQ(Of({"show", "--wh"}), "\n");
  EXPECT_EQ(Of({"instances", "--", "--wh"}), "\n");
}

TEST_F(Completion, OptionsAreProposedWhereNothingElseCanStand) {
  EXPECT_EQ(Of({"passwd", "users.txt", "operator", ""}),
            "\n--help\tPrint this help message and exit\n");
}

TEST_F(Completion, FixedValuesComeFromTheOption) {
  EXPECT_EQ(Of({"instances", "--format", ""}), "\ncsv\njson\nmof\ntext\n");
  EXPECT_EQ(Of({"inventory", "-f", "h"}), "\nhtml\n");
  EXPECT_EQ(Of({"inventory", "-raf", "h"}), "\nhtml\n");
  EXPECT_EQ(Of({"inventory", "--color=a"}), "\n--color=always\n--color=auto\n");
  EXPECT_EQ(Of({"completion", ""}), "\nbash\nzsh\n");
}

TEST_F(Completion, FilesAndFoldersAreLeftToWhoAsks) {
  EXPECT_EQ(Of({"load", ""}), "files \n");
  EXPECT_EQ(Of({"load", "a.mof", ""}), "files \n");
  EXPECT_EQ(Of({"diff", "a.json", ""}), "files \n");
  EXPECT_EQ(Of({"inventory", "--output", ""}), "files \n");
  EXPECT_EQ(Of({"inventory", "--output=a"}), "files \n");
  EXPECT_EQ(Of({"inventory", "--root", ""}), "folders \n");
  EXPECT_EQ(Of({"inventory", "--mof", "a.mof", ""}), "files \n");
}

TEST_F(Completion, ClassesAreThoseOfTheFilesThatTheLineNames) {
  EXPECT_EQ(OnModel({"instances", "t_c"}), "\nT_Cache\nT_CacheOf\nT_Contains\nT_Cpu\n");
  EXPECT_EQ(OnModel({"inventory", "--class", "T_S"}), "\nT_System\n");
  EXPECT_EQ(OnModel({"references", "T_Disk", "--result-class", "T_O"}), "\nT_OnDisk\n");
}

TEST_F(Completion, ClassesAreThoseOfTheInventoryWhereTheLineNamesNoFiles) {
  EXPECT_EQ(Of({"show", "--schema", HAVHOST_SCHEMA, "--plugin", HAVHOST_PLUGIN, "ORVSG_Physical"}),
            "\nORVSG_PhysicalNetworkPort\n");
}

TEST_F(Completion, PathsFollowTheNameOfTheirClass) {
  EXPECT_EQ(OnModel({"get", "T_D"}), "goes-on \nT_Disk\n");
  EXPECT_EQ(OnModel({"get", "T_Disk."}), "\nT_Disk.Name=\"disk2\"\n");
  EXPECT_EQ(OnModel({"get", "T_System"}), "goes-on \nT_System\nT_System.Name=\"box\"\n");
  EXPECT_EQ(OnModel({"get", "T_Gone."}), "\n");
}

TEST_F(Completion, PathsAreProposedAsTheyAreShown) {
  EXPECT_EQ(OnModel({"get", "T_Cache."}), "\nT_Cache.Name=\"cache\\x1b[2J\"\n");
}

TEST_F(Completion, PropertiesAreThoseOfTheClassOnTheLine) {
  EXPECT_EQ(OnModel({"instances", "T_Disk", "--columns", ""}),
            "goes-on \nLabels\nName\nSize\nState\n__CLASS\n__PATH\n");
  EXPECT_EQ(OnModel({"instances", "T_Disk", "--columns", "Name,s"}),
            "goes-on \nName,Size\nName,State\n");
  EXPECT_EQ(OnModel({"instances", "T_Disk", "--where", "Size > 1 && St"}),
            "goes-on \nSize > 1 && State\n");
  EXPECT_EQ(OnModel({"instances", "--columns", ""}), "\n");
}

TEST_F(Completion, WhatIsWrongCompletesToNothing) {
  EXPECT_EQ(Of({"instances", "--mof", "gone.mof", "--plugin", HAVHOST_PLUGIN, "--class", "T"}),
            "\n");
  EXPECT_EQ(Of({"show", "--schema", "gone", "T"}), "\n");
  EXPECT_EQ(Of({"frobnicate", "--frob", ""}).substr(0, 1), "\n");
  EXPECT_EQ(Of({"instances", "--frob=a"}), "\n");
}

TEST_F(Completion, BashIsGivenWhatItPutsIntoTheLine) {
  const auto ask = [&](const std::string& line) {
    const auto outcome = RunPlain({"complete", "bash", "--", "havhost " + line, kBreaks});
    EXPECT_EQ(outcome.status, 0);
    return outcome.out;
  };
  EXPECT_EQ(ask("instances --wh"), "\n--where\n");
  EXPECT_EQ(ask("get --plugin '" HAVHOST_PLUGIN "' -m '" + File() + "' --raw T_Disk.Name="),
            "\n\\\"disk2\\\"\n");
}

TEST(CompletionScripts, AreWrittenForBashAndZsh) {
  EXPECT_EQ(RunPlain({"completion", "bash"}).out.rfind("# Completion of havhost for bash.", 0), 0u);
  EXPECT_EQ(RunPlain({"completion", "zsh"}).out.rfind("#compdef havhost\n", 0), 0u);
  EXPECT_EQ(RunPlain({"completion", "fish"}).err,
            "havhost: SHELL: fish not in {bash,zsh} (see havhost completion --help)\n");
}

TEST(FileNames, AreThoseThatBeginAsTheWordDoes) {
  const TemporaryFolder folder;
  folder.File("b.mof", "");
  folder.File("a.mof", "");
  folder.File("a/inside.mof", "");
  folder.File(".hidden", "");
  const auto at = [&](const std::string& name) { return folder.Path("") + name; };
  EXPECT_EQ(FileNamesFrom(at(""), false), (TWords{at("a.mof"), at("a/"), at("b.mof")}));
  EXPECT_EQ(FileNamesFrom(at("a"), false), (TWords{at("a.mof"), at("a/")}));
  EXPECT_EQ(FileNamesFrom(at("a"), true), TWords{at("a/")});
  EXPECT_EQ(FileNamesFrom(at(".h"), false), TWords{at(".hidden")});
  EXPECT_EQ(FileNamesFrom(at("gone/"), false), TWords{});
}

}  // namespace
}  // namespace havtest

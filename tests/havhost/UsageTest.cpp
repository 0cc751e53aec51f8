// The command line: help, version, and what is said of a wrong one.
#include <gtest/gtest.h>

#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

const char* const kCommands[] = {
    "inventory", "load",  "classes", "show",  "instances", "get",  "references", "associators",
    "mof",       "check", "shell",   "serve", "passwd",    "diff", "watch",      "completion"};

TEST(Usage, HelpListsTheCommands) {
  const auto outcome = RunPlain({"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            R"(Shows CIM classes and instances: of this machine's inventory, or of MOF files.

Usage: havhost [OPTIONS] COMMAND

Commands:
  help         Show this help, or that of a command
  inventory    Show what this machine consists of, as a tree
  load         Read MOF files into a namespace and sum up what is there
  classes      List the classes, each below its superclass
  show         Show one class with its declarations
  instances    List the instances of a class with their properties
  get          Show one instance with its properties
  references   List the associations that refer to an instance, or can refer to a class
  associators  List what associations link to an instance, or can link to a class
  mof          Write the namespace, or one class, as MOF
  diff         Show what is different between two snapshots
  watch        Take the inventory again and again, and show what changes
  check        Tell what the repository will do with the declarations of MOF files
  shell        Look around in one namespace, command by command
  serve        Serve the namespace to CIM clients, over HTTP
  passwd       Give a user of the server a password, which is read from standard input
  completion   Write the script that completes command lines in bash or zsh

Options:
  -h,--help  Print this help message and exit
  --version  Print the version and exit

Commands look at what the files of --mof hold, and without it at the inventory of this
machine. `havhost COMMAND --help` tells more of a command.

Example:
  havhost inventory
)");
}

TEST(Usage, HelpOfACommandTellsItsArgumentsAndOptions) {
  EXPECT_EQ(RunPlain({"associators", "--help"}).out,
            R"(List what associations link to an instance, or can link to a class

Usage: havhost associators [OPTIONS] PATH

Arguments:
  PATH  Object path of the instance, or the name of a class

Options:
  -h,--help                      Print this help message and exit
  --assoc-class CLASS            Only by associations of this class or a subclass
  --result-class CLASS           Only of this class or a subclass
  --role ROLE                    Only by associations that refer to the starting point by this name
  --result-role ROLE             Only what the association refers to by this name
  -c,--columns PROPERTY,...      Show these properties, as a table; __CLASS and __PATH name the instance
  -w,--where CONDITION           Only instances that meet this condition, such as 'Size > 1000000'
  -s,--sort PROPERTY,...         In the order of these properties (else of the paths)
  -R,--reverse                   The last one first
  -N,--names-only                Show nothing but the object paths
  -f,--format text|json|csv|mof  text for people (the default), json for programs, csv (raw values) for spreadsheets, mof to load again
  -o,--output FILE               File to write to, replaced when all went well (else standard output)
  --color auto|always|never      Colour: auto is the default, on a terminal, unless NO_COLOR is set
  --no-pager                     Do not show what is longer than the screen through $PAGER (else less)
  -r,--raw                       Show raw values in brackets beside the display text
  -a,--all                       Show empty properties, and those that keep books, as well
  -m,--mof FILE...               Show what these MOF files hold; - is standard input
  --schema DIR                   Folder of the inventory's schema (else the installed one)
  --root DIR                     Root folder of the machine to take the inventory of (else /)
  -n,--namespace NAME            Name of the namespace (else what the MOF says, else root/cimv2)
  -I,--include DIR               Folder to look for included MOF files in; may be repeated
  --plugin FILE                  The plug-in that keeps the namespace (else the installed one)
  -v,--verbose                   Write the log of the plug-in to standard error

Example:
  havhost associators 'ORVSG_DiskDrive.Name="/dev/sda"' --result-class ORVSG_DiskPartition
)");
}

TEST(Usage, EveryCommandHasHelpWithAnExampleOfItself) {
  for (const std::string command : kCommands) {
    const auto outcome = RunPlain({command, "--help"});
    EXPECT_EQ(outcome.status, 0) << command;
    EXPECT_NE(outcome.out.find("\nUsage: havhost " + command + " [OPTIONS]"), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("\nExample:\n  havhost " + command + " "), std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.err, "") << command;
  }
}

TEST(Usage, HelpShowsWhichArgumentsAreOptionalAndWhichRepeat) {
  EXPECT_NE(RunPlain({"mof", "--help"}).out.find("havhost mof [OPTIONS] [CLASS]\n"),
            std::string::npos);
  EXPECT_NE(RunPlain({"load", "--help"}).out.find("havhost load [OPTIONS] FILE...\n"),
            std::string::npos);
}

TEST(Usage, HelpIsACommandAsWell) {
  EXPECT_EQ(RunPlain({"help"}).out, RunPlain({"--help"}).out);
  EXPECT_EQ(RunPlain({"help", "show"}).out, RunPlain({"show", "--help"}).out);
  EXPECT_EQ(RunPlain({"help", "help"}).out, RunPlain({"help", "--help"}).out);
  const auto wrong = RunPlain({"help", "frobnicate"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.out, "");
  EXPECT_EQ(wrong.err, "havhost: no such command: frobnicate (see havhost --help)\n");
}

TEST(Usage, VersionIsTheProjects) {
  const auto outcome = RunPlain({"--version"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "havhost " HAVHOST_VERSION "\n");
}

struct Wrong {
  std::vector<std::string> arguments;
  std::string error;
};

TEST(Usage, WrongCommandLinesAreOneLineAndStatusTwo) {
  const Wrong wrong[] = {
      {{}, "a command is required (see havhost --help)"},
      {{"frobnicate"}, "no such command: frobnicate (see havhost --help)"},
      {{"--frobnicate"}, "no such option: --frobnicate (see havhost --help)"},
      {{""}, "no such command:  (see havhost --help)"},
      {{"show"}, "CLASS is required (see havhost show --help)"},
      {{"get"}, "PATH is required (see havhost get --help)"},
      {{"load"}, "FILE is required (see havhost load --help)"},
      {{"show", "A", "B"}, "The following argument was not expected: B (see havhost show --help)"},
      {{"classes", "--frobnicate"},
       "The following argument was not expected: --frobnicate (see havhost classes --help)"},
      {{"classes", "--format", "xml"},
       "--format: xml not in {text,json,csv} (see havhost classes --help)"},
      {{"classes", "--mof", "a.mof", "--root", "/"},
       "--mof excludes --root (see havhost classes --help)"},
      {{"mof", "--raw"}, "The following argument was not expected: --raw (see havhost mof --help)"},
  };
  for (const auto& [arguments, error] : wrong) {
    const auto outcome = RunPlain(arguments);
    EXPECT_EQ(outcome.status, 2) << error;
    EXPECT_EQ(outcome.out, "") << error;
    EXPECT_EQ(outcome.err, "havhost: " + error + "\n");
  }
}

}  // namespace
}  // namespace havtest

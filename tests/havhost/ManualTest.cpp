// The manual page, which is made of what --help is made of.
#include <gtest/gtest.h>

#include <regex>

#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using TWords = std::vector<std::string>;

TWords Matches(const std::string& text, const std::string& pattern) {
  TWords found;
  const std::regex wanted(pattern);
  for (std::sregex_iterator at(text.begin(), text.end(), wanted), end; at != end; ++at)
    found.push_back((*at)[1]);
  return found;
}

// As roff writes it.
std::string Escaped(const std::string& text) {
  return std::regex_replace(text, std::regex("-"), "\\-");
}

TEST(Manual, NamesEveryCommandAndEveryOptionOfTheHelp) {
  const auto page = RunPlain({"manual"}).out;
  const auto help = RunPlain({"--help"}).out;
  const auto commands = Matches(help.substr(0, help.find("\nOptions:")), "\n  ([a-z]+) +[A-Z]");
  ASSERT_EQ(commands.size(), 17u);
  std::size_t options = 0;
  for (const auto& command : commands) {
    EXPECT_NE(page.find("\n.SS havhost " + command + " "), std::string::npos) << command;
    for (const auto& option :
         Matches(RunPlain({command, "--help"}).out, "\n  (?:-.,)?(--[a-z-]+)")) {
      EXPECT_NE(page.find("\\fB" + Escaped(option) + "\\fR"), std::string::npos) << option;
      ++options;
    }
  }
  EXPECT_GT(options, 150u);
}

TEST(Manual, TellsOfEachOptionOnceWhereManyCommandsHaveIt) {
  const auto page = RunPlain({"manual"}).out;
  EXPECT_EQ(Matches(page, "\n(\\\\fB\\\\-v\\\\fR, \\\\fB\\\\-\\\\-verbose\\\\fR)\n").size(), 1u);
}

TEST(Manual, LinesThatBeginAsRequestsDoAreText) {
  // No line of the page begins with a point that is none of its own requests.
  for (const auto& request : Matches(RunPlain({"manual"}).out, "\n[.']([^ \n]*)"))
    EXPECT_TRUE(std::regex_match(request, std::regex("TH|SH|SS|TP|PP|EX|EE|B|I|BR|BI|IR|nh|ad")))
        << request;
}

}  // namespace
}  // namespace havtest

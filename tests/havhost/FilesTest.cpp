// What the user names and what machines say of themselves: files that cannot be read, never end or
// hold anything at all, and characters that no screen should get.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sstream>

#include <nlohmann/json.hpp>

#include "havcore/client/Utf8.h"
#include "havhost/Program.h"
#include "havhost/ReadText.h"
#include "havhost/THostError.h"
#include "tests/havhost/Havhost.h"

#if !defined(_WIN32)
#include "tests/inventory/FakeMachine.h"
#endif

namespace havtest {
namespace {

using TJson = nlohmann::ordered_json;

std::string ErrorOf(const std::function<void()>& read) {
  try {
    read();
    return "none";
  } catch (const havhost::THostError& failure) {
    return failure.what();
  }
}

// A gigabyte of nothing, which takes no room on the disk.
std::string Gigabyte(const TemporaryFolder& folder) {
  const auto path = folder.File("gigabyte.json", "{");
  std::filesystem::resize_file(path, std::uintmax_t{1} << 30U);
  return path;
}

TEST(ReadText, TakesWhatThereIs) {
  const TemporaryFolder folder;
  const std::string text("a\0b\r\n\xFF", 6);
  EXPECT_EQ(havhost::ReadTextFile(folder.File("any", text)), text);
  EXPECT_EQ(havhost::ReadTextFile(folder.File("empty", "")), "");
  std::istringstream in(text);
  EXPECT_EQ(havhost::ReadText(in, "standard input"), text);
}

TEST(ReadText, RefusesWhatIsNotThereOrNoFile) {
  const TemporaryFolder folder;
  for (const auto& path : {folder.Path("missing"), folder.Path(".")})
    EXPECT_EQ(ErrorOf([&] { havhost::ReadTextFile(path); }), "cannot read " + path);
}

TEST(ReadText, RefusesAGigabyteBeforeItIsInMemory) {
  const TemporaryFolder folder;
  const auto path = Gigabyte(folder);
  EXPECT_EQ(ErrorOf([&] { havhost::ReadTextFile(path); }), path + " is larger than 256 MiB");
}

// Fails once it has given what it has.
class FailingBuffer : public std::streambuf {
 public:
  explicit FailingBuffer(std::string text) : m_text(std::move(text)) {
    setg(m_text.data(), m_text.data(), m_text.data() + m_text.size());
  }

 protected:
  int_type underflow() override { throw std::ios_base::failure("Input/output error"); }

 private:
  std::string m_text;
};

TEST(ReadText, RefusesWhatFailsInTheMiddle) {
  FailingBuffer buffer("{\"version\": 1}");
  std::istream in(&buffer);
  EXPECT_EQ(ErrorOf([&] { havhost::ReadText(in, "it"); }), "cannot read it");
}

TEST(ReadText, OfStandardInputThatFailsLoadsNothing) {
  FailingBuffer buffer("class T { [Key] string Name; };");
  std::istream in(&buffer);
  std::ostringstream out, err;
  EXPECT_EQ(
      havhost::Run({"classes", "--mof", "-", "--plugin", HAVHOST_PLUGIN}, {out, err, false, &in}),
      1);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(),
            "havhost: -: error: file '-': cannot read it\n"
            "havhost: nothing is loaded: the MOF has 1 error\n");
}

class OddSnapshot : public testing::Test {
 protected:
  // What `diff` says of a document beside the model.
  std::string ErrorOfDiff(const std::string& text) const {
    const auto path = m_folder.File("odd.json", text);
    const auto outcome = Havhost({"diff", path, m_model.File()});
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    const std::string begin = "havhost: " + path + ": ";
    EXPECT_EQ(outcome.err.rfind(begin, 0), 0u) << outcome.err;
    return outcome.err.substr(std::min(begin.size(), outcome.err.size()));
  }
  static std::string WithProperties(const std::string& properties) {
    return R"({"version": 1, "instances": [{"path": "T.A=1", "class": "T", "properties": )" +
           properties + "}]}";
  }

  TemporaryFolder m_folder;
  ModelTest m_model;
};

TEST_F(OddSnapshot, WhosePropertiesAreNoneIsRefused) {
  for (const char* const properties :
       {"[1, 2]", "\"A\"", "null", R"({"A": 1})", R"({"A": {"value": 1}})",
        R"({"A": {"display": "1"}})", R"({"A": {"value": {"B": 1}, "display": "1"}})",
        R"({"A": {"value": [[1]], "display": "1"}})", R"({"A": {"value": 1, "display": {}}})"})
    EXPECT_EQ(ErrorOfDiff(WithProperties(properties)),
              "no instances in it that havhost wrote as JSON: the properties of T.A=1 are none\n")
        << properties;
}

TEST_F(OddSnapshot, NestedAsDeepAsItLikesIsRefused) {
  constexpr std::size_t kDeep = 500000;
  const auto deep = std::string(kDeep, '[') + std::string(kDeep, ']');
  for (const auto& text : {WithProperties(R"({"A": {"value": )" + deep + R"(, "display": ""}})"),
                           R"({"version": 1, "instances": )" + deep + "}",
                           R"({"version": 1, "instances": [], "associations": )" + deep + "}"})
    EXPECT_EQ(ErrorOfDiff(text),
              "no instances in it that havhost wrote as JSON: it is nested too deeply\n");
}

TEST(OddFile, OfAFolderOrAGigabyteIsTroubleForDiff) {
  const TemporaryFolder folder;
  const auto gigabyte = Gigabyte(folder);
  auto outcome = Havhost({"diff", gigabyte, gigabyte});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "havhost: " + gigabyte + " is larger than 256 MiB\n");
  outcome = Havhost({"diff", folder.Path("."), gigabyte});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "havhost: cannot read " + folder.Path(".") + "\n");
}

#if !defined(_WIN32)

// A machine whose maker wrote more than a name into it.
class HostileMachine : public testing::Test {
 protected:
  HostileMachine() {
    machine.File("/sys/class/dmi/id/product_name", kHostile + "\n");
    machine.File("/sys/block/sda/device/model", kHostile + "\n");
  }

  // The first is the command; its output goes to a file or a pipe, or to a terminal.
  std::string Shown(std::vector<std::string> arguments, bool onTerminal) const {
    arguments.insert(arguments.end(), {"--schema", HAVHOST_SCHEMA, "--root",
                                       machine.Machine().Root(), "--plugin", HAVHOST_PLUGIN});
    std::ostringstream out, err;
    havhost::TTerminal terminal;
    terminal.isThere = onTerminal;
    terminal.hasColour = false;
    EXPECT_EQ(havhost::Run(arguments, {out, err, false, nullptr, terminal}), 0) << err.str();
    return out.str();
  }

  // It turns the direction of what follows, has no width, is no letter of any alphabet.
  const std::string kHostile =
      "Rack\xE2\x80\xAE"
      "2000\xE2\x80\x8B\xE2\x81\xA6\xEF\xBB\xBF\xC2\x9B"
      "2J\xC3\xA9";
  FullMachine machine;
};

// UTF-8 in which nothing turns text, takes no place, or is a control character.
void ExpectSafe(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto length = hav::client::Utf8Length(text, at);
    ASSERT_NE(length, 0u) << "no UTF-8 at " << at;
    const auto code = hav::client::Utf8Value(std::string_view(text).substr(at, length));
    const bool isControl = (code < 0x20 && code != '\n') || (code >= 0x7F && code < 0xA0);
    const bool isInvisible = (code >= 0x200B && code <= 0x200F) || code == 0xFEFF ||
                             (code >= 0x202A && code <= 0x202E) ||
                             (code >= 0x2060 && code <= 0x206F);
    ASSERT_FALSE(isControl || isInvisible) << std::hex << static_cast<unsigned>(code);
    at += length;
  }
}

TEST_F(HostileMachine, IsShownToPeopleWithEscapes) {
  for (const bool onTerminal : {false, true}) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"inventory"},
          {"instances", "ORVSG_DiskDrive"},
          {"instances", "ORVSG_DiskDrive", "--columns", "Name,Model"},
          {"get", "ORVSG_ComputerSystem.Name=\"server1\""}}) {
      const auto text = Shown(command, onTerminal);
      ExpectSafe(text);
      EXPECT_NE(text.find("\\xe2\\x80\\xae"), std::string::npos) << text;
      EXPECT_NE(text.find("\xC3\xA9"), std::string::npos) << text;
    }
  }
}

TEST_F(HostileMachine, IsTheSameTextInJsonForPrograms) {
  const auto text =
      Shown({"get", "ORVSG_ComputerSystem.Name=\"server1\"", "--format", "json"}, false);
  const auto document = TJson::parse(text, nullptr, false);
  ASSERT_FALSE(document.is_discarded()) << text;
  EXPECT_NE(document.dump().find(kHostile), std::string::npos) << text;
}

TEST_F(HostileMachine, IsShownOnATerminalWithEscapesInEveryFormat) {
  for (const char* const format : {"json", "csv", "mof"})
    ExpectSafe(Shown({"instances", "ORVSG_DiskDrive", "--format", format}, true));
}

TEST_F(HostileMachine, IsTheSameTextInCsvForPrograms) {
  const auto text = Shown({"instances", "ORVSG_DiskDrive", "--format", "csv"}, false);
  EXPECT_NE(text.find(kHostile), std::string::npos) << text;
}

// In the page the text is data, which no markup can leave.
TEST_F(HostileMachine, CannotLeaveTheDataOfThePage) {
  machine.File("/sys/class/dmi/id/product_name", "</script><script>alert(1)</script><!--\n");
  const auto page = Shown({"inventory", "--format", "html"}, false);
  EXPECT_EQ(page.find("alert(1)</script>"), std::string::npos);
  EXPECT_EQ(page.find("<script>alert"), std::string::npos);
  EXPECT_NE(page.find("alert(1)"), std::string::npos);
}

#endif

}  // namespace
}  // namespace havtest

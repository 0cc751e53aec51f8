// Lines as the arguments of the host program: they are refused with one clear error, or there is a
// command, which is run on a small model. Whatever it prints for people has nothing in it that a
// terminal would obey, and what it prints for programs is what they can read.
#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "havcore/client/Utf8.h"
#include "havhost/CommandLine.h"
#include "havhost/THelpText.h"
#include "havhost/THostError.h"
#include "havhost/report/Text.h"
#include "havhost/shell/Words.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"

namespace {

using namespace havtest;
using havfuzz::Require;
using Texts = std::vector<std::string>;

struct TWorld {
  TWorld() {
    const auto disk = repository.Allocate("T_Disk");
    repository.Key(disk, "Name");
    repository.Property(
        disk, "Size", TCIMValue::Null(kCIMUInt64),
        {{"UNITS", "Bytes"}, {"DISPLAYFIXEDUNITS", "Tera"}, {"ABBREVIATEUNITS", true}});
    repository.Property(disk, "Labels", TCIMValue::Null(ArrayOf(kCIMString)));
    repository.Property(disk, "Since", TCIMValue::Null(kCIMDateTime));
    disk->AddToNamespace({});
    const auto system = repository.Class("T_System");
    const auto contains = repository.Association("T_Contains", "Group", system, "Part", disk);
    const auto box = repository.Instance(system, {{"Name", "box"}});
    const auto since = TCIMDateTime::Parse("20240229133015.123456+060");
    for (const char* const name : {"one", "esc\x1b[2J", "bidi\xE2\x80\xAE", "stray\xFF", "a\"b\\c"})
      repository.Link(contains, "Group", box, "Part",
                      repository.Instance(disk, {{"Name", std::string(name)},
                                                 {"Size", std::uint64_t{1536}},
                                                 {"Since", TCIMValue(since)}}));
    log.Take();
  }

  Repository repository;
  RecordingLogger log;
};

// A line, or several: text that is safe on a terminal.
void CheckForPeople(const std::string& text, bool mayHaveColour) {
  for (std::size_t at = 0; at < text.size();) {
    const auto length = hav::client::Utf8Length(text, at);
    if (length == 0) havfuzz::Fail("bytes that are no UTF-8 are printed: ", text);
    const auto code = hav::client::Utf8Value(std::string_view(text).substr(at, length));
    const bool isControl = (code < 0x20 && code != '\n') || (code >= 0x7F && code < 0xA0);
    const bool isTurning = (code >= 0x200B && code <= 0x200F) || (code >= 0x202A && code <= 0x202E);
    if ((isControl && !(mayHaveColour && code == 0x1B)) || isTurning)
      havfuzz::Fail("a character is printed that the terminal obeys: ", text);
    at += length;
  }
}

void CheckTexts(const std::string& text) {
  CheckForPeople(havhost::Printable(text), false);
  try {
    havhost::WordsOf(text);
  } catch (const havhost::TUsageError& failure) {
    Require(*failure.what() != '\0', "an error says nothing");
  }
}

// Commands that look at the namespace, and end.
bool IsRun(const std::string& command) {
  constexpr std::array<const char*, 9> kRun{"inventory",  "load",        "classes",
                                            "show",       "instances",   "get",
                                            "references", "associators", "mof"};
  return std::find(kRun.begin(), kRun.end(), command) != kRun.end();
}

void RunOn(TWorld& world, havhost::TCommandLine& line) {
  auto& settings = line.settings;
  // Nothing is written but the output.
  settings.outputFile.clear();
  if (settings.namespaceName.empty()) settings.namespaceName = "root/cimv2";
  settings.style.colour = settings.color == "always";
  std::ostringstream out;
  try {
    std::get<havhost::TCommandAction>(line.action)(world.repository.ns, settings, out);
  } catch (const havhost::THostError& failure) {
    Require(*failure.what() != '\0', "an error says nothing");
    return;
  } catch (const THAVException&) {
    Require(!world.log.lines.empty(), "a failure is told by its status alone");
    return;
  }
  const auto text = out.str();
  if (settings.format == "text") CheckForPeople(text, settings.style.colour);
  if (settings.IsJson()) Require(nlohmann::json::accept(text), "the document is no JSON");
}

// Reads the arguments as the program does. True when there is a command to run.
bool ReadArguments(CLI::App& program, const Texts& arguments) {
  try {
    program.parse(Texts(arguments.rbegin(), arguments.rend()));
    return true;
  } catch (const CLI::CallForHelp&) {
    CheckForPeople(program.help(), false);
  } catch (const CLI::CallForVersion&) {
    CheckForPeople(program.version(), false);
  } catch (const CLI::ParseError& failure) {
    Require(*failure.what() != '\0', "an error says nothing");
    CheckForPeople(havhost::Printable(failure.what()), false);
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static TWorld world;
  world.log.Take();
  havfuzz::TInput input(data, size);
  CheckTexts(std::string(input.Rest()));
  Texts arguments;
  // A zero byte ends an argument wherever it comes from.
  while (!input.IsAtEnd()) arguments.emplace_back(std::string(input.Until('\n')).c_str());
  CLI::App program;
  program.formatter(std::make_shared<havhost::THelpText>(havhost::TTextStyle()));
  havhost::TCommandLine line;
  havhost::DeclareProgram(program, line);
  if (ReadArguments(program, arguments) && IsRun(arguments[0])) RunOn(world, line);
  return 0;
}

#include "havhost/Output.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

namespace {

void WriteFile(const std::string& name, const std::string& text) {
  errno = 0;
  std::ofstream file(PathOf(name), std::ios::binary);
  file << text;
  file.close();
  if (!file)
    throw THostError("cannot write " + name + ": " + std::generic_category().message(errno));
}

bool IsLonger(const std::string& text, std::size_t lines) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) >= lines;
}

// What programs are to read is not made for a terminal, where text for people is printable
// already.
std::string FitForTerminal(const std::string& text, const TSettings& settings) {
  if (settings.IsJson()) return PrintableJson(text);
  return settings.format == "text" ? text : PrintableLines(text);
}

void Show(const std::string& text, const TSettings& settings, const TConsole& console) {
  const auto& terminal = console.terminal;
  const bool isPaged =
      terminal.page && !settings.noPager && IsLonger(text, terminal.height) && terminal.page(text);
  if (!isPaged) console.out << text;
}

}  // namespace

TTextStyle StyleOf(const TSettings& settings, const TTerminal& terminal) {
  TTextStyle style;
  style.isShown = terminal.isThere && settings.outputFile.empty();
  style.colour = settings.color == "always" ||
                 (settings.color == "auto" && style.isShown && terminal.hasColour);
  style.boxes = !style.isShown || terminal.isUtf8;
  style.width = style.isShown ? terminal.width : 0;
  return style;
}

void WithOutput(TSettings& settings, bool isShownAtOnce, const TConsole& console,
                const std::function<void(const TConsole& shown)>& act) {
  settings.style = StyleOf(settings, console.terminal);
  const bool hasFile = !settings.outputFile.empty();
  if (!hasFile && !(isShownAtOnce && settings.style.isShown)) return act(console);
  // The file may be one that is read, and what fails must not cost what it holds.
  std::ostringstream text;
  act({text, console.err, console.showsProgress, console.in, console.terminal});
  if (hasFile)
    WriteFile(settings.outputFile, text.str());
  else
    Show(FitForTerminal(text.str(), settings), settings, console);
}

}  // namespace havhost

#include "havhost/ManualPage.h"

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "havhost/CommandTree.h"

namespace havhost {

namespace {

// An option that so many commands have stands in a section for all of them.
constexpr std::size_t kCommon = 4;

constexpr char kEpilogue[] = R"(.SH OBJECT PATHS
A path is the name of a class and the keys of one of its instances, as in
.EX

  havhost get 'ORVSG_Processor.Name="CPU0"'

.EE
It is typed as it is shown: characters that no terminal should get are shown, and taken, as
.BR \en ,
.BR \er ,
.B \et
and
.BI \ex HH
for a byte.
.SH EXIT STATUS
.TP
.B 0
The command did its work; of
.B diff
and
.BR check ,
there was nothing to tell.
.TP
.B 1
Something failed; of
.B diff
and
.BR check ,
there was something to tell.
.TP
.B 2
The command line is wrong; of
.B diff
and
.BR check ,
a file cannot be read.
.SH ENVIRONMENT
.TP
.B NO_COLOR
When it is set to anything, there is no colour but with
.BR "\-\-color always" .
.TP
.B PAGER
The program to leaf with through what is longer than the screen, else
.BR less (1);
none when it is empty.
.TP
.B LESS
Its options; unless they are set,
.BR FRX .
.TP
.BR LC_ALL ", " LC_CTYPE ", " LANG
Trees are drawn with box characters where the locale is UTF-8.
.TP
.BR XDG_STATE_HOME ", " HOME
Where the shell keeps its history.
.SH FILES
.TP
.I ~/.local/state/havhost/history
The history of the shell.
.TP
.I share/havhost/schema
Below the prefix of the installation: the classes of the inventory.
.TP
.I share/havhost/havhost.schema.json
The JSON Schema of what
.B \-\-format json
writes.
.SH SEE ALSO
.BR less (1),
the guides in
.IR share/doc/inmem/docs .
)";

// Text that means itself to roff; what stands in backquotes is bold.
std::string Roff(const std::string& text) {
  std::string escaped;
  bool isBold = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const bool begins = at == 0 || text[at - 1] == '\n';
    if (begins && (c == '.' || c == '\'')) escaped += "\\&";
    switch (c) {
      case '\\': escaped += "\\e"; break;
      case '-': escaped += "\\-"; break;
      case '\'': escaped += "\\(aq"; break;
      case '^': escaped += "\\(ha"; break;
      case '~': escaped += "\\(ti"; break;
      case '`':
        isBold = !isBold;
        escaped += isBold ? "\\fB" : "\\fR";
        break;
      default: escaped += c;
    }
  }
  return escaped;
}

std::string Bold(const std::string& text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Roff(text) + "\\fR"; }

// "-o, --output FILE", the names bold and what the user gives in italics.
std::string OptionNames(const CLI::Option& option) {
  std::string names;
  for (const auto& name : option.get_snames()) names += Bold("-" + name) + ", ";
  for (const auto& name : option.get_lnames()) names += Bold("--" + name) + ", ";
  names.resize(names.size() - 2);
  const auto value = option.get_type_name();
  return value.empty() ? names : names + " " + Italic(value);
}

void PrintItem(std::ostream& out, const std::string& name, const std::string& description) {
  out << ".TP\n" << name << '\n' << Roff(description) << '\n';
}

// The paragraphs of the text; lines that are set in are examples.
void PrintText(std::ostream& out, const std::string& text) {
  std::istringstream lines(text);
  bool isExample = false;
  for (std::string line; std::getline(lines, line);) {
    const bool isSetIn = line.rfind("  ", 0) == 0;
    if (isSetIn && !isExample) out << ".EX\n";
    if (!isSetIn && isExample) out << ".EE\n";
    isExample = isSetIn;
    out << (line.empty() ? ".PP" : Roff(line)) << '\n';
  }
  if (isExample) out << ".EE\n";
}

using TTold = std::pair<std::string, std::string>;  // an option as it is told

TTold Told(const CLI::Option& option) { return {OptionNames(option), option.get_description()}; }

// How many commands tell each option so.
std::map<TTold, std::size_t> Count(const CLI::App& program) {
  std::map<TTold, std::size_t> counts;
  for (const auto* command : CommandsOf(program))
    for (const auto* option : OptionsOf(*command)) ++counts[Told(*option)];
  return counts;
}

void PrintCommand(std::ostream& out, const CLI::App& command,
                  const std::map<TTold, std::size_t>& counts) {
  out << ".SS " << Roff("havhost " + command.get_name() + " " + UsageText(command)) << '\n'
      << Roff(command.get_description()) << ".\n";
  for (const auto* argument : ArgumentsOf(command))
    PrintItem(out, Italic(ArgumentText(*argument)), argument->get_description());
  std::string common;
  for (const auto* option : OptionsOf(command)) {
    if (option == command.get_help_ptr()) continue;
    if (counts.at(Told(*option)) < kCommon)
      PrintItem(out, OptionNames(*option), option->get_description());
    else
      common += (common.empty() ? "" : ", ") + Bold("--" + option->get_lnames().front());
  }
  if (!common.empty()) out << ".PP\nCommon options: " << common << ".\n";
  out << ".PP\n";
  PrintText(out, command.get_footer());
}

void PrintCommonOptions(std::ostream& out, const CLI::App& program,
                        const std::map<TTold, std::size_t>& counts) {
  out << ".SH COMMON OPTIONS\nThese stand behind the name of each command that has them.\n";
  std::set<TTold> seen;
  for (const auto* command : CommandsOf(program))
    for (const auto* option : OptionsOf(*command)) {
      const auto told = Told(*option);
      if (counts.at(told) >= kCommon && seen.insert(told).second)
        PrintItem(out, told.first, told.second);
    }
}

}  // namespace

void PrintManualPage(std::ostream& out, const CLI::App& program) {
  const auto counts = Count(program);
  out << ".\\\" Written by the program itself: havhost manual\n"
      << ".TH HAVHOST 1 \"\" \"" << Roff(program.version()) << "\" \"User Commands\"\n.nh\n.ad l\n"
      << ".SH NAME\nhavhost \\- CIM classes and instances of this machine, or of MOF files\n"
      << ".SH SYNOPSIS\n.B havhost\n.I COMMAND\n[\\fIOPTIONS\\fR] [\\fIARGUMENTS\\fR]\n"
      << ".SH DESCRIPTION\n"
      << Roff(program.get_description()) << "\n.PP\n";
  PrintText(out, program.get_footer());
  out << ".SH OPTIONS\n";
  for (const auto* option : OptionsOf(program))
    PrintItem(out, OptionNames(*option), option->get_description());
  out << ".SH COMMANDS\n";
  for (const auto* command : CommandsOf(program)) PrintCommand(out, *command, counts);
  PrintCommonOptions(out, program, counts);
  out << kEpilogue;
}

}  // namespace havhost

#include "havhost/THelpText.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "havhost/CommandTree.h"
#include "havhost/report/Text.h"

namespace havhost {

namespace {

// Descriptions narrower than this stand below what they describe.
constexpr std::size_t kNarrowest = 30;

// What a narrow screen has no two columns for.
void PrintStacked(std::ostream& out, const std::vector<TRow>& rows, const TTextStyle& style) {
  for (const auto& row : rows) {
    out << "  " << style.Ink(TTextStyle::kName, row[0]) << '\n';
    PrintRows(out, "      ", {{row[1]}}, 40, style);
  }
}

void PrintSection(std::ostream& out, const std::string& title, const std::vector<TRow>& rows,
                  const TTextStyle& style) {
  if (rows.empty()) return;
  out << '\n' << style.Ink(TTextStyle::kStrong, title + ":") << '\n';
  std::size_t names = 0;
  for (const auto& row : rows) names = std::max(names, Width(row[0]));
  if (style.width != 0 && names + kNarrowest > style.width)
    PrintStacked(out, rows, style);
  else
    PrintRows(out, "  ", rows, 40, style);
}

// Each line of the text by itself; an example, which is set in, stays one line.
void PrintText(std::ostream& out, const std::string& text, const TTextStyle& style) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const bool isWhole = style.width == 0 || line.rfind("  ", 0) == 0;
    for (const auto& piece : Wrap(line, isWhole ? std::string::npos : style.width))
      out << piece << '\n';
  }
}

}  // namespace

std::string THelpText::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode) const {
  std::vector<TRow> commands;
  std::vector<TRow> arguments;
  std::vector<TRow> options;
  for (const auto* command : CommandsOf(*app))
    commands.push_back({command->get_name(), command->get_description()});
  for (const auto* argument : ArgumentsOf(*app))
    arguments.push_back({ArgumentText(*argument), argument->get_description()});
  for (const auto* option : OptionsOf(*app))
    options.push_back({OptionText(*option), option->get_description()});

  std::ostringstream out;
  PrintText(out, app->get_description(), m_style);
  out << '\n';
  PrintText(out, "Usage: " + name + " " + UsageText(*app), m_style);
  PrintSection(out, "Commands", commands, m_style);
  PrintSection(out, "Arguments", arguments, m_style);
  PrintSection(out, "Options", options, m_style);
  out << '\n';
  PrintText(out, app->get_footer(), m_style);
  return out.str();
}

}  // namespace havhost

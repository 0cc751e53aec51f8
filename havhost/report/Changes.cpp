#include "havhost/report/Changes.h"

#include "havhost/report/Text.h"

namespace havhost {

namespace {

constexpr char kSigns[] = {'+', '~', '-'};
constexpr TTextStyle::EInk kInks[] = {TTextStyle::kNew, TTextStyle::kChanged, TTextStyle::kOld};
constexpr const char* kNames[] = {"appeared", "changed", "disappeared"};

std::string Text(const TJson& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// The display text, or the raw value where the two states look alike.
std::string Text(const TJson& property, bool raw) {
  if (property.is_null()) return "(none)";
  const auto& shown = property.at(raw ? "value" : "display");
  if (!shown.is_array()) return Text(shown);
  std::vector<std::string> texts;
  for (const auto& element : shown) texts.push_back(Text(element));
  return Join(texts);
}

}  // namespace

void PrintChanges(std::ostream& out, const TChanges& changes, const TTextStyle& style) {
  const TTableLook look{
      {TTextStyle::kName, TTextStyle::kOld, TTextStyle::kFaint, TTextStyle::kNew}};
  for (const auto& change : changes) {
    out << style.Ink(kInks[change.kind], kSigns[change.kind] + (' ' + Printable(change.path)))
        << '\n';
    std::vector<TRow> rows;
    for (const auto& property : change.properties) {
      const bool raw = Text(property.before, false) == Text(property.after, false);
      rows.push_back({property.name, Text(property.before, raw), "->", Text(property.after, raw)});
    }
    PrintRows(out, "    ", rows, 40, style, look);
  }
}

TJson ToJson(const TChanges& changes) {
  TJson document = TJson::object();
  for (const auto* const name : kNames) document[name] = TJson::array();
  for (const auto& change : changes) {
    TJson instance = {{"path", change.path}, {"class", change.className}};
    if (change.kind == TInstanceChange::kChanged) {
      TJson properties = TJson::object();
      for (const auto& property : change.properties)
        properties[property.name] = {{"before", property.before}, {"after", property.after}};
      instance["properties"] = std::move(properties);
    }
    document[kNames[change.kind]].push_back(std::move(instance));
  }
  return document;
}

}  // namespace havhost

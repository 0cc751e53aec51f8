#include "havhost/report/InstanceText.h"

#include "havhost/report/Text.h"

namespace havhost {

void PrintProperties(std::ostream& out, const std::string& prefix, const TInstanceReport& instance,
                     const TSettings& settings) {
  std::vector<TRow> rows;
  for (const auto& property : instance.properties) {
    if (!settings.all && (IsEmpty(property) || IsBookkeeping(property))) continue;
    rows.push_back({property.name, Join(property.display)});
    if (settings.raw) rows.back().push_back("[" + property.value.ToString(10) + "]");
  }
  PrintRows(out, prefix, rows, 40, settings.style);
}

void PrintInstance(std::ostream& out, const TInstanceReport& instance, const TSettings& settings) {
  out << settings.style.Ink(TTextStyle::kStrong, Printable(instance.path)) << '\n';
  PrintProperties(out, "  ", instance, settings);
}

}  // namespace havhost

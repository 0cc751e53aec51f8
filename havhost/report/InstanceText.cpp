#include "havhost/report/InstanceText.h"

#include "havhost/report/Text.h"

namespace havhost {

void PrintProperties(std::ostream& out, const std::string& prefix, const TInstanceReport& instance,
                     bool raw) {
  std::vector<TRow> rows;
  for (const auto& property : instance.properties) {
    rows.push_back({property.name, Join(property.display)});
    if (raw) rows.back().push_back("[" + property.value.ToString(10) + "]");
  }
  PrintRows(out, prefix, rows);
}

void PrintInstance(std::ostream& out, const TInstanceReport& instance, bool raw) {
  out << Printable(instance.path) << '\n';
  PrintProperties(out, "  ", instance, raw);
}

}  // namespace havhost

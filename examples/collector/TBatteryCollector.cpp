#include "TBatteryCollector.h"

#include <fstream>
#include <map>
#include <optional>
#include <string>

using hav::inventory::TCollection;

// The first line of the file, nothing when it cannot be read.
static std::optional<std::string> Line(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  return std::getline(stream, line) ? std::optional(line) : std::nullopt;
}

// What is no number from 0 to 100 is not known: nothing is invented.
static std::optional<std::uint8_t> Percent(const std::filesystem::path& file) {
  const auto line = Line(file);
  if (!line || line->empty() || line->size() > 3) return {};
  if (line->find_first_not_of("0123456789") != std::string::npos) return {};
  const int number = std::stoi(*line);
  return number <= 100 ? std::optional(static_cast<std::uint8_t>(number)) : std::nullopt;
}

static std::optional<std::uint8_t> Status(const std::filesystem::path& file) {
  static const std::map<std::string, std::uint8_t> known = {
      {"Charging", 1}, {"Discharging", 2}, {"Full", 3}};
  const auto found = known.find(Line(file).value_or(""));
  return found == known.end() ? std::nullopt : std::optional(found->second);
}

void TBatteryCollector::Collect(TCollection& collection) {
  std::error_code failure;
  std::filesystem::directory_iterator supplies(m_supplies, failure);
  // A machine without the folder has no battery, and that is no failure of the collection.
  if (failure == std::errc::no_such_file_or_directory) return;
  if (failure) return collection.Fail(m_supplies.string(), failure.message());
  for (const auto& supply : supplies) {
    if (Line(supply.path() / "type") != "Battery") continue;
    const auto name = supply.path().filename().string();
    collection.AddSystemDevice("battery " + name, "Example_Battery", name)
        .Set("Charge", Percent(supply.path() / "capacity"))
        .Set("ChargeStatus", Status(supply.path() / "status"));
  }
}

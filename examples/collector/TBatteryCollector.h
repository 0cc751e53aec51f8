// TBatteryCollector: the batteries of a machine, an Example_Battery for each.
//
// Reads: sys/class/power_supply/*/type, capacity and status below the machine's root folder.
#pragma once

#include <inventory/ICollector.h>

#include <filesystem>

class TBatteryCollector : public hav::inventory::ICollector {
 public:
  explicit TBatteryCollector(const hav::inventory::TMachine& machine)
      : m_supplies(std::filesystem::path(machine.Root()) / "sys/class/power_supply") {}

  const char* Name() const override { return "batteries"; }
  void Collect(hav::inventory::TCollection& collection) override;

 private:
  std::filesystem::path m_supplies;
};

#include "inventory/ICollector.h"
#include "inventory/windows/TComputerSystemCollector.h"
#include "inventory/windows/TDiskCollector.h"
#include "inventory/windows/TFileSystemCollector.h"
#include "inventory/windows/TMemoryCollector.h"
#include "inventory/windows/TNetworkPortCollector.h"
#include "inventory/windows/TNumaNodeCollector.h"
#include "inventory/windows/TOperatingSystemCollector.h"
#include "inventory/windows/TPciCollector.h"
#include "inventory/windows/TProcessorCollector.h"
#include "inventory/windows/TUsbCollector.h"

namespace hav::inventory {
namespace {

// Windows tells of its machine by calls, which no folder can answer.
class TRefusingCollector : public ICollector {
 public:
  explicit TRefusingCollector(const TMachine& machine) : m_machine(machine) {}

  const char* Name() const override { return "machine"; }
  void Collect(TCollection& collection) override {
    collection.Fail(m_machine.Root(), "another machine's folder can be read on Linux only");
  }

 private:
  TMachine m_machine;
};

}  // namespace

std::vector<std::unique_ptr<ICollector>> MakeCollectors(const TMachine& machine) {
  std::vector<std::unique_ptr<ICollector>> collectors;
  if (!machine.IsThisMachine()) {
    collectors.push_back(std::make_unique<TRefusingCollector>(machine));
    return collectors;
  }
  collectors.push_back(std::make_unique<TComputerSystemCollector>());
  collectors.push_back(std::make_unique<TOperatingSystemCollector>());
  collectors.push_back(std::make_unique<TProcessorCollector>());
  collectors.push_back(std::make_unique<TMemoryCollector>());
  collectors.push_back(std::make_unique<TNumaNodeCollector>());
  collectors.push_back(std::make_unique<TDiskCollector>());
  collectors.push_back(std::make_unique<TFileSystemCollector>());
  collectors.push_back(std::make_unique<TNetworkPortCollector>());
  collectors.push_back(std::make_unique<TPciCollector>());
  collectors.push_back(std::make_unique<TUsbCollector>());
  return collectors;
}

}  // namespace hav::inventory

#include "host/collectors/ICollector.h"
#include "host/collectors/windows/TComputerSystemCollector.h"
#include "host/collectors/windows/TDiskCollector.h"
#include "host/collectors/windows/TFileSystemCollector.h"
#include "host/collectors/windows/TMemoryCollector.h"
#include "host/collectors/windows/TNetworkPortCollector.h"
#include "host/collectors/windows/TOperatingSystemCollector.h"
#include "host/collectors/windows/TProcessorCollector.h"

namespace havhost {
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
  collectors.push_back(std::make_unique<TDiskCollector>());
  collectors.push_back(std::make_unique<TFileSystemCollector>());
  collectors.push_back(std::make_unique<TNetworkPortCollector>());
  return collectors;
}

}  // namespace havhost

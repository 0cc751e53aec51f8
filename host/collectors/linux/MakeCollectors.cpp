#include "host/collectors/ICollector.h"
#include "host/collectors/linux/TComputerSystemCollector.h"
#include "host/collectors/linux/TDiskCollector.h"
#include "host/collectors/linux/TFileSystemCollector.h"
#include "host/collectors/linux/TMemoryCollector.h"
#include "host/collectors/linux/TNetworkPortCollector.h"
#include "host/collectors/linux/TOperatingSystemCollector.h"
#include "host/collectors/linux/TProcessorCollector.h"

namespace havhost {

std::vector<std::unique_ptr<ICollector>> MakeCollectors(const TMachine& machine) {
  std::vector<std::unique_ptr<ICollector>> collectors;
  collectors.push_back(std::make_unique<TComputerSystemCollector>(machine));
  collectors.push_back(std::make_unique<TOperatingSystemCollector>(machine));
  collectors.push_back(std::make_unique<TProcessorCollector>(machine));
  collectors.push_back(std::make_unique<TMemoryCollector>(machine));
  collectors.push_back(std::make_unique<TDiskCollector>(machine));
  collectors.push_back(std::make_unique<TFileSystemCollector>(machine));
  collectors.push_back(std::make_unique<TNetworkPortCollector>(machine));
  return collectors;
}

}  // namespace havhost

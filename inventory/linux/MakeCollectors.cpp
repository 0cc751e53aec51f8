#include "inventory/ICollector.h"
#include "inventory/linux/TComputerSystemCollector.h"
#include "inventory/linux/TDiskCollector.h"
#include "inventory/linux/TFileSystemCollector.h"
#include "inventory/linux/TMemoryCollector.h"
#include "inventory/linux/TNetworkPortCollector.h"
#include "inventory/linux/TNumaNodeCollector.h"
#include "inventory/linux/TOperatingSystemCollector.h"
#include "inventory/linux/TPciCollector.h"
#include "inventory/linux/TProcessorCollector.h"
#include "inventory/linux/TUsbCollector.h"

namespace hav::inventory {

std::vector<std::unique_ptr<ICollector>> MakeCollectors(const TMachine& machine) {
  std::vector<std::unique_ptr<ICollector>> collectors;
  collectors.push_back(std::make_unique<TComputerSystemCollector>(machine));
  collectors.push_back(std::make_unique<TOperatingSystemCollector>(machine));
  collectors.push_back(std::make_unique<TProcessorCollector>(machine));
  collectors.push_back(std::make_unique<TMemoryCollector>(machine));
  collectors.push_back(std::make_unique<TNumaNodeCollector>(machine));
  collectors.push_back(std::make_unique<TDiskCollector>(machine));
  collectors.push_back(std::make_unique<TFileSystemCollector>(machine));
  collectors.push_back(std::make_unique<TNetworkPortCollector>(machine));
  collectors.push_back(std::make_unique<TPciCollector>(machine));
  collectors.push_back(std::make_unique<TUsbCollector>(machine));
  return collectors;
}

}  // namespace hav::inventory

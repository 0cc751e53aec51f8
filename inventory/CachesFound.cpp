#include "inventory/CachesFound.h"

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/ICIMProperty.h"
#include "havcore/THAVException.h"

using namespace NORVHAV20;

namespace hav::inventory {

TCacheSwitches CachesFound(ICIMNamespace& inventory) {
  TCacheSwitches switches{-1, -1, -1};
  const auto note = [&switches](const boost::shared_ptr<ICIMInstance>& cache) {
    const TCIMValue level = cache->GetProperty("Level", {})->GetValue({});
    if (level.IsNull()) return true;
    const auto number = static_cast<std::uint16_t>(level);
    for (auto& known : switches)
      if (known == -1) known = 0;
    if (number >= 1 && number <= switches.size()) switches[number - 1U] = 1;
    return true;
  };
  try {
    inventory.GetClass("ORVSG_CacheMemory", {})->EnumerateInstances(note, true, {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
  }
  return switches;
}

}  // namespace hav::inventory

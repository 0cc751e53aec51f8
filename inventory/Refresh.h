// Refresh: takes the inventory of a machine again, into the namespace that holds the earlier one.
//
// What stays is updated in place: each slot's value becomes its previous value, and what was read
// now its value. What came is added, what is no longer there is deleted, associations with it.
//
// Ownership: the changes share their instances, also those that are no longer stored. They must be
//            gone before the plug-in is unloaded.
// Threads:   as CollectInventory.
// Errors:    as CollectInventory.
#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMProperty.h"
#include "inventory/Inventory.h"

namespace hav::inventory {

struct TChange {
  enum EKind { kAppeared, kChanged, kDisappeared };

  EKind kind;
  boost::shared_ptr<NORVHAV20::ICIMInstance> instance;
  // Of a changed instance: the slots whose previous value differs from their value.
  std::vector<boost::shared_ptr<NORVHAV20::ICIMProperty>> properties;
};

// Gathers and updates. Returns what is different now, in the order of the namespace, what
// disappeared after that. The time of collection is updated and is no change. When the machine
// could not be read at all nothing is changed, and the failures are all there is.
std::vector<TChange> RefreshInventory(NORVHAV20::ICIMNamespace& target, const TMachine& machine,
                                      const TReportFailure& report);
// The same with what was gathered already.
std::vector<TChange> RefreshInventory(NORVHAV20::ICIMNamespace& target,
                                      const TCollection& collection, const TReportFailure& report);

}  // namespace hav::inventory

// Inventory: takes the inventory of a machine and puts it into a namespace that holds the
// inventory schema.
//
// Threads: one thread at a time per namespace; reading another machine's folder changes an
//          environment variable for a moment, so one at a time per process.
// Errors:  nothing throws for what a machine or a schema lacks: each failure is reported,
//          costs its own part only, and the rest goes on.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "havcore/ICIMNamespace.h"
#include "inventory/ICollector.h"
#include "inventory/TCollection.h"
#include "inventory/TMachine.h"

namespace hav::inventory {

using TReportFailure = std::function<void(const TFailure&)>;

// Gathers and publishes. An empty `report` drops the failures.
void CollectInventory(NORVHAV20::ICIMNamespace& target, const TMachine& machine,
                      const TReportFailure& report);

// Runs every collector of this platform. The failures stand in the collection. When anything
// was found there is a computer system, "localhost" where it does not tell its name.
TCollection GatherInventory(const TMachine& machine);
// The same with collectors of the caller's choice.
TCollection GatherInventory(const std::vector<std::unique_ptr<ICollector>>& collectors);

// Makes an instance of each element, then of each link whose two ends are there. Returns
// what the namespace did not take, with the class and the property in it.
std::vector<TFailure> PublishInventory(const TCollection& collection,
                                       NORVHAV20::ICIMNamespace& target);

}  // namespace hav::inventory

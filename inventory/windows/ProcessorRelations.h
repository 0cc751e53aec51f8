// ProcessorRelations: what Windows says of packages, cores, caches and nodes, in a list in which
// each entry says how long it is.
//
// Errors: a failure is added to the collection when Windows does not give the list.
#pragma once

#include <windows.h>

#include <functional>

#include "inventory/TCollection.h"

namespace hav::inventory {

// Calls `visit` for each entry of that kind, RelationAll: of any. False when there was a failure.
bool ForEachProcessorRelation(
    LOGICAL_PROCESSOR_RELATIONSHIP kind, TCollection& collection,
    const std::function<void(const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX&)>& visit);

}  // namespace hav::inventory

// ICollector: gathers one area of a machine's inventory. Each platform has its own
// collectors; they find the same classes of elements.
//
// Ownership: whoever made it.
// Threads:   one thread at a time.
// Errors:    what cannot be read is added to the collection's failures, and left out of the
//            elements: a value is known or NULL, and never invented. An exception costs the
//            rest of this collector's part only.
#pragma once

#include <memory>
#include <vector>

#include "inventory/TCollection.h"
#include "inventory/TMachine.h"

namespace hav::inventory {

class ICollector {
 public:
  virtual ~ICollector() = default;
  // The area, for people: "processors".
  virtual const char* Name() const = 0;
  virtual void Collect(TCollection& collection) = 0;
};

// The collectors of this platform, in the order in which they are to run: a collector may
// look at what those before it found.
std::vector<std::unique_ptr<ICollector>> MakeCollectors(const TMachine& machine);

}  // namespace hav::inventory

// Snapshot: what a walk visits. A callback may do anything to the repository, the table that
// is being walked included, so every walk goes over what was there when it began and keeps
// it alive until it ends.
#pragma once

#include <new>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/TOptions.h"

namespace NORVHAV20 {

// Returns the mapped pointers of an ordered map, in its order.
template <class Map>
std::vector<typename Map::mapped_type> Snapshot(const Map& map) {
  std::vector<typename Map::mapped_type> elements;
  elements.reserve(map.size());
  for (const auto& entry : map) elements.push_back(entry.second);
  return elements;
}

// Calls `visit` with what `enumerate` hands to the callback that it is given; empty pointers
// are passed over. What becomes of an exception is the enumeration's to say; but many drop
// them, and that there was no memory is carried past those.
template <class T, class Enumerate, class Visit>
void Walk(Enumerate&& enumerate, Visit&& visit) {
  bool outOfMemory = false;
  enumerate(TEnumCallback<T>([&](boost::shared_ptr<T> element) {
    try {
      if (element) visit(std::move(element));
    } catch (const std::bad_alloc&) {
      outOfMemory = true;
    }
    return true;
  }));
  if (outOfMemory) throw std::bad_alloc();
}

// Returns what `enumerate` hands to the callback that it is given.
template <class T, class Enumerate>
std::vector<boost::shared_ptr<T>> Collect(Enumerate&& enumerate) {
  std::vector<boost::shared_ptr<T>> elements;
  Walk<T>(enumerate,
          [&](boost::shared_ptr<T>&& element) { elements.push_back(std::move(element)); });
  return elements;
}

}  // namespace NORVHAV20

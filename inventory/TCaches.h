// TCaches: the caches of a machine, sorted into elements: those of the same processors,
// level, kind and measures are one element with a number.
//
// Ownership: a value.
// Threads:   one thread at a time.
// Errors:    none.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "inventory/TCollection.h"

namespace hav::inventory {

// The name of the processor at a place in the order of processors, and its id: "CPU0".
std::string ProcessorName(unsigned index);
std::string ProcessorId(unsigned index);

class TCaches {
 public:
  // Numbers as the schema has them.
  enum EType : std::uint16_t { kOther = 1, kInstruction = 2, kData = 3, kUnified = 4 };

  struct TKind {
    std::vector<unsigned> processors;  // that use the cache, by index
    unsigned level;
    EType type;
    std::uint64_t size;                 // bytes; 0: unknown
    std::uint32_t lineSize;             // bytes; 0: unknown
    std::optional<std::uint32_t> ways;  // 0: fully associative
  };

  // Counts one cache.
  void Add(const TKind& kind) { ++m_caches[kind]; }

  // Sets which levels `processor` has enabled. Where some cache is known, a level without
  // one is not there to be on; where none is, nothing is known.
  void SetLevels(TElement& processor, unsigned index) const;
  // Adds an element for each kind, linked with its processors.
  void AddTo(TCollection& collection) const;

 private:
  struct TOrder {
    bool operator()(const TKind& a, const TKind& b) const;
  };
  std::map<TKind, std::uint32_t, TOrder> m_caches;  // how many there are of each
};

}  // namespace hav::inventory

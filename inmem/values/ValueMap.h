// ValueMap: named values. The qualifier "Values" holds the names, "ValueMap" the numbers that
// they stand for:
//   "3"      one number
//   "3..15"  a range, with both ends in it
//   "16.."   from 16 up to the number before the next pattern that begins with one
//   "..15"   from the number after the one read last
//   ".."     every number that no other pattern names
// Numbers may be written in decimal, octal (leading 0) or hexadecimal (leading 0x). Without
// "ValueMap" the names stand for 0, 1, 2 and so on.
//
// Patterns that are none of these are never refused: TPatternReader says what a number reads
// as that is not there.
//
// Ownership: a map holds its texts; it does not follow the qualifiers when they change.
//            A declaration of the plug-in keeps the one that was read last.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/TCIMValue.h"
#include "inmem/values/HostServices.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;

struct TValueMap {
  // The numbers from `low` to `high`, both included. Where entries overlap the first counts.
  struct TEntry {
    std::uint64_t low;
    std::uint64_t high;
    const TCIMValue* text;  // an element of `texts`
  };

  // From `low` to the number before the next step the same entry counts, or none.
  struct TStep {
    std::uint64_t low;
    const TEntry* entry;
  };

  std::optional<THeldElements> texts;
  std::vector<TEntry> entries;
  const TCIMValue* defaultText = nullptr;  // an element of `texts`, null when there is none
  std::vector<TStep> steps;                // in the order of the numbers; empty: not indexed
};

// Reads the value map of `decl` into `map`, which is empty. Returns false when `decl` has
// none: "Values" is absent, NULL or no array of strings, or "ValueMap" is an array of strings
// of another length. Throws what the declaration throws, other than 15.
bool BuildValueMap(ICIMPropertyDecl& decl, TValueMap& map);

// Readies a map that is not going to change for look-ups in O(log n). Complexity: O(n log n).
void IndexValueMap(TValueMap& map);

// What a declaration keeps of its value map between two look-ups: the map, and what the
// qualifiers were that it was read from.
struct TKnownValueMap {
  TCIMValue values;
  std::optional<TCIMValue> valueMap;
  bool isMap;  // whether they make one
  TValueMap map;
};

// Returns the value map of `decl`, empty when it has none, as BuildValueMap reads it. What the
// declaration keeps is used while the qualifiers are equal to what they were. Complexity: that
// of comparing them, O(1) for values that share what they hold; otherwise O(n log n).
boost::shared_ptr<const TValueMap> FindValueMap(ICIMPropertyDecl& decl);

// Returns the text for `value`; the default text, or else the number, where no entry has it.
// Throws 1 when `value` is neither boolean nor an unsigned integer, 14 when it is NULL.
// Complexity: O(n) in the number of entries, O(log n) when they are indexed.
std::string LookupValueMap(const TCIMValue& value, const TValueMap& map);

}  // namespace NORVHAV20

// What the numbers of an operation choose from.
#pragma once

#include <cstddef>
#include <string>

#include "tests/oracle/TModel.h"

namespace havtest::oracle {

// No class without a name: a path without a class name leads nowhere.
inline constexpr const char* kClassNames[] = {
    "A", "B", "C", "D", "L", "M", "ORVSG_PhysicalNetworkPort", "<root>", "no name"};
inline constexpr const char* kLookups[] = {"A", "b",      "C",      "D",      "L",
                                           "m", "<root>", "<ROOT>", "Nowhere"};
inline constexpr const char* kProperties[] = {
    "Name",        "Left", "Right", "Size", "name",      "PortTypeOne", "speedDuplex",
    "HealthState", "LEFT", "Other", "1st",  "CPUStatus", "L1Enabled"};
inline constexpr const char* kReads[] = {"Name",        "left",
                                         "Right",       "Size",
                                         "PortTypeOne", "speedDuplex",
                                         "HealthState", "MyHealthStateToday",
                                         "healthstate", "ElementDescription",
                                         "Missing",     "no name",
                                         "CPUStatus",   "L1Enabled",
                                         "L2Enabled"};
inline constexpr const char* kRoles[] = {"", "", "Left", "right", "Other", "Name", "Missing"};
inline constexpr const char* kFilters[] = {"",  "<root>", "<root>", "A",      "B",
                                           "C", "L",      "m",      "Nowhere"};
inline constexpr const char* kResults[] = {"<root>", "<root>", "<root>", "A",
                                           "B",      "C",      "",       "Nowhere"};
inline constexpr const char* kQualifiers[] = {"Key",         "Override", "Association", "Abstract",
                                              "dontcollect", "Note",     "key",         "a note"};
inline constexpr const char* kMethods[] = {"Reset", "reset", "Start", "1st"};
inline constexpr const char* kTexts[] = {"x", "y", "z", "a\"b\\c", "", "1"};
inline constexpr unsigned kTypes[] = {kString, kString, kUInt16, kBoolean};

template <std::size_t n>
const char* Pick(const char* const (&pool)[n], unsigned number) {
  return pool[number % n];
}

// Half of the time the first of the pool: the filter that lets everything pass.
template <std::size_t n>
const char* Filter(const char* const (&pool)[n], unsigned number) {
  return number % 2 == 0 ? pool[0] : Pick(pool, number / 2);
}

inline std::string Quoted(const std::string& text) { return '"' + text + '"'; }

}  // namespace havtest::oracle

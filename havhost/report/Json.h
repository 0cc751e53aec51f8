// Json: reports as JSON documents, with fields in a fixed order.
//
//   value     NULL and reals without a number as null or text; numbers and booleans as such;
//             characters, strings, datetimes and object paths as text; arrays as arrays
//   property  {"type", "value", "display"}; the display text of an array is an array
//   instance  {"path", "class", "properties": {name: property}}
//
// Threads: pure functions.
#pragma once

#include <ostream>

#include <nlohmann/json.hpp>

#include "havcore/TCIMValue.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/InstanceReport.h"

namespace havhost {

using TJson = nlohmann::ordered_json;

TJson ToJson(const NORVHAV20::TCIMValue& value);
TJson ToJson(const TPropertyReport& property);
TJson ToJson(const TInstanceReport& instance);
TJson ToJson(const TClassReport& cls);

// The version of all documents, which docs/havhost.schema.json describes: any change to
// what stands there makes it a higher one.
constexpr int kJsonVersion = 1;

// Writes the document, indented, the version before its own fields, and ends the line. Bytes that
// are no UTF-8 become the replacement character.
void PrintJson(std::ostream& out, TJson document);

}  // namespace havhost

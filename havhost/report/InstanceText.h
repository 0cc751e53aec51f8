// InstanceText: instances for people to read.
#pragma once

#include <ostream>
#include <string>

#include "havhost/report/InstanceReport.h"

namespace havhost {

// The properties, one in a line: name and display text; `raw`: and the raw value in brackets.
void PrintProperties(std::ostream& out, const std::string& prefix, const TInstanceReport& instance,
                     bool raw);
// The path, and the properties below it.
void PrintInstance(std::ostream& out, const TInstanceReport& instance, bool raw);

}  // namespace havhost

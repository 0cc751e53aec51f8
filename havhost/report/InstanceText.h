// InstanceText: instances for people to read.
#pragma once

#include <ostream>
#include <string>

#include "havhost/TSettings.h"
#include "havhost/report/InstanceReport.h"

namespace havhost {

// The properties, one in a line: name and display text, and the raw value in brackets where the
// settings ask for it. What is empty or keeps books only where they ask for all.
void PrintProperties(std::ostream& out, const std::string& prefix, const TInstanceReport& instance,
                     const TSettings& settings);
// The path, and the properties below it.
void PrintInstance(std::ostream& out, const TInstanceReport& instance, const TSettings& settings);

}  // namespace havhost

// OpenNamespace: the namespace that a command looks at, filled from MOF files or with the
// inventory of a machine.
#pragma once

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "havcore/client/TPluginLoader.h"
#include "havhost/TConsole.h"
#include "havhost/TSettings.h"

namespace havhost {

// Leaves the name of the namespace in the settings. What the MOF and the machine lack is
// written to the console's error stream, each in a line of its own; for an inventory also
// what is missing costs its own part only. Throws THostError when nothing could be loaded.
boost::shared_ptr<NORVHAV20::ICIMNamespace> OpenNamespace(hav::client::TPluginLoader& plugin,
                                                          TSettings& settings,
                                                          const TConsole& console);

}  // namespace havhost

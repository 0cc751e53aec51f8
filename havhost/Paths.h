// Paths: where the program finds what belongs to it.
//
// Threads: pure functions.
#pragma once

#include <filesystem>

namespace havhost {

// The plug-in that was built or installed with the program: beside the executable, else in
// the library folder. Where neither has one, the first place is returned.
std::filesystem::path InstalledPlugin();
// The folder of the inventory schema that was built or installed with the program.
std::filesystem::path InstalledSchema();

}  // namespace havhost

// Paths: file names as UTF-8 text, and where the program finds what belongs to it.
//
// Threads: pure functions.
#pragma once

#include <filesystem>
#include <string>

namespace havhost {

// The command line and everything that is printed is UTF-8, also where the system's own
// file names are not.
std::filesystem::path PathOf(const std::string& utf8);
std::string Utf8(const std::filesystem::path& path);

// The plug-in that was built or installed with the program: beside the executable, else in
// the library folder. Where neither has one, the first place is returned.
std::filesystem::path InstalledPlugin();
// The folder of the inventory schema that was built or installed with the program.
std::filesystem::path InstalledSchema();

}  // namespace havhost

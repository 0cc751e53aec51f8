// FileNames: the names of files that a word can become.
//
// Errors: none; what cannot be read has no files.
#pragma once

#include <string>
#include <vector>

namespace havhost {

// In order; a folder's ends with a slash. Hidden ones only when the word asks for them.
std::vector<std::string> FileNamesFrom(const std::string& word, bool onlyFolders);

}  // namespace havhost

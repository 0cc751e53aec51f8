// ProcessUse: what this process uses of the machine, to tell whether it grows.
#pragma once

#include <cstddef>
#include <string>

namespace havtest {

struct ProcessUse {
  std::size_t memoryBytes;  // resident; under AddressSanitizer what is allocated
  std::size_t mappings;     // of files and memory; on Windows the loaded modules
  std::size_t handles;      // open files; on Windows handles of any kind; 0 where nobody counts

  static ProcessUse Now();
};

// True while a library of that file name (without folder) is loaded.
bool IsLoaded(const std::string& fileName);

}  // namespace havtest

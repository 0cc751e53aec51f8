// ILogger: where the object model writes what happened.
//
// Ownership: not owned by those who write to it.
// Threads:   all those on which the host uses namespaces.
#pragma once

#include <string>

#include "havcore/Export.h"

namespace NORVHAV20 {

class HAV_TYPE ILogger {
 public:
  // Levels in use.
  enum ELevel : int { kNote = 0, kError = 3 };

  virtual ~ILogger() = default;                                 // 0
  virtual void Log(int level, const std::string& message) = 0;  // 1
};

}  // namespace NORVHAV20

// TOSSpecific: what the object model asks of the operating system.
#pragma once

#include "havcore/Export.h"
#include "havcore/TCIMDateTime.h"

namespace NORVHAV20 {

class HAVCORE_API TOSSpecific {
 public:
  // Returns the local time as a timestamp with the local offset from UTC, to the
  // microsecond where the system's clock has it.
  static TCIMDateTime GetLocalTime();
};

}  // namespace NORVHAV20

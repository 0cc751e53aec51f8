// TOSSpecific of the foreign core.
#pragma once

#include "havcore/Export.h"
#include "havcore/TCIMDateTime.h"

namespace NORVHAV20 {

class HAVCORE_API TOSSpecific {
 public:
  static TCIMDateTime GetLocalTime();
};

}  // namespace NORVHAV20

// ICIMIndicationFilter: what a subscriber wants to be told of.
#pragma once

#include "havcore/Export.h"

namespace NORVHAV20 {

class HAV_TYPE ICIMIndicationFilter {
 public:
  virtual ~ICIMIndicationFilter() = default;  // 0
};

}  // namespace NORVHAV20

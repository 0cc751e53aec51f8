// ICIMElement: what a reference can resolve to: a class or an instance.
#pragma once

#include "havcore/Export.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class HAV_TYPE ICIMElement {
 public:
  virtual ~ICIMElement() = default;  // 0
  // Checks the element's consistency; throws THAVException when it is broken.
  virtual void Validate(TOptions options) const = 0;  // 1
};

}  // namespace NORVHAV20

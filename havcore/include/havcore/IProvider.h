// IProvider: a provider of instances or methods behind a namespace. Namespaces that keep
// their own instances have none.
#pragma once

#include "havcore/Export.h"

namespace NORVHAV20 {

class HAV_TYPE IProvider {
 public:
  virtual ~IProvider() = default;  // 0
};

}  // namespace NORVHAV20

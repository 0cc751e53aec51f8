// TypeText: CIM types as MOF writes them.
#pragma once

#include <sstream>
#include <string>

#include "havcore/TCIMValue.h"

namespace havhost {

inline std::string TypeText(NORVHAV20::TCIMValue::TCIMType type) {
  std::ostringstream text;
  text << type;
  return text.str();
}

}  // namespace havhost

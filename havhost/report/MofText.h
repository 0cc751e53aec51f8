// MofText: one element of a namespace, or all of it, as MOF.
//
// Errors: THAVException of the element.
#pragma once

#include <string>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "mof/TMofWriter.h"

namespace havhost {

inline std::string MofOf(NORVHAV20::ICIMNamespace& home) {
  std::string mof;
  hav::mof::TMofWriter(mof).WriteNamespace(home);
  return mof;
}

inline std::string MofOf(NORVHAV20::ICIMClass& cls) {
  std::string mof;
  hav::mof::TMofWriter(mof).WriteClass(cls);
  return mof;
}

inline std::string MofOf(NORVHAV20::ICIMInstance& instance) {
  std::string mof;
  hav::mof::TMofWriter(mof).WriteInstance(instance);
  return mof;
}

}  // namespace havhost

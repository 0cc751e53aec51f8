// Flavors: adding and removing bits of a flavor.
#pragma once

#include <cstdint>

#include "havcore/ICIMQualifierDecl.h"

namespace NORVHAV20 {

constexpr ICIMQualifierDecl::EFlavor WithFlavor(ICIMQualifierDecl::EFlavor flavor,
                                                ICIMQualifierDecl::EFlavor bits) {
  return flavor | bits;
}

constexpr ICIMQualifierDecl::EFlavor WithoutFlavor(ICIMQualifierDecl::EFlavor flavor,
                                                   ICIMQualifierDecl::EFlavor bits) {
  return static_cast<ICIMQualifierDecl::EFlavor>(static_cast<std::uint32_t>(flavor) &
                                                 ~static_cast<std::uint32_t>(bits));
}

}  // namespace NORVHAV20

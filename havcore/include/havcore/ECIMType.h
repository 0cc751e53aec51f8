// ECIMType: the CIM types. An array's code is kCIMArray plus its element's code.
#pragma once

#include <cstdint>

namespace NORVHAV20 {

enum ECIMType : std::uint32_t {
  kCIMNone = 0,
  kCIMBoolean = 1,
  kCIMUInt8 = 2,
  kCIMSInt8 = 3,
  kCIMUInt16 = 4,
  kCIMSInt16 = 5,
  kCIMUInt32 = 6,
  kCIMSInt32 = 7,
  kCIMUInt64 = 8,
  kCIMSInt64 = 9,
  kCIMReal32 = 10,
  kCIMReal64 = 11,
  kCIMChar16 = 12,
  kCIMString = 13,
  kCIMDateTime = 14,
  kCIMReference = 15,
  kCIMArray = 16
};

// The array type with elements of `element`, and the element type of an array type (an
// element type answers itself).
constexpr ECIMType ArrayOf(ECIMType element) {
  return static_cast<ECIMType>(static_cast<std::uint32_t>(element) | kCIMArray);
}
constexpr ECIMType ElementOf(ECIMType type) {
  return static_cast<ECIMType>(static_cast<std::uint32_t>(type) &
                               ~static_cast<std::uint32_t>(kCIMArray));
}

}  // namespace NORVHAV20

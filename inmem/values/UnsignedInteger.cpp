#include "inmem/values/UnsignedInteger.h"

namespace NORVHAV20 {

std::optional<std::uint64_t> UnsignedInteger(const TCIMValue& value) {
  switch (value.GetType()) {
    case kCIMUInt8: return static_cast<std::uint8_t>(value);
    case kCIMUInt16: return static_cast<std::uint16_t>(value);
    case kCIMUInt32: return static_cast<std::uint32_t>(value);
    case kCIMUInt64: return static_cast<std::uint64_t>(value);
    default: return std::nullopt;
  }
}

}  // namespace NORVHAV20

// EHAVStatusCode: what went wrong, as a number. The numbers are the contract; a caller
// decides by them and shows people THAVStatusCode::TranslateStatusCode.
#pragma once

#include <cstdint>

namespace NORVHAV20 {

enum EHAVStatusCode : std::uint32_t {
  kHAVSuccess = 0,
  kHAVNotSupported = 1,
  kHAVTypesDiffer = 14,
  kHAVNotFound = 15,
  kHAVAlreadyDefined = 16,
  kHAVClassInUse = 17,
  kHAVKeyIsNull = 18,
  kHAVReferenceOutsideAssociation = 22,
  kHAVInvalidName = 25,
  kHAVConflictingQualifier = 28,
  kHAVUnderlyingNamespaceRefused = 31
};

}  // namespace NORVHAV20

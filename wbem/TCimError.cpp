#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace NORVHAV20;

namespace {

ECimStatus StatusOf(EHAVStatusCode code) {
  switch (code) {
    case kHAVNotSupported:
    case kHAVUnderlyingNamespaceRefused: return ECimStatus::kNotSupported;
    case kHAVTypesDiffer: return ECimStatus::kTypeMismatch;
    case kHAVNotFound: return ECimStatus::kNotFound;
    case kHAVAlreadyDefined: return ECimStatus::kAlreadyExists;
    case kHAVKeyIsNull:
    case kHAVReferenceOutsideAssociation:
    case kHAVInvalidName:
    case kHAVConflictingQualifier: return ECimStatus::kInvalidParameter;
    default: return ECimStatus::kFailed;
  }
}

}  // namespace

TCimError::TCimError(const THAVException& failure)
    : TCimError(StatusOf(failure.GetStatusCode()), failure.GetStatus().TranslateStatusCode()) {}

}  // namespace hav::wbem

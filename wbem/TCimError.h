// TCimError: why an operation failed, as a CIM client is told it: a CIM status and a sentence.
#pragma once

#include <stdexcept>
#include <string>

#include "havcore/THAVException.h"

namespace hav::wbem {

// The CIM status codes that are given.
enum class ECimStatus : unsigned {
  kFailed = 1,
  kAccessDenied = 2,
  kInvalidNamespace = 3,
  kInvalidParameter = 4,
  kInvalidClass = 5,
  kNotFound = 6,
  kNotSupported = 7,
  kClassHasChildren = 8,
  kClassHasInstances = 9,
  kInvalidSuperclass = 10,
  kAlreadyExists = 11,
  kNoSuchProperty = 12,
  kTypeMismatch = 13,
  kMethodNotAvailable = 16,
  kMethodNotFound = 17,
  kInvalidEnumerationContext = 21,
  kInvalidOperationTimeout = 22,
  kFilteredEnumerationNotSupported = 25,
  kContinuationOnErrorNotSupported = 26,
  kServerLimitsExceeded = 27
};

class TCimError : public std::runtime_error {
 public:
  TCimError(ECimStatus status, const std::string& description)
      : std::runtime_error(description), m_status(status) {}
  // What the repository refused, with the host's own text for it.
  explicit TCimError(const NORVHAV20::THAVException& failure);

  ECimStatus GetStatus() const noexcept { return m_status; }

 private:
  ECimStatus m_status;
};

}  // namespace hav::wbem

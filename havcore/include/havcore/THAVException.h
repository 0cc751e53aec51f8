// THAVException: the one exception of the object model. It carries a status code and
// nothing else; what went wrong in detail stands in the log line written before the throw.
//
// Threads: a value; copying copies the status.
#pragma once

#include <exception>

#include "havcore/THAVStatusCode.h"

namespace NORVHAV20 {

class HAV_TYPE THAVException : public std::exception {
 public:
  explicit THAVException(const THAVStatusCode& status) noexcept : m_status(status) {}

  const THAVStatusCode& GetStatus() const noexcept { return m_status; }
  EHAVStatusCode GetStatusCode() const noexcept { return m_status.GetStatusCode(); }

  // Returns the text of TranslateStatusCode for this code.
  const char* what() const noexcept override { return m_status.TranslateStatusCode().c_str(); }

 private:
  THAVStatusCode m_status;
};

}  // namespace NORVHAV20

// THAVStatusCode: one status number as a value, and its sentence for people.
//
// Threads: values; the sentences are immutable.
// Errors:  none of its operations throws.
#pragma once

#include <string>

#include "havcore/EHAVStatusCode.h"
#include "havcore/Export.h"

namespace NORVHAV20 {

class HAV_TYPE THAVStatusCode {
 public:
  INMEM_INLINE_API THAVStatusCode(EHAVStatusCode code) noexcept : m_code(code) {}
  INMEM_INLINE_API THAVStatusCode(const THAVStatusCode& other) noexcept : m_code(other.m_code) {}

  INMEM_INLINE_API THAVStatusCode& operator=(EHAVStatusCode code) noexcept {
    m_code = code;
    return *this;
  }
  INMEM_INLINE_API THAVStatusCode& operator=(const THAVStatusCode& other) noexcept {
    m_code = other.m_code;
    return *this;
  }

  INMEM_INLINE_API EHAVStatusCode GetStatusCode() const noexcept { return m_code; }

  // Returns the sentence for this code. The text lives as long as `havcore` is loaded; a
  // code without a sentence of its own gets one that says so.
  HAVCORE_API const std::string& TranslateStatusCode() const;

 private:
  EHAVStatusCode m_code;
};

}  // namespace NORVHAV20

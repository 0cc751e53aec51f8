// Failure: how everything in the plug-in reports what went wrong: a line in the core log
// where the rule has one, then a THAVException that carries the status alone.
#pragma once

#include <new>
#include <string>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "havcore/EHAVStatusCode.h"

// The POSIX way to end a thread unwinds it with an exception of its own, which must not be
// swallowed.
#if defined(__GLIBC__) && defined(__GLIBCXX__)
#include <cxxabi.h>
#define INMEM_PASS_CANCELLATION         \
  catch (const abi::__forced_unwind&) { \
    throw;                              \
  }
// There is no object behind that reference, which is for nobody to look at.
#define INMEM_MAY_BE_CANCELLED __attribute__((no_sanitize("null")))
#else
#define INMEM_PASS_CANCELLATION
#define INMEM_MAY_BE_CANCELLED
#endif

namespace NORVHAV20 {

[[noreturn]] void Throw(EHAVStatusCode status);

// Write one line to the core log, at the level of errors and of notes.
void LogError(const std::string& text);
void LogNote(const std::string& text);

// Throws 15 when `pointer` is empty. Returns it otherwise.
template <class T>
const boost::shared_ptr<T>& Require(const boost::shared_ptr<T>& pointer) {
  if (!pointer) Throw(kHAVNotFound);
  return pointer;
}
template <class T>
boost::shared_ptr<T> Require(boost::shared_ptr<T>&& pointer) {
  if (!pointer) Throw(kHAVNotFound);
  return std::move(pointer);
}

// Calls `call`, which is a caller's, and drops whatever it throws, but for the cancellation of
// the thread.
template <class F>
INMEM_MAY_BE_CANCELLED void DropExceptions(F&& call) {
  try {
    call();
  }
  INMEM_PASS_CANCELLATION
  catch (...) {
  }
}

// The same for a call in which the plug-in itself has a part: that there was no memory is
// thrown on, for nobody else would be told.
template <class F>
void DropFailures(F&& call) {
  bool outOfMemory = false;
  DropExceptions([&] {
    try {
      call();
    } catch (const std::bad_alloc&) {
      outOfMemory = true;
    }
  });
  if (outOfMemory) throw std::bad_alloc();
}

}  // namespace NORVHAV20

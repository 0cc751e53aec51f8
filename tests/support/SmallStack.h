// SmallStack: runs a part of a test where the stack is as small as a host's worker thread may
// have it, so that recursion over a deep model is found out.
#pragma once

#include <functional>

#if defined(__linux__)
#include <pthread.h>

#include <stdexcept>
#endif

namespace havtest {

#if defined(__linux__)
// Runs `body`, which must not throw, on a thread with 512 KiB of stack.
inline void OnSmallStack(const std::function<void()>& body) {
  constexpr std::size_t kStackBytes = 512 * 1024;
  pthread_attr_t attributes;
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  if (pthread_attr_init(&attributes) != 0 ||
      pthread_attr_setstacksize(&attributes, kStackBytes) != 0 ||
      pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body)) != 0 ||
      pthread_join(thread, nullptr) != 0)
    throw std::runtime_error("no thread with a small stack");
  pthread_attr_destroy(&attributes);
}
#else
// The stack of the process, which on Windows is 1 MiB.
inline void OnSmallStack(const std::function<void()>& body) { body(); }
#endif

}  // namespace havtest

// Check: how a fuzz target says what it found wrong. The process then aborts, so that the input
// is kept.
#pragma once

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace havfuzz {

template <class... Parts>
[[noreturn]] void Fail(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  std::cerr << text.str() << std::endl;
  std::abort();
}

inline void Require(bool condition, const char* what) {
  if (!condition) Fail(what);
}

// `about` is printed with the two when they differ.
template <class A, class B>
void RequireEqual(const A& found, const B& expected, const char* what,
                  const std::string& about = {}) {
  if (!(found == expected))
    Fail(what, ": ", found, " is found where ", expected, " is expected; ", about);
}

}  // namespace havfuzz

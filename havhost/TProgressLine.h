// TProgressLine: one line on a terminal that says how far a long work is, and goes when the
// work is done. Work that is over soon is not spoken of.
//
// Ownership: holds the console's error stream, which must outlive it.
// Threads:   one thread at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "havhost/TConsole.h"

namespace havhost {

class TProgressLine {
 public:
  using TDuration = std::chrono::milliseconds;

  // Shows nothing before `delay` has passed, nor on a console that is no terminal.
  explicit TProgressLine(const TConsole& console, TDuration delay = TDuration(500));
  ~TProgressLine();
  TProgressLine(const TProgressLine&) = delete;
  TProgressLine& operator=(const TProgressLine&) = delete;

  // Writes at most ten times in a second.
  void Show(const std::string& what, std::size_t done, std::size_t total);

 private:
  using TClock = std::chrono::steady_clock;

  void Replace(const std::string& line);

  const TConsole& m_console;
  TClock::time_point m_next;
  std::size_t m_width = 0;
};

}  // namespace havhost

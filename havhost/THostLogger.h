// THostLogger: the core logger of the host program while it lives.
//
// The log is written for those who develop collectors and schemas. Verbose, every line goes to
// the error stream as it comes. Otherwise errors are counted, and one line at the end says how
// many there were; the last one is kept, as it says what the status of a failure does not.
//
// Ownership: holds the stream, which must outlive it.
// Threads:   one thread at a time.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "havcore/ILogger.h"

namespace havhost {

class THostLogger : public NORVHAV20::ILogger {
 public:
  THostLogger(std::ostream& err, bool verbose);
  ~THostLogger() override;
  THostLogger(const THostLogger&) = delete;
  THostLogger& operator=(const THostLogger&) = delete;

  void Log(int level, const std::string& message) override;

  // Takes the last error out of the count, for a message that quotes it. Empty when there is
  // none.
  std::string TakeLastError();
  // Writes the line about the errors that were not shown, if there are any.
  void Summarise();

 private:
  std::ostream& m_err;
  bool m_verbose;
  NORVHAV20::ILogger* m_before;
  std::size_t m_errors = 0;
  std::string m_first;
  std::string m_last;
};

}  // namespace havhost

#include "havhost/THostLogger.h"

#include <utility>

#include "havcore/TRootObject.h"
#include "havhost/report/Text.h"

namespace havhost {

namespace {

// Reading a processor logs its status at the level of errors, every time. It tells of no
// error, so that it must not hide the lines that do.
bool IsChatter(const std::string& message) { return message.rfind("cpuStatus is ", 0) == 0; }

}  // namespace

THostLogger::THostLogger(std::ostream& err, bool verbose)
    : m_err(err), m_verbose(verbose), m_before(NORVHAV20::TRootObject::SetCoreLogger(this)) {}

THostLogger::~THostLogger() { NORVHAV20::TRootObject::SetCoreLogger(m_before); }

void THostLogger::Log(int level, const std::string& message) {
  if (m_verbose) m_err << "havhost: log level " << level << ": " << Printable(message) << '\n';
  if (level < kError || IsChatter(message)) return;
  if (m_errors++ == 0) m_first = message;
  m_last = message;
}

std::string THostLogger::TakeLastError() {
  if (!m_last.empty()) --m_errors;
  return std::exchange(m_last, {});
}

void THostLogger::Summarise() {
  if (m_errors == 0 || m_verbose) return;
  m_err << "havhost: the log has " << m_errors << (m_errors == 1 ? " error" : " errors")
        << ", the first: " << Printable(m_first) << " (--verbose shows all)\n";
}

}  // namespace havhost

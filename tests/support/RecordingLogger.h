// RecordingLogger: stands in for the core logger while it lives, and keeps every line.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "havcore/ILogger.h"
#include "havcore/TRootObject.h"

namespace havtest {

struct LogLine {
  int level;
  std::string text;
};

inline bool operator==(const LogLine& a, const LogLine& b) {
  return a.level == b.level && a.text == b.text;
}
inline std::ostream& operator<<(std::ostream& out, const LogLine& line) {
  return out << line.level << ": " << line.text;
}

using LogLines = std::vector<LogLine>;

class RecordingLogger : public NORVHAV20::ILogger {
 public:
  RecordingLogger() : m_before(NORVHAV20::TRootObject::SetCoreLogger(this)) {}
  ~RecordingLogger() override { NORVHAV20::TRootObject::SetCoreLogger(m_before); }
  RecordingLogger(const RecordingLogger&) = delete;
  RecordingLogger& operator=(const RecordingLogger&) = delete;

  void Log(int level, const std::string& text) override { lines.push_back({level, text}); }
  // Returns the lines so far and forgets them.
  LogLines Take() {
    LogLines taken;
    taken.swap(lines);
    return taken;
  }

  LogLines lines;

 private:
  NORVHAV20::ILogger* m_before;
};

}  // namespace havtest

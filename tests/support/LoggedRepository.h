// LoggedRepository: a repository whose log lines a test can take.
#pragma once

#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "support/Walks.h"

namespace havtest {

class LoggedRepository : public Repository {
 public:
  using Repository::Repository;

  // The lines since the last call.
  LogLines TakeLog() { return m_log.Take(); }

 private:
  RecordingLogger m_log;
};

inline const LogLines kNothingLogged;

// One line of an error.
inline LogLine Error(const std::string& text) { return {ILogger::kError, text}; }

}  // namespace havtest

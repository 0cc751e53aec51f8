// TMofReport: what a load found wrong, and how much it loaded.
//
// Ownership: a value.
// Errors:    none; it only collects. After `limit` errors it is full: further ones are
//            counted and not kept, and readers stop. Warnings have the same limit of their
//            own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "mof/TMofText.h"

namespace hav::mof {

// A name as messages show it.
inline std::string Quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

struct TMofMessage {
  enum class ESeverity { kError, kWarning };

  ESeverity severity;
  std::string file;
  unsigned line;  // 0 when the message is about the file as a whole
  unsigned column;
  std::string text;

  // "file:line:column: error: text", or "file: error: text".
  std::string ToString() const;
};

class TMofReport {
 public:
  static constexpr std::size_t kDefaultLimit = 100;

  explicit TMofReport(std::size_t limit = kDefaultLimit) : m_limit(limit) {}

  void AddError(const TMofText& where, TMofOffset offset, std::string text);
  void AddWarning(const TMofText& where, TMofOffset offset, std::string text);
  void AddError(const std::string& file, std::string text);

  std::size_t CountErrors() const noexcept { return m_errors; }
  std::size_t CountWarnings() const noexcept { return m_warnings; }
  bool HasErrors() const noexcept { return m_errors != 0; }
  bool IsFull() const noexcept { return m_errors >= m_limit; }

  // In the order in which they were found.
  const std::vector<TMofMessage>& GetMessages() const noexcept { return m_messages; }
  // Every message on a line of its own, then a note when some were not kept.
  std::string ToString() const;

  // What was read or made.
  std::size_t files = 0;
  std::size_t qualifierDecls = 0;
  std::size_t classes = 0;
  std::size_t instances = 0;

 private:
  void Add(TMofMessage::ESeverity severity, const TMofText& where, TMofOffset offset,
           std::string&& text);
  bool Count(TMofMessage::ESeverity severity);

  std::size_t m_limit;
  std::size_t m_errors = 0;
  std::size_t m_warnings = 0;
  std::vector<TMofMessage> m_messages;
};

}  // namespace hav::mof

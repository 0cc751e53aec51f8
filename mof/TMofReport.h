// TMofReport: what a load found wrong, and how much it loaded.
//
// Ownership: a value.
// Errors:    none; it only collects. After `limit` errors it is full: readers stop. Of errors
//            and of warnings it keeps the first `limit` each, in the order of their lines,
//            and counts the rest. A limit of 0 keeps nothing and is never full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
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
  bool IsFull() const noexcept { return m_limit != 0 && m_errors >= m_limit; }

  // In the order of the lines that they are about, an included file standing where it is
  // included.
  const std::vector<TMofMessage>& GetMessages() const noexcept { return m_messages; }
  // That reading stopped, or that messages were not kept; empty when neither is so.
  std::string GetNote() const;
  // Every message on a line of its own, then the note.
  std::string ToString() const;

  // Begins a segment of a text; what is reported without a place belongs to the last one.
  std::uint32_t BeginSegment() noexcept { return ++m_segment; }

  // What was read or made.
  std::size_t files = 0;
  std::size_t qualifierDecls = 0;
  std::size_t classes = 0;
  std::size_t instances = 0;

 private:
  using TPlace = std::pair<std::uint32_t, TMofOffset>;  // segment and offset

  void Add(TMofMessage::ESeverity severity, const TMofText& where, TMofOffset offset,
           std::string&& text);
  // Makes room for a message of that place. False when it is not to be kept.
  bool Count(TMofMessage::ESeverity severity, const TPlace& place);
  void Insert(const TPlace& place, TMofMessage&& message);

  std::size_t m_limit;
  std::size_t m_errors = 0;
  std::size_t m_warnings = 0;
  std::uint32_t m_segment = 0;
  std::vector<TMofMessage> m_messages;
  std::vector<TPlace> m_places;  // of each message
};

}  // namespace hav::mof

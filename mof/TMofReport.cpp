#include "mof/TMofReport.h"

#include <utility>

namespace hav::mof {

std::string TMofMessage::ToString() const {
  std::string shown = file;
  if (line != 0) shown += ':' + std::to_string(line) + ':' + std::to_string(column);
  shown += severity == ESeverity::kError ? ": error: " : ": warning: ";
  return shown + text;
}

void TMofReport::AddError(const TMofText& where, TMofOffset offset, std::string text) {
  Add(TMofMessage::ESeverity::kError, where, offset, std::move(text));
}

void TMofReport::AddWarning(const TMofText& where, TMofOffset offset, std::string text) {
  Add(TMofMessage::ESeverity::kWarning, where, offset, std::move(text));
}

void TMofReport::AddError(const std::string& file, std::string text) {
  if (Count(TMofMessage::ESeverity::kError))
    m_messages.push_back({TMofMessage::ESeverity::kError, file, 0, 0, std::move(text)});
}

void TMofReport::Add(TMofMessage::ESeverity severity, const TMofText& where, TMofOffset offset,
                     std::string&& text) {
  if (!Count(severity)) return;
  const auto position = where.PositionOf(offset);
  m_messages.push_back(
      {severity, where.GetName(), position.line, position.column, std::move(text)});
}

bool TMofReport::Count(TMofMessage::ESeverity severity) {
  auto& count = severity == TMofMessage::ESeverity::kError ? m_errors : m_warnings;
  return ++count <= m_limit;
}

std::string TMofReport::ToString() const {
  std::string all;
  for (const auto& message : m_messages) all += message.ToString() + '\n';
  if (m_errors > m_limit || m_warnings > m_limit)
    all += "note: of " + std::to_string(m_errors) + " errors and " + std::to_string(m_warnings) +
           " warnings, the first " + std::to_string(m_limit) + " of each are listed\n";
  else if (IsFull())
    all += "note: reading stopped after " + std::to_string(m_limit) + " errors\n";
  return all;
}

}  // namespace hav::mof

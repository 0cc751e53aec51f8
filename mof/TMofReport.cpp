#include "mof/TMofReport.h"

#include <algorithm>
#include <limits>
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
  const TPlace place(m_segment, std::numeric_limits<TMofOffset>::max());
  if (Count(TMofMessage::ESeverity::kError, place))
    Insert(place, {TMofMessage::ESeverity::kError, file, 0, 0, std::move(text)});
}

void TMofReport::Add(TMofMessage::ESeverity severity, const TMofText& where, TMofOffset offset,
                     std::string&& text) {
  const TPlace place(where.SegmentOf(offset), offset);
  if (!Count(severity, place)) return;
  const auto position = where.PositionOf(offset);
  Insert(place, {severity, where.GetName(), position.line, position.column, std::move(text)});
}

bool TMofReport::Count(TMofMessage::ESeverity severity, const TPlace& place) {
  auto& count = severity == TMofMessage::ESeverity::kError ? m_errors : m_warnings;
  if (++count <= m_limit) return true;
  for (auto last = m_messages.size(); last-- > 0;) {
    if (m_messages[last].severity != severity) continue;
    if (m_places[last] <= place) return false;
    m_messages.erase(m_messages.begin() + static_cast<std::ptrdiff_t>(last));
    m_places.erase(m_places.begin() + static_cast<std::ptrdiff_t>(last));
    return true;
  }
  return false;
}

void TMofReport::Insert(const TPlace& place, TMofMessage&& message) {
  const auto at = std::upper_bound(m_places.begin(), m_places.end(), place);
  m_messages.insert(m_messages.begin() + (at - m_places.begin()), std::move(message));
  m_places.insert(at, place);
}

std::string TMofReport::GetNote() const {
  std::string note;
  if (IsFull()) note = "reading stopped after " + std::to_string(m_limit) + " errors";
  if (m_warnings > m_limit)
    note += std::string(note.empty() ? "" : "; ") + "of " + std::to_string(m_warnings) +
            " warnings the first " + std::to_string(m_limit) + " are listed";
  return note;
}

std::string TMofReport::ToString() const {
  std::string all;
  for (const auto& message : m_messages) all += message.ToString() + '\n';
  const auto note = GetNote();
  if (!note.empty()) all += "note: " + note + '\n';
  return all;
}

}  // namespace hav::mof

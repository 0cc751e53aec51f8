#include "mof/TMofText.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace hav::mof {

namespace {

// Moves `position` from one place of a text to a later one. A pair of carriage return and line feed
// ends the line with its second character.
void Move(TMofText::TPosition& position, const char* from, const char* to) noexcept {
  const auto find = [to](const char* at, char c) {
    return static_cast<const char*>(std::memchr(at, c, static_cast<std::size_t>(to - at)));
  };
  const char* line = from;
  const auto endAt = [&](const char* end) {
    ++position.line;
    position.column = 1;
    line = std::max(line, end + 1);
  };
  for (auto at = find(from, '\n'); at; at = find(at + 1, '\n')) endAt(at);
  for (auto at = find(from, '\r'); at; at = find(at + 1, '\r'))
    if (at[1] != '\n') endAt(at);
  // Continuation bytes belong to the character before them.
  for (; line != to; ++line)
    position.column += (static_cast<unsigned char>(*line) & 0xC0U) != 0x80U ? 1U : 0U;
}

}  // namespace

TMofText::TMofText(std::string name, std::string text) : m_name(std::move(name)), m_pieces(1) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.compare(0, byteOrderMark.size(), byteOrderMark) == 0)
    text.erase(0, byteOrderMark.size());
  m_pieces.front().text = std::move(text);
}

TMofText::TPart TMofText::PartAt(TMofOffset offset) const noexcept {
  const auto& piece = m_pieces[IndexOf(offset)];
  return {piece.begin, piece.text};
}

// Most of the time it is that of the last call.
std::size_t TMofText::IndexOf(TMofOffset offset) const noexcept {
  const auto next = m_last + 1;
  if (m_pieces[m_last].begin <= offset &&
      (next == m_pieces.size() || offset < m_pieces[next].begin))
    return m_last;
  const auto behind =
      std::upper_bound(m_pieces.begin(), m_pieces.end(), offset,
                       [](TMofOffset at, const TPiece& piece) { return at < piece.begin; });
  return m_last = static_cast<std::size_t>(behind - m_pieces.begin()) - 1;
}

void TMofText::CutUp(const std::vector<TMofOffset>& cuts, const std::vector<TMofOffset>& marks) {
  const std::string& text = m_pieces.front().text;
  std::vector<TPiece> pieces(cuts.size() + 1);
  m_marks.reserve(marks.size());
  TMofOffset at = 0;
  TPosition position{1, 1};
  const auto moveTo = [&](TMofOffset offset) {
    Move(position, text.data() + at, text.data() + offset);
    at = offset;
  };
  auto mark = marks.begin();
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto end = i < cuts.size() ? cuts[i] : static_cast<TMofOffset>(text.size());
    pieces[i].begin = at;
    pieces[i].position = position;
    if (!cuts.empty()) pieces[i].text = text.substr(at, end - at);
    for (; mark != marks.end() && *mark < end; ++mark) {
      moveTo(*mark);
      m_marks.emplace_back(*mark, position);
    }
    moveTo(end);
  }
  if (!cuts.empty()) m_pieces = std::move(pieces);
}

void TMofText::LetGo(TMofOffset offset) noexcept {
  auto& piece = m_pieces[IndexOf(offset)];
  // An assignment would keep the memory.
  if (piece.holders != 0 && --piece.holders == 0) std::string().swap(piece.text);
}

TMofText::TPosition TMofText::PositionOf(TMofOffset offset) const noexcept {
  const auto mark =
      std::lower_bound(m_marks.begin(), m_marks.end(), offset,
                       [](const auto& known, TMofOffset wanted) { return known.first < wanted; });
  if (mark != m_marks.end() && mark->first == offset) return mark->second;
  const auto& piece = m_pieces[IndexOf(offset)];
  auto position = piece.position;
  const auto length = std::min<std::size_t>(offset - piece.begin, piece.text.size());
  Move(position, piece.text.data(), piece.text.data() + length);
  return position;
}

std::string TMofText::DescribePlace(TMofOffset offset) const {
  const auto position = PositionOf(offset);
  return m_name + ':' + std::to_string(position.line) + ':' + std::to_string(position.column);
}

std::uint32_t TMofText::SegmentOf(TMofOffset offset) const noexcept {
  const std::pair wanted(offset, std::numeric_limits<std::uint32_t>::max());
  const auto next = std::upper_bound(m_segments.begin(), m_segments.end(), wanted);
  return next == m_segments.begin() ? 0 : std::prev(next)->second;
}

}  // namespace hav::mof

#include "mof/TMofText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace hav::mof {

TMofText::TMofText(std::string name, std::string text)
    : m_name(std::move(name)), m_text(std::move(text)), m_view(m_text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (m_view.substr(0, byteOrderMark.size()) == byteOrderMark)
    m_view.remove_prefix(byteOrderMark.size());
}

TMofText::TPosition TMofText::PositionOf(TMofOffset offset) const noexcept {
  TPosition position{1, 1};
  for (std::size_t i = 0; i < offset && i < m_view.size(); ++i) {
    const char c = m_view[i];
    const bool carriageReturnOfPair = c == '\r' && i + 1 < m_view.size() && m_view[i + 1] == '\n';
    if (c == '\n' || (c == '\r' && !carriageReturnOfPair)) {
      ++position.line;
      position.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0u) != 0x80u) {
      ++position.column;  // continuation bytes belong to the character before them
    }
  }
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

// TMofText: the text of one MOF file, and what line and column a place in it has.
//
// Ownership: owns the text; tokens and syntax trees point into it, so it neither moves nor
//            copies.
// Threads:   immutable but for AddSegment.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hav::mof {

// A place in a text, in bytes from its beginning.
using TMofOffset = std::uint32_t;

class TMofText {
 public:
  // Lines and columns count from 1; a column is one character, a tab included.
  struct TPosition {
    unsigned line;
    unsigned column;
  };

  // The largest text that is read, in bytes.
  static constexpr std::size_t kMaxSize = std::size_t{256} << 20;

  // Requires at most kMaxSize bytes.
  TMofText(std::string name, std::string text);
  TMofText(const TMofText&) = delete;
  TMofText& operator=(const TMofText&) = delete;

  const std::string& GetName() const noexcept { return m_name; }
  // The text without a byte-order mark. NUL follows it.
  std::string_view GetText() const noexcept { return m_view; }

  // Complexity: linear in `offset`; tokens carry offsets so that only messages pay for it.
  TPosition PositionOf(TMofOffset offset) const noexcept;
  // "file:line:column".
  std::string DescribePlace(TMofOffset offset) const;

  // Where files include others, their texts are read in segments. Says that what begins at
  // `offset` is the segment of that number; both grow from call to call.
  void AddSegment(TMofOffset offset, std::uint32_t number) {
    m_segments.emplace_back(offset, number);
  }
  // The number of the segment that holds `offset`, 0 when there are none.
  std::uint32_t SegmentOf(TMofOffset offset) const noexcept;

 private:
  std::string m_name;
  std::string m_text;
  std::string_view m_view;
  std::vector<std::pair<TMofOffset, std::uint32_t>> m_segments;
};

}  // namespace hav::mof

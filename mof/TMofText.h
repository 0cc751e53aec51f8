// TMofText: the text of one MOF file, and what line and column a place in it has.
//
// A text of many instances is cut into pieces. Each goes when nothing holds it any more, so that
// a namespace and the text that it is made of are not in memory at once.
//
// Ownership: owns the text; tokens and syntax trees point into it, so it neither moves nor
//            copies.
// Threads:   one thread at a time.
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

  // A text between two cuts, and where that begins.
  struct TPart {
    TMofOffset begin;
    std::string_view text;
  };

  // The largest text that is read, in bytes.
  static constexpr std::size_t kMaxSize = std::size_t{256} << 20;

  // How far it is at least from cut to cut, in bytes, unless somebody says otherwise.
  static constexpr TMofOffset kPieceSize = 65536;

  // Requires at most kMaxSize bytes.
  TMofText(std::string name, std::string text);
  TMofText(const TMofText&) = delete;
  TMofText& operator=(const TMofText&) = delete;

  const std::string& GetName() const noexcept { return m_name; }
  // The text without a byte-order mark, while it is not cut. NUL follows it.
  std::string_view GetText() const noexcept { return m_pieces.front().text; }
  // The piece that holds the character at `offset`, or the end of the text. NUL follows it.
  TPart PartAt(TMofOffset offset) const noexcept;

  // Cuts the text into pieces that begin at `cuts`, and at its beginning: what points into it is
  // to point into the pieces. The positions of `marks` stay known without them. Both are in order.
  void CutUp(const std::vector<TMofOffset>& cuts, const std::vector<TMofOffset>& marks);
  // Keeps the piece with `offset` until it is let go as often as it was held. What was never held
  // stays.
  void Hold(TMofOffset offset) noexcept { ++m_pieces[IndexOf(offset)].holders; }
  void LetGo(TMofOffset offset) noexcept;

  // Requires that the text there has not been let go, or a mark.
  // Complexity: linear in the distance from where the piece begins; tokens carry offsets so that
  // only messages pay for it.
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
  struct TPiece {
    std::string text;  // empty when it was let go
    TMofOffset begin = 0;
    TPosition position{1, 1};
    std::size_t holders = 0;
  };

  std::size_t IndexOf(TMofOffset offset) const noexcept;  // into m_pieces

  std::string m_name;
  std::vector<TPiece> m_pieces;    // never empty
  mutable std::size_t m_last = 0;  // what was asked for last
  std::vector<std::pair<TMofOffset, TPosition>> m_marks;
  std::vector<std::pair<TMofOffset, std::uint32_t>> m_segments;
};

}  // namespace hav::mof

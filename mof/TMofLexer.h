// TMofLexer: turns MOF text into tokens, one at a time, in one pass and without copying.
//
// Adjacent strings are one token. Every literal is checked as it is read, so that its value
// can be taken later without a second report.
//
// Ownership: tokens point into the text, which must outlive them.
// Errors:    collected in the report; what is wrong is left out of the stream, or comes as a
//            broken literal. When the report is full the text ends.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "mof/TMofReport.h"
#include "mof/TMofText.h"

namespace hav::mof {

struct TMofToken {
  enum class EKind : std::uint8_t {
    kEnd,
    kName,     // also keywords, TRUE, FALSE and NULL
    kAlias,    // with its '$'
    kInteger,  // decimal, octal, hexadecimal or binary, with its sign
    kReal,
    kCharacter,   // with its quotes
    kString,      // one or more strings with their quotes and what stands between them
    kBroken,      // a literal that was reported
    kPragma,      // "#pragma"
    kPunctuation  // one of [](){},;:=
  };

  EKind kind = EKind::kEnd;
  TMofOffset offset = 0;
  std::string_view text;

  bool Is(char punctuation) const noexcept {
    return kind == EKind::kPunctuation && text[0] == punctuation;
  }
  // The token in a message: quoted, and cut when it is long.
  std::string Describe() const;
};

class TMofLexer {
 public:
  TMofLexer(const TMofText& text, TMofReport& report);

  // Complexity: linear in the length of the token and of what stands before it.
  TMofToken Next();
  // Goes on at `offset`, where a token begins, to the end of the piece that holds it.
  void MoveTo(TMofOffset offset) noexcept;
  // True behind a comment that is not closed: it may have swallowed anything.
  bool IsCut() const noexcept { return m_cut; }

  // The value of a kString token, as UTF-8: escapes replaced, pieces joined. An escape that the
  // language does not have stands for itself.
  static std::string StringValue(std::string_view token);
  static void StringValue(std::string_view token, std::string& value);
  // The same for the name of a file to include, where a backslash separates folders and
  // escapes only itself and a quote.
  static std::string FileName(std::string_view token);
  // The value of a kCharacter token.
  static char16_t CharacterValue(std::string_view token);

 private:
  // What of "#pragma include (" was read last.
  enum class EInclude { kNothing, kPragma, kInclude, kParenthesis };

  TMofToken Scan();
  EInclude Follow(const TMofToken& token) const noexcept;
  void SkipBlanks();
  void SkipComments();
  TMofToken Take(TMofToken::EKind kind, std::size_t end);
  TMofToken ReadAlias();
  TMofToken ReadNumber();
  TMofToken ReadString();
  TMofToken ReadCharacter();
  bool ScanStringPiece();
  void ScanBackslash();
  void ScanByte();
  bool ScanPragma();
  std::size_t EndOfName(std::size_t at) const noexcept;
  std::size_t EndOfNumber() const noexcept;
  void RefuseCharacter();
  void Error(std::size_t offset, std::string text);
  bool Has(std::size_t at) const noexcept { return at < m_text.size(); }
  TMofOffset OffsetOf(std::size_t at) const noexcept;

  const TMofText& m_source;
  TMofReport& m_report;
  TMofOffset m_begin;       // of what is being read
  std::string_view m_text;  // and its text, in which the offsets in here count
  std::size_t m_at = 0;
  EInclude m_include = EInclude::kNothing;
  bool m_warnedOfBytes = false;
  bool m_cut = false;
};

}  // namespace hav::mof

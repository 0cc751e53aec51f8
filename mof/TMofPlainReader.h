// TMofPlainReader: reads instances as programs write them, at once instead of token by token:
//
//   NAME { NAME = VALUE; NAME = { VALUE, VALUE }; };
//
// where a value is one string without escapes but \" and \\, a decimal integer, TRUE, FALSE or
// NULL, and there are neither comments nor aliases nor anything beyond ASCII. Of what it reads the
// parser would say the same and report nothing; of all else it says that it is not plain, which
// is no error, and the parser reads it.
//
// Ownership: what it reads points into the text, which NUL follows.
#pragma once

#include <cstddef>
#include <string_view>

#include "mof/MofSyntax.h"

namespace hav::mof {

class TMofPlainReader {
 public:
  explicit TMofPlainReader(const TMofText::TPart& part) : m_text(part.text), m_begin(part.begin) {}

  // Goes on at `offset` of the file.
  void MoveTo(TMofOffset offset) noexcept { m_at = offset - m_begin; }
  TMofOffset GetOffset() const noexcept { return m_begin + static_cast<TMofOffset>(m_at); }

  // Each is false where what follows is not plain; where it was is then lost. Otherwise it goes on
  // behind what was read.
  bool ReadKeywords() noexcept;  // "instance of", and what is blank around it
  bool ReadClassName(TMofInstance& instance);
  // Behind the class name. What is read is kept where there is an instance.
  bool ReadBody(TMofInstance* instance);

 private:
  void SkipBlanks() noexcept;
  bool Take(char punctuation) noexcept;
  bool TakeKeyword(std::string_view keyword) noexcept;
  TMofToken Token(TMofToken::EKind kind, std::size_t from) const noexcept;
  bool ReadAssignment(TMofInstance* instance);
  bool ReadElements(TMofValue* value);
  bool ReadLiteral(TMofToken& literal) noexcept;
  bool ReadString() noexcept;
  bool ReadInteger() noexcept;

  std::string_view m_text;
  TMofOffset m_begin;
  std::size_t m_at = 0;
};

}  // namespace hav::mof

// TMofParser: reads the text of one MOF file into its syntax tree. It needs nothing but the
// text: no other file, no namespace.
//
// After an error reading goes on behind the next ';', or with the next declaration, so that
// every error of a file is found in one run.
//
// Errors: collected in the report, as "expected …, found …" at the place of what was found.
//         Nothing recurses, so no input exhausts the stack.
#pragma once

#include <string>
#include <string_view>

#include "mof/MofSyntax.h"
#include "mof/TMofLexer.h"
#include "mof/TMofReport.h"

namespace hav::mof {

class TMofParser {
 public:
  // Fills `file` from its text. Complexity: linear in the length of the text.
  static void Parse(TMofFile& file, TMofReport& report);

 private:
  struct TSyntaxError {};  // thrown behind the report, to where reading goes on

  TMofParser(TMofFile& file, TMofReport& report);

  void ParseFile();
  void ParseDeclaration();
  void ParsePragma();
  void ParseQualifierDecl();
  void ParseScope(TMofQualifierDecl& decl);
  void ParseClass(TMofQualifiers&& qualifiers);
  void ParseMember(TMofClass& cls);
  TMofParameter ParseParameter();
  void ParseInstance(const TMofQualifiers& qualifiers);
  void ParseAssignment(TMofInstance& instance);
  // Reads members up to "};"; false when one could not be read.
  template <class ParseOne>
  bool ParseBody(const std::string& what, ParseOne&& parseOne);

  TMofQualifiers ParseQualifiers();
  TMofQualifier ParseQualifier();
  bool ParseFlavor(TMofFlavor& flavor);
  TMofType ParseType(const char* what);
  void ParseArray(TMofType& type);
  TMofValue ParseValue();
  TMofValue ParseArrayValue();
  TMofToken ParseLiteral();
  TMofName ParseName(const std::string& what);
  TMofName ParseAlias();

  void Advance();
  bool Take(char punctuation);
  bool TakeKeyword(std::string_view keyword);
  bool IsKeyword(const TMofToken& token, std::string_view keyword) const noexcept;
  bool AtDeclaration() const noexcept;
  void Expect(char punctuation, const std::string& where);
  [[noreturn]] void FailExpecting(const std::string& what);
  void SkipToDeclaration();
  bool SkipToMember();

  TMofFile& m_file;
  TMofReport& m_report;
  TMofLexer m_lexer;
  TMofToken m_token;
  TMofToken m_next;
  bool m_inArray = false;  // behind the '{' of an array value
};

}  // namespace hav::mof

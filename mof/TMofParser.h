// TMofParser: reads the text of one MOF file into its syntax tree. It needs nothing but the
// text: no other file, no namespace.
//
// Instances are checked and their places noted; they are read again one by one when they are
// made, so that the memory that a load takes does not depend on their number.
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
#include "mof/TMofPlainReader.h"
#include "mof/TMofReport.h"

namespace hav::mof {

class TMofParser {
 public:
  // How instances are read that TMofPlainReader can read: by it, or token by token as all else. The
  // outcome is the same.
  enum class EInstances { kQuick, kByTokens };

  // File and report must outlive the parser.
  TMofParser(TMofFile& file, TMofReport& report, EInstances instances = EInstances::kQuick);

  // Fills `file` from its text. Complexity: linear in the length of the text.
  static void Parse(TMofFile& file, TMofReport& report, EInstances instances = EInstances::kQuick);
  // The same up to the end of the next include, which then is the last pragma: true. False at
  // the end of the text.
  bool ReadOn();
  // Reads the instance whose class name stands at `place`. False when there is nothing to make
  // of it.
  bool ReadInstance(TMofOffset place, TMofInstance& instance);
  // The same in two steps: class name and alias, then the rest of the one that was begun.
  bool BeginInstance(TMofOffset place, TMofInstance& instance);
  bool EndInstance(TMofInstance& instance);

 private:
  struct TSyntaxError {};  // thrown behind the report, to where reading goes on

  bool ReadPlainInstances();
  bool BeginByTokens(TMofOffset place, TMofInstance& instance);
  // Goes on with the token that begins there, or behind what is blank there.
  void GoOnAt(TMofOffset offset);
  void ParseDeclaration();
  void ParsePragma();
  void SkipPragma(const TMofName& name);
  void ParseQualifierDecl();
  void ParseScope(TMofQualifierDecl& decl);
  void ParseClass(TMofQualifiers&& qualifiers);
  void ParseMember(TMofClass& cls);
  TMofParameter ParseParameter();
  void NoteCut(TMofOffset begin, bool isInstance);
  void ParseInstanceHead(TMofInstance& instance);
  void ParseInstanceBody(TMofInstance& instance);
  void ParseAssignment(TMofInstance& instance);
  // Reads members up to "};"; false when one could not be read. `kind` and `name` say in
  // messages what it is the body of.
  template <class ParseOne>
  bool ParseBody(const char* kind, const TMofName& name, ParseOne&& parseOne);

  TMofQualifiers ParseQualifiers();
  TMofQualifier ParseQualifier();
  bool ParseFlavor(TMofFlavor& flavor);
  TMofType ParseType(const char* what);
  void ParseArray(TMofType& type);
  TMofValue ParseValue();
  TMofValue ParseArrayValue();
  TMofToken ParseLiteral();
  TMofName ParseName(const char* what);
  TMofName ParseAlias();

  void Advance();
  bool Take(char punctuation);
  bool TakeKeyword(std::string_view keyword);
  bool IsKeyword(const TMofToken& token, std::string_view keyword) const noexcept;
  bool AtDeclaration() const noexcept;
  void Expect(char punctuation, const char* where);
  [[noreturn]] void FailExpecting(const std::string& what);
  [[noreturn]] void FailExpecting(char punctuation, const char* where);
  void SkipToDeclaration();
  bool SkipToMember();

  TMofFile& m_file;
  TMofReport& m_report;
  TMofLexer m_lexer;
  TMofToken m_token;
  TMofToken m_next;
  bool m_isQuick;
  TMofPlainReader m_plain;
  bool m_isPlain = false;      // the instance that was begun last, up to where its body begins
  TMofInstance m_instance;     // what was read last
  bool m_wasInstance = false;  // the declaration that was read last
  bool m_atInclude = false;
  bool m_inArray = false;  // behind the '{' of an array value
};

}  // namespace hav::mof

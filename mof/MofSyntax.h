// MofSyntax: what a MOF file says, as a tree. Nothing is looked up yet: a class may name a
// superclass that nobody declares.
//
// Ownership: values; every name and literal points into the text of the file, at its offset.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "havcore/ECIMType.h"
#include "mof/TMofLexer.h"
#include "mof/TMofText.h"

namespace hav::mof {

struct TMofName {
  std::string_view text;  // empty: not given
  TMofOffset offset = 0;
};

struct TMofType {
  NORVHAV20::ECIMType element = NORVHAV20::kCIMNone;
  TMofName referenced;  // the class of a reference
  bool isArray = false;
  std::uint32_t arraySize = 0;  // 0: any
};

struct TMofValue {
  TMofOffset offset = 0;
  bool isArray = false;
  TMofToken scalar;                 // of what is no array
  std::vector<TMofToken> elements;  // of an array

  bool HasAlias() const noexcept;
};

// Bits of ICIMQualifierDecl::EFlavor that are said, either way; the rest are left open.
struct TMofFlavor {
  std::uint32_t set = 0;
  std::uint32_t cleared = 0;

  std::uint32_t AppliedTo(std::uint32_t flavor) const noexcept { return (flavor & ~cleared) | set; }
};

struct TMofQualifier {
  TMofName name;
  std::optional<TMofValue> value;
  TMofFlavor flavor;
};
using TMofQualifiers = std::vector<TMofQualifier>;

// Null when there is none of that name, case folded.
const TMofQualifier* FindQualifier(const TMofQualifiers& qualifiers, std::string_view name);
// Whether the boolean qualifier is given, and not as false.
bool SaysTrue(const TMofQualifiers& qualifiers, std::string_view name);

struct TMofParameter {
  TMofName name;
  TMofType type;
  TMofQualifiers qualifiers;
};

struct TMofProperty {
  TMofName name;
  TMofType type;
  TMofQualifiers qualifiers;
  std::optional<TMofValue> defaultValue;
};

struct TMofMethod {
  TMofName name;
  TMofType returnType;
  TMofQualifiers qualifiers;
  std::vector<TMofParameter> parameters;
};

struct TMofClass {
  TMofName name;
  TMofName alias;
  TMofName superclass;
  TMofQualifiers qualifiers;
  std::vector<TMofProperty> properties;
  std::vector<TMofMethod> methods;
  bool isDamaged = false;  // a member could not be read
};

struct TMofAssignment {
  TMofName name;
  TMofValue value;
};

struct TMofInstance {
  TMofName className;
  TMofName alias;
  std::vector<TMofAssignment> assignments;
  bool isDamaged = false;  // an assignment could not be read
};

struct TMofQualifierDecl {
  TMofName name;
  TMofType type;
  std::optional<TMofValue> defaultValue;
  std::uint32_t scope = 0;  // bits of ICIMQualifierDecl::EScope
  TMofFlavor flavor;
};

// A pragma that concerns more than its own file.
struct TMofPragma {
  enum class EKind { kInclude, kNamespace };
  EKind kind;
  std::string value;
  TMofOffset offset;
};

struct TMofFile {
  TMofFile(std::string name, std::string content) : text(std::move(name), std::move(content)) {}

  TMofText text;
  std::vector<TMofPragma> pragmas;
  std::vector<TMofQualifierDecl> qualifierDecls;
  std::vector<TMofClass> classes;
  // Where the class name of each instance stands, in their order; TMofParser::ReadInstance reads
  // one of them. There can be millions, so no tree is kept of them.
  std::vector<TMofOffset> instances;
  std::vector<TMofOffset> cuts;  // beginnings of declarations where the text may be cut
  TMofOffset pieceSize = TMofText::kPieceSize;  // from cut to cut, at least
  bool isDamaged = false;                       // a whole declaration could not be read

  // Cuts the text up, each piece held once by every instance in it, and for good where trees point
  // into it. To be called when the file was read to its end and nothing is wrong with it.
  void CutUp();
};

// Whether both say the same, wherever they stand: names ignore case, strings compare by value.
bool Same(const TMofQualifierDecl& a, const TMofQualifierDecl& b);
bool Same(const TMofClass& a, const TMofClass& b);

}  // namespace hav::mof

// TMofWriter: writes a namespace, a class or an instance as MOF that reads back to the same.
//
// A class is written with what it declares itself, in the order of its author, and not with
// what it inherits; an association or indication always says that it is one. Two things have
// no MOF and are left out: a ToInstance or Translatable flavor that a qualifier lost after its
// declaration; and reals that are no numbers, which are written as NULL.
//
// Ownership: borrows what it writes.
// Errors:    those of the elements pass through.
#pragma once

#include <functional>
#include <string>

#include "havcore/havcore.h"

namespace hav::mof {

class TMofWriter {
 public:
  // What was written is appended to `out`.
  explicit TMofWriter(std::string& out) : m_out(out) {}

  // Qualifier declarations, classes with superclasses first, instances.
  void WriteNamespace(NORVHAV20::ICIMNamespace& home);
  void WriteQualifierDecl(const NORVHAV20::ICIMQualifierDecl& decl);
  void WriteClass(NORVHAV20::ICIMClass& cls);
  void WriteInstance(NORVHAV20::ICIMInstance& instance);

  // A value as a literal, in braces when it is an array.
  void WriteValue(const NORVHAV20::TCIMValue& value);

 private:
  bool WriteQualifiers(NORVHAV20::ICIMNamedElement& element, const char* indent);
  void WriteQualifier(const NORVHAV20::ICIMQualifier& qualifier);
  void WriteProperty(const NORVHAV20::ICIMClass& cls, NORVHAV20::ICIMPropertyDecl& decl);
  void WriteMethod(NORVHAV20::ICIMMethodDecl& decl);
  void WriteParameter(NORVHAV20::ICIMParameterDecl& parameter);
  void WriteScalar(const NORVHAV20::TCIMValue& value);
  void WriteQuoted(const std::string& text, char quote);

  std::string& m_out;
};

}  // namespace hav::mof

// TMofSchemaChecks: what a namespace makes of a schema without a word, told as warnings, each at
// the declaration that it is about:
//   overrides    what takes the place of an inherited property without Override, and how; what
//                overrides nothing; an Override that names another property or method
//   classes      those whose instances cannot be told apart, as they have no key, unless they are
//                abstract, indications, exceptions or embedded in others; associations of no
//                reference; embedded classes that are not there
//   display      what MofDisplayChecks says
// What is left out altogether the schema builder has told already.
//
// Ownership: borrows schema and report.
// Errors:    those of the classes pass through.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "havcore/client/FoldedName.h"
#include "mof/TMofReport.h"
#include "mof/TMofSchemaBuilder.h"

namespace hav::mof {

class TMofSchemaChecks {
 public:
  // Requires that the schema is built.
  TMofSchemaChecks(const TMofSchemaBuilder& schema, TMofReport& report)
      : m_schema(schema), m_report(report) {}

  void Run();

 private:
  using TClass = TMofSchemaBuilder::TClass;

  void CollectEmbedded(const TClass& cls);
  void CollectEmbedded(const TClass& cls, const TMofQualifiers& qualifiers);
  bool IsEmbedded(const TClass* cls) const;
  void CheckClass(const TClass& cls);
  void CheckKey(const TClass& cls);
  void CheckReferences(const TClass& cls);
  void CheckProperty(const TClass& cls, const TMofProperty& property);
  void CheckTaken(const TClass& cls, const TMofProperty& property,
                  const NORVHAV20::ICIMPropertyDecl& inherited);
  void CheckMethod(const TClass& cls, const TMofMethod& method);
  void CheckOverride(const TClass& cls, const TMofQualifier& override, const TMofName& name,
                     const char* what, bool isInherited);
  void Warn(const TClass& cls, TMofOffset offset, std::string text) {
    m_report.AddWarning(cls.file->text, offset, std::move(text));
  }

  const TMofSchemaBuilder& m_schema;
  TMofReport& m_report;
  std::unordered_set<std::string, client::TFoldedHash, client::TFoldedEqual> m_embedded;
};

}  // namespace hav::mof

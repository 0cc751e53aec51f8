// TMofValueReader: makes CIM values of the literals in a syntax tree, by the type that the
// element declares.
//
// Ownership: shares the namespace in which references are resolved.
// Errors:    collected in the report, at the literal.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "havcore/TCIMReference.h"
#include "havcore/TCIMValue.h"
#include "mof/MofSyntax.h"
#include "mof/TMofReport.h"

namespace NORVHAV20 {
class ICIMNamespace;
}

namespace hav::mof {

// The name of a type as MOF writes it.
std::string TypeName(NORVHAV20::ECIMType type);

class TMofValueReader {
 public:
  // The value that an alias stands for, of the type that is asked for: a reference, or where
  // instances are embedded their text. Nothing when it stands for nothing.
  using TAliases = std::function<std::optional<NORVHAV20::TCIMValue>(std::string_view)>;

  TMofValueReader(boost::shared_ptr<NORVHAV20::ICIMNamespace> home, TMofReport& report);

  // Returns the value as `type`, an array type for an array; nothing when it was reported.
  // A string takes an alias only where `aliases` are given.
  std::optional<NORVHAV20::TCIMValue> Read(const TMofFile& file, const TMofValue& value,
                                           NORVHAV20::ECIMType type,
                                           const TAliases& aliases = {}) const;

 private:
  std::optional<NORVHAV20::TCIMValue> ReadScalar(const TMofFile& file, const TMofToken& literal,
                                                 NORVHAV20::ECIMType type,
                                                 const TAliases& aliases) const;

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_home;
  TMofReport& m_report;
  mutable std::string m_text;  // of the string that was read last, for its memory
};

}  // namespace hav::mof

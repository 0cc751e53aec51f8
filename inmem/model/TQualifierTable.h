// TQualifierTable: the qualifiers of one element, by folded name.
//
// Ownership: shares the qualifiers.
// Threads:   one thread at a time per namespace.
// Errors:    25 for a name that is no CIM name, 15 for an empty pointer.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMQualifierDecl.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMNamedElement;
class ICIMQualifier;

class TQualifierTable {
 public:
  using TMap = std::map<std::string, boost::shared_ptr<ICIMQualifier>, std::less<>>;

  // Returns the qualifier, empty when there is none. `Find` folds the name; `FindFolded`
  // takes it folded.
  boost::shared_ptr<ICIMQualifier> Find(const std::string& name) const;
  boost::shared_ptr<ICIMQualifier> FindFolded(std::string_view folded) const;

  // Attaches to a declaration: the qualifier that stands there is replaced when it is
  // overridable, and kept when the two have equal values and flavors. Throws 28 otherwise.
  void AddToDeclaration(const boost::shared_ptr<ICIMQualifier>& qualifier);
  // Attaches to a class: as above, but flavors are not compared, and a class with a qualifier
  // "dontcollect" keeps what it has whatever the values.
  void AddToClass(const boost::shared_ptr<ICIMQualifier>& qualifier);

  // Visits what is attached now, in the order of the folded names. What the callback answers
  // is ignored; what it throws is dropped.
  void Enumerate(const TEnumCallback<ICIMQualifier>& callback) const;

  const TMap& Entries() const noexcept { return m_entries; }
  void Swap(TMap& entries) noexcept { m_entries.swap(entries); }

 private:
  template <class Conflicts>
  void Add(const boost::shared_ptr<ICIMQualifier>& qualifier, Conflicts&& conflicts);

  TMap m_entries;
};

// Makes a qualifier of `element`, with a flavor or the declaration's own, attaches it through
// the element's AddQualifier and returns it. Throws 15 when `decl` is empty, and as
// AddQualifier does.
boost::shared_ptr<ICIMQualifier> AllocateQualifierOf(
    const boost::shared_ptr<ICIMNamedElement>& element,
    const boost::shared_ptr<ICIMQualifierDecl>& decl, const TCIMValue& value,
    const ICIMQualifierDecl::EFlavor* flavor);

}  // namespace NORVHAV20

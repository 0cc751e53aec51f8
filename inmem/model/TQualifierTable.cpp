#include "inmem/model/TQualifierTable.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMNamedElement.h"
#include "havcore/ICIMQualifier.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemQualifier.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

boost::shared_ptr<ICIMQualifier> TQualifierTable::Find(const std::string& name) const {
  return FindFolded(CimName(name));
}

boost::shared_ptr<ICIMQualifier> TQualifierTable::FindFolded(std::string_view folded) const {
  const auto found = m_entries.find(folded);
  return found == m_entries.end() ? nullptr : found->second;
}

template <class Conflicts>
void TQualifierTable::Add(const boost::shared_ptr<ICIMQualifier>& qualifier,
                          Conflicts&& conflicts) {
  std::string key = NormalizeCimName(Require(qualifier)->GetName(TOptions()));
  const auto standing = FindFolded(key);
  if (!standing || standing->GetFlavor(TOptions()) & ICIMQualifierDecl::kFlavorOverridable)
    m_entries.insert_or_assign(std::move(key), qualifier);
  else if (conflicts(*standing))
    Throw(kHAVConflictingQualifier);
}

void TQualifierTable::AddToDeclaration(const boost::shared_ptr<ICIMQualifier>& qualifier) {
  Add(qualifier, [&](const ICIMQualifier& standing) {
    return qualifier->GetValue(TOptions()) != standing.GetValue(TOptions()) ||
           qualifier->GetFlavor(TOptions()) != standing.GetFlavor(TOptions());
  });
}

void TQualifierTable::AddToClass(const boost::shared_ptr<ICIMQualifier>& qualifier) {
  Add(qualifier, [&](const ICIMQualifier& standing) {
    return !FindFolded("dontcollect") &&
           qualifier->GetValue(TOptions()) != standing.GetValue(TOptions());
  });
}

void TQualifierTable::Enumerate(const TEnumCallback<ICIMQualifier>& callback) const {
  for (const auto& qualifier : Snapshot(m_entries)) DropExceptions([&] { callback(qualifier); });
}

boost::shared_ptr<ICIMQualifier> AllocateQualifierOf(
    const boost::shared_ptr<ICIMNamedElement>& element,
    const boost::shared_ptr<ICIMQualifierDecl>& decl, const TCIMValue& value,
    const ICIMQualifierDecl::EFlavor* flavor) {
  const auto qualifier = flavor ? boost::make_shared<TInmemQualifier>(element, decl, value, *flavor)
                                : boost::make_shared<TInmemQualifier>(element, decl, value);
  element->AddQualifier(qualifier, TOptions());
  return qualifier;
}

}  // namespace NORVHAV20

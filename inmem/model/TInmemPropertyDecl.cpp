#include "inmem/model/TInmemPropertyDecl.h"

#include "havcore/ICIMClass.h"
#include "inmem/values/ReferenceDefaults.h"

namespace NORVHAV20 {

TInmemPropertyDecl::TInmemPropertyDecl(const boost::shared_ptr<ICIMClass>& owner,
                                       const std::string& name, const TCIMValue& defaultValue)
    : TInmemDecl(name), m_owner(owner), m_defaultValue(defaultValue) {}

boost::shared_ptr<ICIMQualifier> TInmemPropertyDecl::FindQualifier(const std::string& name,
                                                                   bool& found, TOptions) {
  auto qualifier = Qualifiers().Find(name);
  found = qualifier != nullptr;
  return qualifier;
}

void TInmemPropertyDecl::AddToClass(TOptions) {
  Validate(TOptions());
  Require(m_owner.lock())->AddPropertyDecl(shared_from_this(), TOptions());
}

void TInmemPropertyDecl::Delete(TOptions) {}

boost::shared_ptr<ICIMClass> TInmemPropertyDecl::GetClass(TOptions) const { return m_owner.lock(); }

TCIMValue::TCIMType TInmemPropertyDecl::GetType(TOptions) const { return m_defaultValue.GetType(); }

bool TInmemPropertyDecl::IsArray(TOptions) const { return m_defaultValue.IsArray(); }

const TCIMValue& TInmemPropertyDecl::GetDefaultValue(TOptions) const { return m_defaultValue; }

void TInmemPropertyDecl::SetDefaultValue(const TCIMValue& value, TOptions) {
  ReferenceDefaults::Count(m_defaultValue.GetType() == kCIMReference,
                           value.GetType() == kCIMReference);
  m_defaultValue = value;
}

}  // namespace NORVHAV20

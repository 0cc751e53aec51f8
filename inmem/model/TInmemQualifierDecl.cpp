#include "inmem/model/TInmemQualifierDecl.h"

#include "havcore/ICIMNamespace.h"
#include "inmem/model/Flavors.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

TInmemQualifierDecl::TInmemQualifierDecl(const TNamespaceLink& home, const std::string& name,
                                         const TCIMValue& defaultValue, EScope scope,
                                         EFlavor flavor)
    : m_home(home), m_name(name), m_defaultValue(defaultValue), m_scope(scope), m_flavor(flavor) {}

void TInmemQualifierDecl::Validate(TOptions) {}

void TInmemQualifierDecl::AddToNamespace(TOptions) {
  Require(m_home.Registry())->AddQualifierDecl(shared_from_this());
}

void TInmemQualifierDecl::Delete(TOptions) {}

const std::string& TInmemQualifierDecl::GetName(TOptions) const { return m_name; }

boost::shared_ptr<ICIMNamespace> TInmemQualifierDecl::GetNamespace(TOptions) const {
  return m_home.Namespace();
}

TCIMValue::TCIMType TInmemQualifierDecl::GetType(TOptions) const {
  return m_defaultValue.GetType();
}

bool TInmemQualifierDecl::IsArray(TOptions) const { return m_defaultValue.IsArray(); }

const TCIMValue& TInmemQualifierDecl::GetDefaultValue(TOptions) const { return m_defaultValue; }

void TInmemQualifierDecl::SetDefaultValue(const TCIMValue& value, TOptions) {
  m_defaultValue = value;
}

ICIMQualifierDecl::EScope TInmemQualifierDecl::GetScope(TOptions) const { return m_scope; }

void TInmemQualifierDecl::AddFlavor(EFlavor flavor, TOptions) {
  m_flavor = WithFlavor(m_flavor, flavor);
}

void TInmemQualifierDecl::RemoveFlavor(EFlavor flavor, TOptions) {
  m_flavor = WithoutFlavor(m_flavor, flavor);
}

ICIMQualifierDecl::EFlavor TInmemQualifierDecl::GetFlavor(TOptions) const { return m_flavor; }

bool TInmemQualifierDecl::operator==(const ICIMQualifierDecl& other) const {
  const std::string own = NormalizeCimName(m_name);
  return own == NormalizeCimName(other.GetName(TOptions()));
}

bool TInmemQualifierDecl::operator<(const ICIMQualifierDecl& other) const {
  const std::string own = NormalizeCimName(m_name);
  return own < NormalizeCimName(other.GetName(TOptions()));
}

}  // namespace NORVHAV20

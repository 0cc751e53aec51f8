#include "inmem/model/TInmemQualifier.h"

#include "inmem/model/Flavors.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

namespace {

// Of the declarations' names, so that a qualifier of any make can be compared.
std::string ComparedName(const ICIMQualifier& qualifier) {
  return NormalizeCimName(Require(qualifier.GetQualifierDecl(TOptions()))->GetName(TOptions()));
}

}  // namespace

TInmemQualifier::TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner,
                                 const boost::shared_ptr<ICIMQualifierDecl>& decl,
                                 const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor)
    : m_owner(owner),
      m_decl(Require(decl)),
      m_value(value),
      m_flavor(flavor),
      m_propagated(false) {}

TInmemQualifier::TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner,
                                 const boost::shared_ptr<ICIMQualifierDecl>& decl,
                                 const TCIMValue& value)
    : TInmemQualifier(owner, decl, value, Require(decl)->GetFlavor(TOptions())) {}

TInmemQualifier::TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner,
                                 const ICIMQualifier& source)
    : m_owner(owner),
      m_decl(Require(source.GetQualifierDecl(TOptions()))),
      m_value(source.GetValue(TOptions())),
      m_flavor(source.GetFlavor(TOptions())),
      m_propagated(source.IsPropagated(TOptions())) {}

void TInmemQualifier::Validate(TOptions) {}

void TInmemQualifier::AddToElement(TOptions) {
  Require(m_owner.lock())->AddQualifier(shared_from_this(), TOptions());
}

void TInmemQualifier::Delete(TOptions) {}

const std::string& TInmemQualifier::GetName(TOptions) const { return m_decl->GetName(TOptions()); }

boost::shared_ptr<ICIMNamedElement> TInmemQualifier::GetElement(TOptions) const {
  return m_owner.lock();
}

TCIMValue::TCIMType TInmemQualifier::GetType(TOptions) const { return m_value.GetType(); }

bool TInmemQualifier::IsArray(TOptions) const { return m_value.IsArray(); }

boost::shared_ptr<ICIMQualifierDecl> TInmemQualifier::GetQualifierDecl(TOptions) const {
  return m_decl;
}

const TCIMValue& TInmemQualifier::GetValue(TOptions) const { return m_value; }

void TInmemQualifier::SetValue(const TCIMValue& value, TOptions) {
  m_value = value;
  m_propagated = false;
  ModelClock::QualifiersChanged();
}

void TInmemQualifier::AddFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions) {
  m_flavor = WithFlavor(m_flavor, flavor);
  m_propagated = false;
}

void TInmemQualifier::RemoveFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions) {
  m_flavor = WithoutFlavor(m_flavor, flavor);
  m_propagated = false;
}

ICIMQualifierDecl::EFlavor TInmemQualifier::GetFlavor(TOptions) const { return m_flavor; }

bool TInmemQualifier::operator==(const ICIMQualifier& other) const {
  const std::string own = ComparedName(*this);
  return own == ComparedName(other);
}

bool TInmemQualifier::operator<(const ICIMQualifier& other) const {
  const std::string own = ComparedName(*this);
  return own < ComparedName(other);
}

bool TInmemQualifier::IsPropagated(TOptions) const { return m_propagated; }

}  // namespace NORVHAV20

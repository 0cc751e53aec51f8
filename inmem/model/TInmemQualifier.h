// TInmemQualifier: a named value attached to one element, made of a qualifier declaration.
//
// Ownership: shared by its element, which it holds weakly; shares its declaration.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/ICIMNamedElement.h"
#include "havcore/ICIMQualifier.h"

namespace NORVHAV20 {

class TInmemQualifier final : public ICIMQualifier,
                              public boost::enable_shared_from_this<TInmemQualifier> {
 public:
  TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner,
                  const boost::shared_ptr<ICIMQualifierDecl>& decl, const TCIMValue& value,
                  ICIMQualifierDecl::EFlavor flavor);
  // With the declaration's own flavor.
  TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner,
                  const boost::shared_ptr<ICIMQualifierDecl>& decl, const TCIMValue& value);
  // A copy of `source` for another element, its propagated mark included.
  TInmemQualifier(const boost::shared_ptr<ICIMNamedElement>& owner, const ICIMQualifier& source);

  // Marks the qualifier as received from the superclass.
  void MarkPropagated() noexcept { m_propagated = true; }

  void Validate(TOptions options) override;
  void AddToElement(TOptions options) override;
  void Delete(TOptions options) override;
  const std::string& GetName(TOptions options) const override;
  boost::shared_ptr<ICIMNamedElement> GetElement(TOptions options) const override;
  TCIMValue::TCIMType GetType(TOptions options) const override;
  bool IsArray(TOptions options) const override;
  boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(TOptions options) const override;
  const TCIMValue& GetValue(TOptions options) const override;
  void SetValue(const TCIMValue& value, TOptions options) override;
  void AddFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions options) override;
  void RemoveFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions options) override;
  ICIMQualifierDecl::EFlavor GetFlavor(TOptions options) const override;
  bool operator==(const ICIMQualifier& other) const override;
  bool operator<(const ICIMQualifier& other) const override;
  bool IsPropagated(TOptions options) const override;
  ICIMQualifier& operator=(const ICIMQualifier&) override { return *this; }

 private:
  boost::weak_ptr<ICIMNamedElement> m_owner;
  boost::shared_ptr<ICIMQualifierDecl> m_decl;
  TCIMValue m_value;
  ICIMQualifierDecl::EFlavor m_flavor;
  bool m_propagated;
};

}  // namespace NORVHAV20

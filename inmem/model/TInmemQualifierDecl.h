// TInmemQualifierDecl: that a qualifier of a name exists in a namespace.
//
// Ownership: shared by its namespace, which it holds weakly, and by its qualifiers.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <string>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMQualifierDecl.h"
#include "inmem/model/TNamespaceLink.h"

namespace NORVHAV20 {

class TInmemQualifierDecl final : public ICIMQualifierDecl,
                                  public boost::enable_shared_from_this<TInmemQualifierDecl> {
 public:
  TInmemQualifierDecl(const TNamespaceLink& home, const std::string& name,
                      const TCIMValue& defaultValue, EScope scope, EFlavor flavor);

  void Validate(TOptions options) override;
  void AddToNamespace(TOptions options) override;
  void Delete(TOptions options) override;
  const std::string& GetName(TOptions options) const override;
  boost::shared_ptr<ICIMNamespace> GetNamespace(TOptions options) const override;
  TCIMValue::TCIMType GetType(TOptions options) const override;
  bool IsArray(TOptions options) const override;
  const TCIMValue& GetDefaultValue(TOptions options) const override;
  void SetDefaultValue(const TCIMValue& value, TOptions options) override;
  EScope GetScope(TOptions options) const override;
  void AddFlavor(EFlavor flavor, TOptions options) override;
  void RemoveFlavor(EFlavor flavor, TOptions options) override;
  EFlavor GetFlavor(TOptions options) const override;
  bool operator==(const ICIMQualifierDecl& other) const override;
  bool operator<(const ICIMQualifierDecl& other) const override;
  ICIMQualifierDecl& operator=(const ICIMQualifierDecl&) override { return *this; }

 private:
  TNamespaceLink m_home;
  std::string m_name;
  TCIMValue m_defaultValue;
  EScope m_scope;
  EFlavor m_flavor;
};

}  // namespace NORVHAV20

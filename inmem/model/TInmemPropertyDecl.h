// TInmemPropertyDecl: that a class has a property of a name; its default value gives the
// type.
//
// Ownership: shared by its class and those that inherit it; its class is held weakly.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <typeinfo>

#include <boost/weak_ptr.hpp>

#include "havcore/ICIMPropertyDecl.h"
#include "inmem/model/TInmemDecl.h"

namespace NORVHAV20 {

class TInmemPropertyDecl final : public TInmemDecl<ICIMPropertyDecl, TInmemPropertyDecl> {
 public:
  TInmemPropertyDecl(const boost::shared_ptr<ICIMClass>& owner, const std::string& name,
                     const TCIMValue& defaultValue);

  boost::shared_ptr<ICIMQualifier> FindQualifier(const std::string& name, bool& found,
                                                 TOptions options) override;
  void AddToClass(TOptions options) override;
  void Delete(TOptions options) override;
  boost::shared_ptr<ICIMClass> GetClass(TOptions options) const override;
  TCIMValue::TCIMType GetType(TOptions options) const override;
  bool IsArray(TOptions options) const override;
  const TCIMValue& GetDefaultValue(TOptions options) const override;
  void SetDefaultValue(const TCIMValue& value, TOptions options) override;

  // The declaration itself when it is of this make, else null.
  static const TInmemPropertyDecl* Own(const ICIMPropertyDecl& decl) noexcept {
    return typeid(decl) == typeid(TInmemPropertyDecl)
               ? static_cast<const TInmemPropertyDecl*>(&decl)
               : nullptr;
  }

  ECIMType Type() const { return m_defaultValue.GetType(); }

  boost::shared_ptr<const TKnownValueMap>* KnownValueMap() const noexcept override {
    return &m_knownValueMap;
  }

 private:
  boost::weak_ptr<ICIMClass> m_owner;
  TCIMValue m_defaultValue;
  mutable boost::shared_ptr<const TKnownValueMap> m_knownValueMap;
};

}  // namespace NORVHAV20

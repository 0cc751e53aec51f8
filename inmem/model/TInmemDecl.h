// TInmemDecl: what the declarations of properties, methods and parameters have in common: a
// name, kept as it is spelt, and qualifiers.
//
// Ownership: shares its qualifiers; they hold it weakly.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interfaces.
#pragma once

#include <string>
#include <utility>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamedElement.h"
#include "havcore/ICIMQualifier.h"
#include "inmem/model/TQualifierTable.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/IQualifierFinder.h"
#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

template <class TInterface, class TSelf>
class TInmemDecl : public TInterface,
                   public boost::enable_shared_from_this<TSelf>,
                   public IQualifierFinder {
 public:
  const TQualifierTable& Qualifiers() const noexcept { return m_qualifiers; }

  void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TOptions) override {
    const auto self = this->shared_from_this();
    m_qualifiers.AddToDeclaration(qualifier);
    ModelClock::QualifiersChanged();
  }

  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl> decl,
                                                     const TCIMValue& value,
                                                     ICIMQualifierDecl::EFlavor flavor,
                                                     TOptions) override {
    return AllocateQualifierOf(this->shared_from_this(), decl, value, &flavor);
  }

  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl> decl,
                                                     const TCIMValue& value, TOptions) override {
    return AllocateQualifierOf(this->shared_from_this(), decl, value, nullptr);
  }

  // Methods and parameters do not offer it; a property does.
  boost::shared_ptr<ICIMQualifier> FindQualifier(const std::string&, bool&, TOptions) override {
    Throw(kHAVNotSupported);
  }

  boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TOptions) override {
    return Require(m_qualifiers.Find(name));
  }

  boost::shared_ptr<ICIMQualifier> FindOrNull(const std::string& name) const override {
    return m_qualifiers.Find(name);
  }

  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback, TOptions) override {
    m_qualifiers.Enumerate(callback);
  }

  void Validate(TOptions) override {}

  const std::string& GetName(TOptions) const override { return m_name; }

  bool operator==(const TInterface& other) const override {
    const std::string own = NormalizeCimName(m_name);
    return own == NormalizeCimName(other.GetName(TOptions()));
  }

  bool operator<(const TInterface& other) const override {
    const std::string own = NormalizeCimName(m_name);
    return own < NormalizeCimName(other.GetName(TOptions()));
  }

  TInterface& operator=(const TInterface&) override { return *this; }

 protected:
  explicit TInmemDecl(std::string name) : m_name(std::move(name)) {}

 private:
  std::string m_name;
  TQualifierTable m_qualifiers;
};

}  // namespace NORVHAV20

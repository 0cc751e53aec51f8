// TInmemParameterDecl: one parameter of a method; its default value gives the type.
//
// Ownership: shared by its method, which it holds weakly.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <boost/weak_ptr.hpp>

#include "havcore/ICIMParameterDecl.h"
#include "inmem/model/TInmemDecl.h"

namespace NORVHAV20 {

class TInmemMethodDecl;

class TInmemParameterDecl final : public TInmemDecl<ICIMParameterDecl, TInmemParameterDecl> {
 public:
  TInmemParameterDecl(const boost::shared_ptr<TInmemMethodDecl>& owner, const std::string& name,
                      const TCIMValue& defaultValue);

  void AddToMethod(TOptions options) override;
  boost::shared_ptr<ICIMMethodDecl> GetMethod(TOptions options) const override;
  TCIMValue::TCIMType GetType(TOptions options) const override;
  bool IsArray(TOptions options) const override;

 private:
  boost::weak_ptr<TInmemMethodDecl> m_owner;
  TCIMValue m_defaultValue;
};

}  // namespace NORVHAV20

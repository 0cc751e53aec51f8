// TInmemMethodDecl: that a class has a method of a name, with a return type and parameters.
//
// Ownership: shared by its class and those that inherit it; its class is held weakly; owns
//            its parameters.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <map>
#include <string>

#include <boost/weak_ptr.hpp>

#include "havcore/ICIMMethodDecl.h"
#include "inmem/model/TInmemDecl.h"
#include "inmem/model/TInmemParameterDecl.h"

namespace NORVHAV20 {

class TInmemMethodDecl final : public TInmemDecl<ICIMMethodDecl, TInmemMethodDecl> {
 public:
  TInmemMethodDecl(const boost::shared_ptr<ICIMClass>& owner, const std::string& name,
                   TCIMValue::TCIMType returnType);

  // Throws 16, logged, when the method has a parameter of that name.
  void AddParameter(const boost::shared_ptr<TInmemParameterDecl>& parameter);

  void AddToClass(TOptions options) override;
  boost::shared_ptr<ICIMClass> GetClass(TOptions options) const override;
  TCIMValue::TCIMType GetType(TOptions options) const override;
  boost::shared_ptr<ICIMParameterDecl> AllocateParameter(const std::string& name,
                                                         const TCIMValue& defaultValue,
                                                         TOptions options) override;
  boost::shared_ptr<ICIMParameterDecl> GetParameter(const std::string& name,
                                                    TOptions options) const override;
  void EnumerateParameters(const TEnumCallback<ICIMParameterDecl>& callback,
                           TOptions options) const override;

 private:
  std::map<std::string, boost::shared_ptr<TInmemParameterDecl>, std::less<>> m_parameters;
  TCIMValue::TCIMType m_returnType;
  boost::weak_ptr<ICIMClass> m_owner;
};

}  // namespace NORVHAV20

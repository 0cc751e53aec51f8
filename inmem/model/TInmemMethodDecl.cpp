#include "inmem/model/TInmemMethodDecl.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMClass.h"
#include "inmem/model/Snapshot.h"

namespace NORVHAV20 {

TInmemMethodDecl::TInmemMethodDecl(const boost::shared_ptr<ICIMClass>& owner,
                                   const std::string& name, TCIMValue::TCIMType returnType)
    : TInmemDecl(name), m_returnType(returnType), m_owner(owner) {}

void TInmemMethodDecl::AddParameter(const boost::shared_ptr<TInmemParameterDecl>& parameter) {
  const std::string& name = parameter->GetName(TOptions());
  std::string key = NormalizeCimName(name);
  if (m_parameters.count(key) != 0) {
    LogError("Inmem: Attempt to add property " + name + " to method " + GetName(TOptions()) +
             ": already exists");
    Throw(kHAVAlreadyDefined);
  }
  m_parameters.emplace(std::move(key), parameter);
}

void TInmemMethodDecl::AddToClass(TOptions) {
  Validate(TOptions());
  Require(m_owner.lock())->AddMethodDecl(shared_from_this(), TOptions());
}

boost::shared_ptr<ICIMClass> TInmemMethodDecl::GetClass(TOptions) const { return m_owner.lock(); }

TCIMValue::TCIMType TInmemMethodDecl::GetType(TOptions) const { return m_returnType; }

boost::shared_ptr<ICIMParameterDecl> TInmemMethodDecl::AllocateParameter(
    const std::string& name, const TCIMValue& defaultValue, TOptions) {
  const auto parameter =
      boost::make_shared<TInmemParameterDecl>(shared_from_this(), name, defaultValue);
  AddParameter(parameter);
  return parameter;
}

boost::shared_ptr<ICIMParameterDecl> TInmemMethodDecl::GetParameter(const std::string& name,
                                                                    TOptions) const {
  const auto found = m_parameters.find(CimName(name).Folded());
  if (found == m_parameters.end()) Throw(kHAVNotFound);
  return found->second;
}

void TInmemMethodDecl::EnumerateParameters(const TEnumCallback<ICIMParameterDecl>& callback,
                                           TOptions) const {
  for (const auto& parameter : Snapshot(m_parameters)) DropExceptions([&] { callback(parameter); });
}

}  // namespace NORVHAV20

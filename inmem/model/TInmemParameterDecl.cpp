#include "inmem/model/TInmemParameterDecl.h"

#include "inmem/model/TInmemMethodDecl.h"

namespace NORVHAV20 {

TInmemParameterDecl::TInmemParameterDecl(const boost::shared_ptr<TInmemMethodDecl>& owner,
                                         const std::string& name, const TCIMValue& defaultValue)
    : TInmemDecl(name), m_owner(owner), m_defaultValue(defaultValue) {}

void TInmemParameterDecl::AddToMethod(TOptions) {
  Validate(TOptions());
  Require(m_owner.lock())->AddParameter(shared_from_this());
}

boost::shared_ptr<ICIMMethodDecl> TInmemParameterDecl::GetMethod(TOptions) const {
  return m_owner.lock();
}

TCIMValue::TCIMType TInmemParameterDecl::GetType(TOptions) const {
  return m_defaultValue.GetType();
}

bool TInmemParameterDecl::IsArray(TOptions) const { return m_defaultValue.IsArray(); }

}  // namespace NORVHAV20

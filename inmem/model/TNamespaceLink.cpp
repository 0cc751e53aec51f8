#include "inmem/model/TNamespaceLink.h"

#include "havcore/ICIMNamespace.h"

namespace NORVHAV20 {

boost::shared_ptr<INamespaceRegistry> TNamespaceLink::Registry() const {
  if (auto maker = m_maker.lock()) return maker;
  const auto census = m_census.lock();
  return census ? census->Living() : nullptr;
}

boost::shared_ptr<ICIMNamespace> TNamespaceLink::Namespace() const {
  const auto registry = Registry();
  return registry ? registry->AsNamespace() : nullptr;
}

}  // namespace NORVHAV20

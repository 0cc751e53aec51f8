// TNamespaceLink: the way from a class or a qualifier declaration back to its namespace: the
// one that made it, and when that is gone the copy of it that was made first and lives.
//
// Ownership: weak.
// Threads:   one thread at a time per namespace.
#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "inmem/model/INamespaceRegistry.h"
#include "inmem/model/TClassCensus.h"

namespace NORVHAV20 {

class TNamespaceLink {
 public:
  TNamespaceLink(const boost::shared_ptr<INamespaceRegistry>& maker,
                 const boost::shared_ptr<TClassCensus>& census)
      : m_maker(maker), m_census(census) {}

  // Empty when all are gone.
  boost::shared_ptr<INamespaceRegistry> Registry() const;
  boost::shared_ptr<ICIMNamespace> Namespace() const;
  // Empty when the last owner of what the namespace holds is gone, copies included.
  boost::shared_ptr<TClassCensus> Census() const { return m_census.lock(); }

 private:
  boost::weak_ptr<INamespaceRegistry> m_maker;
  boost::weak_ptr<TClassCensus> m_census;
};

}  // namespace NORVHAV20

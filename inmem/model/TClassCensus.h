// TClassCensus: every class that a namespace, or a copy of it, ever allocated; and the
// namespaces that share it: the original and its copies, which have the classes in common.
//
// Classes own their instances and instances own their class; classes and the associations
// that refer to them own each other. When the last namespace that shares a census goes, the
// census breaks those circles: each class that is still there drops its instances and its
// association set. Whoever holds a class or an instance beyond that can go on using it.
//
// Ownership: shared by a namespace and its copies; holds the classes weakly.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "inmem/values/TPathClock.h"

namespace NORVHAV20 {

class INamespaceRegistry;
class TInmemClass;

class TClassCensus {
 public:
  TClassCensus() = default;
  ~TClassCensus();
  TClassCensus(const TClassCensus&) = delete;
  TClassCensus& operator=(const TClassCensus&) = delete;

  // A namespace joins when it is made and leaves when it goes. Joining may lack memory, after
  // which nothing has changed; one can take the place of another at any time.
  void Join(INamespaceRegistry& member) { m_members.push_back(&member); }
  void Replace(const INamespaceRegistry& member, INamespaceRegistry& by) noexcept;
  void Leave(const INamespaceRegistry& member) noexcept;
  // Returns the member that joined first of those that a shared pointer owns, empty when there
  // is none.
  boost::shared_ptr<INamespaceRegistry> Living() const;

  // The clock of all of its namespaces.
  TPathClock& Paths() const noexcept { return *m_paths; }

  // Complexity: amortised O(1), in memory O(classes alive).
  void Enter(const boost::shared_ptr<TInmemClass>& cls);

 private:
  boost::intrusive_ptr<TPathClock> m_paths{new TPathClock};
  std::vector<INamespaceRegistry*> m_members;
  std::vector<boost::weak_ptr<TInmemClass>> m_classes;
  std::size_t m_pruneAt = 64;
};

}  // namespace NORVHAV20

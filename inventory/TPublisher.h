// TPublisher: puts what was collected into a namespace that holds the inventory schema, element by
// element and then link by link.
//
// Ownership: shares the instances that it stored or updated.
// Errors:    nothing throws for what the schema lacks: it stands among the failures.
#pragma once

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "inventory/TCollection.h"

namespace hav::inventory {

class TPublisher {
 public:
  using TInstancePtr = boost::shared_ptr<NORVHAV20::ICIMInstance>;

  // What to do with an element whose path is taken by an instance from before: refuse it, or
  // update that instance.
  enum EStanding { kRefuse, kUpdate };

  explicit TPublisher(NORVHAV20::ICIMNamespace& target, EStanding standing = kRefuse)
      : m_target(target), m_standing(standing) {}

  void Publish(const TCollection& collection);

  // True of what this publisher stored or updated.
  bool Has(const NORVHAV20::ICIMInstance& instance) const;
  // True of what it stored.
  bool HasStored(const NORVHAV20::ICIMInstance& instance) const;
  std::vector<TFailure> Failures() { return std::move(m_failures); }

 private:
  void Publish(const TElement& element);
  void Publish(const TLink& link);
  TInstancePtr Allocate(const std::string& className);
  void Set(NORVHAV20::ICIMInstance& instance, const std::string& className,
           const std::string& property, const NORVHAV20::TCIMValue& value);
  bool Store(const TInstancePtr& instance, const std::string& className);
  bool Update(const TInstancePtr& standing, NORVHAV20::ICIMInstance& fresh);
  void Fail(const std::string& source, const std::string& reason);

  NORVHAV20::ICIMNamespace& m_target;
  EStanding m_standing;
  std::map<std::string, TInstancePtr> m_instances;  // by element id
  std::unordered_set<const NORVHAV20::ICIMInstance*> m_stored, m_updated;
  std::vector<TFailure> m_failures;
};

}  // namespace hav::inventory

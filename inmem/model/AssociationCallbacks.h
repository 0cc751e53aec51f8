// AssociationCallbacks: the links of the chain that association traversal is. Each is handed
// to an enumeration of the class model and passes what survives on to the next.
//
// Ownership: each shares the instance whose associations are asked for; callbacks and
//            strings belong to the traversal under way, which outlives its links.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "inmem/model/TInmemInstance.h"

namespace NORVHAV20 {

struct TReferencesCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;

  bool operator()(boost::shared_ptr<ICIMClass> candidate) const {
    return instance->ExamineCandidateClass(*callback, *role, candidate);
  }
};

struct TExamineInstanceCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    return instance->ExamineCandidateClassInstance(*callback, association);
  }
};

struct TExamineInstanceWithRoleCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    return instance->ExamineCandidateClassInstanceWithRole(*callback, *role, association);
  }
};

struct TAssociatorsExamineCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;
  boost::shared_ptr<ICIMClass> resultClass;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    return instance->ExamineCandidate(*callback, resultClass, *role,
                                      boost::dynamic_pointer_cast<TInmemInstance>(association));
  }
};

struct TAssociatorsExamineWithResultRoleCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* resultRole;
  boost::shared_ptr<ICIMClass> resultClass;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    return instance->ExamineCandidateWithResultRole(
        *callback, resultClass, *resultRole,
        boost::dynamic_pointer_cast<TInmemInstance>(association));
  }
};

}  // namespace NORVHAV20

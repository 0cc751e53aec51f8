// AssociationCallbacks: the links of the chain that association traversal is. Each is handed
// to an enumeration of the class model and passes what survives on to the next. None of them ends
// an enumeration, whatever the caller's callback answers.
//
// Ownership: each shares the instance whose associations are asked for; callbacks,
//            strings and the watch belong to the traversal under way, which outlives its links.
#pragma once

#include <new>
#include <string>

#include <boost/shared_ptr.hpp>

#include "inmem/model/TInmemInstance.h"

namespace NORVHAV20 {

// Carries it past the enumerations of classes, which drop what their callback throws, that
// there was no memory: a traversal must not end in part of its answer.
class TMemoryWatch {
 public:
  // Calls `examine`, unless there was no memory before.
  template <class F>
  void Over(F&& examine) {
    if (m_out) return;
    try {
      examine();
    } catch (const std::bad_alloc&) {
      m_out = true;
    }
  }
  void ThrowWhenOut() const {
    if (m_out) throw std::bad_alloc();
  }

 private:
  bool m_out = false;
};

struct TReferencesCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;
  TMemoryWatch* memory;

  bool operator()(boost::shared_ptr<ICIMClass> candidate) const {
    memory->Over([&] { instance->ExamineCandidateClass(*callback, *role, *memory, candidate); });
    return true;
  }
};

struct TExamineInstanceCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  TMemoryWatch* memory;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    memory->Over([&] { instance->ExamineCandidateClassInstance(*callback, association); });
    return true;
  }
};

struct TExamineInstanceWithRoleCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;
  TMemoryWatch* memory;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    memory->Over(
        [&] { instance->ExamineCandidateClassInstanceWithRole(*callback, *role, association); });
    return true;
  }
};

struct TAssociatorsExamineCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* role;
  boost::shared_ptr<ICIMClass> resultClass;
  TMemoryWatch* memory;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    memory->Over([&] {
      instance->ExamineCandidate(*callback, resultClass, *role,
                                 boost::dynamic_pointer_cast<TInmemInstance>(association));
    });
    return true;
  }
};

struct TAssociatorsExamineWithResultRoleCallback {
  boost::shared_ptr<TInmemInstance> instance;
  const TInmemInstance::TCallback* callback;
  const std::string* resultRole;
  boost::shared_ptr<ICIMClass> resultClass;
  TMemoryWatch* memory;

  bool operator()(boost::shared_ptr<ICIMInstance> association) const {
    memory->Over([&] {
      instance->ExamineCandidateWithResultRole(
          *callback, resultClass, *resultRole,
          boost::dynamic_pointer_cast<TInmemInstance>(association));
    });
    return true;
  }
};

}  // namespace NORVHAV20

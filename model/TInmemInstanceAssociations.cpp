// Association traversal: which association instances refer to an instance (references), and
// which instances stand at their other ends (associators).
//
// A reference is matched by resolving it and comparing identity, never by its key values.

#include "havcore/ICIMClass.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMProperty.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"
#include "model/AssociationCallbacks.h"
#include "model/Snapshot.h"
#include "model/TInmemInstance.h"
#include "values/CimName.h"
#include "values/Failure.h"
#include "values/TInmemProperty.h"

namespace NORVHAV20 {

namespace {

// Calls `test`, for which a reference that does not resolve, or a property that is not there,
// means no. Any other status is thrown on.
template <class F>
bool TrueUnlessNotFound(F&& test) {
  try {
    return test();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw THAVException(failure.GetStatus());
    return false;
  }
}

boost::shared_ptr<ICIMElement> Resolve(const TCIMValue& value) {
  return static_cast<const TCIMReference&>(value).GetCIMElement(false);
}

std::vector<boost::shared_ptr<ICIMProperty>> SlotsOf(ICIMInstance& instance) {
  return Collect<ICIMProperty>(
      [&](const auto& take) { instance.EnumerateProperties(take, TOptions()); });
}

bool IsReferenceTo(const TCIMValue& value, const boost::shared_ptr<ICIMClass>& wanted) {
  if (!value.IsReference()) return false;
  const auto referenced = value.GetReferencedClass();
  return referenced && referenced->IsA(wanted, TOptions());
}

}  // namespace

bool TInmemInstance::IsReferredToBy(const TCIMValue& value) const {
  return value.IsReference() && Resolve(value).get() == this;
}

void TInmemInstance::EnumerateAssociationInstances(const TCallback& callback,
                                                   const std::string& resultClass,
                                                   const std::string& role, TOptions options) {
  m_class->EnumerateAssociationClasses(TReferencesCallback{Self(), &callback, &role}, resultClass,
                                       role, options);
}

bool TInmemInstance::ExamineCandidateClass(const TCallback& callback, const std::string& role,
                                           boost::shared_ptr<ICIMClass> candidate) {
  TCallback examine;
  if (role.empty())
    examine = TExamineInstanceCallback{Self(), &callback};
  else
    examine = TExamineInstanceWithRoleCallback{Self(), &callback, &role};
  candidate->EnumerateInstances(examine, false, TOptions());
  return true;
}

bool TInmemInstance::ExamineCandidateClassInstance(const TCallback& callback,
                                                   boost::shared_ptr<ICIMInstance> association) {
  for (const auto& slot : SlotsOf(*association)) {
    const bool refers =
        TrueUnlessNotFound([&] { return IsReferredToBy(slot->GetValue(TOptions())); });
    if (!refers) continue;
    callback(association);
    break;
  }
  return true;
}

bool TInmemInstance::ExamineCandidateClassInstanceWithRole(
    const TCallback& callback, const std::string& role,
    boost::shared_ptr<ICIMInstance> association) {
  const bool refers = TrueUnlessNotFound([&] {
    return IsReferredToBy(association->GetProperty(role, TOptions())->GetValue(TOptions()));
  });
  if (refers) callback(association);
  return true;
}

void TInmemInstance::EnumerateAssociatedInstances(const TCallback& callback,
                                                  const std::string& associationClass,
                                                  const std::string& resultClass,
                                                  const std::string& role,
                                                  const std::string& resultRole,
                                                  TOptions options) {
  boost::shared_ptr<ICIMClass> result;
  const bool known = TrueUnlessNotFound([&] {
    result = Require(m_class->GetNamespace(TOptions()))->GetClass(resultClass, TOptions());
    return result != nullptr;
  });
  if (!known) return;
  TCallback examine;
  if (resultRole.empty())
    examine = TAssociatorsExamineCallback{Self(), &callback, &role, result};
  else
    examine = TAssociatorsExamineWithResultRoleCallback{Self(), &callback, &resultRole, result};
  EnumerateAssociationInstances(examine, associationClass, std::string(), options);
}

bool TInmemInstance::IsSelfSlot(const TCIMValue& value) const {
  return value.GetReferencedClass() == m_class &&
         TrueUnlessNotFound([&] { return IsReferredToBy(value); });
}

// Walks the references of an association in the order of their names: one of them is this
// instance itself, and the first other one that passes is the result.
bool TInmemInstance::ExamineCandidate(const TCallback& callback,
                                      boost::shared_ptr<ICIMClass> resultClass,
                                      const std::string& role,
                                      boost::shared_ptr<TInmemInstance> association) {
  if (!association) return true;
  const CimName foldedRole(role);
  bool selfSeen = false;
  const TSlotTable& slots = *association->m_values;
  for (std::size_t i = 0; i < slots.Layout().Size(); ++i) {
    const TCIMValue value = association->SlotHandle(i).GetValue(TOptions());
    if (!value.IsReference()) continue;
    if (!selfSeen) {
      selfSeen = role.empty() ? IsSelfSlot(value) : slots.Layout()[i].name == foldedRole.Folded();
      if (selfSeen) continue;
    }
    if (!IsReferenceTo(value, resultClass)) continue;
    if (const auto found = boost::dynamic_pointer_cast<ICIMInstance>(Resolve(value)))
      return callback(found);
  }
  return true;
}

bool TInmemInstance::ExamineCandidateWithResultRole(
    const TCallback& callback, boost::shared_ptr<ICIMClass> resultClass,
    const std::string& resultRole, boost::shared_ptr<TInmemInstance> association) {
  if (!association) return true;
  const TCIMValue value =
      association->GetProperty(resultRole, TOptions())->GetValue(TOptions());
  if (!IsReferenceTo(value, resultClass)) return true;
  if (const auto found = boost::dynamic_pointer_cast<ICIMInstance>(Resolve(value)))
    callback(found);
  return true;
}

}  // namespace NORVHAV20

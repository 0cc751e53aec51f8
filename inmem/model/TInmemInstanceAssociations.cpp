// Association traversal: which association instances refer to an instance (references), and
// which instances stand at their other ends (associators).
//
// A reference is matched by resolving it and comparing identity, never by its key values.

#include "havcore/ICIMClass.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMProperty.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"
#include "inmem/model/AssociationCallbacks.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TLinkIndex.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

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

// The values of an instance's slots, in the order of their names. Of our own instances they
// are read where they stand.
template <class F>
void ForEachValue(ICIMInstance& instance, F&& visit) {
  if (const auto* own = TInmemInstance::Own(instance)) {
    for (std::size_t i = 0; i < own->SlotCount(); ++i)
      if (!visit([&]() -> TCIMValue { return own->SlotHandle(i).GetValue(TOptions()); })) return;
    return;
  }
  const auto slots = Collect<ICIMProperty>(
      [&](const auto& take) { instance.EnumerateProperties(take, TOptions()); });
  for (const auto& slot : slots)
    if (!visit([&]() -> TCIMValue { return slot->GetValue(TOptions()); })) return;
}

// Resolves the references of one association: by the index where one is current, else each by
// itself.
class TResolver {
 public:
  explicit TResolver(const TInmemInstance& association) {
    const auto* cls = TInmemClass::Own(*association.GetClass(TOptions()));
    m_index = cls ? cls->CurrentLinks() : nullptr;
    if (!m_index) return;
    const auto& stored = m_index->Associations();
    m_position = TInstanceStore::PlaceIn(stored, association);
    if (m_position == stored.size() || stored[m_position].get() != &association) m_index.reset();
  }

  boost::shared_ptr<ICIMElement> operator()(std::size_t slot, const TCIMValue& value) const {
    const TLinkIndex::TLink* link =
        m_index && m_index->IsCurrent()
            ? m_index->Find(static_cast<std::uint32_t>(m_position), slot)
            : nullptr;
    if (!link || link->kind == TLinkIndex::TLink::kNoInstance) return Resolve(value);
    if (link->kind == TLinkIndex::TLink::kNothing) Throw(kHAVNotFound);
    return link->target->shared_from_this();
  }

 private:
  boost::shared_ptr<const TLinkIndex> m_index;
  std::size_t m_position = 0;
};

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
  if (const auto* own = TInmemClass::Own(*candidate)) {
    if (!own->HasInstances()) return true;
    if (const auto links = own->Links(); links && !IsDerivedName(role))
      return ExamineLinks(callback, role, links);
  }
  candidate->EnumerateInstances(ExamineCallback(callback, role), false, TOptions());
  return true;
}

TInmemInstance::TCallback TInmemInstance::ExamineCallback(const TCallback& callback,
                                                          const std::string& role) {
  if (role.empty()) return TExamineInstanceCallback{Self(), &callback};
  return TExamineInstanceWithRoleCallback{Self(), &callback, &role};
}

// What examining one association after the other finds, from the index. It finds it for the
// model as it is: once a callback has changed that, the rest is examined as it comes.
bool TInmemInstance::ExamineLinks(const TCallback& callback, const std::string& role,
                                  const boost::shared_ptr<const TLinkIndex>& index) {
  const CimName foldedRole(role);
  const auto& associations = index->Associations();
  std::size_t next = 0;
  for (auto i = index->FirstTo(*this); i != TLinkIndex::kNone; i = (*index)[i].next) {
    const auto& link = (*index)[i];
    const auto& association = associations[link.position];
    if (link.position < next) continue;
    if (!role.empty() && Own(*association)->SlotName(link.slot) != foldedRole.Folded()) continue;
    next = link.position + 1;
    DropExceptions([&] { callback(association); });
    if (index->IsCurrent()) continue;
    const auto examine = ExamineCallback(callback, role);
    for (; next < associations.size(); ++next) DropExceptions([&] { examine(associations[next]); });
    break;
  }
  return true;
}

bool TInmemInstance::ExamineCandidateClassInstance(const TCallback& callback,
                                                   boost::shared_ptr<ICIMInstance> association) {
  ForEachValue(*association, [&](const auto& value) {
    if (!TrueUnlessNotFound([&] { return IsReferredToBy(value()); })) return true;
    callback(association);
    return false;
  });
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
                                                  const std::string& resultRole, TOptions options) {
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

// Walks the references of an association in the order of their names: one of them is this
// instance itself, and the first other one that passes is the result.
bool TInmemInstance::ExamineCandidate(const TCallback& callback,
                                      boost::shared_ptr<ICIMClass> resultClass,
                                      const std::string& role,
                                      boost::shared_ptr<TInmemInstance> association) {
  if (!association) return true;
  const CimName foldedRole(role);
  const TResolver resolve(*association);
  const auto isSelf = [&](std::size_t slot, const TCIMValue& value) {
    if (!role.empty()) return association->SlotName(slot) == foldedRole.Folded();
    return value.GetReferencedClass() == m_class &&
           TrueUnlessNotFound([&] { return resolve(slot, value).get() == this; });
  };
  bool selfSeen = false;
  for (std::size_t slot = 0; slot < association->SlotCount(); ++slot) {
    const TCIMValue value = association->SlotHandle(slot).GetValue(TOptions());
    if (!value.IsReference()) continue;
    if (!selfSeen && (selfSeen = isSelf(slot, value))) continue;
    if (!IsReferenceTo(value, resultClass)) continue;
    if (const auto found = boost::dynamic_pointer_cast<ICIMInstance>(resolve(slot, value)))
      return callback(found);
  }
  return true;
}

bool TInmemInstance::ExamineCandidateWithResultRole(const TCallback& callback,
                                                    boost::shared_ptr<ICIMClass> resultClass,
                                                    const std::string& resultRole,
                                                    boost::shared_ptr<TInmemInstance> association) {
  if (!association) return true;
  const TCIMValue value = association->ValueOf(resultRole);
  if (!IsReferenceTo(value, resultClass)) return true;
  const std::size_t slot = association->m_values->Layout().Find(CimName(resultRole));
  const auto element = TResolver(*association)(slot, value);
  if (const auto found = boost::dynamic_pointer_cast<ICIMInstance>(element)) callback(found);
  return true;
}

}  // namespace NORVHAV20

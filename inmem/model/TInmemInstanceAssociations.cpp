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

// Hands an instance to the caller's callback. What that throws concerns nobody else.
void Report(const TInmemInstance::TCallback& callback,
            const boost::shared_ptr<ICIMElement>& element) {
  if (const auto found = boost::dynamic_pointer_cast<ICIMInstance>(element))
    DropExceptions([&] { callback(found); });
}

// The index of the class that an instance is of, when there is one already.
TLinkIndex* CurrentLinksOf(const TInmemInstance& association) noexcept {
  const auto* cls = association.OwnClass();
  return cls ? cls->CurrentLinks() : nullptr;
}

// What examining an association does for the associators of an instance without a role, from
// what its index knows. False where that is not enough.
bool ReportOtherEnd(const TAssociatorsExamineCallback& examine, const TLinkIndex::TWalk& walk,
                    const TLinkIndex::TWalk::TCandidate& candidate) {
  return walk.ForEachOtherEnd(candidate, [&](const boost::shared_ptr<TInmemInstance>& end) {
    if (!end->OwnClass()->IsA(examine.resultClass, TOptions())) return true;
    DropExceptions([&] { (*examine.callback)(end); });
    return false;
  });
}

}  // namespace

bool TInmemInstance::IsReferredToBy(const TCIMValue& value) const {
  return value.IsReference() && Resolve(value).get() == this;
}

void TInmemInstance::EnumerateAssociationInstances(const TCallback& callback,
                                                   const std::string& resultClass,
                                                   const std::string& role, TOptions options) {
  TMemoryWatch memory;
  const TReferencesCallback examine{Self(), &callback, &role, &memory};
  const auto* own = TInmemClass::Own(*m_class);
  if (own && resultClass.empty() && role.empty())
    own->EnumeratePopulatedAssociations(examine);
  else
    m_class->EnumerateAssociationClasses(examine, resultClass, role, options);
  memory.ThrowWhenOut();
}

void TInmemInstance::ExamineCandidateClass(const TCallback& callback, const std::string& role,
                                           TMemoryWatch& memory,
                                           boost::shared_ptr<ICIMClass> candidate) {
  if (!candidate) return;
  if (const auto* own = TInmemClass::Own(*candidate)) {
    if (!own->HasInstances()) return;
    TLinkIndex* const links = m_strayed || IsDerivedName(role) ? nullptr : own->Links();
    if (links) return ExamineLinks(callback, role, memory, *links);
  }
  candidate->EnumerateInstances(ExamineCallback(callback, role, memory), false, TOptions());
}

TInmemInstance::TCallback TInmemInstance::ExamineCallback(const TCallback& callback,
                                                          const std::string& role,
                                                          TMemoryWatch& memory) {
  if (role.empty()) return TExamineInstanceCallback{Self(), &callback, &memory};
  return TExamineInstanceWithRoleCallback{Self(), &callback, &role, &memory};
}

// Finds what examining one association after the other finds, from those that the index offers.
// Once a callback has changed the model by more than that, the rest is examined as it comes.
void TInmemInstance::ExamineLinks(const TCallback& callback, const std::string& role,
                                  TMemoryWatch& memory, TLinkIndex& index) {
  const CimName foldedRole(role);
  TLinkIndex::TWalk walk(index, *this);
  // Associators ask for references in any role.
  const auto* const associators = callback.target<TAssociatorsExamineCallback>();
  const bool byEnds = associators && associators->role->empty();
  if (byEnds) walk.FetchEnds();
  const void* done = nullptr;  // found, or ended by what resolving threw
  for (const auto& candidate : walk.Candidates()) {
    if (candidate.entry == done) continue;
    DropExceptions([&] {
      memory.Over([&] {
        done = candidate.entry;
        const bool known = walk.IsKnown(candidate);
        if (known && byEnds && ReportOtherEnd(*associators, walk, candidate)) return;
        const auto association = TInstanceStore::InstanceOf(*candidate.entry);
        if (candidate.slot == TLinkIndex::TWalk::kEvery)
          return ExamineAssociation(callback, role, association);
        const auto& own = static_cast<TInmemInstance&>(*association);
        const bool inRole = role.empty() || own.SlotName(candidate.slot) == foldedRole.Folded();
        if (!inRole || !(known || IsReferredToBySlot(own, candidate.slot))) {
          done = nullptr;
          return;
        }
        if (!known) walk.Found(candidate);
        DropExceptions([&] { callback(association); });
      });
    });
    if (walk.IsCurrent()) continue;
    for (const auto& next : walk.After(candidate))
      DropExceptions([&] { memory.Over([&] { ExamineAssociation(callback, role, next); }); });
    return;
  }
}

bool TInmemInstance::IsReferredToBySlot(const TInmemInstance& association, std::size_t slot) const {
  return TrueUnlessNotFound(
      [&] { return IsReferredToBy(association.SlotHandle(slot).GetValue(TOptions())); });
}

void TInmemInstance::ExamineAssociation(const TCallback& callback, const std::string& role,
                                        const boost::shared_ptr<ICIMInstance>& association) {
  if (role.empty())
    ExamineCandidateClassInstance(callback, association);
  else
    ExamineCandidateClassInstanceWithRole(callback, role, association);
}

// Where a reference of an association leads: to what an index knows, or to what resolving says.
boost::shared_ptr<ICIMElement> TInmemInstance::End(const TInmemInstance& association,
                                                   std::size_t slot, const TCIMValue& value) {
  if (const auto* links = CurrentLinksOf(association))
    if (auto known = links->KnownEnd(association.Values(), slot)) return known;
  auto end = Resolve(value);
  // Whoever was asked may have changed everything.
  auto* const links = CurrentLinksOf(association);
  if (const auto* own = links ? dynamic_cast<const TInmemInstance*>(end.get()) : nullptr)
    DropExceptions([&] { links->Know(association.Values(), slot, value, *own); });
  return end;
}

const TInmemClass* TInmemInstance::OwnClass() const noexcept { return TInmemClass::Own(*m_class); }

std::uint64_t TInmemInstance::Moves() const noexcept {
  const auto* own = OwnClass();
  return (own ? own->Moves() : 0) + m_strayed;
}

void TInmemInstance::ExamineCandidateClassInstance(const TCallback& callback,
                                                   boost::shared_ptr<ICIMInstance> association) {
  if (!association) return;
  ForEachValue(*association, [&](const auto& value) {
    if (!TrueUnlessNotFound([&] { return IsReferredToBy(value()); })) return true;
    DropExceptions([&] { callback(association); });
    return false;
  });
}

void TInmemInstance::ExamineCandidateClassInstanceWithRole(
    const TCallback& callback, const std::string& role,
    boost::shared_ptr<ICIMInstance> association) {
  if (!association) return;
  const bool refers = TrueUnlessNotFound([&] {
    const auto slot = Require(association->GetProperty(role, TOptions()));
    const TCIMValue value = slot->GetValue(TOptions());
    return IsReferredToBy(value);
  });
  if (refers) DropExceptions([&] { callback(association); });
}

void TInmemInstance::EnumerateAssociatedInstances(const TCallback& callback,
                                                  const std::string& associationClass,
                                                  const std::string& resultClass,
                                                  const std::string& role,
                                                  const std::string& resultRole, TOptions options) {
  const auto self = Self();
  boost::shared_ptr<ICIMClass> result;
  const bool known = TrueUnlessNotFound([&] {
    result = Require(m_class->GetNamespace(TOptions()))->GetClass(resultClass, TOptions());
    return result != nullptr;
  });
  if (!known) return;
  TMemoryWatch memory;
  TCallback examine;
  if (resultRole.empty())
    examine = TAssociatorsExamineCallback{self, &callback, &role, result, &memory};
  else
    examine =
        TAssociatorsExamineWithResultRoleCallback{self, &callback, &resultRole, result, &memory};
  EnumerateAssociationInstances(examine, associationClass, std::string(), options);
  memory.ThrowWhenOut();
}

// Walks the references of an association in the order of their names: one of them is this
// instance itself, and the first other one whose class passes is the result, or ends the search
// when no instance is there.
void TInmemInstance::ExamineCandidate(const TCallback& callback,
                                      boost::shared_ptr<ICIMClass> resultClass,
                                      const std::string& role,
                                      boost::shared_ptr<TInmemInstance> association) {
  if (!association) return;
  const CimName foldedRole(role);
  bool selfSeen = false;
  for (std::size_t slot = 0; slot < association->SlotCount(); ++slot) {
    const TCIMValue value = association->SlotHandle(slot).GetValue(TOptions());
    if (!value.IsReference()) continue;
    const auto referenced = value.GetReferencedClass();
    const auto isSelf = [&] {
      if (!role.empty()) return association->SlotName(slot) == foldedRole.Folded();
      return referenced == m_class &&
             TrueUnlessNotFound([&] { return End(*association, slot, value).get() == this; });
    };
    if (!selfSeen && (selfSeen = isSelf())) continue;
    if (referenced && referenced->IsA(resultClass, TOptions()))
      return Report(callback, End(*association, slot, value));
  }
}

void TInmemInstance::ExamineCandidateWithResultRole(const TCallback& callback,
                                                    boost::shared_ptr<ICIMClass> resultClass,
                                                    const std::string& resultRole,
                                                    boost::shared_ptr<TInmemInstance> association) {
  if (!association) return;
  const TCIMValue value = association->ValueOf(resultRole);
  if (!value.IsReference()) return;
  const auto referenced = value.GetReferencedClass();
  if (!referenced || !referenced->IsA(resultClass, TOptions())) return;
  const std::size_t slot = association->m_values->Layout().Find(CimName(resultRole));
  Report(callback, End(*association, slot, value));
}

}  // namespace NORVHAV20

// Which association classes refer to a class, and which classes stand at their other ends.

#include <algorithm>
#include <list>
#include <utility>

#include "havcore/ICIMNamespace.h"
#include "havcore/THAVException.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

namespace {

using TClasses = TInmemClass::TClasses;

// One reference of an association class.
struct TEnd {
  std::string role;
  boost::shared_ptr<ICIMClass> referenced;

  bool Plays(std::string_view foldedRole) const { return foldedRole.empty() || role == foldedRole; }
};

// The references of an association class whose class is there.
std::vector<TEnd> EndsOf(const ICIMClass& association) {
  std::vector<TEnd> ends;
  const auto references = Collect<ICIMPropertyDecl>(
      [&](const auto& take) { association.EnumerateReferenceDecls(take, TOptions()); });
  for (const auto& decl : references)
    if (auto cls = decl->GetDefaultValue(TOptions()).GetReferencedClass())
      ends.push_back({NormalizeCimName(decl->GetName(TOptions())), std::move(cls)});
  return ends;
}

// Whether `end` can refer to instances of `cls` in the role asked for.
bool CanReferTo(const TEnd& end, const ICIMClass& cls, std::string_view foldedRole) {
  return end.Plays(foldedRole) && cls.IsA(end.referenced, TOptions());
}

}  // namespace

// Returns the class of a filter, empty when the namespace has none of that name.
boost::shared_ptr<ICIMClass> TInmemClass::FindClass(const std::string& name) const {
  try {
    return Require(GetNamespace(TOptions()))->GetClass(name, TOptions());
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return {};
  }
}

TInmemClass::TClasses TInmemClass::AssociationClasses(const std::string& resultClass,
                                                      const std::string& role) const {
  boost::shared_ptr<ICIMClass> wanted;
  if (!resultClass.empty() && !(wanted = FindClass(resultClass))) return {};
  const CimName foldedRole(role);
  const auto matches = [&](const ICIMClass& association) {
    if (wanted && !association.IsA(wanted, TOptions())) return false;
    if (role.empty()) return true;
    const auto ends = EndsOf(association);
    return std::any_of(ends.begin(), ends.end(),
                       [&](const TEnd& end) { return CanReferTo(end, *this, foldedRole); });
  };
  TClassSet associations;
  const auto take = [&](const TClasses& level) {
    for (const auto& association : level)
      if (matches(*association)) associations.Add(association);
  };
  take(m_associations.All());
  auto ancestor = m_superclass.lock();
  while (const auto* own = dynamic_cast<const TInmemClass*>(ancestor.get())) {
    take(own->m_associations.All());
    ancestor = own->m_superclass.lock();
  }
  // An ancestor of another kind answers for itself and for all above it.
  if (ancestor)
    take(Collect<ICIMClass>([&](const auto& collect) {
      ancestor->EnumerateAssociationClasses(collect, "", "", TOptions());
    }));
  return associations.All();
}

void TInmemClass::EnumeratePopulatedAssociations(const TEnumCallback<ICIMClass>& callback) const {
  // The class and its ancestors; of the sets, a walk over each that is not empty. The set of
  // an ancestor of another kind stays until its walk has ended.
  TClassSet foreign;
  std::list<TClassSet::TWalk> walks;
  const auto begin = [&](const TInmemClass& cls) {
    if (cls.m_associations.Size() != 0) walks.emplace_back(cls.m_associations);
  };
  begin(*this);
  auto ancestor = m_superclass.lock();
  while (const auto* own = dynamic_cast<const TInmemClass*>(ancestor.get())) {
    begin(*own);
    ancestor = own->m_superclass.lock();
  }
  // Such an ancestor answers for itself and for all above it.
  if (ancestor) {
    for (auto& walk : walks) walk.Prepare();
    for (const auto& cls : Collect<ICIMClass>([&](const auto& collect) {
           ancestor->EnumerateAssociationClasses(collect, "", "", TOptions());
         }))
      foreign.Add(cls);
    walks.emplace_back(foreign);
  }
  for (auto walk = walks.begin(); walk != walks.end(); ++walk) {
    while (const ICIMClass* cls = walk->Next()) {
      if (const auto* own = Own(*cls); own && !own->HasInstances()) continue;
      if (std::any_of(walks.begin(), walk, [&](const auto& w) { return w.Covers(cls); })) continue;
      for (auto& each : walks) each.Prepare();
      const auto association = walk->Current();
      DropExceptions([&] { callback(association); });
    }
  }
}

void TInmemClass::EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                              const std::string& resultClass,
                                              const std::string& role, TOptions) const {
  for (const auto& association : AssociationClasses(resultClass, role))
    DropExceptions([&] { callback(association); });
}

void TInmemClass::EnumerateAssociatedClasses(const TEnumCallback<ICIMClass>& callback,
                                             const std::string& associationClass,
                                             const std::string& resultClass,
                                             const std::string& role, const std::string& resultRole,
                                             TOptions) const {
  boost::shared_ptr<ICIMClass> wanted;
  if (!resultClass.empty() && !(wanted = FindClass(resultClass))) return;
  const CimName foldedRole(role);
  const CimName foldedResultRole(resultRole);
  TClassSet associated;
  for (const auto& association : AssociationClasses(associationClass, role)) {
    const auto ends = EndsOf(*association);
    for (const TEnd& end : ends) {
      if (!CanReferTo(end, *this, foldedRole)) continue;
      for (const TEnd& other : ends)
        if (&other != &end && other.Plays(foldedResultRole) &&
            (!wanted || other.referenced->IsA(wanted, TOptions())))
          associated.Add(other.referenced);
    }
  }
  for (const auto& cls : associated.All()) DropExceptions([&] { callback(cls); });
}

}  // namespace NORVHAV20

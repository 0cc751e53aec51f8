// How a class enters its namespace and leaves it: validation, the links to superclass and
// referenced classes, and taking the place of the class that had the name before.

#include <algorithm>
#include <utility>

#include "havcore/ICIMNamespace.h"
#include "havcore/THAVException.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

namespace {

using TClasses = TInmemClass::TClasses;

bool Contains(const TClasses& classes, const ICIMClass* cls) {
  return std::any_of(classes.begin(), classes.end(),
                     [&](const auto& entry) { return entry.get() == cls; });
}

}  // namespace

// Everything that entering the namespace will change, computed before anything does.
struct TInmemClass::TLinks {
  boost::shared_ptr<TInmemClass> displaced;
  boost::shared_ptr<ICIMClass> superclass;
  TClasses referenced;
  // For the association set, when there is one to take over.
  TClassSet associations;
  std::vector<boost::weak_ptr<ICIMClass>> registeredWith;
  // What was not linked before, and so far is.
  bool joinedSuperclass = false;
  TClasses joined;

  void Make(const boost::shared_ptr<TInmemClass>& self) {
    joined.reserve(referenced.size());
    if (superclass && !HasSubclass(*superclass, *self)) {
      superclass->AddSubclass(self, TOptions());
      joinedSuperclass = true;
    }
    for (const auto& cls : referenced) {
      const bool known = HasAssociation(*cls, *self);
      if (known && Own(*cls)) continue;
      cls->AddAssociation(self, TOptions());
      if (!known) joined.push_back(cls);
    }
    if (!displaced) return;
    // Last, for a class that refers to itself has now registered with one of these two.
    for (const TInmemClass* cls : {self.get(), displaced.get()})
      for (const auto& association : cls->m_associations.All()) associations.Add(association);
  }

  void Undo(const boost::shared_ptr<TInmemClass>& self) noexcept {
    for (const auto& cls : joined)
      DropExceptions([&] { cls->RemoveAssociation(self, TOptions()); });
    if (joinedSuperclass) DropExceptions([&] { superclass->RemoveSubclass(self, TOptions()); });
  }

 private:
  // A class of another make is asked, and names what its ancestors have, too.
  static bool HasSubclass(const ICIMClass& cls, const TInmemClass& self) {
    if (const auto* own = Own(cls)) return own->m_subclasses.Contains(&self);
    return self.m_inNamespace && Contains(Collect<ICIMClass>([&](const auto& take) {
                                            cls.EnumerateSubclasses(take, TOptions());
                                          }),
                                          &self);
  }
  static bool HasAssociation(const ICIMClass& cls, const TInmemClass& self) {
    if (const auto* own = Own(cls)) return own->m_associations.Contains(&self);
    return self.m_inNamespace &&
           Contains(Collect<ICIMClass>([&](const auto& take) {
                      cls.EnumerateAssociationClasses(take, "", "", TOptions());
                    }),
                    &self);
  }
};

void TInmemClass::Validate(TOptions) const {
  const auto self = Self();
  if (IsAbstract(TOptions()) || HasKey()) return;
  LogError("Inmem: Class " + m_name + " has no keys");
}

void TInmemClass::AddToNamespace(TOptions) {
  const auto self = Self();
  Validate(TOptions());
  const auto registry = Require(m_home.Registry());
  auto admission = registry->AdmitClass(self);
  while (admission.admitted) {
    TLinks links;
    PlanLinks(links, admission.displaced);
    try {
      links.Make(self);
      // Another class may have taken the name while one of a host's was called.
      admission = registry->AdmitClass(self);
      if (admission.admitted && admission.displaced == links.displaced) {
        registry->AddClass(self);
        return Commit(links);
      }
    } catch (...) {
      links.Undo(self);
      throw;
    }
    links.Undo(self);
  }
}

void TInmemClass::PlanLinks(TLinks& links, const boost::shared_ptr<TInmemClass>& displaced) const {
  links.displaced = displaced;
  links.superclass = displaced ? displaced->GetSuperClass(TOptions()) : GetSuperClass(TOptions());
  // A superclass is there before the class is made, so only a change of superclass can close
  // a circle.
  if (displaced) RefuseCycle(*displaced, links.superclass.get());
  if (IsAssociation(TOptions())) links.referenced = ClassesToRegisterWith();
  links.registeredWith.assign(links.referenced.begin(), links.referenced.end());
}

// The class of each reference, each once; but not one that is, or derives from, another of
// them: whoever asks it for its associations asks its superclasses too.
TInmemClass::TClasses TInmemClass::ClassesToRegisterWith() const {
  TClasses referenced;
  for (const auto& decl : ReferenceDecls()) {
    const auto cls = decl->GetDefaultValue(TOptions()).GetReferencedClass();
    if (cls && !Contains(referenced, cls.get())) referenced.push_back(cls);
  }
  TClasses chosen;
  for (std::size_t i = 0; i < referenced.size(); ++i) {
    const auto covers = [&](std::size_t j) {
      return referenced[i]->IsA(referenced[j], TOptions()) &&
             (j < i || !referenced[j]->IsA(referenced[i], TOptions()));
    };
    bool covered = false;
    for (std::size_t j = 0; j < referenced.size() && !covered; ++j) covered = covers(j);
    if (!covered) chosen.push_back(referenced[i]);
  }
  return chosen;
}

// This class is about to take over subclasses and superclass of the displaced one. Neither may the
// way up come back to it, nor the way down, which are two where subclasses were listed by hand.
void TInmemClass::RefuseCycle(const TInmemClass& displaced, ICIMClass* superclass) const {
  boost::shared_ptr<ICIMClass> above;
  for (const ICIMClass* cls = superclass; cls; cls = above.get()) {
    if (IsWithin(*cls, displaced)) Throw(kHAVAlreadyDefined);
    above = cls->GetSuperClass(TOptions());
  }
  const auto* own = dynamic_cast<const TInmemClass*>(superclass);
  const bool listed = !own || own->m_subclasses.Contains(&displaced);
  if (displaced.Reaches(*this) || (!listed && displaced.Reaches(*own))) Throw(kHAVAlreadyDefined);
}

// Whether `cls` is this class or one that it takes over. A class of another make may stand for one
// of them: its name tells.
bool TInmemClass::IsWithin(const ICIMClass& cls, const TInmemClass& displaced) const {
  if (Own(cls)) return &cls == this || displaced.m_subclasses.Contains(&cls);
  const std::string& name = cls.GetName(TOptions());
  if (name == m_name) return true;
  const auto taken = displaced.m_subclasses.All();
  return std::any_of(taken.begin(), taken.end(),
                     [&](const auto& each) { return each->GetName(TOptions()) == name; });
}

void TInmemClass::Commit(TLinks& links) noexcept {
  m_registeredWith.swap(links.registeredWith);
  // What this class registered with when it was added before, and no longer refers to.
  auto& before = links.registeredWith;
  before.erase(
      std::remove_if(before.begin(), before.end(),
                     [&](const auto& cls) { return Contains(links.referenced, cls.lock().get()); }),
      before.end());
  LeaveAssociationSets(before);
  m_inNamespace = true;
  if (links.displaced) TakeOver(*links.displaced, links.associations);
}

// The new class stands where the displaced one stood. The displaced one's instances go with
// it: nothing but its holder could reach them any more.
void TInmemClass::TakeOver(TInmemClass& displaced, TClassSet& associations) noexcept {
  const auto self = Self();
  const auto superclass = displaced.m_superclass.lock();
  if (superclass) DropExceptions([&] { superclass->RemoveSubclass(displaced.Self(), TOptions()); });
  m_superclass = displaced.m_superclass;
  m_subclasses.Swap(displaced.m_subclasses);
  ReleaseOneByOne(displaced.m_subclasses);
  for (TClassSet::TWalk taken(m_subclasses); ICIMClass* subclass = taken.Next();)
    if (auto* cls = dynamic_cast<TInmemClass*>(subclass)) cls->m_superclass = self;
  m_associations.Swap(associations);
  for (TClassSet::TWalk taken(m_associations); ICIMClass* association = taken.Next();)
    if (auto* cls = dynamic_cast<TInmemClass*>(association))
      for (auto& entry : cls->m_registeredWith)
        if (entry.lock().get() == &displaced) entry = self;
  displaced.m_inNamespace = false;
  displaced.LeaveAssociationSets(displaced.m_registeredWith);
  displaced.BreakCircles();
}

void TInmemClass::LeaveAssociationSets(std::vector<boost::weak_ptr<ICIMClass>>& classes) noexcept {
  std::vector<boost::weak_ptr<ICIMClass>> left;
  left.swap(classes);
  for (const auto& entry : left)
    if (const auto cls = entry.lock())
      DropExceptions([&] { cls->RemoveAssociation(Self(), TOptions()); });
}

void TInmemClass::Delete(TOptions) {
  const bool referredTo = m_associations.Size() > (m_associations.Contains(this) ? 1u : 0u);
  if (!m_inNamespace || referredTo || m_subclasses.Size() != 0) Throw(kHAVClassInUse);
  const auto self = Self();
  Require(m_home.Registry())->RemoveClass(self);
  if (const auto superclass = m_superclass.lock()) superclass->RemoveSubclass(self, TOptions());
  m_inNamespace = false;
  LeaveAssociationSets(m_registeredWith);
}

void TInmemClass::AddSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions) {
  Require(subclass);
  if (m_subclasses.Contains(subclass.get())) return;
  auto* own = dynamic_cast<TInmemClass*>(subclass.get());
  if (subclass.get() == this || (own && own->Reaches(*this))) Throw(kHAVAlreadyDefined);
  m_subclasses.Add(subclass);
  if (own) ++own->m_listings;
}

void TInmemClass::RemoveSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions) {
  auto* own = dynamic_cast<TInmemClass*>(Require(subclass).get());
  if (m_subclasses.Remove(subclass.get()) && own) --own->m_listings;
}

// Whether a walk down the subclass lists comes to `cls`. A list never leads back to where the
// walk has been, because AddSubclass refuses that, so the walk ends. It need not begin for a
// class that is in no list, as none is that is registered before its superclass.
bool TInmemClass::Reaches(const TInmemClass& cls) const {
  if (cls.m_listings == 0) return false;
  std::vector<const TInmemClass*> open{this};
  while (!open.empty()) {
    const auto* current = open.back();
    open.pop_back();
    TClassSet::TWalk subclasses(current->m_subclasses);
    while (const ICIMClass* subclass = subclasses.Next()) {
      if (subclass == &cls) return true;
      if (const auto* own = dynamic_cast<const TInmemClass*>(subclass)) open.push_back(own);
    }
  }
  return false;
}

void TInmemClass::AddAssociation(boost::shared_ptr<ICIMClass> association, TOptions) {
  Require(association);
  Require(m_home.Census());
  m_associations.Add(association);
}

void TInmemClass::RemoveAssociation(boost::shared_ptr<ICIMClass> association, TOptions) {
  if (!m_associations.Remove(Require(association).get())) Throw(kHAVNotFound);
}

void TInmemClass::BreakCircles() noexcept {
  ClearInstances();
  ReleaseOneByOne(m_associations);
}

}  // namespace NORVHAV20

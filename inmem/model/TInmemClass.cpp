#include "inmem/model/TInmemClass.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMQualifier.h"
#include "inmem/model/QualifierQueries.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemMethodDecl.h"
#include "inmem/model/TInmemPropertyDecl.h"
#include "inmem/model/TInmemQualifier.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"
#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

namespace {

// The declarations of a table, for a walk.
template <class Decl>
std::vector<boost::shared_ptr<Decl>> DeclsOf(const TDeclTable<Decl>& table) {
  std::vector<boost::shared_ptr<Decl>> decls;
  decls.reserve(table.Size());
  table.ForEach([&](const auto& entry) {
    decls.push_back(entry.decl);
    return true;
  });
  return decls;
}

template <class Decl>
boost::shared_ptr<Decl> FindDecl(const TDeclTable<Decl>& table, const std::string& name) {
  auto found = table.Find(CimName(name).Folded());
  if (!found) Throw(kHAVNotFound);
  return found;
}

constexpr std::uint64_t kNoNumber = 0;

std::uint64_t NewNumber() noexcept {
  static std::atomic<std::uint64_t> last{kNoNumber};
  return ++last;
}

template <class Decls, class Callback>
void EnumerateDecls(const Decls& decls, const Callback& callback) {
  for (const auto& decl : decls) DropExceptions([&] { callback(decl); });
}

}  // namespace

TInmemClass::TInmemClass(const TNamespaceLink& home, const std::string& name,
                         const boost::shared_ptr<ICIMClass>& superclass)
    : m_home(home),
      m_paths(&Require(home.Census())->Paths()),
      m_number(NewNumber()),
      m_name(name),
      m_superclass(superclass) {}

TInmemClass::~TInmemClass() {
  ReleaseOneByOne(m_subclasses);
  ReleaseOneByOne(m_associations);
}

// Destroying a class releases its subclasses, theirs release their own, and a deep hierarchy
// would go down the stack with them: so the lists of those about to go are taken over first.
void TInmemClass::ReleaseOneByOne(TClassSet& set) noexcept {
  TClasses classes = set.TakeAll();
  while (!classes.empty()) {
    const auto last = std::move(classes.back());
    classes.pop_back();
    auto* cls = last.use_count() == 1 ? dynamic_cast<TInmemClass*>(last.get()) : nullptr;
    if (!cls) continue;
    for (TClassSet* list : {&cls->m_subclasses, &cls->m_associations}) {
      try {
        for (auto& next : list->TakeAll())
          if (next) classes.push_back(std::move(next));
      } catch (const std::bad_alloc&) {
        // Then it does go down the stack.
      }
    }
  }
}

boost::shared_ptr<TInmemClass> TInmemClass::Self() const {
  return boost::const_pointer_cast<TInmemClass>(shared_from_this());
}

// What a class's table holds after set-up: what the superclass has to pass on, under what the
// class declared itself.
template <class Decl, class Enumerate>
TDeclTable<Decl> TInmemClass::Inherited(const ICIMClass& superclass,
                                        TDeclTable<Decl> TInmemClass::*table,
                                        const Enumerate& enumerate) const {
  using TEntry = typename TDeclTable<Decl>::TEntry;
  TDeclTable<Decl> inherited;
  if (const auto* own = Own(superclass)) {
    inherited = own->*table;
  } else {
    for (const auto& decl : Collect<Decl>(enumerate)) {
      std::string name = NormalizeCimName(decl->GetName(TOptions()));
      if (!inherited.Find(name)) inherited.Set(new TEntry(std::move(name), decl, kNoNumber));
    }
  }
  TDeclTable<Decl>(this->*table).ForEach([&](const TEntry& entry) {
    if (entry.declaredBy == m_number) inherited.Set(&entry);
    return true;
  });
  return inherited;
}

void TInmemClass::SetUpInheritance() {
  const auto superclass = m_superclass.lock();
  if (!superclass) return;
  auto properties = Inherited(*superclass, &TInmemClass::m_properties, [&](const auto& take) {
    superclass->EnumeratePropertyDecls(take, TOptions());
  });
  auto methods = Inherited(*superclass, &TInmemClass::m_methods, [&](const auto& take) {
    superclass->EnumerateMethodDecls(take, TOptions());
  });
  auto qualifiers = PropagatedQualifiers(*superclass);
  m_properties.Swap(properties);
  properties.ForEach([&](const auto& entry) {
    const auto now = m_properties.Find(entry.name);
    NoteSpelling(*entry.decl, now.get());
    return true;
  });
  m_methods.Swap(methods);
  m_qualifiers.Swap(qualifiers);
  PropertiesChanged();
}

TQualifierTable::TMap TInmemClass::PropagatedQualifiers(ICIMClass& superclass) {
  TQualifierTable::TMap qualifiers;
  for (const auto& entry : TQualifierTable::TMap(m_qualifiers.Entries()))
    if (!entry.second->IsPropagated(TOptions())) qualifiers.insert(entry);
  const auto sources = Collect<ICIMQualifier>(
      [&](const auto& take) { superclass.EnumerateQualifiers(take, TOptions()); });
  for (const auto& source : sources) {
    std::string name = NormalizeCimName(source->GetName(TOptions()));
    const bool toSubclass =
        (source->GetFlavor(TOptions()) & ICIMQualifierDecl::kFlavorToSubclass) != 0;
    if (name == "abstract" || !toSubclass || qualifiers.count(name) != 0) continue;
    const auto copy = boost::make_shared<TInmemQualifier>(Self(), *source);
    copy->MarkPropagated();
    qualifiers.emplace(std::move(name), copy);
  }
  return qualifiers;
}

bool TInmemClass::HasTrueQualifier(std::string_view folded) const {
  const auto qualifier = m_qualifiers.FindFolded(folded);
  if (!qualifier) return false;
  const TCIMValue& value = qualifier->GetValue(TOptions());
  return !value.IsNull() && static_cast<bool>(value);
}

TInmemClass::TPropertyDecls TInmemClass::PropertyDecls() const { return DeclsOf(m_properties); }

TInmemClass::TPropertyDecls TInmemClass::ReferenceDecls() const {
  TPropertyDecls decls = PropertyDecls();
  decls.erase(
      std::remove_if(decls.begin(), decls.end(),
                     [](const auto& decl) { return decl->GetType(TOptions()) != kCIMReference; }),
      decls.end());
  return decls;
}

boost::intrusive_ptr<const TSlotDeclarations> TInmemClass::SlotDeclarations() const {
  if (!m_slotDeclarations) {
    std::vector<TSlotDeclarations::TNamed> named;
    named.reserve(m_properties.Size());
    m_properties.ForEach([&](const auto& entry) {
      named.emplace_back(entry.name, entry.decl);
      return true;
    });
    m_slotDeclarations.reset(new TSlotDeclarations(std::move(named)));
  }
  return m_slotDeclarations;
}

void TInmemClass::ModifyInstance(boost::shared_ptr<ICIMInstance>, TOptions) {}

const std::string& TInmemClass::GetName(TOptions) const { return m_name; }

boost::shared_ptr<ICIMNamespace> TInmemClass::GetNamespace(TOptions) const {
  return m_home.Namespace();
}

bool TInmemClass::IsAssociation(TOptions) const { return HasTrueQualifier("association"); }

bool TInmemClass::IsAbstract(TOptions) const { return HasTrueQualifier("abstract"); }

bool TInmemClass::IsIndication(TOptions) const { return HasTrueQualifier("indication"); }

boost::shared_ptr<ICIMClass> TInmemClass::GetSuperClass(TOptions) const {
  return m_superclass.lock();
}

void TInmemClass::EnumerateSubclasses(const TEnumCallback<ICIMClass>& callback, TOptions) const {
  for (const auto& subclass : m_subclasses.All()) DropExceptions([&] { callback(subclass); });
}

bool TInmemClass::IsA(boost::shared_ptr<ICIMClass> other, TOptions) const {
  const auto self = Self();
  const std::string& wanted = Require(other)->GetName(TOptions());
  if (m_name == wanted) return true;
  for (auto cls = m_superclass.lock(); cls; cls = cls->GetSuperClass(TOptions()))
    if (cls->GetName(TOptions()) == wanted) return true;
  return false;
}

// In a deep hierarchy the key is often that of a class far above, which the class above knows.
bool TInmemClass::HasKey() const {
  const auto isKeyHere = [this](ICIMPropertyDecl* decl) {
    return decl && TInmemPropertyDecl::Own(*decl) && IsKey(*decl) &&
           m_properties.Find(CimName(decl->GetName(TOptions())).Folded()).get() == decl;
  };
  const auto superclass = m_superclass.lock();
  const auto* above = superclass ? Own(*superclass) : nullptr;
  auto key = above ? above->m_someKey.lock() : boost::shared_ptr<ICIMPropertyDecl>();
  if (!isKeyHere(key.get())) {
    const auto decls = PropertyDecls();
    const auto found =
        std::find_if(decls.begin(), decls.end(), [](const auto& decl) { return IsKey(*decl); });
    if (found == decls.end()) return false;
    key = *found;
  }
  m_someKey = key;
  return true;
}

void TInmemClass::EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                                    TOptions) const {
  const auto keys = KeyDecls();
  for (const auto& decl : *keys) callback(&decl->GetName(TOptions()));
}

boost::shared_ptr<const TInmemClass::TPropertyDecls> TInmemClass::KeyDecls() const {
  const std::uint64_t qualifiers = ModelClock::Qualifiers();
  if (m_keyDecls && m_keyDeclsQualifiers == qualifiers) return m_keyDecls;
  const auto self = Self();
  auto keys = boost::make_shared<TPropertyDecls>();
  bool own = true;
  for (const auto& decl : PropertyDecls()) {
    if (IsKey(*decl)) keys->push_back(decl);
    own = own && IsAnswerOurs(*decl);
  }
  // The answer of a declaration or qualifier of another make may change unseen.
  m_keyDecls = own ? keys : nullptr;
  m_keyDeclsQualifiers = qualifiers;
  return keys;
}

boost::shared_ptr<const TInmemClass::TPropertyDecls> TInmemClass::KnownKeys() const {
  KeyDecls();
  return m_keyDecls;
}

// The names of keys in paths are spelt as their declarations are. One that is gone may come
// back, spelt otherwise.
void TInmemClass::NoteSpelling(const ICIMPropertyDecl& before, const ICIMPropertyDecl* now) {
  if (now && now->GetName(TOptions()) == before.GetName(TOptions())) return;
  m_lostNames = true;
  m_paths->Turn();
}

bool TInmemClass::IsPredictable() const noexcept {
  for (auto above = m_superclass.lock(); above;) {
    const auto* own = Own(*above);
    if (!own) return false;
    above = own->m_superclass.lock();
  }
  return !m_lostNames && !m_hadStrangers && m_properties.ForEach([](const auto& entry) {
    return TInmemPropertyDecl::Own(*entry.decl) != nullptr;
  });
}

void TInmemClass::PropertiesChanged() noexcept {
  m_slotDeclarations.reset();
  m_keyDecls.reset();
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::AllocatePropertyDecl(const std::string& name,
                                                                      const TCIMValue& defaultValue,
                                                                      TOptions) {
  return boost::make_shared<TInmemPropertyDecl>(Self(), name, defaultValue);
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::GetPropertyDecl(const std::string& name,
                                                                 TOptions) const {
  return FindDecl(m_properties, name);
}

void TInmemClass::EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                         TOptions) const {
  EnumerateDecls(PropertyDecls(), callback);
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::AllocateReferenceDecl(
    const std::string& name, boost::shared_ptr<ICIMClass> referenced, TOptions) {
  return boost::make_shared<TInmemPropertyDecl>(Self(), name, NullReferenceTo(Require(referenced)));
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::GetReferenceDecl(const std::string& name,
                                                                  TOptions) const {
  auto decl = FindDecl(m_properties, name);
  if (decl->GetType(TOptions()) != kCIMReference) Throw(kHAVNotFound);
  return decl;
}

void TInmemClass::EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                          TOptions) const {
  EnumerateDecls(ReferenceDecls(), callback);
}

boost::shared_ptr<ICIMMethodDecl> TInmemClass::AllocateMethodDecl(const std::string& name,
                                                                  TCIMValue::TCIMType returnType,
                                                                  TOptions) {
  return boost::make_shared<TInmemMethodDecl>(Self(), name, returnType);
}

boost::shared_ptr<ICIMMethodDecl> TInmemClass::GetMethodDecl(const std::string& name,
                                                             TOptions) const {
  return FindDecl(m_methods, name);
}

void TInmemClass::EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>& callback,
                                       TOptions) const {
  EnumerateDecls(DeclsOf(m_methods), callback);
}

TCIMValue TInmemClass::InvokeMethod(const std::string&, std::map<std::string, TCIMValue>&,
                                    TOptions) {
  return TCIMValue();
}

bool TInmemClass::operator==(const ICIMClass& other) const {
  const auto self = Self();
  return m_name == other.GetName(TOptions());
}

bool TInmemClass::operator<(const ICIMClass& other) const {
  const auto self = Self();
  return m_name < other.GetName(TOptions());
}

bool TInmemClass::IsHostMarked(TOptions) const { return m_hostMark; }

void TInmemClass::SetHostMarked(TOptions) { m_hostMark = true; }

void TInmemClass::AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TOptions) {
  const auto self = Self();
  m_qualifiers.AddToClass(qualifier);
}

boost::shared_ptr<ICIMQualifier> TInmemClass::AllocateQualifier(
    boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value,
    ICIMQualifierDecl::EFlavor flavor, TOptions) {
  return AllocateQualifierOf(Self(), decl, value, &flavor);
}

boost::shared_ptr<ICIMQualifier> TInmemClass::AllocateQualifier(
    boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value, TOptions) {
  return AllocateQualifierOf(Self(), decl, value, nullptr);
}

boost::shared_ptr<ICIMQualifier> TInmemClass::FindQualifier(const std::string& name, bool& found,
                                                            TOptions) {
  auto qualifier = m_qualifiers.Find(name);
  found = qualifier != nullptr;
  return qualifier;
}

boost::shared_ptr<ICIMQualifier> TInmemClass::GetQualifier(const std::string& name, TOptions) {
  return m_qualifiers.Find(name);
}

void TInmemClass::EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback, TOptions) {
  m_qualifiers.Enumerate(callback);
}

}  // namespace NORVHAV20

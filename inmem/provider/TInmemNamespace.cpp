#include "inmem/provider/TInmemNamespace.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/THAVException.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemQualifierDecl.h"
#include "inmem/model/TNamespaceLink.h"
#include "inmem/provider/TInmemNamespaceProvider.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

namespace {

const char kRootName[] = "<root>";

// The one class whose first registration stands even where redefinition is allowed: every
// collector brings it along, and the first has the right one.
const char kNeverRedefined[] = "orvsg_physicalnetworkport";

// Throws 15 for a namespace that no shared pointer owns: what it allocates could never find
// back to it.
TNamespaceLink Link(INamespaceRegistry& maker, const boost::shared_ptr<TClassCensus>& census) {
  return {Require(maker.Registry()), census};
}

[[noreturn]] void RefuseName(const char* kind, const std::string& name) {
  LogError(std::string("Inmem: TInmemNamespace: ") + kind + " " + name + " already defined");
  Throw(kHAVAlreadyDefined);
}

}  // namespace

TInmemNamespace::TInmemNamespace(bool redefinitionAllowed)
    : m_redefinitionAllowed(redefinitionAllowed), m_census(boost::make_shared<TClassCensus>()) {
  m_census->Join(*this);
}

TInmemNamespace::TInmemNamespace(const TInmemNamespace& other)
    : ICIMNamespace(),
      boost::enable_shared_from_this<TInmemNamespace>(),
      INamespaceRegistry(),
      m_qualifierDecls(other.m_qualifierDecls),
      m_classes(other.m_classes),
      m_root(other.m_root),
      m_redefinitionAllowed(other.m_redefinitionAllowed),
      m_census(other.m_census) {
  m_census->Join(*this);
}

TInmemNamespace& TInmemNamespace::operator=(const TInmemNamespace& other) {
  TInmemNamespace copy(other);
  m_qualifierDecls.swap(copy.m_qualifierDecls);
  m_classes.swap(copy.m_classes);
  m_lastFound = copy.m_lastFound = nullptr;
  m_root.swap(copy.m_root);
  m_redefinitionAllowed = copy.m_redefinitionAllowed;
  copy.m_census->Paths().Turn();
  // Each takes the other's place in what it shares; the copy then leaves in this one's stead.
  if (m_census != copy.m_census) {
    m_census->Replace(*this, copy);
    copy.m_census->Replace(copy, *this);
    m_census.swap(copy.m_census);
  }
  return *this;
}

ICIMNamespace& TInmemNamespace::operator=(ICIMNamespace&) { return *this; }

TInmemNamespace::~TInmemNamespace() {
  m_census->Leave(*this);
  m_census->Paths().Turn();
}

void TInmemNamespace::Initialize() {
  m_root = boost::static_pointer_cast<TInmemClass>(AllocateClass(kRootName, {}, TOptions()));
}

std::string TInmemNamespace::NormalizeName(const std::string& name) {
  return NormalizeCimName(name);
}

boost::shared_ptr<INamespaceProvider> TInmemNamespace::GetNamespaceProvider(TOptions) const {
  return TInmemNamespaceProvider::GetInstance();
}

void TInmemNamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>, TOptions) {}

void TInmemNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TOptions) {
  Throw(kHAVUnderlyingNamespaceRefused);
}

boost::shared_ptr<ICIMClass> TInmemNamespace::AllocateClass(const std::string& name,
                                                            boost::shared_ptr<ICIMClass> superclass,
                                                            TOptions) {
  const auto self = weak_from_this().lock();  // a superclass of another make is called
  boost::shared_ptr<TInmemClass> cls;
  // Whatever keeps a class from being found means that there is none; a name that is none is
  // refused when the class is registered.
  DropFailures([&] { cls = FindClass(name); });
  if (!cls) {
    if (!superclass) superclass = m_root;
    cls = boost::make_shared<TInmemClass>(Link(*this, m_census), name, superclass);
    m_census->Enter(cls);
  }
  cls->SetUpInheritance();
  return cls;
}

boost::shared_ptr<TInmemClass> TInmemNamespace::FindClass(const std::string& name) const {
  if (m_lastFound && (*m_lastFound)->Name() == name) return *m_lastFound;
  if (name == kRootName) return m_root;
  const auto found = m_classes.find(CimName(name).Folded());
  if (found == m_classes.end()) Throw(kHAVNotFound);
  m_lastFound = &found->second;
  return found->second;
}

boost::shared_ptr<ICIMClass> TInmemNamespace::GetClass(const std::string& name, TOptions) {
  return FindClass(name);
}

void TInmemNamespace::EnumerateRootClasses(const TEnumCallback<ICIMClass>& callback, TOptions) {
  if (m_root) m_root->EnumerateSubclasses(callback, TOptions());
}

void TInmemNamespace::EnumerateProviders(const TEnumCallback<IProvider>&, TOptions) {}

boost::shared_ptr<ICIMQualifierDecl> TInmemNamespace::AllocateQualifierDecl(
    const std::string& name, const TCIMValue& defaultValue, ICIMQualifierDecl::EScope scope,
    ICIMQualifierDecl::EFlavor flavor, TOptions) {
  const auto decl = boost::make_shared<TInmemQualifierDecl>(Link(*this, m_census), name,
                                                            defaultValue, scope, flavor);
  AddQualifierDecl(decl);
  return decl;
}

boost::shared_ptr<ICIMQualifierDecl> TInmemNamespace::GetQualifierDecl(const std::string& name,
                                                                       TOptions) const {
  const auto found = m_qualifierDecls.find(CimName(name).Folded());
  return found == m_qualifierDecls.end() ? nullptr : found->second;
}

void TInmemNamespace::EnumerateQualifierDecls(const TEnumCallback<ICIMQualifierDecl>& callback,
                                              TOptions) const {
  for (const auto& decl : Snapshot(m_qualifierDecls)) DropExceptions([&] { callback(decl); });
}

void TInmemNamespace::Subscribe(boost::shared_ptr<ICIMIndicationFilter>,
                                const TEnumCallback<ICIMInstance>&, TOptions) {
  Throw(kHAVNotSupported);
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::GetInstance(const TCIMReference& path,
                                                             TOptions) const {
  return Require(FindClass(path.GetClassName()))->FindInstance(path);
}

void TInmemNamespace::DeleteInstance(const TCIMReference&, TOptions) { Throw(kHAVNotSupported); }

void TInmemNamespace::ModifyInstance(const TCIMReference&, TOptions, TOptions) {
  Throw(kHAVNotSupported);
}

void TInmemNamespace::ExecuteQuery(const TEnumCallback<ICIMInstance>&, std::string&,
                                   const TEnumCallback<ICIMInstance>&, TOptions) {
  Throw(kHAVNotSupported);
}

void TInmemNamespace::ClearInstances() {
  for (const auto& cls : Snapshot(m_classes)) cls->ClearInstances();
}

INamespaceRegistry::TAdmission TInmemNamespace::AdmitClass(
    const boost::shared_ptr<TInmemClass>& cls) const {
  const std::string& name = cls->GetName(TOptions());
  const std::string key = NormalizeCimName(name);
  const auto found = m_classes.find(key);
  if (found == m_classes.end()) return {true, {}};
  if (!m_redefinitionAllowed) RefuseName("class", name);
  if (found->second == cls) return {true, {}};
  if (key.find(kNeverRedefined) != std::string::npos) return {false, {}};
  return {true, found->second};
}

void TInmemNamespace::AddClass(boost::shared_ptr<TInmemClass> cls) {
  std::string key = NormalizeCimName(cls->GetName(TOptions()));
  m_classes.insert_or_assign(std::move(key), std::move(cls));
}

void TInmemNamespace::RemoveClass(boost::shared_ptr<TInmemClass>) {}

void TInmemNamespace::AddQualifierDecl(boost::shared_ptr<TInmemQualifierDecl> decl) {
  const std::string& name = decl->GetName(TOptions());
  std::string key = NormalizeCimName(name);
  if (!m_redefinitionAllowed && m_qualifierDecls.count(key) != 0) RefuseName("qualifier", name);
  m_qualifierDecls.insert_or_assign(std::move(key), std::move(decl));
}

boost::shared_ptr<ICIMNamespace> TInmemNamespace::AsNamespace() { return shared_from_this(); }

boost::shared_ptr<INamespaceRegistry> TInmemNamespace::Registry() {
  return weak_from_this().lock();
}

}  // namespace NORVHAV20

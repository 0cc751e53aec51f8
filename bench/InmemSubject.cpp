#include "bench/InmemSubject.h"

#include "support/Plugin.h"

namespace havbench {

using namespace NORVHAV20;

namespace {

boost::shared_ptr<ICIMQualifierDecl> Qualifier(ICIMNamespace& ns, const char* name) {
  if (auto known = ns.GetQualifierDecl(name, {})) return known;
  return ns.AllocateQualifierDecl(
      name, TCIMValue(false), ICIMQualifierDecl::kScopeAny,
      ICIMQualifierDecl::kFlavorOverridable | ICIMQualifierDecl::kFlavorToSubclass, {});
}

void DeclareEnd(ICIMNamespace& ns, ICIMClass& cls, const char* role,
                const boost::shared_ptr<ICIMClass>& referenced) {
  const auto decl = cls.AllocateReferenceDecl(role, referenced, {});
  decl->AllocateQualifier(Qualifier(ns, "Key"), TCIMValue(true), TOptions());
  decl->AddToClass({});
}

}  // namespace

void Declare(ICIMNamespace& ns, ICIMClass& cls, const char* name, const TCIMValue& defaultValue,
             bool key) {
  const auto decl = cls.AllocatePropertyDecl(name, defaultValue, {});
  if (key) decl->AllocateQualifier(Qualifier(ns, "Key"), TCIMValue(true), TOptions());
  decl->AddToClass({});
}

InmemSubject::InmemSubject()
    : m_namespace(havtest::Provider()->AllocateNamespace({}, false, "root/bench")) {
  ICIMNamespace& ns = *m_namespace;
  m_disks = ns.AllocateClass("Bench_Disk", {}, {});
  Declare(ns, *m_disks, "SystemName", TCIMValue::Null(kCIMString), true);
  Declare(ns, *m_disks, "DeviceID", TCIMValue::Null(kCIMString), true);
  for (const char* name : {"Caption", "Vendor", "Model"})
    Declare(ns, *m_disks, name, TCIMValue::Null(kCIMString));
  for (const char* name : {"Size", "FreeSpace"})
    Declare(ns, *m_disks, name, TCIMValue::Null(kCIMUInt64));
  for (const char* name : {"BlockSize", "Sectors", "Cylinders"})
    Declare(ns, *m_disks, name, TCIMValue::Null(kCIMUInt32));
  for (const char* name : {"Removable", "Healthy"})
    Declare(ns, *m_disks, name, TCIMValue::Null(kCIMBoolean));
  m_disks->AddToNamespace({});
  m_links = ns.AllocateClass("Bench_Link", {}, {});
  m_links->AllocateQualifier(Qualifier(ns, "Association"), TCIMValue(true), TOptions());
  DeclareEnd(ns, *m_links, "Antecedent", m_disks);
  DeclareEnd(ns, *m_links, "Dependent", m_disks);
  m_links->AddToNamespace({});
}

boost::shared_ptr<ICIMInstance> InmemSubject::Make(const Disk& disk) {
  const auto instance = m_disks->AllocateInstance({});
  instance->SetPropertyValue("SystemName", disk.systemName, {});
  instance->SetPropertyValue("DeviceID", disk.deviceId, {});
  instance->SetPropertyValue("Caption", disk.caption, {});
  instance->SetPropertyValue("Vendor", disk.vendor, {});
  instance->SetPropertyValue("Model", disk.model, {});
  instance->SetPropertyValue("Size", disk.size, {});
  instance->SetPropertyValue("FreeSpace", disk.freeSpace, {});
  instance->SetPropertyValue("BlockSize", disk.blockSize, {});
  instance->SetPropertyValue("Sectors", disk.sectors, {});
  instance->SetPropertyValue("Cylinders", disk.cylinders, {});
  instance->SetPropertyValue("Removable", disk.removable, {});
  instance->SetPropertyValue("Healthy", disk.healthy, {});
  instance->AddToNamespace({});
  return instance;
}

TCIMReference InmemSubject::PathTo(std::size_t number) const {
  const Disk disk = DiskNumber(number);
  TCIMReference path({}, {});
  path.SetClass(m_disks);
  path.AddKeyValue("SystemName", disk.systemName);
  path.AddKeyValue("DeviceID", disk.deviceId);
  return path;
}

void InmemSubject::Prepare(const std::vector<std::size_t>& numbers) {
  for (const std::size_t number : numbers) {
    TCIMReference path = PathTo(number);
    m_instances.push_back(m_namespace->GetInstance(path, {}));
    m_paths.push_back(std::move(path));
  }
}

bool InmemSubject::Get(std::size_t place) const {
  return m_namespace->GetInstance(m_paths[place], {}) != nullptr;
}

std::uint64_t InmemSubject::GetAndRead(std::size_t place) const {
  const auto instance = m_namespace->GetInstance(m_paths[place], {});
  return static_cast<std::uint64_t>(instance->GetProperty("Size", {})->GetValue({}));
}

std::uint64_t InmemSubject::SizeOf(std::size_t place) const {
  return static_cast<std::uint64_t>(m_instances[place]->GetProperty("Size", {})->GetValue({}));
}

std::size_t InmemSubject::Enumerate() const {
  std::size_t visited = 0;
  m_disks->EnumerateInstances(
      [&](boost::shared_ptr<ICIMInstance> instance) {
        visited += instance != nullptr;
        return true;
      },
      false, {});
  return visited;
}

std::uint64_t InmemSubject::TotalSize() const {
  std::uint64_t total = 0;
  m_disks->EnumerateInstances(
      [&](boost::shared_ptr<ICIMInstance> instance) {
        total += static_cast<std::uint64_t>(instance->GetProperty("Size", {})->GetValue({}));
        return true;
      },
      false, {});
  return total;
}

boost::shared_ptr<ICIMInstance> InmemSubject::MakeLink(std::size_t from, std::size_t to) {
  const auto link = m_links->AllocateInstance({});
  link->SetPropertyValue("Antecedent", PathTo(from), {});
  link->SetPropertyValue("Dependent", PathTo(to), {});
  link->AddToNamespace({});
  return link;
}

void InmemSubject::PrepareChanges(std::size_t firstFree) {
  Make(DiskNumber(firstFree));
  Make(DiskNumber(firstFree + 1));
  m_spareLink = MakeLink(firstFree, firstFree + 1);
  m_free = firstFree;
  m_neighbour = std::make_unique<InmemSubject>();
}

void InmemSubject::Do(Change change) {
  switch (change) {
    case Change::kNone: break;
    case Change::kInstance: m_added = Make(DiskNumber(m_free + 2)); break;
    case Change::kLink: m_added = MakeLink(m_free + 1, m_free); break;
    case Change::kUnlink: MakeLink(m_free + 1, m_free)->Delete({}); break;
    case Change::kReference: m_spareLink->SetPropertyValue("Dependent", PathTo(m_free), {}); break;
    case Change::kProperty:
      m_instances.front()->SetPropertyValue("Caption", TCIMValue("changed"), {});
      break;
    case Change::kRekey:
      m_spareLink->SetPropertyValue("Dependent", PathTo(m_free), {});
      m_spareLink->AddToNamespace({});
      break;
    case Change::kNeighbour: m_added = m_neighbour->Make(DiskNumber(0)); break;
    case Change::kDerived: m_instances.front()->GetProperty("speedDuplex", {}); break;
  }
}

void InmemSubject::Undo(Change change) {
  if (m_added) m_added->Delete({});
  m_added.reset();
  if (change != Change::kReference && change != Change::kRekey) return;
  m_spareLink->SetPropertyValue("Dependent", PathTo(m_free + 1), {});
  m_spareLink->AddToNamespace({});
}

std::size_t InmemSubject::Associators(std::size_t place) const {
  std::size_t found = 0;
  m_instances[place]->EnumerateAssociatedInstances(
      [&](boost::shared_ptr<ICIMInstance> other) {
        found += other != nullptr;
        return true;
      },
      "", "<root>", "", "", {});
  return found;
}

std::size_t InmemSubject::References(std::size_t place) const {
  std::size_t found = 0;
  m_instances[place]->EnumerateAssociationInstances(
      [&](boost::shared_ptr<ICIMInstance> association) {
        found += association != nullptr;
        return true;
      },
      "", "", {});
  return found;
}

}  // namespace havbench

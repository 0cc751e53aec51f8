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

void InmemSubject::Make(const Disk& disk) {
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
}

void InmemSubject::Prepare(const std::vector<std::size_t>& numbers) {
  for (const std::size_t number : numbers) {
    const Disk disk = DiskNumber(number);
    TCIMReference path({}, {});
    path.SetClass(m_disks);
    path.AddKeyValue("SystemName", disk.systemName);
    path.AddKeyValue("DeviceID", disk.deviceId);
    m_instances.push_back(m_namespace->GetInstance(path, {}));
    m_paths.push_back(std::move(path));
  }
}

bool InmemSubject::Get(std::size_t place) const {
  return m_namespace->GetInstance(m_paths[place], {}) != nullptr;
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

void InmemSubject::MakeLink(std::size_t from, std::size_t to) {
  const auto link = m_links->AllocateInstance({});
  const auto path = [&](std::size_t number) {
    const Disk disk = DiskNumber(number);
    TCIMReference end({}, {});
    end.SetClass(m_disks);
    end.AddKeyValue("SystemName", disk.systemName);
    end.AddKeyValue("DeviceID", disk.deviceId);
    return TCIMValue(end);
  };
  link->SetPropertyValue("Antecedent", path(from), {});
  link->SetPropertyValue("Dependent", path(to), {});
  link->AddToNamespace({});
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

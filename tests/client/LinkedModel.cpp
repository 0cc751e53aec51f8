#include "client/LinkedModel.h"

#include <algorithm>
#include <random>
#include <set>

#include "support/Instances.h"

namespace havtest {
namespace {

Names List(const std::set<std::string>& names) { return {names.begin(), names.end()}; }

bool Plays(const std::string& role, const std::string& filter) {
  return filter.empty() || filter == role;
}

}  // namespace

LinkedModel::LinkedModel(std::uint32_t seed) {
  AddObjectClass("T_Element", "");
  AddObjectClass("T_System", "T_Element");
  AddObjectClass("T_Device", "T_Element");
  AddObjectClass("T_Disk", "T_Device");
  AddObjectClass("T_FastDisk", "T_Disk");
  AddAssociationClass("T_Contains", {{"Group", "T_System"}, {"Part", "T_Element"}});
  AddAssociationClass("T_On", {{"Lower", "T_Device"}, {"Upper", "T_Device"}});
  AddAssociationClass("T_OnDisk", {{"Lower", "T_Disk"}, {"Upper", "T_Device"}}, "T_On");
  AddAssociationClass("T_Same", {{"One", "T_Element"}, {"Other", "T_Element"}});
  AddAssociationClass("T_Way",
                      {{"Initiator", "T_Device"}, {"Target", "T_Device"}, {"Unit", "T_Disk"}});

  for (std::size_t i = 0; i < 12; ++i) {
    const auto& cls = m_objectClasses[i % m_objectClasses.size()];
    const auto name = TCIMValue("o" + std::to_string(i));
    m_objects.push_back({cls, m_repository.Instance(Class(cls), {{"Name", name}})});
  }
  std::mt19937 random(seed);
  for (const auto& [cls, roles] : m_declared)
    for (std::size_t i = 0; i < 8; ++i) {
      std::map<std::string, std::size_t> ends;
      for (const auto& [role, referenced] : roles) {
        std::vector<std::size_t> fitting;
        for (std::size_t object = 0; object < m_objects.size(); ++object)
          if (Derives(m_objects[object].cls, referenced)) fitting.push_back(object);
        ends[role] = fitting[random() % fitting.size()];
      }
      AddLink(cls, ends);
    }
  AddLink("T_Same", {{"One", 3}, {"Other", 3}});
  AddLink("T_Way", {{"Initiator", 3}, {"Target", 3}, {"Unit", 4}});
  // Its links stay.
  m_objects[8].instance->Delete({});
  m_objects[8].stored = false;
}

void LinkedModel::AddObjectClass(const std::string& name, const std::string& superclass) {
  m_repository.Class(name, superclass.empty() ? ClassPtr() : Class(superclass));
  m_superclasses[name] = superclass;
  m_objectClasses.push_back(name);
}

void LinkedModel::AddAssociationClass(const std::string& name, const TRoles& roles,
                                      const std::string& superclass) {
  const auto cls = m_repository.Allocate(name, superclass.empty() ? ClassPtr() : Class(superclass),
                                         {{"Association", TCIMValue(true)}});
  Qualifiers qualifiers{{"Key", TCIMValue(true)}};
  for (const auto& [role, referenced] : roles) {
    Qualifiers all = qualifiers;
    if (!superclass.empty()) all.emplace_back("Override", TCIMValue(role));
    m_repository.Reference(cls, role, Class(referenced), all);
    if (superclass.empty()) m_roles.push_back(role);
  }
  cls->AddToNamespace({});
  m_superclasses[name] = superclass;
  m_declared[name] = roles;
  m_associationClasses.push_back(name);
}

void LinkedModel::AddLink(const std::string& cls, const std::map<std::string, std::size_t>& ends) {
  std::vector<std::pair<std::string, TCIMValue>> values;
  for (const auto& [role, object] : ends)
    values.emplace_back(role, TCIMValue(m_objects[object].instance->GetReference({})));
  const auto path = PathOf(m_repository.Instance(Class(cls), values));
  for (const auto& link : m_links)
    if (link.path == path) return;
  m_links.push_back({cls, ends, path});
}

bool LinkedModel::Derives(const std::string& cls, const std::string& ancestor) const {
  for (std::string name = cls; !name.empty(); name = m_superclasses.at(name))
    if (name == ancestor) return true;
  return false;
}

bool LinkedModel::Passes(const std::string& cls, const std::string& filter) const {
  return filter.empty() || Derives(cls, filter);
}

Names LinkedModel::References(std::size_t object, const TReferenceFilter& filter) const {
  std::set<std::string> found;
  for (const auto& link : m_links)
    for (const auto& [role, end] : link.ends)
      if (end == object && m_objects[end].stored && Plays(role, filter.role) &&
          Passes(link.cls, filter.resultClass))
        found.insert(link.path);
  return List(found);
}

Names LinkedModel::Associators(std::size_t object, const TAssociatorFilter& filter) const {
  std::set<std::string> found;
  for (const auto& link : m_links)
    for (const auto& [role, end] : link.ends)
      for (const auto& [otherRole, other] : link.ends)
        if (end == object && role != otherRole && m_objects[end].stored &&
            m_objects[other].stored && Passes(link.cls, filter.associationClass) &&
            Passes(m_objects[other].cls, filter.resultClass) && Plays(role, filter.role) &&
            Plays(otherRole, filter.resultRole))
          found.insert(PathOf(m_objects[other].instance));
  return List(found);
}

Names LinkedModel::References(const std::string& cls, const TReferenceFilter& filter) const {
  std::set<std::string> found;
  for (const auto& [association, roles] : m_declared)
    for (const auto& [role, referenced] : roles)
      if (Derives(cls, referenced) && Plays(role, filter.role) &&
          Passes(association, filter.resultClass))
        found.insert(association);
  return List(found);
}

Names LinkedModel::Associators(const std::string& cls, const TAssociatorFilter& filter) const {
  std::set<std::string> found;
  for (const auto& [association, roles] : m_declared)
    for (const auto& [role, referenced] : roles)
      for (const auto& [otherRole, other] : roles)
        if (Derives(cls, referenced) && role != otherRole &&
            Passes(association, filter.associationClass) && Passes(other, filter.resultClass) &&
            Plays(role, filter.role) && Plays(otherRole, filter.resultRole))
          found.insert(other);
  return List(found);
}

}  // namespace havtest

#include "realmodel/DeviceClasses.h"

#include <map>

namespace havtest {
namespace {

std::map<std::string, std::string> Superclasses() {
  std::map<std::string, std::string> superclasses;
  for (const auto& cls : ThingClasses()) superclasses[cls.name] = cls.superclass;
  for (const auto& cls : LinkClasses()) superclasses[cls.name] = cls.superclass;
  return superclasses;
}

}  // namespace

const std::vector<ThingClass>& ThingClasses() {
  static const std::vector<ThingClass> classes{
      {"CIM_ManagedElement", ""},
      {"CIM_ManagedSystemElement", "CIM_ManagedElement"},
      {"CIM_LogicalElement", "CIM_ManagedSystemElement"},
      {"CIM_EnabledLogicalElement", "CIM_LogicalElement"},
      {"CIM_AllocatedLogicalElement", "CIM_EnabledLogicalElement"},
      {"CIM_System", "CIM_AllocatedLogicalElement"},
      {"CIM_ComputerSystem", "CIM_System"},
      {"CIM_UnitaryComputerSystem", "CIM_ComputerSystem"},
      {"CIM_VirtualComputerSystem", "CIM_ComputerSystem"},
      {"CIM_LogicalDevice", "CIM_AllocatedLogicalElement"},
      {"CIM_Processor", "CIM_LogicalDevice"},
      {"CIM_MediaAccessDevice", "CIM_LogicalDevice"},
      {"CIM_DiskDrive", "CIM_MediaAccessDevice"},
      {"CIM_CDROMDrive", "CIM_MediaAccessDevice"},
      {"CIM_StorageExtent", "CIM_LogicalDevice"},
      {"CIM_StorageVolume", "CIM_StorageExtent"},
      {"CIM_LogicalDisk", "CIM_StorageExtent"},
      {"CIM_MediaPartition", "CIM_StorageExtent"},
      {"CIM_GenericDiskPartition", "CIM_MediaPartition"},
      {"CIM_DiskPartition", "CIM_GenericDiskPartition"},
      {"CIM_GPTDiskPartition", "CIM_GenericDiskPartition"},
      {"CIM_Memory", "CIM_StorageExtent"},
      {"CIM_CacheMemory", "CIM_Memory"},
      {"CIM_LogicalPort", "CIM_LogicalDevice"},
      {"CIM_NetworkPort", "CIM_LogicalPort"},
      {"CIM_EthernetPort", "CIM_NetworkPort"},
      {"CIM_FCPort", "CIM_NetworkPort"},
      {"CIM_Controller", "CIM_LogicalDevice"},
      {"CIM_PCIController", "CIM_Controller"},
      {"CIM_SCSIController", "CIM_Controller"},
      {"CIM_ServiceAccessPoint", "CIM_EnabledLogicalElement"},
      {"CIM_ProtocolEndpoint", "CIM_ServiceAccessPoint"},
      {"CIM_SCSIProtocolEndpoint", "CIM_ProtocolEndpoint"},
  };
  return classes;
}

const std::vector<LinkClassFact>& LinkClasses() {
  const auto component = [](const char* group, const char* part) {
    return std::vector<Role>{{"GroupComponent", group}, {"PartComponent", part}};
  };
  const auto dependency = [](const char* antecedent, const char* dependent) {
    return std::vector<Role>{{"Antecedent", antecedent}, {"Dependent", dependent}};
  };
  const auto identity = [](const char* same, const char* system) {
    return std::vector<Role>{{"SameElement", same}, {"SystemElement", system}};
  };
  const std::vector<Role> path{{"Initiator", "CIM_ProtocolEndpoint"},
                               {"LogicalUnit", "CIM_LogicalDevice"},
                               {"Target", "CIM_ProtocolEndpoint"}};
  const char* const any = "CIM_ManagedElement";
  static const std::vector<LinkClassFact> classes{
      {"CIM_Component", "", component(any, any), false},
      {"CIM_ConcreteComponent", "CIM_Component", component(any, any), true},
      {"CIM_SystemComponent", "CIM_Component", component("CIM_System", "CIM_ManagedSystemElement"),
       true},
      {"CIM_SystemDevice", "CIM_SystemComponent", component("CIM_System", "CIM_LogicalDevice"),
       true},
      {"CIM_ComputerSystemProcessor", "CIM_SystemDevice",
       component("CIM_UnitaryComputerSystem", "CIM_Processor"), true},
      {"CIM_ComputerSystemMemory", "CIM_SystemDevice",
       component("CIM_UnitaryComputerSystem", "CIM_Memory"), true},
      {"CIM_Dependency", "", dependency(any, any), false},
      {"CIM_ConcreteDependency", "CIM_Dependency", dependency(any, any), true},
      {"CIM_AbstractBasedOn", "CIM_Dependency", dependency(any, any), false},
      {"CIM_BasedOn", "CIM_AbstractBasedOn", dependency("CIM_StorageExtent", "CIM_StorageExtent"),
       true},
      {"CIM_LogicalDiskBasedOnExtent", "CIM_BasedOn",
       dependency("CIM_StorageExtent", "CIM_LogicalDisk"), true},
      {"CIM_LogicalDiskBasedOnVolume", "CIM_LogicalDiskBasedOnExtent",
       dependency("CIM_StorageVolume", "CIM_LogicalDisk"), true},
      {"CIM_LogicalDiskBasedOnPartition", "CIM_LogicalDiskBasedOnExtent",
       dependency("CIM_GenericDiskPartition", "CIM_LogicalDisk"), true},
      {"CIM_DiskPartitionBasedOnVolume", "CIM_BasedOn",
       dependency("CIM_StorageVolume", "CIM_DiskPartition"), true},
      {"CIM_MediaPresent", "CIM_Dependency",
       dependency("CIM_MediaAccessDevice", "CIM_StorageExtent"), true},
      {"CIM_HostedDependency", "CIM_Dependency", dependency(any, any), true},
      {"CIM_PortOnDevice", "CIM_HostedDependency",
       dependency("CIM_LogicalDevice", "CIM_LogicalPort"), true},
      {"CIM_DeviceConnection", "CIM_Dependency",
       dependency("CIM_LogicalDevice", "CIM_LogicalDevice"), true},
      {"CIM_ControlledBy", "CIM_DeviceConnection",
       dependency("CIM_Controller", "CIM_LogicalDevice"), true},
      {"CIM_AssociatedMemory", "CIM_Dependency", dependency("CIM_Memory", "CIM_LogicalElement"),
       true},
      {"CIM_LogicalIdentity", "", identity(any, any), false},
      {"CIM_ConcreteIdentity", "CIM_LogicalIdentity", identity(any, any), true},
      {"CIM_DeviceIdentity", "CIM_LogicalIdentity",
       identity("CIM_LogicalDevice", "CIM_LogicalDevice"), true},
      {"CIM_InitiatorTargetLogicalUnitPath", "", path, false},
      {"CIM_SCSIInitiatorTargetLogicalUnitPath", "CIM_InitiatorTargetLogicalUnitPath", path, true},
  };
  return classes;
}

bool Derives(const std::string& name, const std::string& ancestor) {
  static const std::map<std::string, std::string> superclasses = Superclasses();
  for (std::string cls = name; !cls.empty(); cls = superclasses.at(cls))
    if (cls == ancestor) return true;
  return false;
}

const LinkClassFact& LinkFact(const std::string& name) {
  static const std::map<std::string, const LinkClassFact*> facts = [] {
    std::map<std::string, const LinkClassFact*> byName;
    for (const auto& cls : LinkClasses()) byName[cls.name] = &cls;
    return byName;
  }();
  return *facts.at(name);
}

}  // namespace havtest

#include "realmodel/DeviceModel.h"

#include <random>
#include <set>

#include "realmodel/DeviceClasses.h"

namespace havtest {
namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Path(const std::string& cls,
                 const std::vector<std::pair<std::string, std::string>>& keys) {
  std::string path = cls;
  char separator = '.';
  for (const auto& [name, value] : keys) {
    path += separator + name + "=" + Quoted(value);
    separator = ',';
  }
  return path;
}

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : m_random(seed) {}

  DeviceModel Make(std::size_t systems, std::size_t devicesEach, std::size_t linksEach) {
    for (std::size_t i = 0; i < systems; ++i) AddSystem(i, devicesEach);
    for (const auto& cls : LinkClasses())
      if (cls.concrete) AddLinks(cls, linksEach);
    return std::move(m_model);
  }

 private:
  // Below `bound`, the same on every platform, unlike the distributions of the library.
  std::size_t Below(std::size_t bound) { return m_random() % bound; }

  const std::string& Pick(const std::vector<std::string>& names) {
    return names[Below(names.size())];
  }

  std::size_t AddThing(const std::string& cls,
                       std::vector<std::pair<std::string, std::string>> keys) {
    std::string path = Path(cls, keys);
    m_model.things.push_back({cls, std::move(keys), std::move(path)});
    return m_model.things.size() - 1;
  }

  void AddSystem(std::size_t number, std::size_t devices) {
    static const std::vector<std::string> systemClasses{
        "CIM_ComputerSystem", "CIM_UnitaryComputerSystem", "CIM_VirtualComputerSystem"};
    static const std::vector<std::string> deviceClasses{
        "CIM_Processor",     "CIM_DiskDrive",        "CIM_CDROMDrive",
        "CIM_StorageExtent", "CIM_StorageVolume",    "CIM_LogicalDisk",
        "CIM_DiskPartition", "CIM_GPTDiskPartition", "CIM_GenericDiskPartition",
        "CIM_Memory",        "CIM_CacheMemory",      "CIM_NetworkPort",
        "CIM_EthernetPort",  "CIM_FCPort",           "CIM_PCIController",
        "CIM_SCSIController"};
    const std::string cls = Pick(systemClasses);
    const std::string name = "host-" + std::to_string(number);
    const std::size_t system = AddThing(cls, {{"CreationClassName", cls}, {"Name", name}});
    for (std::size_t i = 0; i < devices; ++i) {
      const std::string& deviceClass = Pick(deviceClasses);
      // Some names that a path has to quote.
      const std::string id = (i % 5 == 0 ? "C:\\\"" : "dev") + std::to_string(i);
      const std::size_t device = AddThing(deviceClass, {{"CreationClassName", deviceClass},
                                                        {"DeviceID", id},
                                                        {"SystemCreationClassName", cls},
                                                        {"SystemName", name}});
      AddLink(LinkFact("CIM_SystemDevice"), {system, device});
    }
    AddThing("CIM_SCSIProtocolEndpoint", {{"CreationClassName", "CIM_SCSIProtocolEndpoint"},
                                          {"Name", "endpoint"},
                                          {"SystemCreationClassName", cls},
                                          {"SystemName", name}});
  }

  std::vector<std::size_t> ThingsOf(const std::string& cls) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < m_model.things.size(); ++i)
      if (Derives(m_model.things[i].cls, cls)) found.push_back(i);
    return found;
  }

  void AddLinks(const LinkClassFact& cls, std::size_t count) {
    std::vector<std::vector<std::size_t>> candidates;
    for (const Role& role : cls.roles) {
      candidates.push_back(ThingsOf(role.referenced));
      if (candidates.back().empty()) return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      std::vector<std::size_t> ends;
      for (const auto& candidate : candidates) ends.push_back(candidate[Below(candidate.size())]);
      // Now and then something that is associated with itself, where the class allows it.
      if (i % 10 == 0 && Derives(m_model.things[ends.front()].cls, cls.roles.back().referenced))
        ends.back() = ends.front();
      AddLink(cls, ends);
    }
  }

  void AddLink(const LinkClassFact& cls, const std::vector<std::size_t>& ends) {
    if (!m_known.insert({cls.name, ends}).second) return;
    std::vector<std::pair<std::string, std::string>> keys;
    for (std::size_t i = 0; i < ends.size(); ++i)
      keys.emplace_back(cls.roles[i].name, m_model.things[ends[i]].path);
    m_model.links.push_back({cls.name, ends, Path(cls.name, keys)});
  }

  std::mt19937 m_random;
  DeviceModel m_model;
  std::set<std::pair<std::string, std::vector<std::size_t>>> m_known;
};

}  // namespace

DeviceModel MakeDeviceModel(std::uint32_t seed, std::size_t systems, std::size_t devicesEach,
                            std::size_t linksEach) {
  return Generator(seed).Make(systems, devicesEach, linksEach);
}

}  // namespace havtest

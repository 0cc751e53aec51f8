// The inventory: a model as a tree, models of odd shapes, and machines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include <nlohmann/json.hpp>

#include "tests/havhost/Havhost.h"

#if !defined(_WIN32)
#include "tests/inventory/FakeMachine.h"
#endif

namespace havtest {
namespace {

using TJson = nlohmann::ordered_json;

TEST(Inventory, TreeHangsInstancesUpByTheirAssociations) {
  const ModelTest model;
  const auto outcome = model.RunOn({"inventory"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, R"(T_System  box
│  Name  box
│
├─ T_Cpu  cpu
│  │  Name  cpu
│  │
│  └─ T_Cache  cache\x1b[2J
│        Name  cache\x1b[2J
│
├─ T_Disk  disk2
│  │  Labels  a, b
│  │  Name    disk2
│  │  Size    1.5 KB
│  │  State   On
│  │
│  └─ T_Partition  part
│        Name  part
│
└─ T_FastDisk  disk10
      Name   disk10
      Speed  0.5
      State  Off
)");
}

TEST(Inventory, ClassShowsItsInstancesWithWhatHangsOnThem) {
  const ModelTest model;
  EXPECT_EQ(model.RunOn({"inventory", "--class", "t_disk", "--raw"}).out, R"(T_Disk  disk2
│  Labels  a, b    [{a, b}]
│  Name    disk2   [disk2]
│  Size    1.5 KB  [1536]
│  State   On      [1]
│
└─ T_Partition  part
      Name  part  [part]

T_FastDisk  disk10
   Name   disk10  [disk10]
   Speed  0.5     [0.5]
   State  Off     [0]
)");
}

TEST(Inventory, JsonHasEachInstanceOnceWithItsParent) {
  const ModelTest model;
  const auto document = TJson::parse(model.RunOn({"inventory", "--format", "json"}).out);
  EXPECT_EQ(document["namespace"], "root/cimv2");
  ASSERT_EQ(document["instances"].size(), 6u);
  EXPECT_EQ(document["associations"].size(), 5u);
  EXPECT_EQ(document["instances"][1], TJson::parse(R"({
    "path": "T_Cpu.Name=\"cpu\"", "class": "T_Cpu",
    "properties": {"Name": {"type": "string", "value": "cpu", "display": "cpu"}},
    "parent": "T_System.Name=\"box\"", "association": "T_Contains"})"));
  EXPECT_EQ(document["instances"][0]["parent"], nullptr);
  EXPECT_EQ(document["instances"][0]["association"], nullptr);
  EXPECT_EQ(document["instances"][2]["association"], "T_CacheOf");
}

TEST(Inventory, JsonOfOneClassHasTheAssociationsAmongWhatIsShown) {
  const ModelTest model;
  const auto document =
      TJson::parse(model.RunOn({"inventory", "--class", "T_Disk", "--format", "json"}).out);
  ASSERT_EQ(document["instances"].size(), 3u);
  EXPECT_EQ(document["instances"][0]["parent"], nullptr);
  ASSERT_EQ(document["associations"].size(), 1u);
  EXPECT_EQ(document["associations"][0]["class"], "T_OnDisk");
}

// Instances of one class that are linked as each test says.
class Shapes : public ::testing::Test {
 protected:
  // "name" or "name < parent", in the order of the tree. A link is "role1 a role2 b".
  std::vector<std::string> Tree(const std::vector<std::string>& names,
                                const std::vector<std::vector<std::string>>& links) const {
    std::string mof =
        "Qualifier Association : boolean = false, Scope(association);\n"
        "Qualifier Key : boolean = false, Scope(property, reference);\n"
        "class T { [Key] string Name; };\n"
        "[Association] class A { [Key] T REF Antecedent; [Key] T REF Dependent; };\n"
        "[Association] class P { [Key] T REF GroupComponent; [Key] T REF PartComponent; };\n";
    for (const auto& name : names)
      mof += "instance of T as $" + name + " { Name = \"" + name + "\"; };\n";
    for (const auto& link : links)
      mof += "instance of " + std::string(link[0] == "Antecedent" ? "A" : "P") + " { " + link[0] +
             " = $" + link[1] + "; " + link[2] + " = $" + link[3] + "; };\n";
    const auto outcome =
        Havhost({"inventory", "--format", "json", "--mof", m_folder.File("shape.mof", mof)});
    EXPECT_EQ(outcome.err, "");
    std::vector<std::string> tree;
    const auto document = TJson::parse(outcome.out);
    for (const auto& instance : document["instances"])
      tree.push_back(Name(instance["path"]) +
                     (instance["parent"].is_null() ? "" : " < " + Name(instance["parent"])));
    return tree;
  }

 private:
  static std::string Name(const std::string& path) {
    const auto begin = path.find('"') + 1;
    return path.substr(begin, path.size() - begin - 1);
  }

  TemporaryFolder m_folder;
};

using Nodes = std::vector<std::string>;

TEST_F(Shapes, WithoutAssociationsEveryInstanceIsARoot) {
  EXPECT_EQ(Tree({"b", "a", "a10", "a9"}, {}), (Nodes{"a", "a9", "a10", "b"}));
}

TEST_F(Shapes, EmptyNamespaceHasAnEmptyTree) { EXPECT_EQ(Tree({}, {}), Nodes{}); }

TEST_F(Shapes, WhatHasTwoParentsHangsOnTheLowerOne) {
  EXPECT_EQ(Tree({"system", "disk", "part", "volume"},
                 {{"GroupComponent", "system", "PartComponent", "disk"},
                  {"GroupComponent", "system", "PartComponent", "volume"},
                  {"Antecedent", "disk", "Dependent", "part"},
                  {"Antecedent", "part", "Dependent", "volume"}}),
            (Nodes{"system", "disk < system", "part < disk", "volume < part"}));
}

TEST_F(Shapes, AntecedentThatNothingLeadsDownToHangsOnItsFirstDependent) {
  EXPECT_EQ(Tree({"system", "cpu1", "cpu2", "cache", "chip"},
                 {{"GroupComponent", "system", "PartComponent", "cpu1"},
                  {"GroupComponent", "system", "PartComponent", "cpu2"},
                  {"Antecedent", "cache", "Dependent", "cpu2"},
                  {"Antecedent", "cache", "Dependent", "cpu1"},
                  {"Antecedent", "cache", "Dependent", "chip"}}),
            (Nodes{"system", "cpu1 < system", "cache < cpu1", "chip < cache", "cpu2 < system"}));
}

TEST_F(Shapes, CirclesBelowARootEnd) {
  EXPECT_EQ(Tree({"root", "a", "b"}, {{"GroupComponent", "root", "PartComponent", "a"},
                                      {"Antecedent", "a", "Dependent", "b"},
                                      {"Antecedent", "b", "Dependent", "a"},
                                      {"Antecedent", "b", "Dependent", "root"}}),
            (Nodes{"root", "a < root", "b < a"}));
}

TEST_F(Shapes, CirclesAndLinksToItselfEnd) {
  EXPECT_EQ(Tree({"a", "b", "c"}, {{"Antecedent", "a", "Dependent", "b"},
                                   {"Antecedent", "b", "Dependent", "c"},
                                   {"Antecedent", "c", "Dependent", "a"}}),
            (Nodes{"a", "b < a", "c < b"}));
  EXPECT_EQ(Tree({"a"}, {{"GroupComponent", "a", "PartComponent", "a"}}), Nodes{"a"});
}

TEST_F(Shapes, WhatDependsOnNothingStandsAboveWhereThereIsNoWhole) {
  EXPECT_EQ(Tree({"a", "z"}, {{"Antecedent", "z", "Dependent", "a"}}), (Nodes{"z", "a < z"}));
}

TEST_F(Shapes, PartOfAnotherSystemHangsOnWhatItDependsOn) {
  EXPECT_EQ(Tree({"s1", "s2", "p1", "p2"}, {{"GroupComponent", "s1", "PartComponent", "p1"},
                                            {"GroupComponent", "s2", "PartComponent", "p2"},
                                            {"Antecedent", "p1", "Dependent", "p2"}}),
            (Nodes{"s1", "p1 < s1", "p2 < p1", "s2"}));
}

TEST_F(Shapes, LongChainsAreShownWhole) {
  std::vector<std::string> names;
  std::vector<std::vector<std::string>> links;
  for (int i = 0; i < 500; ++i) {
    names.push_back("n" + std::to_string(i));
    if (i != 0) links.push_back({"Antecedent", names[names.size() - 2], "Dependent", names.back()});
  }
  const auto tree = Tree(names, links);
  ASSERT_EQ(tree.size(), 500u);
  EXPECT_EQ(tree.back(), "n499 < n498");
}

TEST(Inventory, SchemaFolderHasToHoldMof) {
  const TemporaryFolder empty;
  const auto outcome = Havhost({"inventory", "--schema", empty.Path("")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "havhost: no MOF file in the schema folder " + empty.Path("") + "\n");
  const auto missing = Havhost({"inventory", "--schema", empty.Path("none")});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err.rfind("havhost: cannot read the schema folder " + empty.Path("none"), 0),
            0u)
      << missing.err;
}

TEST(Inventory, RootFolderHasToBeThere) {
  const auto outcome = Havhost({"inventory", "--schema", HAVHOST_SCHEMA, "--root", "nowhere"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "havhost: no such folder: 'nowhere'\n");
}

#if !defined(_WIN32)

class MachineInventory : public ::testing::Test {
 protected:
  TJson Json(const std::string& root) const {
    const auto outcome =
        Havhost({"inventory", "--schema", HAVHOST_SCHEMA, "--root", root, "--format", "json"});
    EXPECT_EQ(outcome.status, 0);
    return TJson::parse(outcome.out);
  }
};

TEST_F(MachineInventory, WholeMachineHangsOnItsSystem) {
  const FullMachine machine;
  const auto document = Json(machine.Machine().Root());
  std::map<std::string, std::set<std::string>> hangs;
  for (const auto& instance : document["instances"])
    hangs[instance["class"]].insert(
        instance["parent"].is_null() ? "" : std::string(instance["association"]));
  using Links = std::set<std::string>;
  EXPECT_EQ(hangs["ORVSG_ComputerSystem"], Links{""});
  EXPECT_EQ(hangs["ORVSG_OperatingSystem"], Links{"ORVSG_RunningOS"});
  EXPECT_EQ(hangs["ORVSG_Processor"], Links{"ORVSG_SystemDevice"});
  EXPECT_EQ(hangs["ORVSG_CacheMemory"], Links{"ORVSG_ProcessorCache"});
  EXPECT_EQ(hangs["ORVSG_DiskDrive"], Links{"ORVSG_SystemDevice"});
  EXPECT_EQ(hangs["ORVSG_DiskPartition"], Links{"ORVSG_PartitionOnDisk"});
  EXPECT_EQ(hangs["ORVSG_StorageVolume"], Links{"ORVSG_VolumeOnExtent"});
  EXPECT_EQ(document["instances"][0]["class"], "ORVSG_ComputerSystem");
}

TEST_F(MachineInventory, SwitchesOfTheProcessorsFollowTheCachesFound) {
  FakeMachine machine;
  machine.Processors(1, 2);
  const auto document = Json(machine.Machine().Root());
  std::size_t processors = 0;
  for (const auto& instance : document["instances"]) {
    if (instance["class"] != "ORVSG_Processor") continue;
    ++processors;
    EXPECT_EQ(instance["properties"]["CPUStatus"]["value"], 1) << instance;
    for (const char* level : {"L1Enabled", "L2Enabled", "L3Enabled"})
      EXPECT_EQ(instance["properties"][level]["value"], true) << level;
  }
  EXPECT_EQ(processors, 1u);
}

TEST_F(MachineInventory, ProcessorsDoNotFloodTheErrorStream) {
  FakeMachine machine;
  machine.Processors(2, 2);
  const auto root = machine.Machine().Root();
  const std::vector<std::string> command = {"instances",    "ORVSG_Processor", "--schema",
                                            HAVHOST_SCHEMA, "--root",          root};
  EXPECT_EQ(Havhost(command).err.find("cpuStatus"), std::string::npos);
  auto verbose = command;
  verbose.push_back("--verbose");
  EXPECT_NE(Havhost(verbose).err.find("havhost: log level 3: cpuStatus is 1\n"), std::string::npos);
}

TEST_F(MachineInventory, ProcessorsOfAComputerWithoutANameDoNotHangOnTheirCaches) {
  FakeMachine machine;
  machine.Processors(1, 1);
  const auto document = Json(machine.Machine().Root());
  ASSERT_FALSE(document["instances"].empty());
  EXPECT_EQ(document["instances"][0]["path"], "ORVSG_ComputerSystem.Name=\"localhost\"");
  for (const auto& instance : document["instances"]) {
    if (instance["class"] == "ORVSG_Processor") {
      EXPECT_EQ(instance["association"], "ORVSG_SystemDevice");
    } else if (instance["class"] == "ORVSG_CacheMemory") {
      EXPECT_EQ(instance["association"], "ORVSG_ProcessorCache");
    }
  }
}

TEST_F(MachineInventory, BusesHangOnTheirSystemAndModulesOnTheMemory) {
  FullMachine machine;
  machine.File("/sys/bus/pci/devices/0000:00:02.0/class", "0x030000\n");
  machine.File("/sys/bus/usb/devices/usb1/speed", "480\n");
  machine.File("/sys/bus/usb/devices/1-1/speed", "12\n");
  std::string module = "\x11\x1b" + std::string(0x19, '\0') + "DIMM 0" + std::string(2, '\0');
  module[0x0C] = 64;
  module[0x10] = 1;
  machine.File("/sys/firmware/dmi/tables/DMI", module);
  std::map<std::string, std::string> hangs;
  const auto document = Json(machine.Machine().Root());
  for (const auto& instance : document["instances"])
    if (!instance["association"].is_null()) hangs[instance["path"]] = instance["association"];
  EXPECT_EQ(hangs["ORVSG_GraphicsController.Name=\"0000:00:02.0\""], "ORVSG_SystemDevice");
  EXPECT_EQ(hangs["ORVSG_USBDevice.Name=\"usb1\""], "ORVSG_SystemDevice");
  EXPECT_EQ(hangs["ORVSG_USBDevice.Name=\"1-1\""], "ORVSG_USBDeviceOnHub");
  EXPECT_EQ(hangs["ORVSG_MemoryModule.Name=\"DIMM 0\""], "ORVSG_RealizesMemory");
}

TEST_F(MachineInventory, ThatFindsNothingIsAFailure) {
  const TemporaryFolder empty;
  const auto root = empty.Path("");
  const auto outcome = Havhost({"inventory", "--schema", HAVHOST_SCHEMA, "--root", root});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(
      outcome.err.find("havhost: not in the inventory: memory: /proc/meminfo: is not there\n"),
      std::string::npos)
      << outcome.err;
  const std::string last = "havhost: nothing is found of the machine in '" + root + "'\n";
  EXPECT_EQ(outcome.err.substr(outcome.err.size() - std::min(last.size(), outcome.err.size())),
            last);
}

TEST_F(MachineInventory, ARecordedMachineHasTheInventoryOfTheMachine) {
  const TemporaryFolder folder;
  const auto root = folder.Path("recorded");
  ASSERT_EQ(std::system(("\"" HAVHOST_RECORD "\" \"" + root + "\"").c_str()), 0);
  const auto here = Json("/");
  const auto recorded = Json(root);
  // What changes from moment to moment, with memory that a hypervisor gives and takes even the
  // size of all; what the processor tells by an instruction; and
  // addresses, for which not every system has a program.
  const std::set<std::string> passing{
      "AvailableSize", "AvailableSpace", "CurrentClockSpeedMHz", "DateTimeOfCollection",
      "FreeSize",      "Hypervisor",     "NetworkAddresses",     "SwapFreeSize",
      "TotalSize",     "UpTime"};
  ASSERT_EQ(recorded["instances"].size(), here["instances"].size());
  for (std::size_t i = 0; i < here["instances"].size(); ++i) {
    const auto& expected = here["instances"][i];
    const auto& found = recorded["instances"][i];
    ASSERT_EQ(found["path"], expected["path"]);
    for (const auto& [name, property] : expected["properties"].items()) {
      if (passing.count(name) != 0) continue;
      EXPECT_EQ(found["properties"][name], property) << expected["path"] << ' ' << name;
    }
  }
}

TEST_F(MachineInventory, TheExampleOfTheHelpIsThere) {
  const FullMachine machine;
  const auto outcome = Havhost({"get", "ORVSG_NetworkPort.Name=\"lo\"", "--schema", HAVHOST_SCHEMA,
                                "--root", machine.Machine().Root()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

#endif

}  // namespace
}  // namespace havtest

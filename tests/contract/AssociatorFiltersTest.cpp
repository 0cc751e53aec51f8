// EnumerateAssociatedInstances: its four filters together.
#include <algorithm>

#include "contract/Links.h"

namespace havtest {
namespace {

// A system with disks of two classes, joined by two association classes in either direction,
// among them an association of systems with systems.
struct Storage {
  Repository repository;
  ClassPtr element = repository.Class("Element");
  ClassPtr system = repository.Class("System", element);
  ClassPtr disk = repository.Class("Disk", element);
  ClassPtr raid = repository.Class("Raid", disk);
  ClassPtr has = LinkClass(repository, "Has", {{"Group", element}, {"Part", element}});
  ClassPtr boots = LinkClass(repository, "Boots", {}, has);
  InstancePtr s = Thing(repository, system, "s");
  InstancePtr t = Thing(repository, system, "t");
  InstancePtr d = Thing(repository, disk, "d");
  InstancePtr r = Thing(repository, raid, "r");

  Storage() {
    Join(repository, has, "1", {{"Group", s}, {"Part", d}});
    Join(repository, has, "2", {{"Group", s}, {"Part", r}});
    Join(repository, boots, "3", {{"Group", s}, {"Part", r}});
    Join(repository, has, "4", {{"Group", t}, {"Part", s}});
  }
};

// In the order of the paths: the order among association classes is open.
Names Sorted(const InstancePtr& instance, const AssociatorFilters& filters) {
  Names found = Associators(instance, filters);
  std::sort(found.begin(), found.end());
  return found;
}

const char kDisk[] = "Disk.Name=\"d\"";
const char kRaid[] = "Raid.Name=\"r\"";
const char kSystem[] = "System.Name=\"s\"";
const char kOther[] = "System.Name=\"t\"";

TEST(AssociatorFilters, NoneReportsEveryOtherEnd) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"", "<root>", "", ""}), (Names{kDisk, kRaid, kRaid, kOther}));
}

TEST(AssociatorFilters, AssociationAndResultClass) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"Has", "Raid", "", ""}), (Names{kRaid, kRaid}));
  EXPECT_EQ(Sorted(model.s, {"Boots", "Disk", "", ""}), (Names{kRaid}));
  EXPECT_EQ(Sorted(model.s, {"Boots", "System", "", ""}), Names{});
}

TEST(AssociatorFilters, AssociationClassAndRole) {
  Storage model;
  EXPECT_EQ(Sorted(model.r, {"Boots", "<root>", "Part", ""}), (Names{kSystem}));
  EXPECT_EQ(Sorted(model.r, {"Has", "<root>", "Part", ""}), (Names{kSystem, kSystem}));
}

TEST(AssociatorFilters, ResultClassAndRole) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"", "Disk", "Group", ""}), (Names{kDisk, kRaid, kRaid}));
  EXPECT_EQ(Sorted(model.s, {"", "System", "Part", ""}),
            (Names{kSystem, kSystem, kSystem, kOther}));
}

TEST(AssociatorFilters, ResultClassAndResultRole) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"", "Raid", "", "Part"}), (Names{kRaid, kRaid}));
  EXPECT_EQ(Sorted(model.s, {"", "Raid", "", "Group"}), Names{});
}

TEST(AssociatorFilters, AssociationClassAndResultRole) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"Boots", "<root>", "", "Part"}), (Names{kRaid}));
  EXPECT_EQ(Sorted(model.s, {"Boots", "<root>", "", "Group"}), (Names{kSystem}));
}

TEST(AssociatorFilters, ARoleBesideAResultRoleHasNoEffect) {
  Storage model;
  const Names parts{kDisk, kRaid, kRaid, kSystem};
  EXPECT_EQ(Sorted(model.s, {"", "<root>", "", "Part"}), parts);
  for (const char* role : {"Group", "Part", "Nothing", "no-name"}) {
    RecordingLogger log;
    EXPECT_EQ(Sorted(model.s, {"", "<root>", role, "Part"}), parts) << role;
    EXPECT_EQ(log.Take(), LogLines{}) << role;
  }
}

TEST(AssociatorFilters, AllFour) {
  Storage model;
  EXPECT_EQ(Sorted(model.s, {"Boots", "Disk", "Group", "Part"}), (Names{kRaid}));
  EXPECT_EQ(Sorted(model.s, {"Boots", "System", "Group", "Part"}), Names{});
  EXPECT_EQ(Sorted(model.s, {"Unknown", "Disk", "Group", "Part"}), Names{});
  EXPECT_EQ(Sorted(model.s, {"Boots", "", "Group", "Part"}), Names{});
}

}  // namespace
}  // namespace havtest

// The inventory taken again into the namespace that holds the earlier one.
#include "inventory/Refresh.h"

#include <gtest/gtest.h>

#include "support/Instances.h"
#include "tests/inventory/Published.h"

namespace havtest {
namespace {

using namespace hav::inventory;

// What a collection of ports would be: names, and the speed of each.
class Refresh : public Published {
 protected:
  struct TPort {
    std::string name;
    std::uint64_t mtu;
  };

  static TCollection Ports(const std::vector<TPort>& ports) {
    TCollection collection;
    collection.Add(TCollection::kSystem, "ORVSG_ComputerSystem", "box");
    for (const auto& port : ports)
      collection.AddSystemDevice(port.name, "ORVSG_PhysicalNetworkPort", port.name)
          .Set("Speed", std::optional<std::uint64_t>(port.mtu));
    return collection;
  }

  Texts Again(const TCollection& collection) {
    Texts texts;
    for (const auto& change : RefreshInventory(*ns, collection, [this](const TFailure& failure) {
           failures.push_back(failure.ToString());
         })) {
      std::string text = std::string(1, "+~-"[change.kind]) + ' ' + PathOf(change.instance);
      for (const auto& slot : change.properties)
        text += " " + slot->GetDecl({})->GetName({}) + " " + slot->GetPrevValue({}).ToString(10) +
                " -> " + slot->GetValue({}).ToString(10);
      texts.push_back(text);
    }
    return texts;
  }

  static std::string Port(const std::string& name) {
    return "ORVSG_PhysicalNetworkPort.Name=\"" + name + "\"";
  }
};

TEST_F(Refresh, ThatFindsTheSameIsNoChange) {
  ASSERT_TRUE(PublishInventory(Ports({{"a", 1500}}), *ns).empty());
  EXPECT_EQ(Again(Ports({{"a", 1500}})), Texts{});
  EXPECT_EQ(failures, Texts{});
}

TEST_F(Refresh, RemembersThePreviousValueOfWhatChanged) {
  PublishInventory(Ports({{"a", 1500}, {"b", 1500}}), *ns);
  const auto port = Find(Port("a"));
  EXPECT_EQ(Again(Ports({{"a", 9000}, {"b", 1500}})),
            Texts{"~ " + Port("a") + " Speed 1500 -> 9000"});
  EXPECT_EQ(Find(Port("a")), port);
  EXPECT_EQ(port->GetProperty("Speed", {})->GetPrevValue({}), TCIMValue(std::uint64_t{1500}));
  EXPECT_EQ(Again(Ports({{"a", 9000}, {"b", 1500}})), Texts{});
}

TEST_F(Refresh, SetsToNullWhatIsNotReadAnyMore) {
  PublishInventory(Ports({{"a", 1500}}), *ns);
  TCollection without;
  without.Add(TCollection::kSystem, "ORVSG_ComputerSystem", "box");
  without.AddSystemDevice("a", "ORVSG_PhysicalNetworkPort", "a");
  EXPECT_EQ(Again(without), Texts{"~ " + Port("a") + " Speed 1500 -> NULL"});
}

TEST_F(Refresh, AddsWhatCameAndDeletesWhatWentWithItsAssociations) {
  PublishInventory(Ports({{"a", 1}, {"b", 2}}), *ns);
  const auto system = "ORVSG_ComputerSystem.Name=\"box\"";
  ASSERT_EQ(Associated(system, "ORVSG_SystemDevice").size(), 2u);
  const auto changes = Again(Ports({{"b", 2}, {"c", 3}}));
  ASSERT_EQ(changes.size(), 4u);
  EXPECT_EQ(changes[0].substr(0, 2), "+ ");
  EXPECT_EQ(changes[1].substr(0, 2), "+ ");
  EXPECT_EQ(changes[2].substr(0, 2), "- ");
  EXPECT_EQ(changes[3].substr(0, 2), "- ");
  EXPECT_EQ(PathsOf("ORVSG_PhysicalNetworkPort"), (Texts{Port("b"), Port("c")}));
  EXPECT_EQ(Associated(system, "ORVSG_SystemDevice"), (Texts{Port("b"), Port("c")}));
}

TEST_F(Refresh, TimeOfCollectionIsUpdatedAndNoChange) {
  PublishInventory(Ports({{"a", 1}}), *ns);
  const auto slot = Find(Port("a"))->GetProperty("DateTimeOfCollection", {});
  ASSERT_FALSE(slot->HasPrevValue({}));
  EXPECT_EQ(Again(Ports({{"a", 1}})), Texts{});
  EXPECT_TRUE(slot->HasPrevValue({}));
}

TEST_F(Refresh, NothingDisappearsWhileACollectorFails) {
  PublishInventory(Ports({{"a", 1}, {"b", 2}}), *ns);
  auto broken = Ports({{"b", 3}});
  broken.SetCollector("network ports");
  broken.Fail("collector", "it broke");
  EXPECT_EQ(Again(broken), Texts{"~ " + Port("b") + " Speed 2 -> 3"});
  EXPECT_EQ(PathsOf("ORVSG_PhysicalNetworkPort"), (Texts{Port("a"), Port("b")}));
  EXPECT_EQ(failures, Texts{"network ports: collector: it broke"});
}

TEST_F(Refresh, ThatReadsNothingChangesNothing) {
  PublishInventory(Ports({{"a", 1}}), *ns);
  EXPECT_EQ(Again(TCollection()), Texts{});
  EXPECT_EQ(PathsOf("ORVSG_PhysicalNetworkPort"), Texts{Port("a")});
}

TEST_F(Refresh, SecondElementOfANameIsRefused) {
  PublishInventory(Ports({{"a", 1}}), *ns);
  auto twice = Ports({{"a", 1}});
  twice.AddSystemDevice("other", "ORVSG_PhysicalNetworkPort", "a");
  EXPECT_EQ(Again(twice), Texts{});
  EXPECT_EQ(failures, Texts{"namespace: " + Port("a") + ": there is another element of this name"});
}

}  // namespace
}  // namespace havtest

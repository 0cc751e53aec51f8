// Published: the inventory schema in a namespace of the plug-in, and short ways to read what
// was published there.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "inventory/Inventory.h"
#include "support/Repository.h"
#include "tests/inventory/CollectionText.h"

namespace havtest {

// A namespace with the schema; what the load reports is a failed check.
NamespacePtr LoadSchema();

class Published : public testing::Test {
 protected:
  void Publish(const hav::inventory::TMachine& machine) {
    hav::inventory::CollectInventory(*ns, machine, [this](const hav::inventory::TFailure& failure) {
      failures.push_back(failure.ToString());
    });
  }
  Texts PathsOf(const std::string& className, bool deep = false) const {
    return Paths([&](const TEnumCallback<ICIMInstance>& callback) {
      ns->GetClass(className, {})->EnumerateInstances(callback, deep, {});
    });
  }
  InstancePtr Find(const std::string& path) const {
    auto found = ns->GetInstance(TCIMReference::Parse(path, ns), {});
    EXPECT_TRUE(found) << path;
    return found;
  }
  std::string Shown(const std::string& path, const std::string& property) const {
    const auto instance = Find(path);
    return instance ? instance->GetProperty(property, {})->GetDisplayValue({}) : "no instance";
  }
  // The paths of what is associated with an instance.
  Texts Associated(const std::string& path, const std::string& association) const {
    return Paths([&](const TEnumCallback<ICIMInstance>& callback) {
      Find(path)->EnumerateAssociatedInstances(callback, association, "<root>", "", "", {});
    });
  }

  NamespacePtr ns = LoadSchema();
  Texts failures;
};

}  // namespace havtest

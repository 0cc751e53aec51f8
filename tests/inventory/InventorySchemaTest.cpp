// The inventory schema as the MOF reader and the plug-in take it.
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "tests/inventory/Published.h"

namespace havtest {
namespace {

std::set<std::string> AllClasses(const NamespacePtr& ns) {
  std::set<std::string> names;
  const std::function<bool(ClassPtr)> visit = [&](const ClassPtr& cls) {
    names.insert(cls->GetName({}));
    cls->EnumerateSubclasses(visit, {});
    return true;
  };
  ns->EnumerateRootClasses(visit, {});
  return names;
}

TEST(InventorySchema, LoadsWithoutAMessageOrALogLine) {
  RecordingLogger log;
  ASSERT_TRUE(LoadSchema());
  EXPECT_EQ(log.lines, LogLines{});
}

TEST(InventorySchema, HasItsClasses) {
  EXPECT_EQ(AllClasses(LoadSchema()),
            (std::set<std::string>{
                "ORVSG_CacheMemory",        "ORVSG_ComputerSystem",   "ORVSG_DiskDrive",
                "ORVSG_DiskPartition",      "ORVSG_FileSystem",       "ORVSG_FileSystemOnPartition",
                "ORVSG_GraphicsController", "ORVSG_HostedFileSystem", "ORVSG_LogicalDevice",
                "ORVSG_ManagedElement",     "ORVSG_Memory",           "ORVSG_MemoryModule",
                "ORVSG_NetworkPort",        "ORVSG_NumaNode",         "ORVSG_OperatingSystem",
                "ORVSG_PCIDevice",          "ORVSG_PartitionOnDisk",  "ORVSG_PhysicalNetworkPort",
                "ORVSG_Processor",          "ORVSG_ProcessorCache",   "ORVSG_RealizesMemory",
                "ORVSG_RunningOS",          "ORVSG_StorageExtent",    "ORVSG_StorageVolume",
                "ORVSG_SystemDevice",       "ORVSG_USBDevice",        "ORVSG_USBDeviceOnHub",
                "ORVSG_VolumeOnExtent"}));
}

// A quantity whose qualifiers are not all there would be shown as a bare number.
TEST(InventorySchema, EveryUnitHasTheQualifiersThatShowIt) {
  const auto ns = LoadSchema();
  const auto has = [](const PropertyDeclPtr& decl, const char* name) {
    return StatusOf([&] { decl->GetQualifier(name, {}); }) == 0;
  };
  int quantities = 0;
  for (const auto& name : AllClasses(ns))
    ns->GetClass(name, {})->EnumeratePropertyDecls(
        [&](const PropertyDeclPtr& decl) {
          const auto what = name + "." + decl->GetName({});
          EXPECT_TRUE(has(decl, "NULLDISPLAY") || has(decl, "Key")) << what;
          if (!has(decl, "UNITS")) return true;
          ++quantities;
          EXPECT_TRUE(has(decl, "DISPLAYFIXEDUNITS") && has(decl, "ABBREVIATEUNITS")) << what;
          const auto unit = decl->GetQualifier("UNITS", {})->GetValue({}).ToString(10);
          EXPECT_EQ(unit == "Seconds", has(decl, "DISPLAYCPUTIME")) << what;
          return true;
        },
        {});
  EXPECT_GT(quantities, 10);
}

TEST(InventorySchema, OffersAMethodWithParameters) {
  const auto method =
      LoadSchema()->GetClass("ORVSG_Processor", {})->GetMethodDecl("RequestStateChange", {});
  Texts names;
  method->EnumerateParameters(
      [&](const ParameterDeclPtr& parameter) {
        names.push_back(parameter->GetName({}));
        return true;
      },
      {});
  EXPECT_EQ(names, (Texts{"Reason", "RequestedState", "TimeoutPeriod"}));
}

}  // namespace
}  // namespace havtest

// Putting a collection into a namespace, on every platform.
#include <gtest/gtest.h>

#include "inventory/CachesFound.h"
#include "tests/inventory/Published.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST_F(Published, WhatTheSchemaLacksIsReported) {
  TCollection collection;
  collection.Add("1", "ORVSG_Toaster", "toaster");
  collection.Add("2", "ORVSG_Memory", "Memory")
      .Set("Slots", std::optional(std::uint32_t{2}))
      .Set("TotalSize", std::optional(std::uint16_t{2}))
      .Set("FreeSize", std::optional(std::uint64_t{2}));
  collection.Add("3", "ORVSG_Memory", "Memory");
  collection.Link("ORVSG_ProcessorCache", "1", "2");
  for (const auto& failure : PublishInventory(collection, *ns))
    failures.push_back(failure.ToString());
  const std::string absent = THAVStatusCode(kHAVNotFound).TranslateStatusCode();
  const std::string differs = THAVStatusCode(kHAVTypesDiffer).TranslateStatusCode();
  EXPECT_EQ(failures, (Texts{"namespace: ORVSG_Toaster: " + absent,
                             "namespace: ORVSG_Memory.Slots: " + absent,
                             "namespace: ORVSG_Memory.TotalSize: " + differs,
                             "namespace: ORVSG_Memory.Name=\"Memory\": "
                             "there is another element of this name"}));
  EXPECT_EQ(Shown("ORVSG_Memory.Name=\"Memory\"", "FreeSize"), "2 B");
}

TEST_F(Published, ThisMachineFitsTheSchema) {
  const auto refused = PublishInventory(GatherInventory(TMachine()), *ns);
  for (const auto& failure : refused) ADD_FAILURE() << failure.ToString();
  EXPECT_GE(PathsOf("ORVSG_ManagedElement", true).size(), 5U);
}

}  // namespace
}  // namespace havtest

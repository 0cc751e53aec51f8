// The instance store of a class: what stands under which path, and for how long.
#include <boost/make_shared.hpp>

#include "support/ForeignInstance.h"
#include "support/Instances.h"

namespace havtest {
namespace {

using Names = std::vector<std::string>;

struct Store {
  Repository repository;
  ClassPtr cls = repository.Class("Thing");

  InstancePtr New(const std::string& name) const {
    auto instance = cls->AllocateInstance({});
    instance->SetPropertyValue("Name", TCIMValue(name), {});
    return instance;
  }
  InstancePtr Add(const std::string& name) const {
    return repository.Instance(cls, {{"Name", TCIMValue(name)}});
  }
  InstancePtr Find(const std::string& name) const {
    return repository.ns->GetInstance(ReferenceTo(cls, {{"Name", TCIMValue(name)}}), {});
  }
};

TEST(InstanceStore, DoesNotHaveAnInstanceThatWasOnlyMade) {
  Store store;
  store.New("a");
  EXPECT_EQ(Stored(store.cls), Names{});
  EXPECT_FALSE(store.Find("a"));
}

TEST(InstanceStore, HasAnInstanceUnderItsPath) {
  Store store;
  auto a = store.Add("a");
  EXPECT_EQ(store.Find("a"), a);
}

TEST(InstanceStore, AnswersAnEmptyPointerForAPathThatIsNotThere) {
  Store store;
  store.Add("a");
  RecordingLogger log;
  EXPECT_FALSE(store.Find("b"));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceStore, GetInstanceOfAnUnknownClassThrows15AndLogsNothing) {
  Store store;
  const auto path = TCIMReference::Parse("Unknown.Name=\"a\"", {});
  RecordingLogger log;
  EXPECT_STATUS(15, store.repository.ns->GetInstance(path, {}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceStore, FindsByAPathWithAnyNamespaceName) {
  Store store;
  auto a = store.Add("a");
  const auto path = a->GetReference({{"ProvNSP", TCIMValue("root/cimv2")}});
  EXPECT_EQ(store.repository.ns->GetInstance(path, {}), a);
}

TEST(InstanceStore, KeepsAnInstanceWhateverNamespaceNameItWasAddedUnder) {
  Store store;
  auto a = store.New("a");
  a->AddToNamespace({{"ProvNSP", TCIMValue("root/cimv2")}});
  EXPECT_EQ(store.Find("a"), a);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
}

TEST(InstanceStore, HasTheInstancesOfAClassNotThoseOfItsSubclasses) {
  Store store;
  auto sub = store.repository.Class("SubThing", store.cls);
  auto a = store.repository.Instance(sub, {{"Name", TCIMValue("a")}});
  EXPECT_EQ(Stored(store.cls), Names{});
  EXPECT_EQ(Stored(sub), (Names{"SubThing.Name=\"a\""}));
  EXPECT_FALSE(store.Find("a"));
}

TEST(InstanceStore, IsOrderedByThePathTextByteByByte) {
  Store store;
  for (const char* name : {"b", "a", "B", "a1", ""}) store.Add(name);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"\"", "Thing.Name=\"B\"", "Thing.Name=\"a\"",
                                      "Thing.Name=\"a1\"", "Thing.Name=\"b\""}));
}

TEST(InstanceStore, HasOneEntryForAnInstanceAddedTwice) {
  Store store;
  auto a = store.Add("a");
  a->AddToNamespace({});
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
  EXPECT_EQ(store.Find("a"), a);
}

TEST(InstanceStore, AnotherInstanceOfTheSamePathTakesThePlace) {
  Store store;
  auto first = store.Add("a");
  auto second = store.Add("a");
  EXPECT_EQ(store.Find("a"), second);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
  EXPECT_EQ(ValueOf(first, "Name"), TCIMValue("a"));
}

TEST(InstanceStore, DeleteTakesTheInstanceOut) {
  Store store;
  auto a = store.Add("a");
  store.Add("b");
  a->Delete({});
  EXPECT_FALSE(store.Find("a"));
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"b\""}));
}

TEST(InstanceStore, DeleteOfAnInstanceThatIsNotStoredIsNoError) {
  Store store;
  RecordingLogger log;
  EXPECT_STATUS(0, store.New("a")->Delete({}));
  auto b = store.Add("b");
  b->Delete({});
  EXPECT_STATUS(0, b->Delete({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceStore, DeleteGoesByThePathWhoeverStandsThere) {
  Store store;
  store.Add("a");
  store.New("a")->Delete({});
  EXPECT_EQ(Stored(store.cls), Names{});
}

TEST(InstanceStore, ADeletedInstanceStaysUsableAndCanBeAddedAgain) {
  Store store;
  auto a = store.Add("a");
  a->Delete({});
  EXPECT_EQ(PathOf(a), "Thing.Name=\"a\"");
  a->AddToNamespace({});
  EXPECT_EQ(store.Find("a"), a);
}

TEST(InstanceStore, AChangedKeyIsNotSeenBeforeTheInstanceIsAddedAgain) {
  Store store;
  auto a = store.Add("a");
  a->SetPropertyValue("Name", TCIMValue("b"), {});
  EXPECT_EQ(store.Find("a"), a);
  EXPECT_FALSE(store.Find("b"));
}

TEST(InstanceStore, AddingAgainAfterAKeyChangedMovesTheEntry) {
  Store store;
  auto a = store.Add("a");
  a->SetPropertyValue("Name", TCIMValue("b"), {});
  a->AddToNamespace({});
  EXPECT_FALSE(store.Find("a"));
  EXPECT_EQ(store.Find("b"), a);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"b\""}));
}

TEST(InstanceStore, AddingAgainAfterAKeyChangedTakesTheOthersPlace) {
  Store store;
  auto a = store.Add("a");
  store.Add("b");
  a->SetPropertyValue("Name", TCIMValue("b"), {});
  a->AddToNamespace({});
  EXPECT_EQ(store.Find("b"), a);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"b\""}));
}

TEST(InstanceStore, DeleteAfterAKeyChangedLeavesNoEntryBehind) {
  Store store;
  auto a = store.Add("a");
  a->SetPropertyValue("Name", TCIMValue("b"), {});
  a->Delete({});
  EXPECT_FALSE(store.Find("a"));
  EXPECT_EQ(Stored(store.cls), Names{});
}

TEST(InstanceStore, AnInstanceDisplacedAndRenamedDoesNotTakeItsSuccessorOut) {
  Store store;
  auto first = store.Add("a");
  auto second = store.Add("a");
  first->SetPropertyValue("Name", TCIMValue("b"), {});
  first->AddToNamespace({});
  EXPECT_EQ(store.Find("a"), second);
  EXPECT_EQ(store.Find("b"), first);
}

TEST(InstanceStore, AddInstanceStoresWithoutValidating) {
  Store store;
  auto unnamed = store.cls->AllocateInstance({});
  RecordingLogger log;
  store.cls->AddInstance(unnamed, {});
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=NULL"}));
}

TEST(InstanceStore, RemoveInstanceTakesOut) {
  Store store;
  auto a = store.Add("a");
  store.cls->RemoveInstance(a, {});
  EXPECT_EQ(Stored(store.cls), Names{});
}

TEST(InstanceStore, AnEmptyPointerIsRefusedWith15AndNothingChanges) {
  Store store;
  store.Add("a");
  RecordingLogger log;
  EXPECT_STATUS(15, store.cls->AddInstance({}, {}));
  EXPECT_STATUS(15, store.cls->RemoveInstance({}, {}));
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
}

TEST(InstanceStore, ClearInstancesEmptiesTheStoreOfEveryClass) {
  Store store;
  auto sub = store.repository.Class("SubThing", store.cls);
  auto a = store.Add("a");
  store.repository.Instance(sub, {{"Name", TCIMValue("b")}});
  store.repository.ns->ClearInstances();
  EXPECT_EQ(Stored(store.cls), Names{});
  EXPECT_EQ(Stored(sub), Names{});
  EXPECT_EQ(PathOf(a), "Thing.Name=\"a\"");
}

TEST(InstanceStore, AnInstanceClearedAwayCanBeAddedAgain) {
  Store store;
  auto a = store.Add("a");
  store.repository.ns->ClearInstances();
  a->AddToNamespace({});
  EXPECT_EQ(store.Find("a"), a);
}

TEST(InstanceStore, AnInstanceWhoseEndStoresAnotherUnderItsPathLeavesOneEntry) {
  Store store;
  InstancePtr late = store.New("a");
  const auto end = [&] {
    if (late) store.cls->AddInstance(std::exchange(late, {}), {});
  };
  store.cls->AddInstance(boost::make_shared<ForeignInstance>(store.New("a"), end), {});
  store.Add("a");
  EXPECT_FALSE(late);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
  store.Find("a")->Delete({});
  EXPECT_EQ(Stored(store.cls), Names{});
}

TEST(InstanceStore, WhatTheEndOfARemovedInstanceStoresStays) {
  Store store;
  const InstancePtr late = store.New("a");
  auto foreign = boost::make_shared<ForeignInstance>(store.New("a"),
                                                     [&] { store.cls->AddInstance(late, {}); });
  store.cls->AddInstance(foreign, {});
  foreign.reset();
  store.New("a")->Delete({});
  EXPECT_EQ(store.Find("a"), late);
  EXPECT_EQ(Stored(store.cls), (Names{"Thing.Name=\"a\""}));
}

TEST(InstanceStore, AnInstanceWhoseClassGotAnotherKeySinceCanBeDeleted) {
  Store store;
  auto a = store.Add("a");
  store.Add("b");
  const auto path = a->GetReference({});
  store.repository.Key(store.cls, "Second");
  RecordingLogger log;
  EXPECT_STATUS(15, a->GetReference({}));
  EXPECT_EQ(store.repository.ns->GetInstance(path, {}), a);
  EXPECT_STATUS(0, a->Delete({}));
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_FALSE(store.repository.ns->GetInstance(path, {}));
  EXPECT_STATUS(15, a->GetReference({}));
  int left = 0;
  store.cls->EnumerateInstances([&](InstancePtr) { return ++left != 0; }, false, {});
  EXPECT_EQ(left, 1);
}

TEST(InstanceStore, DeletingAnInstanceWithoutAPathThatIsNotStoredThrows15) {
  Store store;
  auto a = store.New("a");
  store.repository.Key(store.cls, "Second");
  EXPECT_STATUS(15, a->Delete({}));
}

TEST(InstanceStore, OneKeylessInstanceStandsUnderTheClassName) {
  Repository repository;
  auto keyless = repository.Allocate("Keyless");
  keyless->AddToNamespace({});
  repository.Instance(keyless, {});
  auto second = repository.Instance(keyless, {});
  EXPECT_EQ(Stored(keyless), (Names{"Keyless"}));
  EXPECT_EQ(repository.ns->GetInstance(second->GetReference({}), {}), second);
}

TEST(InstanceStore, TwoNamespacesKeepTheirInstancesApart) {
  Store one;
  Store other;
  auto a = one.Add("a");
  EXPECT_EQ(one.Find("a"), a);
  EXPECT_FALSE(other.repository.ns->GetInstance(a->GetReference({}), {}));
}

}  // namespace
}  // namespace havtest

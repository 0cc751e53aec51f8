// Lifetime: what goes with the namespace, and what the host still holds stays usable.
#include <boost/weak_ptr.hpp>

#include "contract/Links.h"

namespace havtest {
namespace {

TEST(InstanceLifetime, AStoredInstanceGoesWithItsNamespace) {
  boost::weak_ptr<ICIMInstance> instance;
  boost::weak_ptr<ICIMClass> cls;
  {
    Repository repository;
    cls = repository.Class("Thing");
    instance = Thing(repository, cls.lock(), "a");
    EXPECT_FALSE(instance.expired());
  }
  EXPECT_TRUE(instance.expired());
  EXPECT_TRUE(cls.expired());
}

TEST(InstanceLifetime, LinkedInstancesGoWithTheirNamespace) {
  boost::weak_ptr<ICIMInstance> system, disk, link;
  boost::weak_ptr<ICIMClass> association;
  {
    LinkedModel model;
    link = model.Link("1");
    system = model.s;
    disk = model.d;
    association = model.link;
  }
  EXPECT_TRUE(link.expired());
  EXPECT_TRUE(system.expired());
  EXPECT_TRUE(disk.expired());
  EXPECT_TRUE(association.expired());
}

TEST(InstanceLifetime, TraversedInstancesGoWithTheirNamespace) {
  std::vector<boost::weak_ptr<ICIMInstance>> instances;
  {
    LinkedModel model;
    instances = {model.Link("1"), model.Link("2"), model.s, model.d};
    // Over and over, for what a traversal keeps for the next one.
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(References(model.s).size(), 2u);
      EXPECT_EQ(Associators(model.s).size(), 2u);
      EXPECT_EQ(Associators(model.d).size(), 2u);
    }
  }
  for (const auto& instance : instances) EXPECT_TRUE(instance.expired());
}

TEST(InstanceLifetime, InstancesOfAClassThatWasNeverRegisteredGoWithTheNamespace) {
  boost::weak_ptr<ICIMInstance> instance;
  {
    Repository repository;
    auto cls = repository.Allocate("Hidden");
    repository.Key(cls, "Name");
    auto made = cls->AllocateInstance({});
    made->SetPropertyValue("Name", TCIMValue("a"), {});
    cls->AddInstance(made, {});
    instance = made;
  }
  EXPECT_TRUE(instance.expired());
}

TEST(InstanceLifetime, InstancesOfADeletedClassGoWithTheNamespace) {
  boost::weak_ptr<ICIMInstance> instance;
  {
    Repository repository;
    auto cls = repository.Class("Thing");
    instance = Thing(repository, cls, "a");
    cls->Delete({});
  }
  EXPECT_TRUE(instance.expired());
}

TEST(InstanceLifetime, InstancesOfADisplacedClassGoWithTheNamespace) {
  boost::weak_ptr<ICIMInstance> instance;
  {
    Repository repository(true);
    auto first = repository.Allocate("Thing");
    auto second = repository.Allocate("Thing");
    repository.Key(first, "Name");
    first->AddToNamespace({});
    instance = Thing(repository, first, "a");
    second->AddToNamespace({});
  }
  EXPECT_TRUE(instance.expired());
}

TEST(InstanceLifetime, ADeletedInstanceIsFreed) {
  Repository repository;
  auto instance = Thing(repository, repository.Class("Thing"), "a");
  boost::weak_ptr<ICIMInstance> watch = instance;
  instance->Delete({});
  instance.reset();
  EXPECT_TRUE(watch.expired());
}

TEST(InstanceLifetime, ADeletedInstanceIsFreedAlsoAfterATraversal) {
  LinkedModel model;
  boost::weak_ptr<ICIMInstance> link = model.Link("1");
  boost::weak_ptr<ICIMInstance> disk = model.d;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Associators(model.s).size(), 1u);
  model.d->Delete({});
  model.d.reset();
  EXPECT_TRUE(disk.expired());
  link.lock()->Delete({});
  EXPECT_TRUE(link.expired());
}

TEST(InstanceLifetime, AnInstanceThatWasNotStoredIsFreed) {
  Repository repository;
  auto instance = repository.Class("Thing")->AllocateInstance({});
  boost::weak_ptr<ICIMInstance> watch = instance;
  instance->AddToNamespace({});
  instance.reset();
  EXPECT_TRUE(watch.expired());
}

TEST(InstanceLifetime, ClearedInstancesAreFreed) {
  Repository repository;
  boost::weak_ptr<ICIMInstance> watch = Thing(repository, repository.Class("Thing"), "a");
  repository.ns->ClearInstances();
  EXPECT_TRUE(watch.expired());
}

TEST(InstanceLifetime, AnInstanceKeepsItsClass) {
  InstancePtr instance;
  {
    Repository repository;
    instance = repository.Class("Thing")->AllocateInstance({});
  }
  ASSERT_TRUE(instance->GetClass({}));
  EXPECT_EQ(instance->GetClass({})->GetName({}), "Thing");
  EXPECT_FALSE(instance->GetClass({})->GetNamespace({}));
}

TEST(InstanceLifetime, AnInstanceWithoutItsNamespaceIsReadAndWritten) {
  InstancePtr instance;
  {
    Repository repository;
    instance = Thing(repository, repository.Class("Thing"), "a");
  }
  EXPECT_EQ(ValueOf(instance, "Name"), TCIMValue("a"));
  instance->SetPropertyValue("Name", TCIMValue("b"), {});
  EXPECT_EQ(PathOf(instance), "Thing.Name=\"b\"");
  EXPECT_EQ(ValueOf(instance, "Description"), TCIMValue(" "));
  EXPECT_EQ(ValueOf(instance, "speedDuplex"), TCIMValue("Unknown"));
  EXPECT_EQ(SlotNames(instance), (Names{"Name"}));
}

TEST(InstanceLifetime, AnInstanceWithoutItsNamespaceValidatesAndIsDeleted) {
  InstancePtr instance;
  {
    Repository repository;
    instance = Thing(repository, repository.Class("Thing"), "a");
  }
  EXPECT_STATUS(0, instance->Validate({}));
  EXPECT_STATUS(0, instance->Delete({}));
}

TEST(InstanceLifetime, TraversalWithoutTheNamespaceFindsNothing) {
  InstancePtr system, link;
  {
    LinkedModel model;
    link = model.Link("1");
    system = model.s;
  }
  RecordingLogger log;
  EXPECT_EQ(References(system), Names{});
  EXPECT_EQ(Associators(system), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceLifetime, AReferenceOutlivesWhatItPointsAt) {
  InstancePtr link;
  {
    LinkedModel model;
    link = model.Link("1");
  }
  const TCIMValue part = ValueOf(link, "Part");
  ASSERT_TRUE(part.IsReference());
  const auto reference = static_cast<TCIMReference>(part);
  EXPECT_EQ(reference.GetPath(), "Disk.Name=\"d\"");
  EXPECT_STATUS(15, reference.GetCIMElement(false));
  EXPECT_FALSE(part.GetReferencedClass());
  EXPECT_EQ(part.GetReferencedClassName(), "Disk");
}

TEST(InstanceLifetime, ASlotOutlivesItsInstance) {
  Repository repository;
  auto cls = repository.Class("Thing");
  auto slot = Thing(repository, cls, "a")->GetProperty("Name", {});
  repository.ns->ClearInstances();
  EXPECT_EQ(slot->GetValue({}), TCIMValue("a"));
  slot->SetValue(TCIMValue("b"), {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue("b"));
  EXPECT_EQ(slot->GetDisplayValue({}), "b");
}

TEST(InstanceLifetime, ASlotIsThereAsLongAsItsInstanceAndNoLonger) {
  Repository repository;
  auto cls = repository.Class("Thing");
  repository.Property(cls, "Size", TCIMValue(std::uint32_t{0}));
  auto instance = Thing(repository, cls, "a");
  const boost::weak_ptr<ICIMProperty> watched = instance->GetProperty("Name", {});
  auto held = instance->GetProperty("Size", {});
  EXPECT_EQ(watched.lock(), instance->GetProperty("Name", {}));
  instance->Delete({});
  instance.reset();
  EXPECT_TRUE(watched.expired());
  const boost::weak_ptr<ICIMProperty> last = held;
  EXPECT_EQ(held->GetValue({}), TCIMValue(std::uint32_t{0}));
  held.reset();
  EXPECT_TRUE(last.expired());
}

TEST(InstanceLifetime, ASlotHoldsNeitherItsInstanceNorItsNamespace) {
  PropertyPtr slot;
  boost::weak_ptr<ICIMInstance> instance;
  boost::weak_ptr<ICIMNamespace> ns;
  {
    Repository repository;
    auto made = Thing(repository, repository.Class("Thing"), "a");
    slot = made->GetProperty("Name", {});
    instance = made;
    ns = repository.ns;
  }
  EXPECT_TRUE(instance.expired());
  EXPECT_TRUE(ns.expired());
  EXPECT_FALSE(slot->GetDecl({}));
  EXPECT_EQ(slot->GetValue({}), TCIMValue("a"));
  EXPECT_STATUS(15, slot->SetValue(TCIMValue("b"), {}));
}

TEST(InstanceLifetime, ADerivedSlotKeepsItsDeclarationBeyondTheNamespace) {
  PropertyPtr slot;
  {
    Repository repository;
    slot = Thing(repository, repository.Class("Thing"), "a")->GetProperty("HealthState", {});
  }
  ASSERT_TRUE(slot->GetDecl({}));
  EXPECT_FALSE(slot->GetDecl({})->GetClass({}));
  EXPECT_EQ(slot->GetValue({}), TCIMValue(std::uint16_t{0}));
  slot->SetValue(TCIMValue(std::uint16_t{5}), {});
  EXPECT_EQ(slot->GetDisplayValue({}), "5");
}

TEST(InstanceLifetime, ReadingADerivedPropertyOverAndOverKeepsOneDeclarationAlive) {
  Repository repository;
  auto instance = Thing(repository, repository.Class("Thing"), "a");
  std::vector<boost::weak_ptr<ICIMPropertyDecl>> seen;
  for (int i = 0; i < 100; ++i)
    seen.push_back(instance->GetProperty("speedDuplex", {})->GetDecl({}));
  int alive = 0;
  for (const auto& decl : seen) alive += decl.expired() ? 0 : 1;
  EXPECT_EQ(alive, 1);
}

TEST(InstanceLifetime, ALongChainOfLinksGoesWithItsNamespace) {
  boost::weak_ptr<ICIMInstance> last;
  {
    SelfModel model;
    InstancePtr before = model.a;
    for (int i = 0; i < 1000; ++i) {
      auto next = Thing(model.repository, model.node, "n" + std::to_string(i));
      Join(model.repository, model.edge, std::to_string(i), {{"First", before}, {"Second", next}});
      before = next;
    }
    EXPECT_EQ(References(before).size(), 1u);
    last = before;
  }
  EXPECT_TRUE(last.expired());
}

}  // namespace
}  // namespace havtest

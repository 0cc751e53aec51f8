// What a host's own objects may do while the repository calls them: change what it is working
// on, drop its last owner, or deliver nothing.
#include <functional>
#include <memory>

#include <boost/make_shared.hpp>

#include "support/ForeignClass.h"
#include "support/ForeignInstance.h"
#include "support/ForeignQualifier.h"
#include "support/Instances.h"
#include "support/Walks.h"

namespace havtest {
namespace {

// A declaration of the host's making that runs a hook at its first question.
struct HostPropertyDecl : ForeignPropertyDecl {
  using ForeignPropertyDecl::ForeignPropertyDecl;

  mutable std::function<void()> whenAskedForType;
  std::function<void()> whenAskedForQualifier;

  TCIMValue::TCIMType GetType(TOptions options) const override {
    RunOnce(whenAskedForType);
    return ForeignPropertyDecl::GetType(options);
  }
  QualifierPtr GetQualifier(const std::string& name, TOptions options) override {
    RunOnce(whenAskedForQualifier);
    return ForeignPropertyDecl::GetQualifier(name, options);
  }
};

// A class "A" with a key, a property "P" of the host's making and a qualifier "Q" of its own.
struct Model {
  std::unique_ptr<Repository> repository = std::make_unique<Repository>();
  ClassPtr cls = repository->Allocate("A");
  boost::shared_ptr<HostPropertyDecl> decl =
      boost::make_shared<HostPropertyDecl>(cls, "P", TCIMValue(std::string(100, 'p')));
  boost::shared_ptr<ForeignQualifier> qualifier = boost::make_shared<ForeignQualifier>(
      repository->Declaration("Q", TCIMValue("")), TCIMValue("standing"));
  InstancePtr instance;

  Model() {
    repository->Key(cls, "Name");
    cls->AddPropertyDecl(decl, {});
    cls->AddQualifier(qualifier, {});
    cls->AddToNamespace({});
    instance = repository->Instance(cls, {{"Name", TCIMValue("a")}});
  }

  // Everything that keeps the class and the instance alive.
  void Drop() {
    repository.reset();
    cls.reset();
    instance.reset();
  }
  std::function<void()> Dropping() {
    return [this] { Drop(); };
  }
};

TEST(HostObjects, AQualifierMayRepeatTheInheritanceOfItsClassWhenOneIsAttached) {
  Model model;
  const auto next = boost::make_shared<ForeignQualifier>(model.qualifier->GetQualifierDecl({}),
                                                         TCIMValue("next"));
  model.qualifier->whenAskedForFlavor = [&] { model.repository->ns->AllocateClass("A", {}, {}); };
  model.cls->AddQualifier(next, {});
  EXPECT_EQ(model.cls->GetQualifier("Q", {}), next);
}

TEST(HostObjects, AQualifierMayDropItsClassWhenOneIsAttached) {
  Model model;
  ICIMClass& cls = *model.cls;
  const auto next = boost::make_shared<ForeignQualifier>(model.qualifier->GetQualifierDecl({}),
                                                         TCIMValue("next"));
  model.qualifier->whenAskedForFlavor = model.Dropping();
  cls.AddQualifier(next, {});
  EXPECT_FALSE(model.cls);
}

TEST(HostObjects, AQualifierMayDropItsDeclarationWhenOneIsAttached) {
  Model model;
  auto decl = model.cls->AllocatePropertyDecl("Loose", TCIMValue(true), {});
  decl->AddQualifier(model.qualifier, {});
  ICIMPropertyDecl& bare = *decl;
  const auto next = boost::make_shared<ForeignQualifier>(model.qualifier->GetQualifierDecl({}),
                                                         TCIMValue("next"));
  model.qualifier->whenAskedForFlavor = [&] { decl.reset(); };
  bare.AddQualifier(next, {});
  EXPECT_FALSE(decl);
}

TEST(HostObjects, AQualifierIsNotAskedForItsValueByASubclassThatHasItsOwn) {
  Model model;
  const auto sub = model.repository->Allocate("Sub", model.cls);
  sub->AllocateQualifier(model.qualifier->GetQualifierDecl({}), TCIMValue("own"), {});
  bool isAsked = false;
  model.qualifier->whenAskedForValue = [&] { isAsked = true; };
  sub->AddToNamespace({});
  model.repository->ns->AllocateClass("Sub", model.cls, {});
  EXPECT_FALSE(isAsked);
  EXPECT_EQ(sub->GetQualifier("Q", {})->GetValue({}), TCIMValue("own"));
}

TEST(HostObjects, AQualifierThatEndsSeesTheOneThatTookItsPlace) {
  Model model;
  QualifierPtr seen;
  const auto next = boost::make_shared<ForeignQualifier>(model.qualifier->GetQualifierDecl({}),
                                                         TCIMValue("next"));
  model.qualifier->whenDestroyed = [&] { seen = model.cls->GetQualifier("Q", {}); };
  model.qualifier.reset();
  model.cls->AddQualifier(next, {});
  EXPECT_EQ(seen, next);
}

TEST(HostObjects, AQualifierMayChangeItsTableWhileItIsInherited) {
  Model model;
  model.qualifier->whenAskedForFlavor = [&] {
    model.repository->Qualify(*model.cls, {{"More", TCIMValue(true)}});
  };
  auto sub = model.repository->Allocate("Sub", model.cls);
  EXPECT_EQ(QualifierNames(sub), Names{"Q"});
  model.qualifier->whenAskedWhetherPropagated = [&] {
    model.repository->ns->AllocateClass("A", {}, {});
  };
  model.repository->ns->AllocateClass("A", {}, {});
  EXPECT_EQ(QualifierNames(model.cls), (Names{"More", "Q"}));
}

TEST(HostObjects, ADeclarationMayRemoveOthersWhileReferencesAreLookedFor) {
  Model model;
  model.decl->whenAskedForType = [&] {
    for (const char* name : {"Name", "P"})
      model.cls->RemovePropertyDecl(model.cls->GetPropertyDecl(name, {}), {});
  };
  EXPECT_EQ(ReferenceNames(model.cls), Names{});
  EXPECT_EQ(PropertyNames(model.cls), Names{});
}

TEST(HostObjects, ADeclarationThatEndsSeesItsTableWithoutIt) {
  Model model;
  struct Ending : ForeignPropertyDecl {
    using ForeignPropertyDecl::ForeignPropertyDecl;
    ~Ending() override { RunOnce(whenDestroyed); }
    std::function<void()> whenDestroyed;
  };
  Names seen;
  for (const bool replaced : {false, true}) {
    auto ending = boost::make_shared<Ending>(model.cls, "speedDuplex", TCIMValue("x"));
    ending->whenDestroyed = [&] {
      for (const auto& name : SlotNames(model.cls->AllocateInstance({}))) seen.push_back(name);
    };
    model.cls->AddPropertyDecl(ending, {});
    model.cls->AllocateInstance({});
    const auto named =
        boost::make_shared<ForeignPropertyDecl>(model.cls, "speedDuplex", TCIMValue("y"));
    ending.reset();
    seen.clear();
    if (replaced) {
      model.cls->AddPropertyDecl(named, {});
      EXPECT_EQ(seen, (Names{"Name", "P", "speedDuplex"}));
    } else {
      model.cls->RemovePropertyDecl(named, {});
      EXPECT_EQ(seen, (Names{"Name", "P"}));
    }
  }
}

TEST(HostObjects, ADeclarationMayDropItsClassInEveryOperationThatAsksIt) {
  const std::function<void(ICIMClass&)> operations[] = {
      [](ICIMClass& cls) { cls.Validate({}); },
      [](ICIMClass& cls) { EXPECT_STATUS(15, cls.AddToNamespace({})); },
      [](ICIMClass& cls) { cls.EnumerateKeyNames([](const std::string*) { return true; }, {}); },
  };
  for (const auto& operation : operations) {
    Model model;
    model.cls->RemovePropertyDecl(model.cls->GetPropertyDecl("Name", {}), {});
    ICIMClass& cls = *model.cls;
    model.decl->whenAskedForQualifier = model.Dropping();
    operation(cls);
    EXPECT_FALSE(model.cls);
  }
}

TEST(HostObjects, ADeclarationMayDropItsClassWhenItIsAddedToIt) {
  Model model;
  ICIMClass& cls = *model.cls;
  const auto next = boost::make_shared<HostPropertyDecl>(model.cls, "Next", TCIMValue("x"));
  next->whenAskedForQualifier = model.Dropping();
  cls.AddPropertyDecl(next, {});
  EXPECT_FALSE(model.cls);
}

TEST(HostObjects, AClassMayDropTheOneThatItIsComparedWith) {
  struct Dropping : ForeignClass {
    using ForeignClass::ForeignClass;
    mutable std::function<void()> whenAskedForName;
    std::string name = "A";
    const std::string& GetName(TOptions) const override {
      RunOnce(whenAskedForName);
      return name;
    }
  };
  const std::function<bool(ICIMClass&, const ClassPtr&)> comparisons[] = {
      [](ICIMClass& cls, const ClassPtr& other) { return cls == *other; },
      [](ICIMClass& cls, const ClassPtr& other) { return !(cls < *other); },
      [](ICIMClass& cls, const ClassPtr& other) { return cls.IsA(other, {}); },
  };
  for (const auto& compare : comparisons) {
    Model model;
    ICIMClass& cls = *model.cls;
    const auto other = boost::make_shared<Dropping>(ClassPtr());
    other->whenAskedForName = model.Dropping();
    EXPECT_TRUE(compare(cls, other));
    EXPECT_FALSE(model.cls);
  }
}

// A superclass of the host's making that does something when a subclass joins it.
struct HostSuperclass : ForeignClass {
  using ForeignClass::ForeignClass;

  std::function<void()> whenJoined;

  void AddSubclass(ClassPtr subclass, TOptions options) override {
    RunOnce(whenJoined);
    ForeignClass::AddSubclass(subclass, options);
  }
};

TEST(HostObjects, ASuperclassMayRegisterAnotherClassOfTheNameThatIsBeingRegistered) {
  Repository repository(true);
  auto base = repository.Class("Base");
  const auto super = boost::make_shared<HostSuperclass>(base);
  auto one = repository.Allocate("A", super);
  auto two = repository.Allocate("A", super);
  super->whenJoined = [&] { two->AddToNamespace({}); };
  one->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetClass("A", {}), one);
  EXPECT_EQ(SubclassNames(base), Names{"A"});
  EXPECT_STATUS(17, two->Delete({}));
  EXPECT_STATUS(0, one->Delete({}));
  EXPECT_EQ(SubclassNames(base), Names{});
}

TEST(HostObjects, ASuperclassMayTakeTheNameForGood) {
  Repository repository(false);
  auto base = repository.Class("Base");
  const auto super = boost::make_shared<HostSuperclass>(base);
  auto one = repository.Allocate("A", super);
  auto two = repository.Allocate("A", super);
  super->whenJoined = [&] { two->AddToNamespace({}); };
  RecordingLogger log;
  EXPECT_STATUS(16, one->AddToNamespace({}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: TInmemNamespace: class A already defined"}}));
  EXPECT_EQ(repository.ns->GetClass("A", {}), two);
  EXPECT_EQ(SubclassNames(base), Names{"A"});
  EXPECT_STATUS(17, one->Delete({}));
  EXPECT_STATUS(0, two->Delete({}));
}

TEST(HostObjects, ADeclarationMayDropTheInstanceWhoseValueIsSet) {
  Model model;
  ICIMInstance& instance = *model.instance;
  model.decl->whenAskedForType = model.Dropping();
  instance.SetPropertyValue("P", TCIMValue(std::string(100, 'q')), {});
  EXPECT_FALSE(model.instance);
}

TEST(HostObjects, ADeclarationMayDropTheSlotWhosePreviousValueIsSet) {
  Model model;
  PropertyPtr slot = model.instance->GetProperty("P", {});
  ICIMProperty& bare = *slot;
  model.decl->whenAskedForType = [&] {
    model.Drop();
    slot.reset();
  };
  bare.SetPrevValue(TCIMValue(std::string(100, 'q')), {});
  EXPECT_FALSE(slot);
}

// A processor's class, with an instance of the host's making.
TEST(HostObjects, AProcessorThatDeliversNoStatusIsLeftOut) {
  struct Processor : ForeignInstance {
    using ForeignInstance::ForeignInstance;
    PropertyPtr GetProperty(const std::string&, TOptions) const override { return {}; }
  };
  Repository repository;
  auto cls = repository.Allocate("ORVSG_Processor");
  repository.Key(cls, "Name");
  repository.Property(cls, "CPUStatus", TCIMValue(std::uint16_t{2}));
  cls->AddToNamespace({});
  auto own = repository.Instance(cls, {{"Name", TCIMValue("b")}});
  auto behind = cls->AllocateInstance({});
  behind->SetPropertyValue("Name", TCIMValue("a"), {});
  cls->AddInstance(boost::make_shared<Processor>(behind), {});
  RecordingLogger log;
  EXPECT_EQ(Stored(cls), Names{PathOf(own)});
  EXPECT_EQ(log.Take(), (LogLines{{3, "cpuStatus is 2"}}));
}

TEST(HostObjects, AnInstanceMayDropTheNamespaceWhileItIsStored) {
  struct Dropping : ForeignInstance {
    using ForeignInstance::ForeignInstance;
    mutable std::function<void()> whenAskedForReference;
    TCIMReference GetReference(TOptions options) const override {
      RunOnce(whenAskedForReference);
      return ForeignInstance::GetReference(options);
    }
  };
  Model model;
  ClassPtr cls = model.cls;
  const auto stored = boost::make_shared<Dropping>(model.instance);
  stored->whenAskedForReference = model.Dropping();
  EXPECT_STATUS(15, cls->AddInstance(stored, {}));
  EXPECT_EQ(Stored(cls), Names{});
}

}  // namespace
}  // namespace havtest

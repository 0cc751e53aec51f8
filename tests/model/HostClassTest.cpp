// Instances of a class that a host has made: what the class answers, throws or does in between
// reaches the instance, and none of it ends the process.
#include <functional>
#include <memory>
#include <stdexcept>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "support/ForeignClass.h"
#include "support/ForeignQualifier.h"
#include "support/Instances.h"

namespace havtest {
namespace {

constexpr int kKeys = TInmemInstance::kValidateKeysNonNull;

// Passes everything on, after its hooks.
class HostClass : public ForeignClass {
 public:
  explicit HostClass(ClassPtr behind) : ForeignClass(behind), m_class(std::move(behind)) {}

  std::function<void()> whenAskedForADeclaration = [] {};
  mutable std::function<void()> whenAskedForKeys;
  bool deliversEmptyKeys = false;
  bool deliversNoDeclaration = false;
  InstancePtr added;

  PropertyDeclPtr GetPropertyDecl(const std::string& name, TOptions options) const override {
    whenAskedForADeclaration();
    return deliversNoDeclaration ? nullptr : ForeignClass::GetPropertyDecl(name, options);
  }
  void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                         TOptions options) const override {
    RunOnce(whenAskedForKeys);
    if (deliversEmptyKeys) callback(nullptr);
    ForeignClass::EnumerateKeyNames(callback, options);
    if (deliversEmptyKeys) callback(nullptr);
  }
  void AddPropertyDecl(PropertyDeclPtr decl, TOptions options) override {
    m_class->AddPropertyDecl(decl, options);
  }
  void AddInstance(InstancePtr instance, TOptions) override { added = instance; }

 private:
  ClassPtr m_class;
};

// A class with a key and a collection time, and the host's one in front of it.
struct Model {
  Repository repository;
  ClassPtr behind = repository.Allocate("Thing");
  boost::shared_ptr<HostClass> cls = boost::make_shared<HostClass>(behind);

  Model() {
    repository.Key(behind, "Name");
    repository.Property(behind, "DateTimeOfCollection", TCIMValue::Null(kCIMDateTime));
    behind->AddToNamespace({});
  }
  InstancePtr New(int flags = kKeys) const {
    return boost::make_shared<TInmemInstance>(cls, flags);
  }
  InstancePtr Named(const std::string& name) const {
    auto instance = New();
    instance->SetPropertyValue("Name", TCIMValue(name), {});
    return instance;
  }
};

TEST(HostClass, IsAskedForTheCollectionTimeOfAnInstance) {
  Model model;
  EXPECT_FALSE(ValueOf(model.New(), "DateTimeOfCollection").IsNull());
}

TEST(HostClass, IsAskedForTheCollectionTimeThoughItEnumeratesNone) {
  Repository repository;
  const auto cls = boost::make_shared<HostClass>(repository.Class("Thing"));
  int asked = 0;
  cls->whenAskedForADeclaration = [&] { ++asked; };
  boost::make_shared<TInmemInstance>(cls, kKeys);
  EXPECT_EQ(asked, 1);
}

TEST(HostClass, ThatRefusesTheCollectionTimeLeavesItOut) {
  Model model;
  for (const unsigned status : {1u, 15u, 25u}) {
    model.cls->whenAskedForADeclaration = [status] {
      throw THAVException(static_cast<EHAVStatusCode>(status));
    };
    EXPECT_TRUE(ValueOf(model.New(), "DateTimeOfCollection").IsNull());
  }
  model.cls->whenAskedForADeclaration = [] {};
  model.cls->deliversNoDeclaration = true;
  EXPECT_TRUE(ValueOf(model.New(), "DateTimeOfCollection").IsNull());
}

TEST(HostClass, ThatThrowsAnythingElseForTheCollectionTimeEndsTheConstruction) {
  Model model;
  model.cls->whenAskedForADeclaration = [] { throw std::runtime_error("no"); };
  EXPECT_THROW(model.New(), std::runtime_error);
}

TEST(HostClass, MayDeliverEmptyKeyNames) {
  Model model;
  auto instance = model.Named("a");
  model.cls->deliversEmptyKeys = true;
  EXPECT_STATUS(0, instance->Validate({}));
  EXPECT_EQ(PathOf(instance), "Thing.Name=\"a\"");
  RecordingLogger log;
  EXPECT_STATUS(18, model.New()->Validate({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance Thing: key property Name is NULL"}}));
}

TEST(HostClass, MayDropTheInstanceThatIsValidated) {
  Model model;
  InstancePtr instance = model.Named("a");
  const ICIMInstance& bare = *instance;
  model.cls->whenAskedForKeys = [&] { instance.reset(); };
  EXPECT_STATUS(0, bare.Validate({}));
  EXPECT_FALSE(instance);
}

TEST(HostClass, MayDropTheInstanceWhosePathIsAskedFor) {
  Model model;
  InstancePtr instance = model.Named("a");
  const ICIMInstance& bare = *instance;
  model.cls->whenAskedForADeclaration = [&] { instance.reset(); };
  EXPECT_EQ(bare.GetReference({}).GetPath(), "Thing.Name=\"a\"");
  EXPECT_FALSE(instance);
}

TEST(HostClass, MayDropTheInstanceThatIsAdded) {
  Model model;
  InstancePtr instance = model.Named("a");
  ICIMInstance& bare = *instance;
  model.cls->whenAskedForKeys = [&] { instance.reset(); };
  bare.AddToNamespace({});
  EXPECT_EQ(model.cls->added.get(), &bare);
  model.cls->added.reset();  // which keeps the class
}

TEST(HostClass, TakesTheDeclarationOfADerivedProperty) {
  Model model;
  auto instance = model.Named("a");
  EXPECT_EQ(ValueOf(instance, "HealthState"), TCIMValue(std::uint16_t{0}));
  EXPECT_TRUE(model.behind->GetPropertyDecl("HealthState", {}));
  EXPECT_EQ(instance->GetProperty("HealthState", {})->GetDecl({}),
            model.behind->GetPropertyDecl("HealthState", {}));
}

TEST(HostClass, ThatKeepsNoDeclarationOfADerivedPropertyAnswers15) {
  Model model;
  auto instance = model.Named("a");
  model.cls->deliversNoDeclaration = true;
  EXPECT_STATUS(15, instance->GetProperty("HealthState", {}));
}

TEST(HostClass, MayDropTheInstanceWhoseDerivedPropertyIsRead) {
  Model model;
  InstancePtr instance = model.Named("a");
  const ICIMInstance& bare = *instance;
  model.cls->whenAskedForADeclaration = [&] {
    instance.reset();
    model.cls.reset();
  };
  const PropertyPtr slot = bare.GetProperty("speedDuplex", {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue("Unknown"));
  EXPECT_FALSE(instance);
}

TEST(HostClass, MayEnumerateADeclarationWhoseNameIsNone) {
  struct Misnaming : ForeignClass {
    using ForeignClass::ForeignClass;
    void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                TOptions options) const override {
      try {
        callback(boost::make_shared<ForeignPropertyDecl>(ClassPtr(), "no name", TCIMValue(true)));
      } catch (const THAVException&) {
        // As the repository's own walks do.
      }
      callback({});
      ForeignClass::EnumeratePropertyDecls(callback, options);
    }
  };
  Model model;
  RecordingLogger log;
  const InstancePtr instance =
      boost::make_shared<TInmemInstance>(boost::make_shared<Misnaming>(model.behind), kKeys);
  EXPECT_EQ(SlotNames(instance), (std::vector<std::string>{"DateTimeOfCollection", "Name"}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name 'no name' is invalid"}}));
}

// A registration that fails after it has asked a host's classes leaves them as they were.
TEST(HostClass, KeepsWhatItListsWhenARegistrationIsRepeatedInVain) {
  Repository repository(true);
  auto behind = repository.Class("Node");
  auto host = boost::make_shared<ForeignClass>(behind);
  auto above = repository.Association("Above", "Left", behind, "Right", behind);
  auto hostAbove = boost::make_shared<ForeignClass>(above);
  auto link = repository.Allocate("Link", hostAbove);
  repository.Reference(link, "Host", host);
  link->AddToNamespace({});
  const auto listed = [&] {
    return ClassNames([&](const auto& callback) { above->EnumerateSubclasses(callback, {}); });
  };
  const auto associated = [&] {
    return ClassNames(
        [&](const auto& callback) { behind->EnumerateAssociationClasses(callback, "", "", {}); });
  };
  ASSERT_EQ(listed(), std::vector<std::string>{"Link"});
  ASSERT_EQ(associated(), (std::vector<std::string>{"Above", "Link"}));
  auto other = std::make_unique<Repository>();
  const auto gone = other->Class("Gone");
  repository.Reference(link, "Zombie", gone);
  other.reset();
  EXPECT_STATUS(15, link->AddToNamespace({}));
  EXPECT_EQ(listed(), std::vector<std::string>{"Link"});
  EXPECT_EQ(associated(), (std::vector<std::string>{"Above", "Link"}));
}

TEST(HostClass, InFrontOfASubclassThatIsTakenOverClosesNoCircle) {
  Repository repository(true);
  auto redefining = repository.Allocate("Node");
  auto under = repository.Class("Under");
  auto host = boost::make_shared<ForeignClass>(under);
  auto standing = repository.Class("Node", host);
  under->RemoveSubclass(standing, {});
  standing->AddSubclass(under, {});
  EXPECT_STATUS(16, redefining->AddToNamespace({}));
  EXPECT_EQ(standing, repository.ns->GetClass("Node", {}));
  EXPECT_FALSE(under->IsA(standing, {}));
}

}  // namespace
}  // namespace havtest

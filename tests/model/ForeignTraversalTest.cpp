// Traversal where classes and instances of a host's making take part: what they hand over may
// be anything, an empty pointer included.

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "support/ForeignClass.h"
#include "support/Instances.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

// Hands over an empty pointer before and after each of what the class behind it has.
class GappyClass : public ForeignClass {
 public:
  using ForeignClass::ForeignClass;

  void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                          TOptions o) override {
    callback({});
    ForeignClass::EnumerateInstances(callback, deep, o);
    callback({});
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions o) const override {
    callback({});
    ForeignClass::EnumerateAssociationClasses(callback, resultClass, role, o);
    callback({});
  }
};

// Stops where a callback answers false, as a host's class may.
class StoppingClass : public ForeignClass {
 public:
  using ForeignClass::ForeignClass;

  void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                          TOptions o) override {
    bool goesOn = true;
    ForeignClass::EnumerateInstances(
        [&](InstancePtr instance) { return goesOn = goesOn && callback(instance); }, deep, o);
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions o) const override {
    bool goesOn = true;
    ForeignClass::EnumerateAssociationClasses(
        [&](ClassPtr cls) { return goesOn = goesOn && callback(cls); }, resultClass, role, o);
  }
  void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                              TOptions o) const override {
    bool goesOn = true;
    ForeignClass::EnumeratePropertyDecls(
        [&](PropertyDeclPtr decl) { return goesOn = goesOn && callback(decl); }, o);
  }
  void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                         TOptions o) const override {
    bool goesOn = true;
    ForeignClass::EnumerateKeyNames(
        [&](const std::string* name) { return goesOn = goesOn && callback(name); }, o);
  }
};

struct Model {
  Repository repository;
  ClassPtr node = repository.Class("Node");
  ClassPtr link = repository.Association("Link", "From", node, "To", node);
  InstancePtr a = repository.Instance(node, {{"Name", TCIMValue("a")}});
  InstancePtr b = repository.Instance(node, {{"Name", TCIMValue("b")}});
};

TEST(ForeignTraversal, EmptyAssociationInstancesArePassedOver) {
  Model model;
  model.repository.Link(model.link, "From", model.a, "To", model.b);
  auto foreign = boost::make_shared<GappyClass>(model.link);
  model.node->RemoveAssociation(model.link, {});
  model.node->AddAssociation(foreign, {});
  EXPECT_EQ(References(model.a).size(), 1u);
  EXPECT_EQ(References(model.a, "", "").size(), 1u);
  EXPECT_EQ(References(model.a, "", "From").size(), 1u);
  EXPECT_EQ(References(model.a, "", "To").size(), 0u);
  EXPECT_EQ(Associators(model.a), (Names{"Node.Name=\"b\""}));
}

TEST(ForeignTraversal, EmptyAssociationClassesArePassedOver) {
  Model model;
  const boost::shared_ptr<ICIMClass> foreign = boost::make_shared<GappyClass>(model.node);
  const InstancePtr instance = boost::make_shared<TInmemInstance>(foreign, 0);
  instance->SetPropertyValue("Name", TCIMValue("c"), {});
  model.node->AddInstance(instance, {});
  model.repository.Link(model.link, "From", instance, "To", model.b);
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(References(instance).size(), 1u);
    EXPECT_EQ(References(instance, "", "From").size(), 1u);
    EXPECT_EQ(Associators(instance), (Names{"Node.Name=\"b\""}));
  }
}

TEST(ForeignTraversal, AClassThatStopsWhereItIsToldToIsWalkedToItsEnd) {
  Model model;
  const auto other = model.repository.Association("Other", "From", model.node, "To", model.node);
  const auto c = model.repository.Instance(model.node, {{"Name", TCIMValue("c")}});
  for (const auto& cls : {model.link, other}) {
    model.repository.Link(cls, "From", c, "To", model.b);
    model.repository.Link(cls, "From", model.b, "To", model.a);
    model.repository.Link(cls, "From", model.a, "To", c);
    model.node->RemoveAssociation(cls, {});
    model.node->AddAssociation(boost::make_shared<StoppingClass>(cls), {});
  }
  EXPECT_EQ(References(model.a).size(), 4u);
  EXPECT_EQ(References(model.a, "", "From").size(), 2u);
  EXPECT_EQ(References(model.a, "", "To").size(), 2u);
  EXPECT_EQ(Associators(model.a).size(), 4u);
  EXPECT_EQ(Associators(model.a, {"", "<root>", "", "To"}).size(), 4u);

  const boost::shared_ptr<ICIMClass> stopping = boost::make_shared<StoppingClass>(model.node);
  const InstancePtr instance = boost::make_shared<TInmemInstance>(stopping, 0);
  instance->SetPropertyValue("Name", TCIMValue("d"), {});
  model.node->AddInstance(instance, {});
  for (const auto& cls : {model.link, other}) model.repository.Link(cls, "From", instance, "To", c);
  EXPECT_EQ(References(instance).size(), 2u);
  EXPECT_EQ(Associators(instance).size(), 2u);
}

TEST(ForeignTraversal, AClassThatStopsWhereItIsToldToTellsAllOfItsKeys) {
  Model model;
  model.repository.Key(model.node, "Unit");
  const boost::shared_ptr<ICIMClass> stopping = boost::make_shared<StoppingClass>(model.node);
  const InstancePtr instance =
      boost::make_shared<TInmemInstance>(stopping, TInmemInstance::kValidateKeysNonNull);
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  EXPECT_STATUS(18, instance->Validate({}));
  instance->SetPropertyValue("Unit", TCIMValue("b"), {});
  EXPECT_STATUS(0, instance->Validate({}));
  EXPECT_EQ(PathOf(instance), "Node.Name=\"a\",Unit=\"b\"");
}

}  // namespace

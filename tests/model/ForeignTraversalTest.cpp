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

}  // namespace

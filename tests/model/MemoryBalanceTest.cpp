// What comes and goes leaves no block of memory behind. On Windows each library has operators of
// its own, so that what one makes and another frees would be counted once.
#if !defined(_WIN32)

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "support/FailingAllocations.h"
#include "support/ForeignInstance.h"
#include "support/Instances.h"

namespace {

using namespace havtest;

// The blocks that another round of `change` leaves behind; the first ones may fill what is kept.
template <class Change>
long LeftBehindBy(Change&& change) {
  for (int time = 0; time < 2; ++time) change();
  const long before = LiveAllocations();
  change();
  return LiveAllocations() - before;
}

struct Model {
  Repository repository{true};
  ClassPtr node = repository.Class("Node");
  ClassPtr link = repository.Association("Link", "From", node, "To", node);

  InstancePtr Node(const std::string& name) const {
    return repository.Instance(node, {{"Name", TCIMValue(name)}});
  }
};

TEST(MemoryBalance, OfInstancesThatComeAndGo) {
  Model model;
  const std::string longName(200, 'n');
  EXPECT_EQ(LeftBehindBy([&] {
              for (const auto& name : {std::string("a"), std::string("b"), longName})
                model.Node(name);
              EXPECT_EQ(Stored(model.node).size(), 3u);
              model.Node("c");
              model.Node("a");
              EXPECT_EQ(Stored(model.node).size(), 4u);
              model.repository.ns
                  ->GetInstance(TCIMReference::Parse("Node.Name=\"a\"", model.repository.ns), {})
                  ->Delete({});
              model.repository.ns->ClearInstances();
            }),
            0);
}

TEST(MemoryBalance, OfInstancesOfAHostsMakingAndOfTwoClasses) {
  Model model;
  const auto other = model.repository.Class("Other");
  EXPECT_EQ(LeftBehindBy([&] {
              const auto behind = model.node->AllocateInstance({});
              behind->SetPropertyValue("Name", TCIMValue("behind"), {});
              const auto foreign = boost::make_shared<ForeignInstance>(behind);
              model.node->AddInstance(foreign, {});
              model.node->AddInstance(foreign, {});
              const auto shared = model.Node("shared");
              other->AddInstance(shared, {});
              model.node->RemoveInstance(foreign, {});
              other->RemoveInstance(shared, {});
              shared->Delete({});
            }),
            0);
}

TEST(MemoryBalance, OfLinksThatComeAndGo) {
  Model model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  EXPECT_EQ(LeftBehindBy([&] {
              for (int time = 0; time < 3; ++time) {
                const auto joined = model.repository.Link(model.link, "From", a, "To", b);
                for (int asked = 0; asked < 3; ++asked) {
                  EXPECT_EQ(References(a).size(), 1u);
                  EXPECT_EQ(Associators(a).size(), 1u);
                }
                joined->SetPropertyValue("To", TCIMValue(a->GetReference({})), {});
                EXPECT_EQ(References(b).size(), 0u);
                joined->Delete({});
                EXPECT_EQ(References(a).size(), 0u);
              }
            }),
            0);
}

TEST(MemoryBalance, OfSlotsPreviousValuesAndDerivedProperties) {
  Model model;
  EXPECT_EQ(LeftBehindBy([&] {
              const auto instance = model.Node("a");
              const auto slot = instance->GetProperty("Name", {});
              slot->SetPrevValue(TCIMValue("before"), {});
              slot->SetPrevValue(TCIMValue(std::string(100, 'b')), {});
              slot->ClearPrevValue({});
              slot->GetDisplayValue({});
              instance->GetProperty("speedDuplex", {})->GetDisplayValue({});
              instance->Delete({});
            }),
            0);
}

TEST(MemoryBalance, OfValuesOfEveryKind) {
  EXPECT_EQ(LeftBehindBy([] {
              TCIMReference path({}, {{"Name", TCIMValue(std::string(100, 'n'))}});
              TCIMValue value;
              for (const TCIMValue& next :
                   {TCIMValue(std::string(100, 't')), TCIMValue("short"), TCIMValue(TCIMDateTime()),
                    TCIMValue(path), TCIMValue(kCIMString, {TCIMValue("a"), TCIMValue()}),
                    TCIMValue::Null(kCIMString), TCIMValue(std::uint8_t{1})}) {
                const TCIMValue copy = next;
                value = copy;
                value = TCIMValue(value);
              }
            }),
            0);
}

TEST(MemoryBalance, OfWholeNamespaces) {
  EXPECT_EQ(LeftBehindBy([&] {
              Model model;
              const auto leaf = model.repository.Class("Leaf", model.node);
              const auto again = model.repository.Allocate("Extra", model.node);
              again->AddToNamespace({});
              again->Delete({});
              const auto method = leaf->AllocateMethodDecl("Reset", kCIMUInt32, {});
              method->AllocateParameter("Force", TCIMValue(true), {});
              method->AddToClass({});
              const auto a = model.Node("a");
              model.repository.Link(model.link, "From", a, "To", model.Node("b"));
              for (int asked = 0; asked < 3; ++asked) EXPECT_EQ(Associators(a).size(), 1u);
              EXPECT_EQ(Stored(model.node).size(), 2u);
            }),
            0);
}

// Then they go one within the other.
TEST(MemoryBalance, OfClassesThatEndWhenThereIsNoMemory) {
  EXPECT_EQ(LeftBehindBy([&] {
              const Repository repository;
              auto top = repository.Allocate("Top");
              std::vector<boost::weak_ptr<ICIMClass>> ends;
              for (const char* below : {"Left", "Right"}) {
                const auto middle = repository.Allocate(below);
                top->AddSubclass(middle, {});
                for (const char* leaf : {"One", "Two", "Three"}) {
                  const auto last = repository.Allocate(leaf);
                  middle->AddSubclass(last, {});
                  ends.push_back(last);
                }
              }
              bool isLacking = false;
              {
                const FailingAllocation failure(0, FailingAllocation::kFromThenOn);
                top.reset();
                isLacking = failure.HasFailed();
              }
              EXPECT_TRUE(isLacking);
              for (const auto& end : ends) EXPECT_TRUE(end.expired());
            }),
            0);
}

}  // namespace

#endif

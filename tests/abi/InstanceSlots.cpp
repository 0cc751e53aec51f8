// The slots of an instance and of its properties.
#include "abi/SlotCalls.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"
#include "support/Walks.h"

namespace havtest {
namespace {

// Two things and a link between them.
struct LinkModel {
  LoggedRepository repository;
  ClassPtr thing = repository.Class("Thing");
  ClassPtr link = repository.Association("Link", "From", thing, "To", thing);
  InstancePtr a = repository.Instance(thing, {{"Name", TCIMValue("a")}});
  InstancePtr b = repository.Instance(thing, {{"Name", TCIMValue("b")}});
  InstancePtr ab = repository.Link(link, "From", a, "To", b);
};

void CallStoreSlots(SlotCalls& calls, LinkModel& model) {
  const auto made = model.thing->AllocateInstance({});
  const ICIMInstance& instance = *made;
  EXPECT_STATUS(18, SLOT(1, instance)({}));
  SLOT(12, *made)("NAME", "c", {});
  EXPECT_STATUS(0, SLOT(1, instance)({}));

  SLOT(3, *made)(model.a, {});
  EXPECT_EQ(Stored(model.thing), (Names{"Thing.Name=\"a\"", "Thing.Name=\"b\""}));
  SLOT(2, *made)({});
  EXPECT_EQ(Stored(model.thing),
            (Names{"Thing.Name=\"a\"", "Thing.Name=\"b\"", "Thing.Name=\"c\""}));
  SLOT(4, *made)({});
  EXPECT_EQ(Stored(model.thing), (Names{"Thing.Name=\"a\"", "Thing.Name=\"b\""}));
}

void CallQuestionSlots(SlotCalls& calls, const LinkModel& model) {
  const ICIMInstance& a = *model.a;
  const TOptions named{{"ProvNSP", TCIMValue("root/named")}};
  EXPECT_EQ(SLOT(5, a)(named).GetFullPath(), "root/named:Thing.Name=\"a\"");
  EXPECT_EQ(SLOT(6, *model.a)(named).GetFullPath(), "root/named:Thing.Name=\"a\"");
  EXPECT_EQ(SLOT(7, a)({}), model.thing);
  EXPECT_EQ(SLOT(8, a)(), "");
  EXPECT_EQ(Paths([&](auto callback) {
              SLOT(9, *model.a)
              (callback, "Link", "Thing", "From", "To", {});
            }),
            (Names{"Thing.Name=\"b\""}));
  EXPECT_EQ(Paths([&](auto callback) {
              SLOT(10, *model.a)
              (callback, "Link", "From", {});
            }),
            (Names{PathOf(model.ab)}));

  EXPECT_EQ(SLOT(11, a)("name", {})->GetDecl({})->GetName({}), "Name");
  Names slots;
  SLOT(13, *model.ab)
  (
      [&](PropertyPtr slot) {
        slots.push_back(slot->GetDecl({})->GetName({}));
        return true;
      },
      {});
  EXPECT_EQ(slots, (Names{"From", "To"}));
  std::map<std::string, TCIMValue> parameters;
  EXPECT_TRUE(SLOT(14, *model.a)("Reset", parameters, {}).IsNull());
}

void CallInstanceComparisonSlots(SlotCalls& calls, const LinkModel& model) {
  const ICIMInstance& a = *model.a;
  EXPECT_TRUE(SLOT(15, a)(*model.b));
  EXPECT_FALSE(SLOT(15, a)(*model.ab));
  EXPECT_FALSE(SLOT(16, a)(*model.b));
  const ICIMInstance& ab = *model.ab;
  EXPECT_NE(SLOT(16, a)(*model.ab), SLOT(16, ab)(*model.a));
  EXPECT_EQ(&SLOT(17, *model.a)(*model.b), model.a.get());
  EXPECT_EQ(PathOf(model.a), "Thing.Name=\"a\"");
}

// Two instances of one class with a number and a list each.
struct SlotModel {
  Repository repository;
  ClassPtr cls = Declared();
  InstancePtr first = cls->AllocateInstance({});
  InstancePtr second = cls->AllocateInstance({});
  PropertyPtr slot = first->GetProperty("Number", {});
  PropertyPtr list = first->GetProperty("List", {});

  ClassPtr Declared() const {
    auto made = repository.Allocate("Thing");
    repository.Property(made, "Number", TCIMValue(std::uint32_t{7}));
    repository.Property(made, "List", TCIMValue(kCIMString, {TCIMValue("x"), TCIMValue("y")}));
    made->AddToNamespace({});
    return made;
  }
};

TCIMValue Number(std::uint32_t value) { return TCIMValue(value); }

void CallValueSlots(SlotCalls& calls, const SlotModel& model) {
  const ICIMProperty& slot = *model.slot;
  const ICIMProperty& list = *model.list;
  EXPECT_EQ(SLOT(1, slot)({}), kCIMUInt32);
  EXPECT_FALSE(SLOT(2, slot)({}));
  EXPECT_TRUE(SLOT(2, list)({}));
  EXPECT_TRUE(SLOT(3, slot)({}));
  EXPECT_TRUE(SLOT(6, slot)({}));
  EXPECT_EQ(SLOT(4, slot)({}), Number(7));
  SLOT(5, *model.slot)(Number(8), {});
  EXPECT_EQ(SLOT(4, slot)({}), Number(8));
  EXPECT_FALSE(SLOT(3, slot)({}));
  EXPECT_FALSE(SLOT(6, slot)({}));
  EXPECT_EQ(SLOT(7, slot)({}), model.cls->GetPropertyDecl("Number", {}));
  EXPECT_EQ(SLOT(15, slot)({}), "8");
  EXPECT_EQ(SLOT(17, list)({}), (std::vector<std::string>{"x", "y"}));
}

void CallPrevValueSlots(SlotCalls& calls, const SlotModel& model) {
  const ICIMProperty& slot = *model.slot;
  EXPECT_FALSE(SLOT(14, slot)({}));
  EXPECT_EQ(SLOT(11, slot)({}), Number(8));
  SLOT(13, *model.slot)(Number(6), {});
  EXPECT_TRUE(SLOT(14, slot)({}));
  EXPECT_EQ(SLOT(11, slot)({}), Number(6));
  EXPECT_EQ(SLOT(16, slot)({}), "6");
  EXPECT_EQ(slot.GetValue({}), Number(8));
  SLOT(12, *model.slot)({});
  EXPECT_TRUE(SLOT(11, slot)({}).IsNull());
}

void CallPropertyComparisonSlots(SlotCalls& calls, const SlotModel& model) {
  const ICIMProperty& slot = *model.slot;
  const auto other = model.second->GetProperty("Number", {});
  other->SetValue(Number(9), {});
  EXPECT_FALSE(SLOT(8, slot)(*other));
  EXPECT_TRUE(SLOT(9, slot)(*other));
  EXPECT_EQ(&SLOT(10, *model.slot)(*other), model.slot.get());
  EXPECT_EQ(slot.GetValue({}), Number(8));
  other->SetValue(Number(8), {});
  EXPECT_TRUE(SLOT(8, slot)(*other));
  EXPECT_FALSE(SLOT(9, slot)(*other));
}

}  // namespace

void CallInstanceSlots(SlotCalls& calls) {
  LinkModel model;
  CallStoreSlots(calls, model);
  CallQuestionSlots(calls, model);
  CallInstanceComparisonSlots(calls, model);

  const auto doomed = model.thing->AllocateInstance({});
  const auto owners = model.thing.use_count();
  calls.Destroy(doomed);
  EXPECT_LT(model.thing.use_count(), owners);
}

void CallPropertySlots(SlotCalls& calls) {
  const SlotModel model;
  CallValueSlots(calls, model);
  CallPrevValueSlots(calls, model);
  CallPropertyComparisonSlots(calls, model);
  // It owns nothing that would be seen to go: all that shows is that the call is survived.
  calls.Destroy(model.list, {model.first});
}

}  // namespace havtest

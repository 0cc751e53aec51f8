// Property slots: default and assigned values, typed assignment, comparison, and slots that
// outlive their declaration.
#include <set>

#include "support/Instances.h"

namespace havtest {
namespace {

// One class with the property "P" of the given default, and slots of it.
struct Slots {
  explicit Slots(const TCIMValue& defaultValue) {
    cls = repository.Allocate("Holder");
    decl = repository.Property(cls, "P", defaultValue);
    instance = cls->AllocateInstance({});
    slot = instance->GetProperty("P", {});
  }

  Repository repository;
  ClassPtr cls;
  PropertyDeclPtr decl;
  InstancePtr instance;
  PropertyPtr slot;
};

TCIMValue Number(std::uint32_t number) { return TCIMValue(number); }

// A slot whose declaration is gone: the instance is dropped, the declaration removed.
PropertyPtr Orphan(const TCIMValue& defaultValue, const TCIMValue& assigned = TCIMValue()) {
  Slots slots(defaultValue);
  if (!assigned.IsNull()) slots.slot->SetValue(assigned, {});
  slots.instance.reset();
  slots.cls->RemovePropertyDecl(slots.decl, {});
  slots.decl.reset();
  return slots.slot;
}

TEST(TInmemProperty, AnswersTypeAndArraynessOfItsDeclaration) {
  Slots number(Number(1));
  EXPECT_EQ(number.slot->GetType({}), kCIMUInt32);
  EXPECT_FALSE(number.slot->IsArray({}));
  Slots texts(TCIMValue::Null(ArrayOf(kCIMString)));
  EXPECT_EQ(texts.slot->GetType({}), ArrayOf(kCIMString));
  EXPECT_TRUE(texts.slot->IsArray({}));
}

TEST(TInmemProperty, AnswersItsDeclaration) {
  Slots slots(Number(1));
  EXPECT_EQ(slots.slot->GetDecl({}), slots.decl);
}

TEST(TInmemProperty, HasAnOwnershipOfItsOwn) {
  Repository repository;
  auto cls = repository.Class("Thing");
  for (const char* name : {"A", "B", "C"}) repository.Property(cls, name, Number(1));
  auto instance = cls->AllocateInstance({});
  std::set<PropertyPtr> slots;
  for (int time = 0; time < 2; ++time)
    for (const char* name : {"Name", "A", "B", "C"}) slots.insert(instance->GetProperty(name, {}));
  EXPECT_EQ(slots.size(), 4u);
}

TEST(TInmemProperty, AnswersTheDefaultWhileNothingIsAssigned) {
  Slots slots(Number(1));
  EXPECT_EQ(slots.slot->GetValue({}), Number(1));
  EXPECT_TRUE(slots.slot->IsValueDefault({}));
  EXPECT_TRUE(slots.slot->IsValueUnassigned({}));
}

TEST(TInmemProperty, FollowsAChangedDefaultWhileNothingIsAssigned) {
  Slots slots(Number(1));
  slots.decl->SetDefaultValue(Number(2), {});
  EXPECT_EQ(slots.slot->GetValue({}), Number(2));
}

TEST(TInmemProperty, AnswersTheAssignedValue) {
  Slots slots(Number(1));
  slots.slot->SetValue(Number(5), {});
  EXPECT_EQ(slots.slot->GetValue({}), Number(5));
  EXPECT_FALSE(slots.slot->IsValueDefault({}));
  EXPECT_FALSE(slots.slot->IsValueUnassigned({}));
}

TEST(TInmemProperty, AValueThatEqualsTheDefaultIsAssignedAllTheSame) {
  Slots slots(Number(1));
  slots.slot->SetValue(Number(1), {});
  EXPECT_FALSE(slots.slot->IsValueDefault({}));
}

TEST(TInmemProperty, AssignmentReplacesTheEarlierValue) {
  Slots slots(TCIMValue::Null(kCIMString));
  slots.slot->SetValue(TCIMValue("one"), {});
  slots.slot->SetValue(TCIMValue("two"), {});
  EXPECT_EQ(slots.slot->GetValue({}), TCIMValue("two"));
}

TEST(TInmemProperty, TakesANullOfTheDeclaredType) {
  Slots slots(Number(1));
  slots.slot->SetValue(TCIMValue::Null(kCIMUInt32), {});
  EXPECT_TRUE(slots.slot->GetValue({}).IsNull());
  EXPECT_FALSE(slots.slot->IsValueDefault({}));
}

TEST(TInmemProperty, RefusesANullOfAnotherTypeWith14) {
  Slots slots(Number(1));
  RecordingLogger log;
  EXPECT_STATUS(14, slots.slot->SetValue(TCIMValue::Null(kCIMString), {}));
  EXPECT_STATUS(14, slots.slot->SetValue(TCIMValue(), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "Inmem: SetValue: decl is type uint32 but value is type string"},
                      {3, "Inmem: SetValue: decl is type uint32 but value is type none"}}));
  EXPECT_TRUE(slots.slot->IsValueDefault({}));
}

TEST(TInmemProperty, RefusesANarrowerTypeWith14AndKeepsItsValue) {
  Slots slots(Number(1));
  slots.slot->SetValue(Number(5), {});
  RecordingLogger log;
  EXPECT_STATUS(14, slots.slot->SetValue(TCIMValue(std::uint16_t{7}), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "Inmem: SetValue: decl is type uint32 but value is type uint16"}}));
  EXPECT_EQ(slots.slot->GetValue({}), Number(5));
}

TEST(TInmemProperty, TellsArraysFromScalars) {
  Slots texts(TCIMValue::Null(ArrayOf(kCIMString)));
  RecordingLogger log;
  EXPECT_STATUS(14, texts.slot->SetValue(TCIMValue("one"), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "Inmem: SetValue: decl is type string[] but value is type string"}}));
  texts.slot->SetValue(TCIMValue(kCIMString, {TCIMValue("one")}), {});
  EXPECT_EQ(texts.slot->GetValue({}), TCIMValue(kCIMString, {TCIMValue("one")}));
}

TEST(TInmemProperty, SetValueDoesNotCheckTheClassOfAReference) {
  Repository repository;
  auto wanted = repository.Class("Wanted");
  auto other = repository.Class("Other");
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "End", wanted);
  auto slot = link->AllocateInstance({})->GetProperty("End", {});
  const TCIMValue value(ReferenceTo(other, {{"Name", TCIMValue("o")}}));
  RecordingLogger log;
  slot->SetValue(value, {});
  EXPECT_EQ(slot->GetValue({}), value);
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemProperty, TakesItsOwnValueBack) {
  Slots slots(TCIMValue::Null(kCIMString));
  slots.slot->SetValue(TCIMValue(std::string(200, 'x')), {});
  slots.slot->SetValue(slots.slot->GetValue({}), {});
  EXPECT_EQ(slots.slot->GetValue({}), TCIMValue(std::string(200, 'x')));
}

TEST(TInmemProperty, TakesItsOwnDefault) {
  Slots slots(TCIMValue("the default"));
  slots.slot->SetValue(slots.slot->GetValue({}), {});
  EXPECT_EQ(slots.slot->GetValue({}), TCIMValue("the default"));
  EXPECT_FALSE(slots.slot->IsValueDefault({}));
}

TEST(TInmemProperty, ValuesOfTwoInstancesAreTheirOwn) {
  Slots slots(Number(1));
  auto other = slots.cls->AllocateInstance({});
  slots.slot->SetValue(Number(5), {});
  EXPECT_EQ(ValueOf(other, "P"), Number(1));
}

TEST(TInmemProperty, EqualsASlotOfTheSameDeclarationWithAnEqualValue) {
  Slots slots(Number(1));
  auto other = slots.cls->AllocateInstance({});
  auto otherSlot = other->GetProperty("P", {});
  slots.slot->SetValue(Number(5), {});
  otherSlot->SetValue(Number(5), {});
  EXPECT_TRUE(*slots.slot == *otherSlot);
  otherSlot->SetValue(Number(6), {});
  EXPECT_FALSE(*slots.slot == *otherSlot);
}

TEST(TInmemProperty, ComparesAnUnassignedValueAsTheDefault) {
  Slots slots(Number(1));
  auto other = slots.cls->AllocateInstance({});
  auto otherSlot = other->GetProperty("P", {});
  EXPECT_TRUE(*slots.slot == *otherSlot);
  otherSlot->SetValue(Number(1), {});
  EXPECT_TRUE(*slots.slot == *otherSlot);
  EXPECT_TRUE(*otherSlot == *slots.slot);
  otherSlot->SetValue(Number(2), {});
  EXPECT_FALSE(*slots.slot == *otherSlot);
  EXPECT_TRUE(*slots.slot < *otherSlot);
  EXPECT_FALSE(*otherSlot < *slots.slot);
}

TEST(TInmemProperty, IsOrderedByValueWithinOneDeclaration) {
  Slots slots(Number(1));
  auto other = slots.cls->AllocateInstance({});
  auto otherSlot = other->GetProperty("P", {});
  slots.slot->SetValue(Number(5), {});
  otherSlot->SetValue(Number(40), {});
  EXPECT_TRUE(*slots.slot < *otherSlot);
  EXPECT_FALSE(*otherSlot < *slots.slot);
  EXPECT_FALSE(*slots.slot < *slots.slot);
}

TEST(TInmemProperty, OfAnotherDeclarationIsUnequalAndOrderedOneWayWhateverTheValues) {
  Slots slots(Number(1));
  slots.repository.Property(slots.cls, "Q", Number(1));
  auto instance = slots.cls->AllocateInstance({});
  auto p = instance->GetProperty("P", {});
  auto q = instance->GetProperty("Q", {});
  EXPECT_FALSE(*p == *q);
  const bool before = *p < *q;
  EXPECT_NE(before, *q < *p);
  p->SetValue(Number(9), {});
  EXPECT_EQ(*p < *q, before);
  EXPECT_NE(before, *q < *p);
  q->SetValue(Number(90), {});
  EXPECT_EQ(*p < *q, before);
  EXPECT_NE(before, *q < *p);
}

TEST(TInmemProperty, AssignmentOfSlotsCopiesNothing) {
  Slots slots(Number(1));
  auto other = slots.cls->AllocateInstance({});
  auto otherSlot = other->GetProperty("P", {});
  otherSlot->SetValue(Number(5), {});
  EXPECT_EQ(&(*slots.slot = *otherSlot), slots.slot.get());
  EXPECT_EQ(slots.slot->GetValue({}), Number(1));
}

TEST(TInmemProperty, OfALivingInstanceKeepsItsRemovedDeclaration) {
  Slots slots(Number(1));
  slots.cls->RemovePropertyDecl(slots.decl, {});
  slots.decl.reset();
  ASSERT_TRUE(slots.slot->GetDecl({}));
  EXPECT_EQ(slots.slot->GetValue({}), Number(1));
  slots.slot->SetValue(Number(5), {});
  EXPECT_EQ(ValueOf(slots.instance, "P"), Number(5));
}

TEST(TInmemProperty, WithoutItsDeclarationAnswersAnEmptyOne) {
  EXPECT_FALSE(Orphan(Number(1))->GetDecl({}));
}

TEST(TInmemProperty, WithoutItsDeclarationThrows15WhereItNeedsIt) {
  auto slot = Orphan(Number(1));
  RecordingLogger log;
  EXPECT_STATUS(15, slot->GetType({}));
  EXPECT_STATUS(15, slot->IsArray({}));
  EXPECT_STATUS(15, slot->GetValue({}));
  EXPECT_STATUS(15, slot->GetPrevValue({}));
  EXPECT_STATUS(15, slot->SetValue(Number(5), {}));
  EXPECT_STATUS(15, slot->SetPrevValue(Number(5), {}));
  EXPECT_STATUS(15, slot->GetDisplayValue({}));
  EXPECT_STATUS(15, slot->GetPrevDisplayValue({}));
  EXPECT_STATUS(15, slot->GetDisplayValues({}));
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_TRUE(slot->IsValueDefault({}));
  EXPECT_FALSE(slot->HasPrevValue({}));
}

TEST(TInmemProperty, WithoutItsDeclarationStillAnswersWhatIsItsOwn) {
  auto slot = Orphan(Number(1), Number(5));
  EXPECT_EQ(slot->GetValue({}), Number(5));
  EXPECT_EQ(slot->GetPrevValue({}), Number(5));
  EXPECT_FALSE(slot->IsValueDefault({}));
  EXPECT_FALSE(slot->IsValueUnassigned({}));
  slot->ClearPrevValue({});
  EXPECT_TRUE(slot->HasPrevValue({}));
  EXPECT_TRUE(slot->GetPrevValue({}).IsNull());
}

}  // namespace
}  // namespace havtest

// Previous values: what a slot remembers beside its value.
#include "support/Instances.h"

namespace havtest {
namespace {

struct Numbers {
  Repository repository;
  ClassPtr cls = repository.Allocate("Holder");
  PropertyDeclPtr decl = repository.Property(cls, "P", TCIMValue(std::uint32_t{1}));
  InstancePtr instance = cls->AllocateInstance({});
  PropertyPtr slot = instance->GetProperty("P", {});
};

// A reference "End" to "Wanted", a class that derives from it, and one that does not.
struct Ends {
  Repository repository;
  ClassPtr wanted = repository.Class("Wanted");
  ClassPtr derived = repository.Class("Derived", repository.Class("Middle", wanted));
  ClassPtr other = repository.Class("Other");
  ClassPtr link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  PropertyDeclPtr decl = repository.Reference(link, "End", wanted);
  InstancePtr instance = link->AllocateInstance({});
  PropertyPtr slot = instance->GetProperty("End", {});

  TCIMValue To(const ClassPtr& cls) const {
    return TCIMValue(ReferenceTo(cls, {{"Name", TCIMValue("x")}}));
  }
};

TCIMValue Number(std::uint32_t number) { return TCIMValue(number); }

TEST(PreviousValue, IsTheValueWhileNoneIsSet) {
  Numbers numbers;
  EXPECT_FALSE(numbers.slot->HasPrevValue({}));
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(1));
  numbers.slot->SetValue(Number(5), {});
  EXPECT_FALSE(numbers.slot->HasPrevValue({}));
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(5));
}

TEST(PreviousValue, IsWhatWasSet) {
  Numbers numbers;
  numbers.slot->SetPrevValue(Number(7), {});
  EXPECT_TRUE(numbers.slot->HasPrevValue({}));
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(7));
}

TEST(PreviousValue, LeavesTheValueAlone) {
  Numbers numbers;
  numbers.slot->SetPrevValue(Number(7), {});
  EXPECT_EQ(numbers.slot->GetValue({}), Number(1));
  EXPECT_TRUE(numbers.slot->IsValueDefault({}));
}

TEST(PreviousValue, IsLeftAloneByAnAssignmentOfTheValue) {
  Numbers numbers;
  numbers.slot->SetPrevValue(Number(7), {});
  numbers.slot->SetValue(Number(9), {});
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(7));
  EXPECT_EQ(numbers.slot->GetValue({}), Number(9));
}

TEST(PreviousValue, IsReplacedByTheNextOne) {
  Numbers numbers;
  numbers.slot->SetPrevValue(Number(7), {});
  numbers.slot->SetPrevValue(Number(8), {});
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(8));
}

TEST(PreviousValue, ClearedIsNullWhateverTheValue) {
  Numbers numbers;
  numbers.slot->SetValue(Number(5), {});
  numbers.slot->SetPrevValue(Number(7), {});
  numbers.slot->ClearPrevValue({});
  EXPECT_TRUE(numbers.slot->HasPrevValue({}));
  EXPECT_TRUE(numbers.slot->GetPrevValue({}).IsNull());
  EXPECT_EQ(numbers.slot->GetValue({}), Number(5));
}

TEST(PreviousValue, ClearedOnAFreshSlotIsNull) {
  Numbers numbers;
  numbers.slot->ClearPrevValue({});
  EXPECT_TRUE(numbers.slot->HasPrevValue({}));
  EXPECT_TRUE(numbers.slot->GetPrevValue({}).IsNull());
}

TEST(PreviousValue, CanBeSetAgainAfterItWasCleared) {
  Numbers numbers;
  numbers.slot->ClearPrevValue({});
  numbers.slot->SetPrevValue(Number(7), {});
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(7));
}

TEST(PreviousValue, TakesANullOfAnyType) {
  Numbers numbers;
  RecordingLogger log;
  numbers.slot->SetPrevValue(TCIMValue::Null(kCIMString), {});
  EXPECT_TRUE(numbers.slot->HasPrevValue({}));
  EXPECT_EQ(numbers.slot->GetPrevValue({}), TCIMValue::Null(kCIMString));
  numbers.slot->SetPrevValue(TCIMValue(), {});
  EXPECT_EQ(numbers.slot->GetPrevValue({}), TCIMValue());
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(PreviousValue, OfAnotherTypeThrows14AndNothingChanges) {
  Numbers numbers;
  numbers.slot->SetPrevValue(Number(7), {});
  RecordingLogger log;
  EXPECT_STATUS(14, numbers.slot->SetPrevValue(TCIMValue(std::uint16_t{8}), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "SetPrevValue: decl is type uint32 but value is type uint16"}}));
  EXPECT_EQ(numbers.slot->GetPrevValue({}), Number(7));
}

TEST(PreviousValue, RefusedOnAFreshSlotLeavesItWithoutOne) {
  Numbers numbers;
  RecordingLogger log;
  EXPECT_STATUS(14, numbers.slot->SetPrevValue(TCIMValue("8"), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "SetPrevValue: decl is type uint32 but value is type string"}}));
  EXPECT_FALSE(numbers.slot->HasPrevValue({}));
}

TEST(PreviousValue, TakesItselfBack) {
  Repository repository;
  auto cls = repository.Allocate("Holder");
  repository.Property(cls, "P", TCIMValue::Null(kCIMString));
  auto instance = cls->AllocateInstance({});
  auto slot = instance->GetProperty("P", {});
  slot->SetPrevValue(TCIMValue(std::string(200, 'x')), {});
  slot->SetPrevValue(slot->GetPrevValue({}), {});
  EXPECT_EQ(slot->GetPrevValue({}), TCIMValue(std::string(200, 'x')));
}

TEST(PreviousValue, OfAReferenceMayBeOfTheDeclaredClass) {
  Ends ends;
  ends.slot->SetPrevValue(ends.To(ends.wanted), {});
  EXPECT_EQ(ends.slot->GetPrevValue({}), ends.To(ends.wanted));
}

TEST(PreviousValue, OfAReferenceMayBeOfAClassThatDerivesFromTheDeclaredOne) {
  Ends ends;
  RecordingLogger log;
  ends.slot->SetPrevValue(ends.To(ends.derived), {});
  EXPECT_EQ(ends.slot->GetPrevValue({}), ends.To(ends.derived));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(PreviousValue, OfAReferenceToAnUnrelatedClassThrows14AndNothingChanges) {
  Ends ends;
  ends.slot->SetPrevValue(ends.To(ends.wanted), {});
  RecordingLogger log;
  EXPECT_STATUS(14, ends.slot->SetPrevValue(ends.To(ends.other), {}));
  EXPECT_EQ(log.Take(), (LogLines{{3,
                                   "SetPrevValue: decl references type Wanted but value "
                                   "references Other"}}));
  EXPECT_EQ(ends.slot->GetPrevValue({}), ends.To(ends.wanted));
}

TEST(PreviousValue, OfAReferenceToTheDeclaredClassesSuperclassThrows14) {
  Ends ends;
  auto link = ends.repository.Allocate("Narrow", {}, {{"Association", TCIMValue(true)}});
  ends.repository.Reference(link, "End", ends.derived);
  auto instance = link->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(14, instance->GetProperty("End", {})->SetPrevValue(ends.To(ends.wanted), {}));
  EXPECT_EQ(log.Take(), (LogLines{{3,
                                   "SetPrevValue: decl references type Derived but value "
                                   "references Wanted"}}));
}

TEST(PreviousValue, OfAReferenceThatIsDeclaredToNoClassMayBeOfAnyClass) {
  Ends ends;
  auto link = ends.repository.Allocate("Wide", {}, {{"Association", TCIMValue(true)}});
  ends.repository.Property(link, "End", TCIMValue::Null(kCIMReference));
  auto slot = link->AllocateInstance({})->GetProperty("End", {});
  RecordingLogger log;
  for (const auto& cls : {ends.wanted, ends.other}) {
    EXPECT_STATUS(0, slot->SetValue(ends.To(cls), {}));
    EXPECT_STATUS(0, slot->SetPrevValue(ends.To(cls), {}));
    EXPECT_EQ(slot->GetPrevValue({}), ends.To(cls));
  }
  EXPECT_STATUS(0, slot->SetPrevValue(TCIMValue(TCIMReference({}, {})), {}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(PreviousValue, OfAReferenceToAClassWithoutANameIsHeldToThatClass) {
  Ends ends;
  auto nameless = ends.repository.Class("");
  auto link = ends.repository.Allocate("Narrow", {}, {{"Association", TCIMValue(true)}});
  ends.repository.Reference(link, "End", nameless);
  auto slot = link->AllocateInstance({})->GetProperty("End", {});
  RecordingLogger log;
  EXPECT_STATUS(14, slot->SetPrevValue(ends.To(ends.other), {}));
  EXPECT_EQ(log.Take(),
            (LogLines{{3, "SetPrevValue: decl references type  but value references Other"}}));
  EXPECT_STATUS(0, slot->SetPrevValue(ends.To(nameless), {}));
}

TEST(PreviousValue, OfAReferenceWhoseDeclaredClassIsGoneThrows15) {
  Ends ends;
  auto link = ends.repository.Allocate("Lost", {}, {{"Association", TCIMValue(true)}});
  {
    Repository other;
    ends.repository.Reference(link, "End", other.Class("Gone"));
  }
  auto slot = link->AllocateInstance({})->GetProperty("End", {});
  RecordingLogger log;
  EXPECT_STATUS(15, slot->SetPrevValue(ends.To(ends.wanted), {}));
  EXPECT_FALSE(slot->HasPrevValue({}));
  EXPECT_STATUS(0, slot->SetPrevValue(TCIMValue(), {}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(PreviousValue, ANullReferenceToAnyClassIsTaken) {
  Ends ends;
  RecordingLogger log;
  ends.slot->SetPrevValue(TCIMValue::NullReference(ends.other), {});
  EXPECT_TRUE(ends.slot->HasPrevValue({}));
  EXPECT_TRUE(ends.slot->GetPrevValue({}).IsNull());
  EXPECT_EQ(log.Take(), LogLines{});
}

}  // namespace
}  // namespace havtest

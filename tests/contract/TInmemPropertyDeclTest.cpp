// Property and reference declarations by themselves. The override rules have tests of their
// own in OverrideRulesTest.cpp.
#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

TEST(TInmemPropertyDecl, AnswersWhatItWasMadeOf) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocatePropertyDecl("Size", TCIMValue(std::uint64_t{8}), {});
  EXPECT_EQ(decl->GetName({}), "Size");
  EXPECT_EQ(decl->GetClass({}), cls);
  EXPECT_EQ(decl->GetType({}), kCIMUInt64);
  EXPECT_FALSE(decl->IsArray({}));
  EXPECT_EQ(decl->GetDefaultValue({}), TCIMValue(std::uint64_t{8}));
  EXPECT_EQ(QualifierNames(decl), Names{});
}

TEST(TInmemPropertyDecl, TakesTypeAndArrayFromItsDefaultValue) {
  Repository repository;
  auto decl = repository.Allocate("A")->AllocatePropertyDecl(
      "Sizes", TCIMValue::Null(ArrayOf(kCIMUInt16)), {});
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMUInt16));
  EXPECT_TRUE(decl->IsArray({}));
}

TEST(TInmemPropertyDecl, NewDefaultValueOfAnotherTypeChangesTypeAndArray) {
  Repository repository;
  auto decl = repository.Property(repository.Allocate("A"), "Size", TCIMValue(true));
  decl->SetDefaultValue(TCIMValue(kCIMString, {TCIMValue("a")}), {});
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMString));
  EXPECT_TRUE(decl->IsArray({}));
  decl->SetDefaultValue(TCIMValue("a"), {});
  EXPECT_EQ(decl->GetType({}), kCIMString);
  EXPECT_FALSE(decl->IsArray({}));
  EXPECT_EQ(decl->GetDefaultValue({}), TCIMValue("a"));
}

TEST(TInmemPropertyDecl, TakesItsOwnDefaultValueAgain) {
  Repository repository;
  const TCIMValue text("text long enough to stand on the heap");
  auto decl = repository.Property(repository.Allocate("A"), "Text", text);
  decl->SetDefaultValue(decl->GetDefaultValue({}), {});
  EXPECT_EQ(decl->GetDefaultValue({}), text);
}

TEST(TInmemPropertyDecl, IsNotInItsClassBeforeItIsAdded) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocatePropertyDecl("Size", TCIMValue(true), {});
  EXPECT_STATUS(15, cls->GetPropertyDecl("Size", {}));
  EXPECT_EQ(PropertyNames(cls), Names{});
  decl->AddToClass({});
  EXPECT_EQ(cls->GetPropertyDecl("Size", {}), decl);
  EXPECT_EQ(PropertyNames(cls), Names{"Size"});
}

TEST(TInmemPropertyDecl, TwoOfOneNameCanBeAllocated) {
  Repository repository;
  auto cls = repository.Allocate("A");
  EXPECT_NE(cls->AllocatePropertyDecl("Size", TCIMValue(true), {}),
            cls->AllocatePropertyDecl("Size", TCIMValue(true), {}));
}

TEST(TInmemPropertyDecl, AllocationLogsNothing) {
  LoggedRepository repository;
  repository.Allocate("A")->AllocatePropertyDecl("Size", TCIMValue(true), {});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemPropertyDecl, InheritedAnswersTheClassThatDeclaresIt) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto decl = repository.Property(base, "Size", TCIMValue(true));
  auto sub = repository.Allocate("Sub", base);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), decl);
  EXPECT_EQ(decl->GetClass({}), base);
}

TEST(TInmemPropertyDecl, CanBeHandedToAnotherClass) {
  Repository repository;
  auto a = repository.Allocate("A");
  auto b = repository.Allocate("B");
  auto decl = a->AllocatePropertyDecl("Size", TCIMValue(true), {});
  b->AddPropertyDecl(decl, {});
  EXPECT_EQ(b->GetPropertyDecl("Size", {}), decl);
  EXPECT_EQ(decl->GetClass({}), a);
  EXPECT_EQ(PropertyNames(a), Names{});
}

TEST(TInmemPropertyDecl, ValidateAndDeleteDoNothing) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  auto decl = repository.Property(cls, "Size", TCIMValue(true));
  decl->Validate({});
  decl->Delete({});
  EXPECT_EQ(cls->GetPropertyDecl("Size", {}), decl);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemPropertyDecl, ComparesByFoldedNameAlone) {
  Repository repository;
  auto lower = repository.Property(repository.Allocate("A"), "Size", TCIMValue(true));
  auto upper = repository.Key(repository.Allocate("B"), "SIZE");
  EXPECT_TRUE(*lower == *upper);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *lower);
}

TEST(TInmemPropertyDecl, OrdersByFoldedName) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto b = repository.Property(cls, "B", TCIMValue(true));
  auto a = repository.Property(cls, "a", TCIMValue(true));
  EXPECT_TRUE(*a < *b);
  EXPECT_FALSE(*b < *a);
  EXPECT_FALSE(*a == *b);
}

TEST(TInmemPropertyDecl, ComparingWithAnInvalidNameIsRefused) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  auto good = cls->AllocatePropertyDecl("Good", TCIMValue(true), {});
  auto bad = cls->AllocatePropertyDecl("Not-Good", TCIMValue(true), {});
  const LogLine line = Error("Inmem: CIM name 'Not-Good' is invalid");
  EXPECT_STATUS(25, *good == *bad);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
  EXPECT_STATUS(25, *bad < *good);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
}

TEST(TInmemPropertyDecl, ComparesWithAForeignDeclaration) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocatePropertyDecl("Size", TCIMValue(true), {});
  EXPECT_TRUE(*decl == ForeignPropertyDecl(cls, "SIZE", TCIMValue("")));
  EXPECT_TRUE(*decl < ForeignPropertyDecl(cls, "sizes", TCIMValue("")));
}

TEST(TInmemPropertyDecl, AssignmentReturnsTheDeclarationAndCopiesNothing) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto a = repository.Property(cls, "A", TCIMValue(true));
  auto b = repository.Key(cls, "B");
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(a->GetDefaultValue({}), TCIMValue(true));
  EXPECT_EQ(QualifierNames(a), Names{});
}

TEST(TInmemPropertyDecl, FindsAQualifierAndSaysSo) {
  Repository repository;
  auto decl = repository.Key(repository.Allocate("A"), "Name");
  bool found = false;
  auto qualifier = decl->FindQualifier("KEY", found, {});
  EXPECT_TRUE(found);
  EXPECT_EQ(qualifier, decl->GetQualifier("key", {}));
}

TEST(TInmemPropertyDecl, DoesNotFindAnUnknownQualifierAndDoesNotThrow) {
  LoggedRepository repository;
  auto decl = repository.Property(repository.Allocate("A"), "Size", TCIMValue(true));
  bool found = true;
  EXPECT_FALSE(decl->FindQualifier("Key", found, {}));
  EXPECT_FALSE(found);
  EXPECT_STATUS(15, decl->GetQualifier("Key", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemPropertyDecl, IgnoresOptions) {
  Repository repository;
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}};
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocatePropertyDecl("Size", TCIMValue(true), options);
  decl->AddToClass(options);
  EXPECT_EQ(cls->GetPropertyDecl("Size", options), decl);
  EXPECT_EQ(decl->GetName(options), "Size");
  EXPECT_EQ(decl->GetClass(options), cls);
  EXPECT_EQ(decl->GetDefaultValue(options), TCIMValue(true));
}

TEST(TInmemReferenceDecl, HasTheNullReferenceToItsClassAsDefaultValue) {
  Repository repository;
  auto target = repository.Class("Target");
  auto decl = repository.Allocate("Link")->AllocateReferenceDecl("End", target, {});
  EXPECT_EQ(decl->GetType({}), kCIMReference);
  EXPECT_FALSE(decl->IsArray({}));
  EXPECT_TRUE(decl->GetDefaultValue({}).IsNull());
  EXPECT_EQ(decl->GetDefaultValue({}).GetReferencedClass(), target);
}

TEST(TInmemReferenceDecl, IsNotInItsClassBeforeItIsAdded) {
  Repository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  auto decl = link->AllocateReferenceDecl("End", repository.Class("Target"), {});
  EXPECT_STATUS(15, link->GetReferenceDecl("End", {}));
  EXPECT_STATUS(15, link->GetPropertyDecl("End", {}));
  decl->AddToClass({});
  EXPECT_EQ(link->GetReferenceDecl("End", {}), decl);
  EXPECT_EQ(link->GetPropertyDecl("End", {}), decl);
}

TEST(TInmemReferenceDecl, RefusesAnEmptyClassPointer) {
  LoggedRepository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  EXPECT_STATUS(15, link->AllocateReferenceDecl("End", {}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

// Reference declarations beside others.
class ReferenceTable : public testing::Test {
 protected:
  ReferenceTable()
      : target(repository.Class("Target")),
        link(repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}})) {
    repository.Reference(link, "Right", target);
    repository.Reference(link, "left", target);
    repository.Property(link, "Note", TCIMValue("none"));
  }

  LoggedRepository repository;
  ClassPtr target;
  ClassPtr link;
};

TEST_F(ReferenceTable, HoldsTheDeclarationsOfTypeReferenceInFoldedNameOrder) {
  EXPECT_EQ(ReferenceNames(link), (Names{"left", "Right"}));
  EXPECT_EQ(PropertyNames(link), (Names{"left", "Note", "Right"}));
}

TEST_F(ReferenceTable, FindsReferencesOnly) {
  EXPECT_EQ(link->GetReferenceDecl("LEFT", {}), link->GetPropertyDecl("left", {}));
  EXPECT_STATUS(15, link->GetReferenceDecl("Note", {}));
  EXPECT_STATUS(15, link->GetReferenceDecl("Unknown", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(ReferenceTable, HoldsAPropertyDeclaredWithAReferenceAsDefault) {
  repository.Property(link, "Third", TCIMValue::NullReference(target));
  EXPECT_EQ(ReferenceNames(link), (Names{"left", "Right", "Third"}));
}

TEST_F(ReferenceTable, IsInherited) {
  auto sub = repository.Allocate("SubLink", link);
  EXPECT_EQ(ReferenceNames(sub), (Names{"left", "Right"}));
  EXPECT_EQ(sub->GetReferenceDecl("Left", {}), link->GetReferenceDecl("Left", {}));
}

TEST_F(ReferenceTable, LosesWhatTheClassRemoves) {
  link->RemovePropertyDecl(link->GetPropertyDecl("Left", {}), {});
  EXPECT_EQ(ReferenceNames(link), Names{"Right"});
  EXPECT_STATUS(15, link->GetReferenceDecl("Left", {}));
}

TEST_F(ReferenceTable, FollowsAReplacementByAnotherReference) {
  auto decl = link->AllocateReferenceDecl("RIGHT", target, {});
  repository.Qualify(*decl, {{"Key", TCIMValue(true)}});
  decl->AddToClass({});
  EXPECT_EQ(link->GetReferenceDecl("Right", {}), decl);
  EXPECT_EQ(ReferenceNames(link), (Names{"left", "RIGHT"}));
}

TEST_F(ReferenceTable, FollowsAReplacementByAPropertyOfAnotherType) {
  repository.Property(link, "Right", TCIMValue("text"), {{"Key", TCIMValue(true)}});
  EXPECT_EQ(ReferenceNames(link), Names{"left"});
  EXPECT_EQ(link->GetPropertyDecl("Right", {})->GetType({}), kCIMString);
}

TEST_F(ReferenceTable, IsEmptyForAClassWithoutReferences) {
  EXPECT_EQ(ReferenceNames(target), Names{});
}

}  // namespace
}  // namespace havtest

// Method declarations by themselves. The override rules have tests of their own in
// OverrideRulesTest.cpp.
#include <stdexcept>

#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

TEST(TInmemMethodDecl, AnswersWhatItWasMadeOf) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocateMethodDecl("Reset", ArrayOf(kCIMString), {});
  EXPECT_EQ(decl->GetName({}), "Reset");
  EXPECT_EQ(decl->GetClass({}), cls);
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMString));
  EXPECT_EQ(ParameterNames(decl), Names{});
  EXPECT_EQ(QualifierNames(decl), Names{});
}

TEST(TInmemMethodDecl, IsNotInItsClassBeforeItIsAdded) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocateMethodDecl("Reset", kCIMUInt32, {});
  EXPECT_STATUS(15, cls->GetMethodDecl("Reset", {}));
  EXPECT_EQ(MethodNames(cls), Names{});
  decl->AddToClass({});
  EXPECT_EQ(cls->GetMethodDecl("RESET", {}), decl);
  EXPECT_EQ(MethodNames(cls), Names{"Reset"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemMethodDecl, InheritedAnswersTheClassThatDeclaresIt) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto decl = base->AllocateMethodDecl("Reset", kCIMUInt32, {});
  decl->AddToClass({});
  auto sub = repository.Allocate("Sub", base);
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), decl);
  EXPECT_EQ(decl->GetClass({}), base);
}

TEST(TInmemMethodDecl, ValidateDoesNothing) {
  LoggedRepository repository;
  auto decl = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  EXPECT_STATUS(0, decl->Validate({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemMethodDecl, DoesNotOfferToFindQualifiers) {
  LoggedRepository repository;
  auto decl = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  repository.Qualify(*decl, {{"Description", TCIMValue("text")}});
  bool found = false;
  EXPECT_STATUS(1, decl->FindQualifier("Description", found, {}));
  EXPECT_STATUS(1, decl->FindQualifier("Unknown", found, {}));
  EXPECT_EQ(decl->GetQualifier("DESCRIPTION", {})->GetValue({}), TCIMValue("text"));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemMethodDecl, ComparesByFoldedNameAlone) {
  Repository repository;
  auto lower = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  auto upper = repository.Allocate("B")->AllocateMethodDecl("RESET", kCIMString, {});
  upper->AllocateParameter("Force", TCIMValue(true), {});
  EXPECT_TRUE(*lower == *upper);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *lower);
}

TEST(TInmemMethodDecl, OrdersByFoldedName) {
  Repository repository;
  auto cls = repository.Allocate("Class");
  auto b = cls->AllocateMethodDecl("b", kCIMUInt32, {});
  auto a = cls->AllocateMethodDecl("A", kCIMUInt32, {});
  auto c = cls->AllocateMethodDecl("C", kCIMUInt32, {});
  EXPECT_TRUE(*a < *b);
  EXPECT_FALSE(*b < *a);
  EXPECT_TRUE(*b < *c);
  EXPECT_FALSE(*a == *b);
}

TEST(TInmemMethodDecl, ComparingWithAnInvalidNameIsRefused) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  auto good = cls->AllocateMethodDecl("Good", kCIMUInt32, {});
  auto bad = cls->AllocateMethodDecl("Not-Good", kCIMUInt32, {});
  const LogLine line = Error("Inmem: CIM name 'Not-Good' is invalid");
  EXPECT_STATUS(25, *good == *bad);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
  EXPECT_STATUS(25, *good < *bad);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
}

TEST(TInmemMethodDecl, AssignmentReturnsTheDeclarationAndCopiesNothing) {
  Repository repository;
  auto cls = repository.Allocate("Class");
  auto a = cls->AllocateMethodDecl("A", kCIMUInt32, {});
  auto b = cls->AllocateMethodDecl("B", kCIMString, {});
  b->AllocateParameter("Force", TCIMValue(true), {});
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(a->GetType({}), kCIMUInt32);
  EXPECT_EQ(ParameterNames(a), Names{});
}

TEST(TInmemMethodDecl, IgnoresOptions) {
  Repository repository;
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}};
  auto cls = repository.Allocate("A");
  auto decl = cls->AllocateMethodDecl("Reset", kCIMUInt32, options);
  decl->AddToClass(options);
  EXPECT_EQ(cls->GetMethodDecl("Reset", options), decl);
  EXPECT_EQ(decl->GetName(options), "Reset");
  EXPECT_EQ(decl->GetClass(options), cls);
  EXPECT_EQ(decl->GetType(options), kCIMUInt32);
}

TEST(TInmemMethodDecl, VisitsItsParametersInFoldedNameOrder) {
  Repository repository;
  auto decl = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  for (const char* name : {"Timeout", "_x", "force", "When"})
    decl->AllocateParameter(name, TCIMValue(true), {});
  EXPECT_EQ(ParameterNames(decl), (Names{"_x", "force", "Timeout", "When"}));
}

TEST(TInmemMethodDecl, WalkOverParametersIgnoresTheAnswerAndDropsExceptions) {
  LoggedRepository repository;
  auto decl = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  for (const char* name : {"A", "B", "C", "D"}) decl->AllocateParameter(name, TCIMValue(true), {});
  int visits = 0;
  EXPECT_NO_THROW(decl->EnumerateParameters(
      [&](ParameterDeclPtr) -> bool {
        if (++visits == 1) return false;
        if (visits == 2) throw THAVException(kHAVNotFound);
        throw std::runtime_error("callback");
      },
      {}));
  EXPECT_EQ(visits, 4);
  EXPECT_NO_THROW(decl->EnumerateParameters({}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemMethodDecl, UnknownParameterIsNotFoundAndNothingIsLogged) {
  LoggedRepository repository;
  auto decl = repository.Allocate("A")->AllocateMethodDecl("Reset", kCIMUInt32, {});
  EXPECT_STATUS(15, decl->GetParameter("Force", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

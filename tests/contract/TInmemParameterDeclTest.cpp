// Parameter declarations, and adding them to their method.
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

class TInmemParameterDecl : public testing::Test {
 protected:
  TInmemParameterDecl()
      : cls(repository.Allocate("A")), method(cls->AllocateMethodDecl("Reset", kCIMUInt32, {})) {}

  static LogLine AlreadyExists(const std::string& parameter) {
    return Error("Inmem: Attempt to add property " + parameter +
                 " to method Reset: already exists");
  }

  LoggedRepository repository;
  ClassPtr cls;
  MethodDeclPtr method;
};

TEST_F(TInmemParameterDecl, AnswersWhatItWasMadeOf) {
  auto decl = method->AllocateParameter("Timeout", TCIMValue(std::uint32_t{5}), {});
  EXPECT_EQ(decl->GetName({}), "Timeout");
  EXPECT_EQ(decl->GetMethod({}), method);
  EXPECT_EQ(decl->GetType({}), kCIMUInt32);
  EXPECT_FALSE(decl->IsArray({}));
  EXPECT_EQ(QualifierNames(decl), Names{});
}

TEST_F(TInmemParameterDecl, TakesTypeAndArrayFromItsValue) {
  auto decl = method->AllocateParameter("Names", TCIMValue::Null(ArrayOf(kCIMString)), {});
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMString));
  EXPECT_TRUE(decl->IsArray({}));
}

TEST_F(TInmemParameterDecl, MayBeAReference) {
  auto decl = method->AllocateParameter("Target", TCIMValue::NullReference(cls), {});
  EXPECT_EQ(decl->GetType({}), kCIMReference);
  EXPECT_FALSE(decl->IsArray({}));
}

TEST_F(TInmemParameterDecl, IsInItsMethodOnceAllocated) {
  auto decl = method->AllocateParameter("Timeout", TCIMValue(true), {});
  EXPECT_EQ(method->GetParameter("TIMEOUT", {}), decl);
  EXPECT_EQ(ParameterNames(method), Names{"Timeout"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(TInmemParameterDecl, SecondOfOneFoldedNameIsRefusedAndTheFirstStays) {
  auto first = method->AllocateParameter("Value", TCIMValue(true), {});
  EXPECT_STATUS(16, method->AllocateParameter("value", TCIMValue("text"), {}));
  EXPECT_EQ(repository.TakeLog(), LogLines{AlreadyExists("value")});
  EXPECT_EQ(method->GetParameter("value", {}), first);
  EXPECT_EQ(ParameterNames(method), Names{"Value"});
}

TEST_F(TInmemParameterDecl, AddingItOnceMoreIsRefused) {
  auto decl = method->AllocateParameter("Value", TCIMValue(true), {});
  EXPECT_STATUS(16, decl->AddToMethod({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{AlreadyExists("Value")});
  EXPECT_EQ(method->GetParameter("Value", {}), decl);
}

TEST_F(TInmemParameterDecl, OfAMethodThatIsGone) {
  auto decl = method->AllocateParameter("Value", TCIMValue(true), {});
  method.reset();
  EXPECT_FALSE(decl->GetMethod({}));
  EXPECT_EQ(decl->GetName({}), "Value");
  EXPECT_STATUS(15, decl->AddToMethod({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(TInmemParameterDecl, ValidateDoesNothing) {
  EXPECT_STATUS(0, method->AllocateParameter("Value", TCIMValue(true), {})->Validate({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(TInmemParameterDecl, DoesNotOfferToFindQualifiers) {
  auto decl = method->AllocateParameter("Value", TCIMValue(true), {});
  repository.Qualify(*decl, {{"In", TCIMValue(true)}});
  bool found = false;
  EXPECT_STATUS(1, decl->FindQualifier("In", found, {}));
  EXPECT_STATUS(1, decl->FindQualifier("Unknown", found, {}));
  EXPECT_EQ(decl->GetQualifier("IN", {})->GetValue({}), TCIMValue(true));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(TInmemParameterDecl, ComparesByFoldedNameAlone) {
  auto other = cls->AllocateMethodDecl("Other", kCIMUInt32, {});
  auto lower = method->AllocateParameter("value", TCIMValue(true), {});
  auto upper = other->AllocateParameter("VALUE", TCIMValue("text"), {});
  EXPECT_TRUE(*lower == *upper);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *lower);
}

TEST_F(TInmemParameterDecl, OrdersByFoldedName) {
  auto b = method->AllocateParameter("B", TCIMValue(true), {});
  auto a = method->AllocateParameter("a", TCIMValue(true), {});
  EXPECT_TRUE(*a < *b);
  EXPECT_FALSE(*b < *a);
  EXPECT_FALSE(*a == *b);
}

TEST_F(TInmemParameterDecl, AssignmentReturnsTheDeclarationAndCopiesNothing) {
  auto a = method->AllocateParameter("A", TCIMValue(true), {});
  auto b = method->AllocateParameter("B", TCIMValue::Null(ArrayOf(kCIMString)), {});
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(a->GetType({}), kCIMBoolean);
}

TEST_F(TInmemParameterDecl, IgnoresOptions) {
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}};
  auto decl = method->AllocateParameter("Value", TCIMValue(true), options);
  EXPECT_EQ(method->GetParameter("Value", options), decl);
  EXPECT_EQ(decl->GetName(options), "Value");
  EXPECT_EQ(decl->GetMethod(options), method);
  EXPECT_EQ(decl->GetType(options), kCIMBoolean);
}

}  // namespace
}  // namespace havtest

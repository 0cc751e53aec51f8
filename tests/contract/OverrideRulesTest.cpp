// Declaring properties and methods in a class: what may replace what, what is logged and
// what is thrown. Properties are tolerated, methods are refused.
#include <stdexcept>

#include <boost/make_shared.hpp>

#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

const Qualifiers kOverride = {{"Override", TCIMValue("X")}};
const Qualifiers kKey = {{"Key", TCIMValue(true)}};

std::string Text(unsigned status) {
  return THAVStatusCode(static_cast<EHAVStatusCode>(status)).TranslateStatusCode();
}

// A class "Base" and a class "Sub" under it, which a test fills in this order.
class OverrideRules : public testing::Test {
 protected:
  OverrideRules() : base(repository.Allocate("Base")) {}

  const ClassPtr& Sub() {
    if (!sub) sub = repository.Allocate("Sub", base);
    return sub;
  }
  // Declares in the class, as its own; returns the declaration, whatever became of it.
  PropertyDeclPtr Declare(const ClassPtr& cls, const std::string& name, const TCIMValue& value,
                          const Qualifiers& qualifiers = {}) {
    auto decl = cls->AllocatePropertyDecl(name, value, {});
    repository.Qualify(*decl, qualifiers);
    decl->AddToClass({});
    return decl;
  }
  MethodDeclPtr Method(const ClassPtr& cls, const std::string& name, ECIMType type,
                       const Qualifiers& qualifiers = {}) {
    auto decl = cls->AllocateMethodDecl(name, type, {});
    repository.Qualify(*decl, qualifiers);
    return decl;
  }

  LoggedRepository repository;
  ClassPtr base;
  ClassPtr sub;
};

using PropertyOverride = OverrideRules;

TEST_F(PropertyOverride, NewNameIsDeclared) {
  auto decl = Declare(Sub(), "Size", TCIMValue(true));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), decl);
  EXPECT_EQ(PropertyNames(base), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, ReferenceInAClassThatIsNoAssociationIsRefused) {
  EXPECT_STATUS(22, Declare(Sub(), "End", TCIMValue::NullReference(base)));
  EXPECT_EQ(
      repository.TakeLog(),
      LogLines{Error("Inmem: Attempt to add reference property End to non-association class Sub")});
  EXPECT_EQ(PropertyNames(sub), Names{});
  EXPECT_EQ(ReferenceNames(sub), Names{});
}

TEST_F(PropertyOverride, ReferenceIsRefusedBeforeItsNameIsChecked) {
  EXPECT_STATUS(22, Declare(Sub(), "not a name", TCIMValue::NullReference(base)));
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to add reference property not a name to "
                           "non-association class Sub")});
}

TEST_F(PropertyOverride, ReferenceInAnAssociationIsDeclared) {
  repository.Qualify(*Sub(), {{"ASSOCIATION", TCIMValue(true)}});
  Declare(sub, "End", TCIMValue::NullReference(base));
  EXPECT_EQ(ReferenceNames(sub), Names{"End"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithOverrideReplacesTheInheritedOne) {
  auto inherited = Declare(base, "Size", TCIMValue(std::uint8_t{1}));
  auto own = Declare(Sub(), "SIZE", TCIMValue(std::uint8_t{2}), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
  EXPECT_EQ(PropertyNames(sub), Names{"SIZE"});
  EXPECT_EQ(base->GetPropertyDecl("Size", {}), inherited);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, OnlyThePresenceOfTheQualifierMatters) {
  Declare(base, "Size", TCIMValue(true));
  auto own = Declare(Sub(), "Size", TCIMValue(false), {{"OVERRIDE", TCIMValue::Null(kCIMString)}});
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
}

TEST_F(PropertyOverride, WithOverrideOfNothingIsLoggedAndDeclaredAllTheSame) {
  auto own = Declare(Sub(), "Size", TCIMValue(true), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override property Size in class Sub: property "
                           "doesn't exist in base class")});
}

TEST_F(PropertyOverride, WithOverrideOfNothingIsNotLoggedForAPortType) {
  for (const char* name : {"porttype", "aPORTTYPE", "OtherPortTypeName", "xPoRtTyPe"}) {
    auto own = Declare(Sub(), name, TCIMValue(true), kOverride);
    EXPECT_EQ(sub->GetPropertyDecl(name, {}), own);
  }
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithOverrideOfAnotherTypeIsLoggedAndDropped) {
  auto inherited = Declare(base, "Size", TCIMValue(std::uint8_t{1}));
  EXPECT_STATUS(0, Declare(Sub(), "size", TCIMValue(std::uint16_t{1}), kOverride));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), inherited);
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override property size in class Sub: different "
                           "types")});
}

TEST_F(PropertyOverride, ArrayIsOfAnotherTypeThanItsElement) {
  auto inherited = Declare(base, "Size", TCIMValue::Null(kCIMUInt8));
  Declare(Sub(), "Size", TCIMValue::Null(ArrayOf(kCIMUInt8)), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), inherited);
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override property Size in class Sub: different "
                           "types")});
}

TEST_F(PropertyOverride, OfAPortTypeFollowsTheRulesOfAnyProperty) {
  auto inherited = Declare(base, "MyPortType", TCIMValue(true));
  Declare(Sub(), "MyPortType", TCIMValue(std::uint8_t{1}), kOverride);
  EXPECT_EQ(repository.TakeLog(), LogLines{Error("Inmem: Attempt to override property MyPortType "
                                                 "in class Sub: different types")});
  EXPECT_EQ(sub->GetPropertyDecl("MyPortType", {}), inherited);
  auto own = Declare(Sub(), "MyPortType", TCIMValue(false), kOverride);
  Declare(Sub(), "MyPortType", TCIMValue(false), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("MyPortType", {}), own);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

// An inherited declaration of a host's making may fail to tell its type: with 15 that counts as no
// "OVERRIDE".
TEST_F(PropertyOverride, OfADeclarationWithoutATypeNeedsAKey) {
  struct Typeless : ForeignPropertyDecl {
    using ForeignPropertyDecl::ForeignPropertyDecl;
    bool hasType = true;
    TCIMValue::TCIMType GetType(TOptions o) const override {
      if (!hasType) throw THAVException(kHAVNotFound);
      return ForeignPropertyDecl::GetType(o);
    }
  };
  auto inherited = boost::make_shared<Typeless>(base, "Size", TCIMValue(true));
  base->AddPropertyDecl(inherited, {});
  inherited->hasType = false;
  Declare(Sub(), "Size", TCIMValue(true), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), inherited);
  auto key = Declare(Sub(), "Size", TCIMValue(true),
                     {{"Override", TCIMValue("X")}, {"Key", TCIMValue(true)}});
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), key);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithOverrideOfTheClassesOwnIsDroppedSilently) {
  auto first = Declare(Sub(), "Size", TCIMValue(true));
  EXPECT_STATUS(0, Declare(sub, "Size", TCIMValue(false), kOverride));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), first);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, OfTheClassesOwnWithAnotherTypeIsLogged) {
  auto first = Declare(Sub(), "Size", TCIMValue(true));
  Declare(sub, "Size", TCIMValue("text"), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), first);
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override property Size in class Sub: different "
                           "types")});
}

TEST_F(PropertyOverride, OriginIsComparedByIdentityOfTheClass) {
  auto foreign = repository.Allocate("Sub");
  auto decl = foreign->AllocatePropertyDecl("Size", TCIMValue(true), {});
  Sub()->AddPropertyDecl(decl, {});
  auto own = Declare(sub, "Size", TCIMValue(false), kOverride);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
}

TEST_F(PropertyOverride, WithoutOverrideKeepsTheInheritedOneSilently) {
  auto inherited = Declare(base, "Size", TCIMValue(true));
  EXPECT_STATUS(0, Declare(Sub(), "Size", TCIMValue(false)));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), inherited);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithoutOverrideKeepsTheClassesOwnSilently) {
  auto first = Declare(Sub(), "Size", TCIMValue(true));
  EXPECT_STATUS(0, Declare(sub, "SIZE", TCIMValue("text")));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), first);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithoutOverrideAKeyReplaces) {
  Declare(base, "Size", TCIMValue(true));
  auto own = Declare(Sub(), "Size", TCIMValue("text"), kKey);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, WithoutOverrideAKeyThatIsFalseReplacesToo) {
  Declare(base, "Size", TCIMValue(true));
  auto own = Declare(Sub(), "Size", TCIMValue(true), {{"KEY", TCIMValue(false)}});
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), own);
}

TEST_F(PropertyOverride, WithoutOverridePortTypeAndSpeedDuplexReplace) {
  for (const char* name : {"PortType", "speedDuplex", "OtherPortTypeName", "myspeedDuplexNow"})
    Declare(base, name, TCIMValue(true));
  for (const char* name : {"PortType", "speedDuplex", "OtherPortTypeName", "myspeedDuplexNow"}) {
    auto own = Declare(Sub(), name, TCIMValue("text"));
    EXPECT_EQ(sub->GetPropertyDecl(name, {}), own) << name;
  }
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, PortTypeAndSpeedDuplexAreSpeltExactly) {
  for (const char* name : {"PortType", "SpeedDuplex"}) Declare(base, name, TCIMValue(true));
  for (const char* name : {"porttype", "PORTTYPE", "Porttype", "SpeedDuplex", "speedduplex"}) {
    Declare(Sub(), name, TCIMValue("text"));
    EXPECT_EQ(sub->GetPropertyDecl(name, {}), base->GetPropertyDecl(name, {})) << name;
  }
}

TEST_F(PropertyOverride, PortTypeReplacesTheClassesOwnToo) {
  Declare(Sub(), "PortType", TCIMValue(true));
  auto second = Declare(sub, "PortType", TCIMValue(false));
  EXPECT_EQ(sub->GetPropertyDecl("PortType", {}), second);
}

TEST_F(PropertyOverride, FailureToReadTheOverrideQualifierIsSwallowedAndNothingDeclared) {
  boost::shared_ptr<ForeignPropertyDecl> decl(
      new ForeignPropertyDecl(Sub(), "Size", TCIMValue(true)));
  decl->qualifiers.FailsWith("OVERRIDE", 31);
  EXPECT_STATUS(0, sub->AddPropertyDecl(decl, {}));
  EXPECT_EQ(PropertyNames(sub), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, FailureToReadTheKeyQualifierKeepsTheInheritedOne) {
  auto inherited = Declare(base, "Size", TCIMValue(true));
  boost::shared_ptr<ForeignPropertyDecl> decl(
      new ForeignPropertyDecl(Sub(), "Size", TCIMValue(true)));
  decl->qualifiers.FailsWith("Key", 31);
  EXPECT_STATUS(0, sub->AddPropertyDecl(decl, {}));
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), inherited);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, ExceptionOfAnotherKindPassesThroughAndNothingIsDeclared) {
  boost::shared_ptr<ForeignPropertyDecl> decl(
      new ForeignPropertyDecl(Sub(), "Size", TCIMValue(true)));
  decl->qualifiers.FailsStrangely("OVERRIDE");
  EXPECT_THROW(sub->AddPropertyDecl(decl, {}), std::runtime_error);
  EXPECT_EQ(PropertyNames(sub), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, EmptyPointerIsRefused) {
  EXPECT_STATUS(15, Sub()->AddPropertyDecl({}, {}));
  EXPECT_STATUS(15, sub->RemovePropertyDecl({}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, RemovalTakesWhateverStandsUnderTheName) {
  auto inherited = Declare(base, "Size", TCIMValue(true));
  auto other = Sub()->AllocatePropertyDecl("SIZE", TCIMValue("text"), {});
  sub->RemovePropertyDecl(other, {});
  EXPECT_STATUS(15, sub->GetPropertyDecl("Size", {}));
  EXPECT_EQ(base->GetPropertyDecl("Size", {}), inherited);
}

TEST_F(PropertyOverride, RemovalOfAnUnknownNameIsNotFoundAndNothingIsLogged) {
  Declare(Sub(), "Other", TCIMValue(true));
  auto decl = sub->AllocatePropertyDecl("Size", TCIMValue(true), {});
  EXPECT_STATUS(15, sub->RemovePropertyDecl(decl, {}));
  EXPECT_EQ(PropertyNames(sub), Names{"Other"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(PropertyOverride, RemovedNameCanBeDeclaredAgain) {
  auto decl = Declare(Sub(), "Size", TCIMValue(true));
  sub->RemovePropertyDecl(decl, {});
  decl->AddToClass({});
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), decl);
}

using MethodOverride = OverrideRules;

TEST_F(MethodOverride, NewNameIsDeclared) {
  auto decl = Method(Sub(), "Reset", kCIMUInt32);
  decl->AddToClass({});
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), decl);
  EXPECT_EQ(MethodNames(base), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, ReferenceAsReturnTypeIsNotRefused) {
  Method(Sub(), "Find", kCIMReference)->AddToClass({});
  EXPECT_EQ(MethodNames(sub), Names{"Find"});
}

TEST_F(MethodOverride, WithOverrideReplacesTheInheritedOne) {
  auto inherited = Method(base, "Reset", kCIMUInt32);
  inherited->AddToClass({});
  auto own = Method(Sub(), "RESET", kCIMUInt32, kOverride);
  own->AddToClass({});
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), own);
  EXPECT_EQ(MethodNames(sub), Names{"RESET"});
  EXPECT_EQ(base->GetMethodDecl("Reset", {}), inherited);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, WithOverrideOfNothingIsLoggedAndDeclaredAllTheSame) {
  auto own = Method(Sub(), "Reset", kCIMUInt32, kOverride);
  EXPECT_STATUS(0, own->AddToClass({}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), own);
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override method Reset in class Sub: method doesn't "
                           "exist in base class")});
}

TEST_F(MethodOverride, PortTypeIsNoExceptionForMethods) {
  Method(Sub(), "PortType", kCIMUInt32, kOverride)->AddToClass({});
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt to override method PortType in class Sub: method "
                           "doesn't exist in base class")});
  EXPECT_STATUS(16, Method(sub, "PortType", kCIMUInt32)->AddToClass({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, WithOverrideOfAnotherTypeIsLoggedTwiceAndRefused) {
  auto inherited = Method(base, "Reset", kCIMUInt32);
  inherited->AddToClass({});
  EXPECT_STATUS(14, Method(Sub(), "reset", kCIMString, kOverride)->AddToClass({}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), inherited);
  EXPECT_EQ(
      repository.TakeLog(),
      (LogLines{
          Error("Inmem: Attempt to override method reset in class Sub: different types"),
          Error("Inmem: Attempt define method reset in class Subfailed. Reason = " + Text(14))}));
}

TEST_F(MethodOverride, WithOverrideOfTheClassesOwnIsLoggedTwiceAndRefused) {
  auto first = Method(Sub(), "Reset", kCIMUInt32);
  first->AddToClass({});
  EXPECT_STATUS(16, Method(sub, "Reset", kCIMUInt32, kOverride)->AddToClass({}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), first);
  EXPECT_EQ(
      repository.TakeLog(),
      (LogLines{
          Error("Inmem: Attempt to override method Reset in class Sub: original was defined in "
                "this class"),
          Error("Inmem: Attempt define method Reset in class Subfailed. Reason = " + Text(16))}));
}

TEST_F(MethodOverride, OfTheClassesOwnWithAnotherTypeIsRefusedForTheType) {
  Method(Sub(), "Reset", kCIMUInt32)->AddToClass({});
  EXPECT_STATUS(14, Method(sub, "Reset", kCIMString, kOverride)->AddToClass({}));
}

TEST_F(MethodOverride, WithoutOverrideOfAnInheritedOneIsRefusedAndNothingLogged) {
  auto inherited = Method(base, "Reset", kCIMUInt32);
  inherited->AddToClass({});
  EXPECT_STATUS(16, Method(Sub(), "Reset", kCIMUInt32)->AddToClass({}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), inherited);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, WithoutOverrideASecondOfTheClassIsRefusedAndNothingLogged) {
  auto first = Method(Sub(), "Reset", kCIMUInt32);
  first->AddToClass({});
  EXPECT_STATUS(16, first->AddToClass({}));
  EXPECT_STATUS(16, Method(sub, "RESET", kCIMString)->AddToClass({}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), first);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, KeyIsNoExceptionForMethods) {
  Method(base, "Reset", kCIMUInt32)->AddToClass({});
  EXPECT_STATUS(16, Method(Sub(), "Reset", kCIMUInt32, kKey)->AddToClass({}));
}

TEST_F(MethodOverride, FailureToReadTheOverrideQualifierIsLoggedAndThrownOn) {
  boost::shared_ptr<ForeignMethodDecl> decl(new ForeignMethodDecl(Sub(), "Reset", kCIMUInt32));
  decl->qualifiers.FailsWith("OVERRIDE", 31);
  EXPECT_STATUS(31, sub->AddMethodDecl(decl, {}));
  EXPECT_EQ(MethodNames(sub), Names{});
  EXPECT_EQ(repository.TakeLog(),
            LogLines{Error("Inmem: Attempt define method Reset in class Subfailed. Reason = " +
                           Text(31))});
}

TEST_F(MethodOverride, ExceptionOfAnotherKindPassesThroughAndNothingIsDeclared) {
  boost::shared_ptr<ForeignMethodDecl> decl(new ForeignMethodDecl(Sub(), "Reset", kCIMUInt32));
  decl->qualifiers.FailsStrangely("OVERRIDE");
  EXPECT_THROW(sub->AddMethodDecl(decl, {}), std::runtime_error);
  EXPECT_EQ(MethodNames(sub), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, EmptyPointerIsRefused) {
  EXPECT_STATUS(15, Sub()->AddMethodDecl({}, {}));
  EXPECT_STATUS(15, sub->RemoveMethodDecl({}, {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, RemovalTakesWhateverStandsUnderTheName) {
  auto inherited = Method(base, "Reset", kCIMUInt32);
  inherited->AddToClass({});
  sub = repository.Allocate("Sub", base);
  sub->RemoveMethodDecl(Method(sub, "RESET", kCIMString), {});
  EXPECT_STATUS(15, sub->GetMethodDecl("Reset", {}));
  EXPECT_EQ(base->GetMethodDecl("Reset", {}), inherited);
}

TEST_F(MethodOverride, RemovalOfAnUnknownNameIsNotFoundAndNothingIsLogged) {
  EXPECT_STATUS(15, Sub()->RemoveMethodDecl(Method(sub, "Reset", kCIMUInt32), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(MethodOverride, RemovedNameCanBeDeclaredAgain) {
  auto decl = Method(Sub(), "Reset", kCIMUInt32);
  decl->AddToClass({});
  sub->RemoveMethodDecl(decl, {});
  EXPECT_EQ(MethodNames(sub), Names{});
  decl->AddToClass({});
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), decl);
}

}  // namespace
}  // namespace havtest

// A class by itself: what it answers, its flags, its key check, look-ups and walks.
// Inheritance, registration, associations and instances have tests of their own.
#include <stdexcept>

#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

const TOptions kAnyOptions = {{"ProvNSP", TCIMValue("elsewhere")}};

LogLine NoKeys(const std::string& name) { return Error("Inmem: Class " + name + " has no keys"); }

TEST(TInmemClass, AnswersItsNameAsGiven) {
  Repository repository;
  EXPECT_EQ(repository.Allocate("CIM_Foo")->GetName({}), "CIM_Foo");
}

TEST(TInmemClass, AnswersItsNamespace) {
  Repository repository;
  EXPECT_EQ(repository.Allocate("A")->GetNamespace({}), repository.ns);
}

TEST(TInmemClass, WithoutASuperclassAnswersTheRootClass) {
  Repository repository;
  EXPECT_EQ(repository.Allocate("A")->GetSuperClass({}), repository.ns->GetClass("<root>", {}));
}

TEST(TInmemClass, AnswersItsSuperclass) {
  Repository repository;
  auto base = repository.Allocate("Base");
  EXPECT_EQ(repository.Allocate("Sub", base)->GetSuperClass({}), base);
}

// A class flag and the qualifier that sets it.
struct Flag {
  const char* qualifier;
  bool (ICIMClass::*isSet)(TOptions) const;
};

class ClassFlag : public testing::TestWithParam<Flag> {
 protected:
  bool IsSetWith(const Qualifiers& qualifiers) {
    return (*repository.Allocate("A", {}, qualifiers).*GetParam().isSet)({});
  }
  Repository repository;
};

TEST_P(ClassFlag, IsSetByAQualifierThatIsTrue) {
  EXPECT_TRUE(IsSetWith({{GetParam().qualifier, TCIMValue(true)}}));
}

TEST_P(ClassFlag, IsNotSetWithoutTheQualifier) {
  EXPECT_FALSE(IsSetWith({{"Other", TCIMValue(true)}}));
}

TEST_P(ClassFlag, IsNotSetByAQualifierThatIsFalse) {
  EXPECT_FALSE(IsSetWith({{GetParam().qualifier, TCIMValue(false)}}));
}

TEST_P(ClassFlag, IsNotSetByAQualifierThatIsNull) {
  EXPECT_FALSE(IsSetWith({{GetParam().qualifier, TCIMValue::Null(kCIMBoolean)}}));
}

TEST_P(ClassFlag, OfAnotherTypeIsRefused) {
  EXPECT_STATUS(14, IsSetWith({{GetParam().qualifier, TCIMValue("true")}}));
}

TEST_P(ClassFlag, FollowsTheQualifiersValue) {
  auto cls = repository.Allocate("A", {}, {{GetParam().qualifier, TCIMValue(false)}});
  cls->GetQualifier(GetParam().qualifier, {})->SetValue(TCIMValue(true), {});
  EXPECT_TRUE((*cls.*GetParam().isSet)(kAnyOptions));
}

INSTANTIATE_TEST_SUITE_P(Flags, ClassFlag,
                         testing::Values(Flag{"Association", &ICIMClass::IsAssociation},
                                         Flag{"ABSTRACT", &ICIMClass::IsAbstract},
                                         Flag{"Indication", &ICIMClass::IsIndication}),
                         [](const auto& flag) { return std::string(flag.param.qualifier); });

TEST(TInmemClass, WithoutKeysIsWarnedAboutOnceAndValid) {
  LoggedRepository repository;
  auto cls = repository.Allocate("CIM_Foo");
  repository.Property(cls, "Size", TCIMValue(true));
  EXPECT_STATUS(0, cls->Validate({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{NoKeys("CIM_Foo")});
}

TEST(TInmemClass, WithAKeyIsValidSilently) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  repository.Property(cls, "Size", TCIMValue(true));
  repository.Property(cls, "Zone", TCIMValue(true), {{"KEY", TCIMValue(true)}});
  EXPECT_STATUS(0, cls->Validate({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, WithAnInheritedKeyIsValidSilently) {
  LoggedRepository repository;
  auto base = repository.Allocate("Base");
  repository.Key(base, "Name");
  repository.Allocate("Sub", base)->Validate({});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, AbstractNeedsNoKey) {
  LoggedRepository repository;
  repository.Allocate("A", {}, {{"Abstract", TCIMValue(true)}})->Validate({});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, KeyThatIsFalseOrNullIsNoKey) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  repository.Property(cls, "P", TCIMValue(true), {{"Key", TCIMValue(false)}});
  repository.Property(cls, "Q", TCIMValue(true), {{"Key", TCIMValue::Null(kCIMBoolean)}});
  cls->Validate({});
  EXPECT_EQ(repository.TakeLog(), LogLines{NoKeys("A")});
  EXPECT_EQ(KeyNames(cls), Names{});
}

TEST(TInmemClass, KeyOfAnotherTypeFailsTheCheckWithItsStatus) {
  LoggedRepository repository;
  auto cls = repository.Allocate("A");
  repository.Property(cls, "P", TCIMValue(true), {{"Key", TCIMValue("yes")}});
  EXPECT_STATUS(14, cls->Validate({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, VisitsTheNamesOfItsKeysInFoldedNameOrder) {
  Repository repository;
  auto base = repository.Allocate("Base");
  repository.Key(base, "Tag");
  auto sub = repository.Allocate("Sub", base);
  repository.Key(sub, "creator");
  repository.Property(sub, "Size", TCIMValue(true));
  repository.Key(sub, "_id");
  EXPECT_EQ(KeyNames(sub), (Names{"_id", "creator", "Tag"}));
}

TEST(TInmemClass, KeysFollowEveryChangeOfTheirQualifier) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto decl = repository.Property(base, "Name", TCIMValue("text"));
  auto cls = repository.Allocate("Sub", base);
  EXPECT_EQ(KeyNames(cls), Names{});
  repository.Qualify(*decl, {{"Key", TCIMValue(false)}});
  EXPECT_EQ(KeyNames(cls), Names{});
  decl->GetQualifier("Key", {})->SetValue(TCIMValue(true), {});
  EXPECT_EQ(KeyNames(cls), Names{"Name"});
  repository.Qualify(*decl, {{"Key", TCIMValue::Null(kCIMBoolean)}});
  EXPECT_EQ(KeyNames(cls), Names{});
}

TEST(TInmemClass, KeysFollowTheDeclarations) {
  Repository repository;
  auto cls = repository.Allocate("A");
  auto decl = repository.Key(cls, "P");
  EXPECT_EQ(KeyNames(cls), Names{"P"});
  repository.Key(cls, "Q");
  EXPECT_EQ(KeyNames(cls), (Names{"P", "Q"}));
  cls->RemovePropertyDecl(decl, {});
  EXPECT_EQ(KeyNames(cls), Names{"Q"});
}

TEST(TInmemClass, KeysFollowAForeignDeclaration) {
  Repository repository;
  auto cls = repository.Allocate("A");
  repository.Key(cls, "P");
  boost::shared_ptr<ForeignPropertyDecl> decl(
      new ForeignPropertyDecl(cls, "Strange", TCIMValue(true)));
  cls->AddPropertyDecl(decl, {});
  EXPECT_EQ(KeyNames(cls), Names{"P"});
  decl->qualifiers.FailsWith("KEY", 31);
  EXPECT_STATUS(31, KeyNames(cls));
}

TEST(TInmemClass, WalkOverKeysIgnoresTheAnswer) {
  Repository repository;
  auto cls = repository.Allocate("A");
  repository.Key(cls, "P");
  repository.Key(cls, "Q");
  int visits = 0;
  cls->EnumerateKeyNames(
      [&](const std::string*) {
        ++visits;
        return false;
      },
      kAnyOptions);
  EXPECT_EQ(visits, 2);
}

TEST(TInmemClass, WalkOverKeysLetsTheCallbacksExceptionsThrough) {
  Repository repository;
  auto cls = repository.Allocate("A");
  repository.Key(cls, "P");
  repository.Key(cls, "Q");
  int visits = 0;
  EXPECT_STATUS(18, cls->EnumerateKeyNames(
                        [&](const std::string*) -> bool {
                          ++visits;
                          throw THAVException(kHAVKeyIsNull);
                        },
                        {}));
  EXPECT_EQ(visits, 1);
  EXPECT_THROW(cls->EnumerateKeyNames(
                   [](const std::string*) -> bool { throw std::runtime_error("callback"); }, {}),
               std::runtime_error);
  EXPECT_THROW(cls->EnumerateKeyNames({}, {}), boost::bad_function_call);
}

TEST(TInmemClass, LookUpOfUnknownDeclarationsIsNotFoundAndNothingIsLogged) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  EXPECT_STATUS(15, cls->GetPropertyDecl("Size", {}));
  EXPECT_STATUS(15, cls->GetReferenceDecl("Size", {}));
  EXPECT_STATUS(15, cls->GetMethodDecl("Size", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, UnknownQualifierAnswersAnEmptyPointer) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  bool found = true;
  EXPECT_FALSE(cls->GetQualifier("Version", {}));
  EXPECT_FALSE(cls->FindQualifier("Version", found, {}));
  EXPECT_FALSE(found);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, FindsAQualifierAndSaysSo) {
  Repository repository;
  auto cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
  bool found = false;
  EXPECT_EQ(cls->FindQualifier("VERSION", found, {}), cls->GetQualifier("Version", {}));
  EXPECT_TRUE(found);
}

TEST(TInmemClass, VisitsOwnAndInheritedDeclarationsInFoldedNameOrder) {
  Repository repository;
  auto base = repository.Allocate("Base", {}, {{"Association", TCIMValue(true)}});
  repository.Property(base, "Zone", TCIMValue(true));
  repository.Reference(base, "Mate", base);
  base->AllocateMethodDecl("Stop", kCIMUInt32, {})->AddToClass({});
  auto sub = repository.Allocate("Sub", base);
  repository.Property(sub, "alpha", TCIMValue(true));
  repository.Reference(sub, "Boss", base);
  sub->AllocateMethodDecl("reset", kCIMUInt32, {})->AddToClass({});
  EXPECT_EQ(PropertyNames(sub), (Names{"alpha", "Boss", "Mate", "Zone"}));
  EXPECT_EQ(ReferenceNames(sub), (Names{"Boss", "Mate"}));
  EXPECT_EQ(MethodNames(sub), (Names{"reset", "Stop"}));
}

TEST(TInmemClass, VisitsItsDirectSubclassesInTheOrderOfTheirRegistration) {
  Repository repository;
  auto base = repository.Class("Base");
  auto zebra = repository.Allocate("Zebra", base);
  auto apple = repository.Allocate("Apple", base);
  EXPECT_EQ(SubclassNames(base), Names{});
  zebra->AddToNamespace({});
  apple->AddToNamespace({});
  repository.Class("Pip", apple);
  EXPECT_EQ(SubclassNames(base), (Names{"Zebra", "Apple"}));
}

// Every walk of a class over elements, with one callback for them all.
template <class Callback>
void WalkAll(const ClassPtr& cls, Callback callback) {
  cls->EnumerateSubclasses([&](ClassPtr) { return callback(); }, {});
  cls->EnumeratePropertyDecls([&](PropertyDeclPtr) { return callback(); }, {});
  cls->EnumerateReferenceDecls([&](PropertyDeclPtr) { return callback(); }, {});
  cls->EnumerateMethodDecls([&](MethodDeclPtr) { return callback(); }, {});
  cls->EnumerateQualifiers([&](QualifierPtr) { return callback(); }, {});
}

// An association with two of everything: 2 references, which are properties, and so on.
ClassPtr ClassWithTwoOfAll(const Repository& repository) {
  auto cls = repository.Allocate("Pair", {},
                                 {{"Association", TCIMValue(true)}, {"Version", TCIMValue("1")}});
  for (const char* name : {"A", "B"}) {
    repository.Reference(cls, name, cls);
    cls->AllocateMethodDecl(name, kCIMUInt32, {})->AddToClass({});
  }
  for (const char* name : {"Sub1", "Sub2"}) cls->AddSubclass(repository.Allocate(name, cls), {});
  return cls;
}

TEST(TInmemClass, WalksOverElementsIgnoreTheAnswer) {
  Repository repository;
  int visits = 0;
  WalkAll(ClassWithTwoOfAll(repository), [&] {
    ++visits;
    return false;
  });
  EXPECT_EQ(visits, 10);
}

TEST(TInmemClass, WalksOverElementsDropEveryException) {
  LoggedRepository repository;
  int visits = 0;
  EXPECT_NO_THROW(WalkAll(ClassWithTwoOfAll(repository), [&]() -> bool {
    if (++visits % 2 == 0) throw THAVException(kHAVNotFound);
    throw std::runtime_error("callback");
  }));
  EXPECT_EQ(visits, 10);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, WalksOverElementsDropTheErrorOfAnEmptyCallback) {
  Repository repository;
  auto cls = ClassWithTwoOfAll(repository);
  EXPECT_NO_THROW(cls->EnumerateSubclasses({}, {}));
  EXPECT_NO_THROW(cls->EnumeratePropertyDecls({}, {}));
  EXPECT_NO_THROW(cls->EnumerateReferenceDecls({}, {}));
  EXPECT_NO_THROW(cls->EnumerateMethodDecls({}, {}));
  EXPECT_NO_THROW(cls->EnumerateQualifiers({}, {}));
}

TEST(TInmemClass, ComparesByNameAsSpelt) {
  Repository repository;
  Repository other;
  auto cls = repository.Allocate("CIM_Foo");
  EXPECT_TRUE(*cls == *other.Allocate("CIM_Foo"));
  EXPECT_FALSE(*cls == *other.Allocate("cim_foo"));
}

TEST(TInmemClass, OrdersByNameAsSpelt) {
  Repository repository;
  auto upper = repository.Allocate("B");
  auto lower = repository.Allocate("a");
  EXPECT_TRUE(*upper < *lower);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *upper);
}

TEST(TInmemClass, AssignmentReturnsTheClassAndCopiesNothing) {
  Repository repository;
  auto a = repository.Class("A");
  auto b = repository.Allocate("B", {}, {{"Version", TCIMValue("1")}});
  repository.Property(b, "Size", TCIMValue(true));
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(PropertyNames(a), Names{"Name"});
  EXPECT_EQ(QualifierNames(a), Names{});
}

TEST(TInmemClass, HostMarkIsFalseUntilItIsSet) {
  Repository repository;
  auto cls = repository.Class("A");
  EXPECT_FALSE(cls->IsHostMarked({}));
  cls->SetHostMarked(kAnyOptions);
  EXPECT_TRUE(cls->IsHostMarked(kAnyOptions));
  cls->SetHostMarked({});
  EXPECT_TRUE(cls->IsHostMarked({}));
}

TEST(TInmemClass, HostMarkIsNeitherInheritedNorClearedByDelete) {
  Repository repository;
  auto base = repository.Class("Base");
  base->SetHostMarked({});
  EXPECT_FALSE(repository.Allocate("Sub", base)->IsHostMarked({}));
  base->Delete({});
  EXPECT_TRUE(base->IsHostMarked({}));
}

TEST(TInmemClass, RunsNoMethodAndReturnsNull) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  cls->AllocateMethodDecl("Reset", kCIMUInt32, {})->AddToClass({});
  std::map<std::string, TCIMValue> parameters = {{"Force", TCIMValue(true)}};
  EXPECT_EQ(cls->InvokeMethod("Reset", parameters, {}), TCIMValue());
  EXPECT_EQ(cls->InvokeMethod("no method", parameters, kAnyOptions), TCIMValue());
  EXPECT_EQ(parameters, (std::map<std::string, TCIMValue>{{"Force", TCIMValue(true)}}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, ModifyInstanceDoesNothing) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  auto instance = repository.Instance(cls, {{"Name", TCIMValue("1")}});
  cls->ModifyInstance(instance, {{"Name", TCIMValue("2")}});
  EXPECT_EQ(instance->GetProperty("Name", {})->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemClass, RefusesEmptyPointers) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  EXPECT_STATUS(15, cls->AddSubclass({}, {}));
  EXPECT_STATUS(15, cls->RemoveSubclass({}, {}));
  EXPECT_STATUS(15, cls->AddInstance({}, {}));
  EXPECT_STATUS(15, cls->RemoveInstance({}, {}));
  EXPECT_STATUS(15, cls->AddAssociation({}, {}));
  EXPECT_STATUS(15, cls->RemoveAssociation({}, {}));
  EXPECT_STATUS(15, cls->IsA({}, {}));
  EXPECT_EQ(SubclassNames(cls), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

// The one rule for CIM names, as every operation that takes a name applies it.
#include <ostream>
#include <string>

#include "support/LoggedRepository.h"

namespace havtest {
namespace {

LogLine Invalid(const std::string& name) {
  return Error("Inmem: CIM name '" + name + "' is invalid");
}

class ValidCimName : public testing::TestWithParam<std::string> {};

TEST_P(ValidCimName, IsUnknownAndNotRefused) {
  LoggedRepository repository;
  EXPECT_STATUS(15, repository.ns->GetClass(GetParam(), {}));
  EXPECT_FALSE(repository.ns->GetQualifierDecl(GetParam(), {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

INSTANTIATE_TEST_SUITE_P(Names, ValidCimName,
                         testing::Values("", "a", "Z", "_", "__", "_1", "Abc_1", "abc_1", "CIM_Foo",
                                         "x0123456789", std::string(10000, 'n')));

class InvalidCimName : public testing::TestWithParam<std::string> {};

TEST_P(InvalidCimName, IsRefusedAfterOneLineWithTheNameAsGiven) {
  LoggedRepository repository;
  EXPECT_STATUS(25, repository.ns->GetClass(GetParam(), {}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid(GetParam())});
  EXPECT_STATUS(25, repository.ns->GetQualifierDecl(GetParam(), {}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid(GetParam())});
}

INSTANTIATE_TEST_SUITE_P(Names, InvalidCimName,
                         testing::Values("1abc", "0", "a-b", "-", "A b", " a", "a ", "<root> ",
                                         "<ROOT>", "<Root>", "a.b", "a:b", "a@b", "a[b", "a`b",
                                         "a{b", "a/b", "Gr\xC3\xB6\xC3\x9F\x65", "\xC0", "a\xE9",
                                         "a\x7F", "a\tb", std::string("a\0b", 3),
                                         std::string(1, '\0')));

TEST(CimName, RootClassHasItsNameInLowerCaseOnly) {
  LoggedRepository repository;
  EXPECT_EQ(repository.ns->GetClass("<root>", {})->GetName({}), "<root>");
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(CimName, IgnoresCaseOfClasses) {
  Repository repository;
  auto cls = repository.Class("CIM_Foo");
  EXPECT_EQ(repository.ns->GetClass("cim_foo", {}), cls);
  EXPECT_EQ(repository.ns->GetClass("CIM_FOO", {}), cls);
}

TEST(CimName, IgnoresCaseOfQualifierDeclarations) {
  Repository repository;
  auto decl = repository.Declaration("MaxLen");
  EXPECT_EQ(repository.ns->GetQualifierDecl("maxlen", {}), decl);
  EXPECT_EQ(repository.ns->GetQualifierDecl("MAXLEN", {}), decl);
}

TEST(CimName, IgnoresCaseOfDeclarations) {
  Repository repository;
  auto cls =
      repository.Association("Link", "Left", repository.Class("A"), "Right", repository.Class("B"));
  auto method = cls->AllocateMethodDecl("Reset", kCIMUInt32, {});
  auto parameter = method->AllocateParameter("Force", TCIMValue(false), {});
  method->AddToClass({});
  EXPECT_EQ(cls->GetPropertyDecl("LEFT", {})->GetName({}), "Left");
  EXPECT_EQ(cls->GetReferenceDecl("left", {})->GetName({}), "Left");
  EXPECT_EQ(cls->GetMethodDecl("RESET", {}), method);
  EXPECT_EQ(method->GetParameter("fORCE", {}), parameter);
}

TEST(CimName, IgnoresCaseOfQualifiers) {
  Repository repository;
  auto cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
  auto qualifier = cls->GetQualifier("VERSION", {});
  ASSERT_TRUE(qualifier);
  EXPECT_EQ(cls->GetQualifier("version", {}), qualifier);
}

TEST(CimName, IsRefusedByEveryLookUpOfAClass) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  bool found = false;
  EXPECT_STATUS(25, cls->GetPropertyDecl("a-1", {}));
  EXPECT_STATUS(25, cls->GetReferenceDecl("a-2", {}));
  EXPECT_STATUS(25, cls->GetMethodDecl("a-3", {}));
  EXPECT_STATUS(25, cls->GetQualifier("a-4", {}));
  EXPECT_STATUS(25, cls->FindQualifier("a-5", found, {}));
  EXPECT_EQ(repository.TakeLog(), (LogLines{Invalid("a-1"), Invalid("a-2"), Invalid("a-3"),
                                            Invalid("a-4"), Invalid("a-5")}));
}

TEST(CimName, IsRefusedByTheLookUpsOfDeclarations) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  auto property = cls->AllocatePropertyDecl("P", TCIMValue(true), {});
  auto method = cls->AllocateMethodDecl("M", kCIMUInt32, {});
  auto parameter = method->AllocateParameter("Q", TCIMValue(true), {});
  bool found = false;
  EXPECT_STATUS(25, property->GetQualifier("1", {}));
  EXPECT_STATUS(25, property->FindQualifier("2", found, {}));
  EXPECT_STATUS(25, method->GetQualifier("3", {}));
  EXPECT_STATUS(25, method->GetParameter("4", {}));
  EXPECT_STATUS(25, parameter->GetQualifier("5", {}));
  EXPECT_EQ(repository.TakeLog(),
            (LogLines{Invalid("1"), Invalid("2"), Invalid("3"), Invalid("4"), Invalid("5")}));
}

TEST(CimName, OfAPropertyIsCheckedWhenItIsAddedToItsClass) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  auto decl = cls->AllocatePropertyDecl("Not-A-Name", TCIMValue(true), {});
  EXPECT_STATUS(25, decl->AddToClass({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid("Not-A-Name")});
  EXPECT_EQ(PropertyNames(cls), Names{"Name"});
}

TEST(CimName, OfAMethodIsCheckedWhenItIsAddedToItsClass) {
  LoggedRepository repository;
  auto cls = repository.Class("A");
  auto decl = cls->AllocateMethodDecl("Not-A-Name", kCIMUInt32, {});
  EXPECT_STATUS(25, decl->AddToClass({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid("Not-A-Name")});
  EXPECT_EQ(MethodNames(cls), Names{});
}

TEST(CimName, OfAParameterIsCheckedWhenItIsAllocated) {
  LoggedRepository repository;
  auto method = repository.Class("A")->AllocateMethodDecl("M", kCIMUInt32, {});
  EXPECT_STATUS(25, method->AllocateParameter("Not-A-Name", TCIMValue(true), {}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid("Not-A-Name")});
  EXPECT_EQ(ParameterNames(method), Names{});
}

TEST(CimName, OfAQualifierDeclarationIsCheckedWhenItIsAllocated) {
  LoggedRepository repository;
  EXPECT_STATUS(25, repository.ns->AllocateQualifierDecl("Not-A-Name", TCIMValue(true),
                                                         ICIMQualifierDecl::kScopeAny,
                                                         ICIMQualifierDecl::kFlavorNone, {}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid("Not-A-Name")});
  EXPECT_EQ(QualifierDeclNames(repository.ns), Names{});
}

TEST(CimName, OfAClassIsCheckedWhenItIsRegistered) {
  LoggedRepository repository;
  auto cls = repository.Allocate("Not-A-Name", {}, {{"Abstract", TCIMValue(true)}});
  repository.TakeLog();
  EXPECT_STATUS(25, cls->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Invalid("Not-A-Name")});
  EXPECT_EQ(RootClassNames(repository.ns), Names{});
  EXPECT_STATUS(17, cls->Delete({}));
}

TEST(CimName, MayBeEmptyForEveryElement) {
  LoggedRepository repository;
  auto decl = repository.Declaration("");
  auto cls = repository.Allocate("", {}, {{"Abstract", TCIMValue(true)}, {"", TCIMValue(true)}});
  repository.Property(cls, "", TCIMValue(true));
  auto method = cls->AllocateMethodDecl("", kCIMUInt32, {});
  auto parameter = method->AllocateParameter("", TCIMValue(true), {});
  method->AddToClass({});
  cls->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetQualifierDecl("", {}), decl);
  EXPECT_EQ(repository.ns->GetClass("", {}), cls);
  EXPECT_EQ(cls->GetQualifier("", {})->GetQualifierDecl({}), decl);
  EXPECT_EQ(cls->GetPropertyDecl("", {})->GetName({}), "");
  EXPECT_EQ(cls->GetMethodDecl("", {})->GetParameter("", {}), parameter);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

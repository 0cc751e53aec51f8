// Attaching qualifiers to elements: the conflict rule, look-up and the walk.
#include <stdexcept>

#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

using Decl = ICIMQualifierDecl;
using ElementPtr = boost::shared_ptr<ICIMNamedElement>;

// The kinds of element on which qualifiers can be put.
struct Kind {
  const char* name;
  ElementPtr (*make)(const ClassPtr& cls);
};

// The method of a parameter under test has to outlive it.
struct ParameterOfAMethod {
  MethodDeclPtr method;
  ParameterDeclPtr parameter;
};

ElementPtr MakeClass(const ClassPtr& cls) { return cls; }
ElementPtr MakeProperty(const ClassPtr& cls) {
  return cls->AllocatePropertyDecl("P", TCIMValue(true), {});
}
ElementPtr MakeMethod(const ClassPtr& cls) { return cls->AllocateMethodDecl("M", kCIMUInt32, {}); }
ElementPtr MakeParameter(const ClassPtr& cls) {
  boost::shared_ptr<ParameterOfAMethod> both(new ParameterOfAMethod);
  both->method = cls->AllocateMethodDecl("M", kCIMUInt32, {});
  both->parameter = both->method->AllocateParameter("Q", TCIMValue(true), {});
  return ElementPtr(both, both->parameter.get());
}

class QualifierAttachment : public testing::TestWithParam<Kind> {
 protected:
  QualifierAttachment() : cls(repository.Allocate("A")), element(GetParam().make(cls)) {}

  QualifierPtr Attach(const std::string& value, Decl::EFlavor flavor,
                      const std::string& name = "Version") {
    return element->AllocateQualifier(repository.Declaration(name, TCIMValue("")), TCIMValue(value),
                                      flavor, TOptions());
  }
  // A qualifier that stands on another element.
  QualifierPtr Elsewhere(const std::string& value, Decl::EFlavor flavor) {
    elsewhere = cls->AllocatePropertyDecl("Elsewhere", TCIMValue(true), {});
    return elsewhere->AllocateQualifier(repository.Declaration("Version", TCIMValue("")),
                                        TCIMValue(value), flavor, TOptions());
  }

  LoggedRepository repository;
  ClassPtr cls;
  ElementPtr element;
  PropertyDeclPtr elsewhere;
};

TEST_P(QualifierAttachment, StoresAQualifierUnderAFreeName) {
  auto qualifier = Elsewhere("1", Decl::kFlavorNone);
  element->AddQualifier(qualifier, {});
  EXPECT_EQ(element->GetQualifier("VERSION", {}), qualifier);
}

TEST_P(QualifierAttachment, ReplacesAnOverridableQualifier) {
  auto first = Attach("1", Decl::kFlavorOverridable);
  auto second = Elsewhere("2", Decl::kFlavorNone);
  element->AddQualifier(second, {});
  EXPECT_EQ(element->GetQualifier("Version", {}), second);
  EXPECT_EQ(QualifierNames(element), Names{"Version"});
}

TEST_P(QualifierAttachment, ReplacesAnOverridableQualifierAlsoByAnEqualOne) {
  auto first = Attach("1", Decl::kFlavorOverridable);
  auto second = Elsewhere("1", Decl::kFlavorOverridable);
  element->AddQualifier(second, {});
  EXPECT_EQ(element->GetQualifier("Version", {}), second);
}

TEST_P(QualifierAttachment, LooksAtTheOverridableBitOfTheOneThatStandsThere) {
  auto first = Attach("1", Decl::kFlavorToSubclass);
  auto second = Elsewhere("2", Decl::kFlavorOverridable);
  EXPECT_STATUS(28, element->AddQualifier(second, {}));
  EXPECT_EQ(element->GetQualifier("Version", {}), first);
}

TEST_P(QualifierAttachment, KeepsTheFirstOfTwoEqualQualifiersSilently) {
  auto first = Attach("1", Decl::kFlavorToSubclass);
  auto second = Elsewhere("1", Decl::kFlavorToSubclass);
  EXPECT_STATUS(0, element->AddQualifier(second, {}));
  EXPECT_EQ(element->GetQualifier("Version", {}), first);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(QualifierAttachment, RefusesAnotherValueAndLogsNothing) {
  auto first = Attach("1", Decl::kFlavorNone);
  EXPECT_STATUS(28, Attach("2", Decl::kFlavorNone));
  EXPECT_EQ(element->GetQualifier("Version", {}), first);
  EXPECT_EQ(first->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(QualifierAttachment, RefusesAValueOfAnotherType) {
  Attach("1", Decl::kFlavorNone);
  EXPECT_STATUS(
      28, element->AllocateQualifier(repository.Declaration("Version"), TCIMValue(std::uint8_t{1}),
                                     Decl::kFlavorNone, TOptions()));
}

TEST_P(QualifierAttachment, AddsAQualifierToItsOwnElement) {
  auto first = Attach("1", Decl::kFlavorOverridable);
  auto second = Attach("2", Decl::kFlavorOverridable);
  EXPECT_EQ(element->GetQualifier("Version", {}), second);
  first->AddToElement({});
  EXPECT_EQ(element->GetQualifier("Version", {}), first);
}

TEST_P(QualifierAttachment, AddingToTheOwnElementObeysTheConflictRule) {
  auto first = Attach("1", Decl::kFlavorOverridable);
  auto second = Attach("2", Decl::kFlavorNone);
  EXPECT_STATUS(28, first->AddToElement({}));
  EXPECT_EQ(element->GetQualifier("Version", {}), second);
  EXPECT_STATUS(0, second->AddToElement({}));
}

TEST_P(QualifierAttachment, RefusesAnEmptyQualifierPointer) {
  EXPECT_STATUS(15, element->AddQualifier({}, {}));
  EXPECT_EQ(QualifierNames(element), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(QualifierAttachment, RefusesAnEmptyDeclarationPointer) {
  EXPECT_STATUS(15, element->AllocateQualifier({}, TCIMValue("1"), TOptions()));
  EXPECT_STATUS(15, element->AllocateQualifier({}, TCIMValue("1"), Decl::kFlavorNone, TOptions()));
  EXPECT_EQ(QualifierNames(element), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(QualifierAttachment, WalkVisitsTheQualifiersInFoldedNameOrder) {
  for (const char* name : {"Version", "abstract", "_x", "KEY"})
    Attach("1", Decl::kFlavorNone, name);
  EXPECT_EQ(QualifierNames(element), (Names{"_x", "abstract", "KEY", "Version"}));
}

TEST_P(QualifierAttachment, WalkIgnoresTheAnswerAndDropsExceptions) {
  for (const char* name : {"A", "B", "C", "D"}) Attach("1", Decl::kFlavorNone, name);
  int visits = 0;
  EXPECT_NO_THROW(element->EnumerateQualifiers(
      [&](QualifierPtr) -> bool {
        if (++visits == 1) return false;
        if (visits == 2) throw THAVException(kHAVNotFound);
        throw std::runtime_error("callback");
      },
      {}));
  EXPECT_EQ(visits, 4);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_P(QualifierAttachment, WalkDropsTheErrorOfAnEmptyCallback) {
  Attach("1", Decl::kFlavorNone);
  EXPECT_NO_THROW(element->EnumerateQualifiers({}, {}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, QualifierAttachment,
                         testing::Values(Kind{"Class", MakeClass}, Kind{"Property", MakeProperty},
                                         Kind{"Method", MakeMethod},
                                         Kind{"Parameter", MakeParameter}),
                         [](const auto& kind) { return std::string(kind.param.name); });

// What sets declarations apart from classes.
class DeclarationQualifiers : public QualifierAttachment {};

TEST_P(DeclarationQualifiers, EqualValueWithAnotherFlavorConflicts) {
  auto first = Attach("1", Decl::kFlavorToSubclass);
  EXPECT_STATUS(28, Attach("1", Decl::kFlavorToInstance));
  EXPECT_EQ(element->GetQualifier("Version", {}), first);
  EXPECT_EQ(first->GetFlavor({}), Decl::kFlavorToSubclass);
}

TEST_P(DeclarationQualifiers, DontcollectDoesNotRelaxTheRule) {
  Attach("1", Decl::kFlavorNone, "dontcollect");
  Attach("1", Decl::kFlavorNone);
  EXPECT_STATUS(28, Attach("2", Decl::kFlavorNone));
}

TEST_P(DeclarationQualifiers, UnknownNameIsNotFoundAndNothingIsLogged) {
  EXPECT_STATUS(15, element->GetQualifier("Version", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DeclarationQualifiers,
                         testing::Values(Kind{"Property", MakeProperty}, Kind{"Method", MakeMethod},
                                         Kind{"Parameter", MakeParameter}),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace havtest

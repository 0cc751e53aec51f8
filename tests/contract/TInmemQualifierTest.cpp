// Qualifiers, and how every kind of element attaches them. Class qualifiers have a rule of
// their own, which ProcessorStatusTest.cpp and TInmemClassTest.cpp cover.
#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

using Decl = ICIMQualifierDecl;

QualifierDeclPtr Declare(const Repository& repository, const std::string& name,
                         Decl::EFlavor flavor) {
  return repository.ns->AllocateQualifierDecl(name, TCIMValue::Null(kCIMString), Decl::kScopeAny,
                                              flavor, {});
}

// An element of each kind on which qualifiers can be put; all the declarations of one class.
struct Elements {
  explicit Elements(const Repository& repository)
      : cls(repository.Allocate("A")),
        property(cls->AllocatePropertyDecl("P", TCIMValue(true), {})),
        method(cls->AllocateMethodDecl("M", kCIMUInt32, {})),
        parameter(method->AllocateParameter("Q", TCIMValue(true), {})) {}

  std::vector<boost::shared_ptr<ICIMNamedElement>> Declarations() const {
    return {property, method, parameter};
  }
  std::vector<boost::shared_ptr<ICIMNamedElement>> All() const {
    return {cls, property, method, parameter};
  }

  ClassPtr cls;
  PropertyDeclPtr property;
  MethodDeclPtr method;
  ParameterDeclPtr parameter;
};

TEST(TInmemQualifier, AnswersWhatItWasMadeOf) {
  Repository repository;
  auto decl = Declare(repository, "Version", Decl::kFlavorTranslatable);
  for (const auto& element : Elements(repository).All()) {
    auto qualifier =
        element->AllocateQualifier(decl, TCIMValue("1"), Decl::kFlavorToInstance, TOptions());
    EXPECT_EQ(qualifier->GetName({}), "Version");
    EXPECT_EQ(qualifier->GetElement({}), element);
    EXPECT_EQ(qualifier->GetQualifierDecl({}), decl);
    EXPECT_EQ(qualifier->GetValue({}), TCIMValue("1"));
    EXPECT_EQ(qualifier->GetType({}), kCIMString);
    EXPECT_FALSE(qualifier->IsArray({}));
    EXPECT_EQ(qualifier->GetFlavor({}), Decl::kFlavorToInstance);
    EXPECT_FALSE(qualifier->IsPropagated({}));
  }
}

TEST(TInmemQualifier, TakesItsDeclarationsFlavorWhenNoneIsGiven) {
  Repository repository;
  auto decl = Declare(repository, "Version", Decl::kFlavorToSubclass | Decl::kFlavorTranslatable);
  for (const auto& element : Elements(repository).All()) {
    auto qualifier = element->AllocateQualifier(decl, TCIMValue("1"), TOptions());
    EXPECT_EQ(static_cast<unsigned>(qualifier->GetFlavor({})), 10u);
    EXPECT_FALSE(qualifier->IsPropagated({}));
  }
}

TEST(TInmemQualifier, IsAttachedByItsAllocation) {
  Repository repository;
  auto decl = Declare(repository, "Version", Decl::kFlavorNone);
  for (const auto& element : Elements(repository).All()) {
    auto qualifier = element->AllocateQualifier(decl, TCIMValue("1"), TOptions());
    EXPECT_EQ(element->GetQualifier("Version", {}), qualifier);
  }
}

TEST(TInmemQualifier, KeepsItsFlavorWhenTheDeclarationsChanges) {
  Repository repository;
  auto decl = Declare(repository, "Version", Decl::kFlavorNone);
  auto qualifier = Elements(repository).cls->AllocateQualifier(decl, TCIMValue("1"), TOptions());
  decl->AddFlavor(Decl::kFlavorOverridable, {});
  EXPECT_EQ(qualifier->GetFlavor({}), Decl::kFlavorNone);
}

TEST(TInmemQualifier, TakesTypeAndArrayFromItsValue) {
  Repository repository;
  auto decl = Declare(repository, "Version", Decl::kFlavorNone);
  Elements elements(repository);
  auto qualifier = elements.cls->AllocateQualifier(
      decl, TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1})}), TOptions());
  EXPECT_EQ(qualifier->GetType({}), ArrayOf(kCIMUInt8));
  EXPECT_TRUE(qualifier->IsArray({}));
  qualifier->SetValue(TCIMValue(true), {});
  EXPECT_EQ(qualifier->GetType({}), kCIMBoolean);
  EXPECT_FALSE(qualifier->IsArray({}));
}

TEST(TInmemQualifier, TakesItsOwnValueAgain) {
  Repository repository;
  const TCIMValue text("text long enough to stand on the heap");
  Elements elements(repository);
  auto qualifier = elements.cls->AllocateQualifier(
      Declare(repository, "Version", Decl::kFlavorNone), text, TOptions());
  qualifier->SetValue(qualifier->GetValue({}), {});
  EXPECT_EQ(qualifier->GetValue({}), text);
}

TEST(TInmemQualifier, FlavorBitsAreAddedAndRemovedAsGiven) {
  Repository repository;
  Elements elements(repository);
  auto qualifier = elements.cls->AllocateQualifier(
      Declare(repository, "Version", Decl::kFlavorOverridable), TCIMValue("1"), TOptions());
  qualifier->AddFlavor(Decl::kFlavorToInstance | Decl::kFlavorTranslatable, {});
  EXPECT_EQ(static_cast<unsigned>(qualifier->GetFlavor({})), 13u);
  qualifier->RemoveFlavor(Decl::kFlavorOverridable | Decl::kFlavorToInstance, {});
  EXPECT_EQ(static_cast<unsigned>(qualifier->GetFlavor({})), 8u);
}

// The copy of the qualifier "Version" that a subclass receives.
class PropagatedQualifier : public testing::Test {
 protected:
  PropagatedQualifier()
      : base(repository.Allocate("Base", {}, {{"Version", TCIMValue("1")}})),
        sub(repository.Allocate("Sub", base)),
        qualifier(sub->GetQualifier("Version", {})) {}

  Repository repository;
  ClassPtr base;
  ClassPtr sub;
  QualifierPtr qualifier;
};

TEST_F(PropagatedQualifier, IsMarked) { EXPECT_TRUE(qualifier->IsPropagated({})); }

TEST_F(PropagatedQualifier, IsMarkedAlsoWhenMadeOfAPropagatedOne) {
  auto copy = repository.Allocate("Leaf", sub)->GetQualifier("Version", {});
  ASSERT_TRUE(copy);
  EXPECT_TRUE(copy->IsPropagated({}));
}

TEST_F(PropagatedQualifier, TurnsLocalWhenItsValueIsSet) {
  qualifier->SetValue(TCIMValue("1"), {});
  EXPECT_FALSE(qualifier->IsPropagated({}));
}

TEST_F(PropagatedQualifier, TurnsLocalWhenFlavorIsAdded) {
  qualifier->AddFlavor(Decl::kFlavorTranslatable, {});
  EXPECT_FALSE(qualifier->IsPropagated({}));
}

TEST_F(PropagatedQualifier, TurnsLocalWhenFlavorNeverSetIsRemoved) {
  qualifier->RemoveFlavor(Decl::kFlavorTranslatable, {});
  EXPECT_FALSE(qualifier->IsPropagated({}));
  EXPECT_EQ(static_cast<unsigned>(qualifier->GetFlavor({})), 3u);
}

TEST_F(PropagatedQualifier, BelongsToTheSubclass) {
  EXPECT_EQ(qualifier->GetElement({}), sub);
  EXPECT_EQ(qualifier->GetQualifierDecl({}), repository.ns->GetQualifierDecl("Version", {}));
}

TEST_F(PropagatedQualifier, IsAnObjectOfItsOwn) {
  qualifier->SetValue(TCIMValue("2"), {});
  EXPECT_EQ(base->GetQualifier("Version", {})->GetValue({}), TCIMValue("1"));
  EXPECT_FALSE(base->GetQualifier("Version", {})->IsPropagated({}));
}

TEST(TInmemQualifier, ComparesByTheDeclarationsFoldedNameAlone) {
  Repository repository;
  Repository other;
  Elements here(repository);
  Elements there(other);
  auto lower = here.cls->AllocateQualifier(Declare(repository, "Key", Decl::kFlavorNone),
                                           TCIMValue("1"), TOptions());
  auto upper = there.method->AllocateQualifier(Declare(other, "KEY", Decl::kFlavorToSubclass),
                                               TCIMValue(false), TOptions());
  EXPECT_TRUE(*lower == *upper);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *lower);
}

TEST(TInmemQualifier, OrdersByTheDeclarationsFoldedName) {
  Repository repository;
  Elements elements(repository);
  auto b = elements.cls->AllocateQualifier(Declare(repository, "B", Decl::kFlavorNone),
                                           TCIMValue("1"), TOptions());
  auto a = elements.cls->AllocateQualifier(Declare(repository, "a", Decl::kFlavorNone),
                                           TCIMValue("2"), TOptions());
  EXPECT_TRUE(*a < *b);
  EXPECT_FALSE(*b < *a);
  EXPECT_FALSE(*a == *b);
}

// A declaration whose name turns bad after a qualifier has been attached under it.
class RenamedQualifierDecl : public ForeignQualifierDecl {
 public:
  RenamedQualifierDecl() : ForeignQualifierDecl("Good") {}
  const std::string& GetName(TOptions options) const override {
    return renamed ? bad : ForeignQualifierDecl::GetName(options);
  }
  std::string bad = "not a name";
  bool renamed = false;
};

TEST(TInmemQualifier, ComparingWithAnInvalidNameIsRefused) {
  LoggedRepository repository;
  Elements elements(repository);
  boost::shared_ptr<RenamedQualifierDecl> decl(new RenamedQualifierDecl);
  auto bad = elements.cls->AllocateQualifier(decl, TCIMValue("1"), TOptions());
  auto good = elements.cls->AllocateQualifier(Declare(repository, "Key", Decl::kFlavorNone),
                                              TCIMValue("1"), TOptions());
  decl->renamed = true;
  const LogLine line = Error("Inmem: CIM name 'not a name' is invalid");
  EXPECT_STATUS(25, *good == *bad);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
  EXPECT_STATUS(25, *good < *bad);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
}

TEST(TInmemQualifier, AttachingUnderAnInvalidNameIsRefused) {
  LoggedRepository repository;
  boost::shared_ptr<ForeignQualifierDecl> decl(new ForeignQualifierDecl("not a name"));
  for (const auto& element : Elements(repository).All()) {
    EXPECT_STATUS(25, element->AllocateQualifier(decl, TCIMValue("1"), TOptions()));
    EXPECT_EQ(repository.TakeLog(), LogLines{Error("Inmem: CIM name 'not a name' is invalid")});
    EXPECT_EQ(QualifierNames(element), Names{});
  }
}

TEST(TInmemQualifier, AssignmentReturnsTheQualifierAndCopiesNothing) {
  Repository repository;
  Elements elements(repository);
  auto a = elements.cls->AllocateQualifier(Declare(repository, "A", Decl::kFlavorNone),
                                           TCIMValue("1"), TOptions());
  auto b = elements.cls->AllocateQualifier(Declare(repository, "B", Decl::kFlavorToInstance),
                                           TCIMValue("2"), TOptions());
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(a->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(a->GetFlavor({}), Decl::kFlavorNone);
}

TEST(TInmemQualifier, ValidateAndDeleteDoNothing) {
  LoggedRepository repository;
  for (const auto& element : Elements(repository).All()) {
    auto qualifier =
        element->AllocateQualifier(repository.Declaration("Version"), TCIMValue("1"), TOptions());
    qualifier->Validate({});
    qualifier->Delete({});
    EXPECT_EQ(element->GetQualifier("Version", {}), qualifier);
    EXPECT_FALSE(qualifier->IsPropagated({}));
  }
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifier, IgnoresOptions) {
  Repository repository;
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}};
  auto decl = Declare(repository, "Version", Decl::kFlavorOverridable);
  auto cls = Elements(repository).cls;
  auto qualifier = cls->AllocateQualifier(decl, TCIMValue("1"), options);
  EXPECT_EQ(qualifier->GetName(options), "Version");
  EXPECT_EQ(qualifier->GetElement(options), cls);
  EXPECT_EQ(qualifier->GetValue(options), TCIMValue("1"));
  EXPECT_EQ(qualifier->GetFlavor(options), Decl::kFlavorOverridable);
}

}  // namespace
}  // namespace havtest

// Qualifier declarations and the namespace's registry of them.
#include <stdexcept>

#include "support/ForeignDecls.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

using Decl = ICIMQualifierDecl;

const TOptions kAnyOptions = {{"ProvNSP", TCIMValue("elsewhere")}};

QualifierDeclPtr Declare(const Repository& repository, const std::string& name,
                         const TCIMValue& defaultValue = TCIMValue(false),
                         Decl::EScope scope = Decl::kScopeClass,
                         Decl::EFlavor flavor = Decl::kFlavorNone) {
  return repository.ns->AllocateQualifierDecl(name, defaultValue, scope, flavor, {});
}

LogLine AlreadyDefined(const std::string& name) {
  return Error("Inmem: TInmemNamespace: qualifier " + name + " already defined");
}

TEST(TInmemQualifierDecl, AnswersWhatItWasMadeOf) {
  Repository repository;
  auto decl = Declare(repository, "MaxLen", TCIMValue(std::uint32_t{80}),
                      Decl::kScopeProperty | Decl::kScopeParameter,
                      Decl::kFlavorToSubclass | Decl::kFlavorTranslatable);
  EXPECT_EQ(decl->GetName({}), "MaxLen");
  EXPECT_EQ(decl->GetNamespace({}), repository.ns);
  EXPECT_EQ(decl->GetType({}), kCIMUInt32);
  EXPECT_FALSE(decl->IsArray({}));
  EXPECT_EQ(decl->GetDefaultValue({}), TCIMValue(std::uint32_t{80}));
  EXPECT_EQ(static_cast<unsigned>(decl->GetScope({})), 72u);
  EXPECT_EQ(static_cast<unsigned>(decl->GetFlavor({})), 10u);
}

TEST(TInmemQualifierDecl, KeepsScopeAndFlavorBitsAsGiven) {
  Repository repository;
  auto decl = Declare(repository, "Odd", TCIMValue(true), static_cast<Decl::EScope>(0xFFFFFFFFu),
                      static_cast<Decl::EFlavor>(0x80000010u));
  EXPECT_EQ(static_cast<unsigned>(decl->GetScope({})), 0xFFFFFFFFu);
  EXPECT_EQ(static_cast<unsigned>(decl->GetFlavor({})), 0x80000010u);
}

TEST(TInmemQualifierDecl, TakesTypeAndArrayFromItsDefaultValue) {
  Repository repository;
  auto decl = Declare(repository, "ValueMap", TCIMValue::Null(ArrayOf(kCIMString)));
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMString));
  EXPECT_TRUE(decl->IsArray({}));
}

TEST(TInmemQualifierDecl, NewDefaultValueOfAnotherTypeChangesTypeAndArray) {
  Repository repository;
  auto decl = Declare(repository, "Any", TCIMValue(true));
  decl->SetDefaultValue(TCIMValue(kCIMString, {TCIMValue("a"), TCIMValue("b")}), {});
  EXPECT_EQ(decl->GetType({}), ArrayOf(kCIMString));
  EXPECT_TRUE(decl->IsArray({}));
  decl->SetDefaultValue(TCIMValue("c"), {});
  EXPECT_EQ(decl->GetDefaultValue({}), TCIMValue("c"));
  EXPECT_EQ(decl->GetType({}), kCIMString);
  EXPECT_FALSE(decl->IsArray({}));
}

TEST(TInmemQualifierDecl, TakesItsOwnDefaultValueAgain) {
  Repository repository;
  auto decl = Declare(repository, "Any", TCIMValue("text long enough to stand on the heap"));
  decl->SetDefaultValue(decl->GetDefaultValue({}), {});
  EXPECT_EQ(decl->GetDefaultValue({}), TCIMValue("text long enough to stand on the heap"));
}

TEST(TInmemQualifierDecl, AddingAndRemovingTheSameFlavorRestoresIt) {
  Repository repository;
  auto decl =
      Declare(repository, "Any", TCIMValue(true), Decl::kScopeAny, Decl::kFlavorOverridable);
  decl->AddFlavor(Decl::kFlavorToSubclass | Decl::kFlavorTranslatable, {});
  EXPECT_EQ(static_cast<unsigned>(decl->GetFlavor({})), 11u);
  decl->RemoveFlavor(Decl::kFlavorToSubclass | Decl::kFlavorTranslatable, {});
  EXPECT_EQ(static_cast<unsigned>(decl->GetFlavor({})), 1u);
}

TEST(TInmemQualifierDecl, RemovingFlavorNeverSetChangesNothing) {
  Repository repository;
  auto decl =
      Declare(repository, "Any", TCIMValue(true), Decl::kScopeAny, Decl::kFlavorOverridable);
  decl->RemoveFlavor(Decl::kFlavorToInstance, {});
  EXPECT_EQ(decl->GetFlavor({}), Decl::kFlavorOverridable);
  decl->RemoveFlavor(Decl::kFlavorNone, {});
  EXPECT_EQ(decl->GetFlavor({}), Decl::kFlavorOverridable);
}

TEST(TInmemQualifierDecl, ComparesByFoldedNameAlone) {
  Repository repository;
  Repository other;
  auto lower = Declare(repository, "Key", TCIMValue(true));
  auto upper = Declare(other, "KEY", TCIMValue("text"), Decl::kScopeAny, Decl::kFlavorToInstance);
  EXPECT_TRUE(*lower == *upper);
  EXPECT_FALSE(*lower < *upper);
  EXPECT_FALSE(*upper < *lower);
}

TEST(TInmemQualifierDecl, OrdersByFoldedName) {
  Repository repository;
  auto b = Declare(repository, "B");
  auto a = Declare(repository, "a");
  auto underscore = Declare(repository, "_");
  EXPECT_TRUE(*a < *b);
  EXPECT_FALSE(*b < *a);
  EXPECT_FALSE(*a == *b);
  EXPECT_TRUE(*underscore < *a);
}

TEST(TInmemQualifierDecl, ComparingWithAnInvalidNameIsRefused) {
  LoggedRepository repository;
  auto decl = Declare(repository, "Key");
  const ForeignQualifierDecl foreign("not a name");
  const LogLine line = Error("Inmem: CIM name 'not a name' is invalid");
  EXPECT_STATUS(25, *decl == foreign);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
  EXPECT_STATUS(25, *decl < foreign);
  EXPECT_EQ(repository.TakeLog(), LogLines{line});
}

TEST(TInmemQualifierDecl, AssignmentReturnsTheDeclarationAndCopiesNothing) {
  Repository repository;
  auto a = Declare(repository, "A", TCIMValue(true));
  auto b = Declare(repository, "B", TCIMValue("text"));
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_EQ(a->GetName({}), "A");
  EXPECT_EQ(a->GetDefaultValue({}), TCIMValue(true));
}

TEST(TInmemQualifierDecl, ValidateAndDeleteDoNothing) {
  LoggedRepository repository;
  auto decl = Declare(repository, "Key");
  decl->Validate({});
  decl->Delete({});
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), decl);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, IgnoresOptions) {
  Repository repository;
  auto decl = repository.ns->AllocateQualifierDecl("Key", TCIMValue(false), Decl::kScopeProperty,
                                                   Decl::kFlavorNone, kAnyOptions);
  EXPECT_EQ(decl->GetName(kAnyOptions), "Key");
  EXPECT_EQ(decl->GetNamespace(kAnyOptions), repository.ns);
  EXPECT_EQ(decl->GetDefaultValue(kAnyOptions), TCIMValue(false));
  EXPECT_EQ(decl->GetScope(kAnyOptions), Decl::kScopeProperty);
}

TEST(TInmemQualifierDecl, IsRegisteredByItsAllocation) {
  LoggedRepository repository;
  auto decl = Declare(repository, "Key");
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), decl);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, UnknownNameAnswersAnEmptyPointer) {
  LoggedRepository repository;
  EXPECT_FALSE(repository.ns->GetQualifierDecl("Key", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, TakenNameIsRefusedAndTheFirstStays) {
  LoggedRepository repository;
  auto decl = Declare(repository, "Key");
  EXPECT_STATUS(16, Declare(repository, "KEY", TCIMValue("text")));
  EXPECT_EQ(repository.TakeLog(), LogLines{AlreadyDefined("KEY")});
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), decl);
  EXPECT_EQ(QualifierDeclNames(repository.ns), Names{"Key"});
}

TEST(TInmemQualifierDecl, SecondRegistrationOfTheSameObjectIsRefused) {
  LoggedRepository repository;
  auto decl = Declare(repository, "Key");
  EXPECT_STATUS(16, decl->AddToNamespace({}));
  EXPECT_EQ(repository.TakeLog(), LogLines{AlreadyDefined("Key")});
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), decl);
}

TEST(TInmemQualifierDecl, RedefinitionReplacesTheDeclaration) {
  LoggedRepository repository(true);
  auto first = Declare(repository, "Key", TCIMValue(true));
  auto second = Declare(repository, "KEY", TCIMValue("text"));
  EXPECT_EQ(repository.ns->GetQualifierDecl("key", {}), second);
  EXPECT_EQ(QualifierDeclNames(repository.ns), Names{"KEY"});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, ReplacedDeclarationCanBeRegisteredAgain) {
  LoggedRepository repository(true);
  auto first = Declare(repository, "Key", TCIMValue(true));
  Declare(repository, "Key", TCIMValue("text"));
  first->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), first);
  first->AddToNamespace({});
  EXPECT_EQ(repository.ns->GetQualifierDecl("Key", {}), first);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, RedefinitionHasNoExceptionForTheNetworkPort) {
  Repository repository(true);
  Declare(repository, "ORVSG_PhysicalNetworkPort");
  auto second = Declare(repository, "ORVSG_PhysicalNetworkPort");
  EXPECT_EQ(repository.ns->GetQualifierDecl("ORVSG_PhysicalNetworkPort", {}), second);
}

TEST(TInmemQualifierDecl, QualifiersKeepTheDeclarationThatTheyWereMadeOf) {
  Repository repository(true);
  auto cls = repository.Allocate("A");
  auto first = Declare(repository, "Version", TCIMValue::Null(kCIMString));
  auto qualifier = cls->AllocateQualifier(first, TCIMValue("1"), TOptions());
  Declare(repository, "Version", TCIMValue::Null(kCIMUInt8));
  EXPECT_EQ(qualifier->GetQualifierDecl({}), first);
}

TEST(TInmemQualifierDecl, WalkVisitsTheDeclarationsInFoldedNameOrder) {
  Repository repository;
  for (const char* name : {"Version", "abstract", "_x", "KEY", "Z9", "Z10"})
    Declare(repository, name);
  EXPECT_EQ(QualifierDeclNames(repository.ns),
            (Names{"_x", "abstract", "KEY", "Version", "Z10", "Z9"}));
}

TEST(TInmemQualifierDecl, WalkIgnoresTheCallbacksAnswer) {
  Repository repository;
  Declare(repository, "A");
  Declare(repository, "B");
  int visits = 0;
  repository.ns->EnumerateQualifierDecls(
      [&](QualifierDeclPtr) {
        ++visits;
        return false;
      },
      {});
  EXPECT_EQ(visits, 2);
}

TEST(TInmemQualifierDecl, WalkDropsEveryExceptionOfTheCallback) {
  LoggedRepository repository;
  for (const char* name : {"A", "B", "C"}) Declare(repository, name);
  int visits = 0;
  EXPECT_NO_THROW(repository.ns->EnumerateQualifierDecls(
      [&](QualifierDeclPtr) -> bool {
        if (++visits == 1) throw THAVException(kHAVConflictingQualifier);
        if (visits == 2) throw std::runtime_error("callback");
        throw 42;
      },
      {}));
  EXPECT_EQ(visits, 3);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(TInmemQualifierDecl, WalkDropsTheErrorOfAnEmptyCallback) {
  Repository repository;
  Declare(repository, "A");
  EXPECT_NO_THROW(repository.ns->EnumerateQualifierDecls({}, {}));
}

}  // namespace
}  // namespace havtest

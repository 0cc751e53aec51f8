// What a class receives from its superclass when it is allocated, and when it takes it up
// afresh.
#include "support/ForeignClass.h"
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

using Decl = ICIMQualifierDecl;

TEST(ClassInheritance, TakesUpTheSuperclassesDeclarations) {
  LoggedRepository repository;
  auto base = repository.Allocate("Base");
  auto property = repository.Property(base, "Size", TCIMValue(true));
  auto method = base->AllocateMethodDecl("Reset", kCIMUInt32, {});
  method->AddToClass({});
  auto sub = repository.Allocate("Sub", base);
  EXPECT_EQ(sub->GetPropertyDecl("Size", {}), property);
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), method);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassInheritance, TakesUpWhatTheSuperclassInheritedItself) {
  Repository repository;
  auto top = repository.Allocate("Top", {}, {{"Version", TCIMValue("1")}});
  repository.Property(top, "Size", TCIMValue(true));
  auto leaf = repository.Allocate("Leaf", repository.Allocate("Middle", top));
  EXPECT_EQ(leaf->GetPropertyDecl("Size", {}), top->GetPropertyDecl("Size", {}));
  EXPECT_EQ(leaf->GetQualifier("Version", {})->GetValue({}), TCIMValue("1"));
}

TEST(ClassInheritance, IsACopyThatLaterDeclarationsDoNotReach) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto sub = repository.Allocate("Sub", base);
  repository.Property(base, "Late", TCIMValue(true));
  repository.Qualify(*base, {{"Version", TCIMValue("1")}});
  EXPECT_EQ(PropertyNames(sub), Names{});
  EXPECT_EQ(QualifierNames(sub), Names{});
}

TEST(ClassInheritance, DeclarationsOfASubclassDoNotReachTheSuperclass) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto sub = repository.Allocate("Sub", base);
  repository.Property(sub, "Own", TCIMValue(true));
  sub->AllocateMethodDecl("Own", kCIMUInt32, {})->AddToClass({});
  repository.Qualify(*sub, {{"Version", TCIMValue("1")}});
  EXPECT_EQ(PropertyNames(base), Names{});
  EXPECT_EQ(MethodNames(base), Names{});
  EXPECT_EQ(QualifierNames(base), Names{});
}

TEST(ClassInheritance, PropagatesQualifiersWhoseFlavorSaysSo) {
  Repository repository;
  auto base = repository.Allocate("Base");
  const auto attach = [&](const char* name, Decl::EFlavor flavor) {
    base->AllocateQualifier(repository.Declaration(name), TCIMValue(true), flavor, TOptions());
  };
  attach("Restricted", Decl::kFlavorOverridable | Decl::kFlavorToInstance);
  attach("Propagated", Decl::kFlavorToSubclass);
  attach("All", static_cast<Decl::EFlavor>(15));
  EXPECT_EQ(QualifierNames(repository.Allocate("Sub", base)), (Names{"All", "Propagated"}));
}

TEST(ClassInheritance, FlavorIsTheQualifiersAndNotItsDeclarations) {
  Repository repository;
  auto base = repository.Allocate("Base", {}, {{"Version", TCIMValue("1")}});
  base->GetQualifier("Version", {})->RemoveFlavor(Decl::kFlavorToSubclass, {});
  EXPECT_EQ(QualifierNames(repository.Allocate("Sub", base)), Names{});
}

TEST(ClassInheritance, CopiesValueFlavorAndDeclarationOfAQualifier) {
  Repository repository;
  auto base = repository.Allocate("Base");
  auto decl = repository.Declaration("Version", TCIMValue(""));
  base->AllocateQualifier(decl, TCIMValue("1"), Decl::kFlavorToSubclass, TOptions());
  auto copy = repository.Allocate("Sub", base)->GetQualifier("Version", {});
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(copy->GetFlavor({}), Decl::kFlavorToSubclass);
  EXPECT_EQ(copy->GetQualifierDecl({}), decl);
}

TEST(ClassInheritance, NeverPropagatesAbstract) {
  Repository repository;
  for (const char* name : {"Abstract", "ABSTRACT", "abstract"}) {
    Repository fresh;
    auto base = fresh.Allocate("Base", {}, {{name, TCIMValue(true)}});
    auto sub = fresh.Allocate("Sub", base);
    EXPECT_TRUE(base->IsAbstract({}));
    EXPECT_FALSE(sub->IsAbstract({})) << name;
    EXPECT_EQ(QualifierNames(sub), Names{});
  }
}

TEST(ClassInheritance, SubclassOfAnAbstractClassMayBeAbstractItself) {
  Repository repository;
  auto base = repository.Allocate("Base", {}, {{"Abstract", TCIMValue(true)}});
  EXPECT_TRUE(repository.Allocate("Sub", base, {{"Abstract", TCIMValue(true)}})->IsAbstract({}));
}

TEST(ClassInheritance, PropagatesAssociation) {
  Repository repository;
  auto base = repository.Allocate("Base", {}, {{"Association", TCIMValue(true)}});
  EXPECT_TRUE(repository.Allocate("Sub", base)->IsAssociation({}));
}

TEST(ClassInheritance, PropagatedQualifierThatIsNotOverridableCannotBeChanged) {
  Repository repository;
  auto base = repository.Allocate("Base");
  base->AllocateQualifier(repository.Declaration("Version", TCIMValue("")), TCIMValue("1"),
                          Decl::kFlavorToSubclass, TOptions());
  auto sub = repository.Allocate("Sub", base);
  EXPECT_STATUS(28, repository.Qualify(*sub, {{"Version", TCIMValue("2")}}));
  EXPECT_STATUS(0, repository.Qualify(*sub, {{"Version", TCIMValue("1")}}));
  EXPECT_TRUE(sub->GetQualifier("Version", {})->IsPropagated({}));
}

TEST(ClassInheritance, IsAWalksUpTheSuperclasses) {
  Repository repository;
  auto top = repository.Class("Top");
  auto middle = repository.Class("Middle", top);
  auto leaf = repository.Class("Leaf", middle);
  EXPECT_TRUE(leaf->IsA(leaf, {}));
  EXPECT_TRUE(leaf->IsA(top, {}));
  EXPECT_TRUE(leaf->IsA(repository.ns->GetClass("<root>", {}), {}));
  EXPECT_FALSE(top->IsA(leaf, {}));
  EXPECT_FALSE(leaf->IsA(repository.Class("Other"), {}));
}

TEST(ClassInheritance, IsAComparesNamesAsSpelt) {
  Repository repository;
  Repository other;
  auto leaf = repository.Class("Leaf", repository.Class("Base"));
  EXPECT_TRUE(leaf->IsA(other.Allocate("Base"), {}));
  EXPECT_FALSE(leaf->IsA(other.Allocate("base"), {}));
  EXPECT_FALSE(leaf->IsA(other.Allocate("LEAF"), {}));
}

TEST(ClassInheritance, FromAForeignSuperclassGoesThroughItsWalks) {
  LoggedRepository repository;
  auto behind = repository.Class("Base", {}, {{"Version", TCIMValue("1")}});
  behind->AllocateMethodDecl("Reset", kCIMUInt32, {})->AddToClass({});
  boost::shared_ptr<ForeignClass> foreign(new ForeignClass(behind));
  auto sub = repository.Allocate("Sub", foreign);
  EXPECT_EQ(sub->GetSuperClass({}), foreign);
  EXPECT_EQ(sub->GetPropertyDecl("Name", {}), behind->GetPropertyDecl("Name", {}));
  EXPECT_EQ(sub->GetMethodDecl("Reset", {}), behind->GetMethodDecl("Reset", {}));
  EXPECT_EQ(sub->GetQualifier("Version", {})->GetValue({}), TCIMValue("1"));
  EXPECT_TRUE(sub->GetQualifier("Version", {})->IsPropagated({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ClassInheritance, ClassUnderAForeignSuperclassRegistersAndUnregisters) {
  Repository repository;
  auto behind = repository.Class("Base");
  boost::shared_ptr<ForeignClass> foreign(new ForeignClass(behind));
  auto sub = repository.Class("Sub", foreign);
  EXPECT_EQ(SubclassNames(behind), Names{"Sub"});
  EXPECT_TRUE(sub->IsA(behind, {}));
  sub->Delete({});
  EXPECT_EQ(SubclassNames(behind), Names{});
}

// A registered class "Sub" under "Base", which takes up its inheritance afresh.
class RepeatedInheritance : public testing::Test {
 protected:
  RepeatedInheritance()
      : base(repository.Class("Base", {}, {{"Version", TCIMValue("1")}})),
        sub(repository.Class("Sub", base)) {}

  void Repeat() { ASSERT_EQ(repository.ns->AllocateClass("Sub", {}, {}), sub); }

  LoggedRepository repository;
  ClassPtr base;
  ClassPtr sub;
};

TEST_F(RepeatedInheritance, TakesUpWhatTheSuperclassDeclaredSince) {
  repository.Property(base, "Late", TCIMValue(true));
  base->AllocateMethodDecl("LateMethod", kCIMUInt32, {})->AddToClass({});
  repository.Qualify(*base, {{"LateQualifier", TCIMValue(true)}});
  Repeat();
  EXPECT_EQ(PropertyNames(sub), (Names{"Late", "Name"}));
  EXPECT_EQ(MethodNames(sub), Names{"LateMethod"});
  EXPECT_EQ(QualifierNames(sub), (Names{"LateQualifier", "Version"}));
  EXPECT_TRUE(sub->GetQualifier("LateQualifier", {})->IsPropagated({}));
}

TEST_F(RepeatedInheritance, RefreshesAPropagatedQualifier) {
  base->GetQualifier("Version", {})->SetValue(TCIMValue("2"), {});
  Repeat();
  EXPECT_EQ(sub->GetQualifier("Version", {})->GetValue({}), TCIMValue("2"));
  EXPECT_TRUE(sub->GetQualifier("Version", {})->IsPropagated({}));
}

TEST_F(RepeatedInheritance, RefreshesAReplacedDeclaration) {
  auto replacement =
      repository.Property(base, "Name", TCIMValue("new"), {{"Key", TCIMValue(true)}});
  Repeat();
  EXPECT_EQ(sub->GetPropertyDecl("Name", {}), replacement);
}

TEST_F(RepeatedInheritance, BringsBackAnInheritedDeclarationThatWasRemoved) {
  sub->RemovePropertyDecl(sub->GetPropertyDecl("Name", {}), {});
  Repeat();
  EXPECT_EQ(PropertyNames(sub), Names{"Name"});
}

TEST_F(RepeatedInheritance, DropsWhatTheSuperclassNoLongerHas) {
  base->RemovePropertyDecl(base->GetPropertyDecl("Name", {}), {});
  Repeat();
  EXPECT_EQ(PropertyNames(sub), Names{});
}

TEST_F(RepeatedInheritance, KeepsTheClassesOwnDeclarations) {
  auto own = repository.Property(sub, "Own", TCIMValue(true));
  auto method = sub->AllocateMethodDecl("OwnMethod", kCIMUInt32, {});
  method->AddToClass({});
  Repeat();
  EXPECT_EQ(sub->GetPropertyDecl("Own", {}), own);
  EXPECT_EQ(sub->GetMethodDecl("OwnMethod", {}), method);
  EXPECT_EQ(PropertyNames(sub), (Names{"Name", "Own"}));
}

TEST_F(RepeatedInheritance, KeepsTheClassesOwnOverrides) {
  auto own = repository.Property(sub, "Name", TCIMValue("mine"),
                                 {{"Override", TCIMValue("Name")}, {"Key", TCIMValue(true)}});
  Repeat();
  EXPECT_EQ(sub->GetPropertyDecl("Name", {}), own);
  EXPECT_EQ(own->GetClass({}), sub);
}

TEST_F(RepeatedInheritance, KeepsTheClassesOwnQualifiers) {
  repository.Qualify(*sub, {{"Own", TCIMValue(true)}, {"Version", TCIMValue("mine")}});
  Repeat();
  EXPECT_EQ(QualifierNames(sub), (Names{"Own", "Version"}));
  EXPECT_EQ(sub->GetQualifier("Version", {})->GetValue({}), TCIMValue("mine"));
  EXPECT_FALSE(sub->GetQualifier("Version", {})->IsPropagated({}));
}

TEST_F(RepeatedInheritance, KeepsAPropagatedQualifierThatTheClassMadeItsOwn) {
  sub->GetQualifier("Version", {})->SetValue(TCIMValue("mine"), {});
  base->GetQualifier("Version", {})->SetValue(TCIMValue("2"), {});
  Repeat();
  EXPECT_EQ(sub->GetQualifier("Version", {})->GetValue({}), TCIMValue("mine"));
}

TEST_F(RepeatedInheritance, KeepsInstancesSubclassesAndRegistration) {
  auto instance = repository.Instance(sub, {{"Name", TCIMValue("1")}});
  repository.Class("Leaf", sub);
  Repeat();
  EXPECT_EQ(repository.ns->GetInstance(instance->GetReference({}), {}), instance);
  EXPECT_EQ(SubclassNames(sub), Names{"Leaf"});
  EXPECT_EQ(SubclassNames(base), Names{"Sub"});
}

TEST_F(RepeatedInheritance, LogsNothing) {
  Repeat();
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

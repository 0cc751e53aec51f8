// Attaching qualifiers to classes: what a class that carries "dontcollect" tolerates, and
// that classes compare values and not flavors.
#include "support/LoggedRepository.h"
#include "support/PrintValue.h"

namespace havtest {
namespace {

using Decl = ICIMQualifierDecl;

class Dontcollect : public testing::Test {
 protected:
  Dontcollect() : cls(repository.Allocate("A")) {}

  QualifierPtr Attach(const std::string& name, const TCIMValue& value,
                      Decl::EFlavor flavor = Decl::kFlavorNone) {
    return cls->AllocateQualifier(repository.Declaration(name, value), value, flavor, TOptions());
  }
  TCIMValue Value(const std::string& name) { return cls->GetQualifier(name, {})->GetValue({}); }

  LoggedRepository repository;
  ClassPtr cls;
};

TEST_F(Dontcollect, ConflictIsRefusedWithoutIt) {
  Attach("Version", TCIMValue("1"));
  EXPECT_STATUS(28, Attach("Version", TCIMValue("2")));
  EXPECT_EQ(Value("Version"), TCIMValue("1"));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(Dontcollect, ConflictIsToleratedAndChangesNothing) {
  auto first = Attach("Version", TCIMValue("1"));
  Attach("dontcollect", TCIMValue(true));
  EXPECT_STATUS(0, Attach("Version", TCIMValue("2"), Decl::kFlavorOverridable));
  EXPECT_EQ(cls->GetQualifier("Version", {}), first);
  EXPECT_EQ(first->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(first->GetFlavor({}), Decl::kFlavorNone);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(Dontcollect, IsThereWhateverItsValueAndSpelling) {
  for (const auto& value :
       {TCIMValue(true), TCIMValue(false), TCIMValue::Null(kCIMBoolean), TCIMValue("text")}) {
    cls = repository.Allocate("A");
    Attach("Version", TCIMValue("1"));
    Attach("DontCollect", value);
    EXPECT_STATUS(0, Attach("Version", TCIMValue("2")));
    EXPECT_EQ(Value("Version"), TCIMValue("1"));
  }
}

TEST_F(Dontcollect, MayBeInherited) {
  auto base = cls;
  Attach("Version", TCIMValue("1"), Decl::kFlavorToSubclass);
  Attach("dontcollect", TCIMValue(true), Decl::kFlavorToSubclass);
  cls = repository.Allocate("Sub", base);
  EXPECT_STATUS(0, Attach("Version", TCIMValue("2")));
  EXPECT_EQ(Value("Version"), TCIMValue("1"));
}

TEST_F(Dontcollect, IsToleratedItselfASecondTime) {
  Attach("dontcollect", TCIMValue(true));
  EXPECT_STATUS(0, Attach("dontcollect", TCIMValue(false)));
  EXPECT_EQ(Value("dontcollect"), TCIMValue(true));
}

TEST_F(Dontcollect, LeavesOverridableQualifiersReplaceable) {
  Attach("dontcollect", TCIMValue(true));
  Attach("Version", TCIMValue("1"), Decl::kFlavorOverridable);
  Attach("Version", TCIMValue("2"));
  EXPECT_EQ(Value("Version"), TCIMValue("2"));
}

TEST_F(Dontcollect, LeavesNewQualifiersAttachable) {
  Attach("dontcollect", TCIMValue(true));
  Attach("Version", TCIMValue("1"));
  EXPECT_EQ(Value("Version"), TCIMValue("1"));
}

TEST_F(Dontcollect, EqualValuesOfAClassDoNotConflictWhateverTheirFlavors) {
  auto first = Attach("Version", TCIMValue("1"), Decl::kFlavorToSubclass);
  EXPECT_STATUS(0, Attach("Version", TCIMValue("1"), Decl::kFlavorToInstance));
  EXPECT_EQ(cls->GetQualifier("Version", {}), first);
  EXPECT_EQ(first->GetFlavor({}), Decl::kFlavorToSubclass);
}

TEST_F(Dontcollect, OfAClassDoesNotReachItsDeclarations) {
  Attach("dontcollect", TCIMValue(true));
  auto property = cls->AllocatePropertyDecl("P", TCIMValue(true), {});
  auto decl = repository.Declaration("Version", TCIMValue(""));
  property->AllocateQualifier(decl, TCIMValue("1"), Decl::kFlavorNone, TOptions());
  EXPECT_STATUS(28,
                property->AllocateQualifier(decl, TCIMValue("2"), Decl::kFlavorNone, TOptions()));
}

}  // namespace
}  // namespace havtest

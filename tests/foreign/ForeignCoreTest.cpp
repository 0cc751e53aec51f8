// What the plug-in does without where the core offers no more than every core has.
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

TEST(ForeignCore, RefusesToMakeAReferenceDeclarationWith1AndLogsNothing) {
  LoggedRepository repository;
  const auto target = repository.Class("Target");
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.TakeLog();
  EXPECT_STATUS(1, link->AllocateReferenceDecl("End", target, {}));
  EXPECT_STATUS(15, link->GetReferenceDecl("End", {}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(ForeignCore, RefusesAReferenceDeclarationToNoClassWith15First) {
  Repository repository;
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  EXPECT_STATUS(15, link->AllocateReferenceDecl("End", {}, {}));
}

TEST(ForeignCore, HasReferencesWhoseDefaultTheHostMakes) {
  Repository repository;
  const auto target = repository.Class("Target");
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  link->AllocatePropertyDecl("End", TCIMValue::NullReference(target), {})->AddToClass({});
  EXPECT_EQ(link->GetReferenceDecl("End", {})->GetDefaultValue({}).GetReferencedClass(), target);
}

TEST(ForeignCore, KeepsNoValueOfAnInstanceThatLacksMemoryWhileItIsMade) {
  Repository repository;
  const auto cls = repository.Class("Thing");
  for (const char* name : {"A", "B", "C", "D"}) repository.Property(cls, name, TCIMValue("text"));
  cls->AllocateInstance({});  // what the class keeps for all of them
  bool made = false;
  for (long after = 0; !made; ++after) {
    ASSERT_LT(after, 1000);
    const long before = TCIMValue::Living();
    TCIMValue::FailAfter(after);
    try {
      cls->AllocateInstance({});
      made = true;
    } catch (const std::bad_alloc&) {
    }
    TCIMValue::FailAfter(-1);
    EXPECT_EQ(TCIMValue::Living(), before) << "after " << after;
    if (made) {
      EXPECT_GT(after, 3);
    }
  }
}

}  // namespace
}  // namespace havtest

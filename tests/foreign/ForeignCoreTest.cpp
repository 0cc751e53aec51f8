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

}  // namespace
}  // namespace havtest

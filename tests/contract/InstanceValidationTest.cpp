// Validation of instances: keys that are set, references that lead somewhere, and what
// AddToNamespace makes of a failure.
#include <stdexcept>

#include <boost/make_shared.hpp>

#include "support/Instances.h"
#include "support/UnreliableNamespace.h"

namespace havtest {
namespace {

// Two classes of things and an association "Link" of one with the other.
struct Model {
  Repository repository;
  ClassPtr left = repository.Class("Left");
  ClassPtr right = repository.Class("Right");
  ClassPtr link = repository.Association("Link", "Antecedent", left, "Dependent", right);

  InstancePtr NewLink(const TCIMReference& antecedent, const TCIMReference& dependent) const {
    auto instance = link->AllocateInstance({});
    instance->SetPropertyValue("Antecedent", TCIMValue(antecedent), {});
    instance->SetPropertyValue("Dependent", TCIMValue(dependent), {});
    return instance;
  }
  TCIMReference ThereLeft(const std::string& name) const {
    return repository.Instance(left, {{"Name", TCIMValue(name)}})->GetReference({});
  }
  TCIMReference Nowhere(const ClassPtr& cls) const {
    return ReferenceTo(cls, {{"Name", TCIMValue("gone")}});
  }
};

TEST(InstanceValidation, AcceptsAnInstanceWhoseKeysAreSet) {
  Model model;
  auto instance = model.left->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  RecordingLogger log;
  EXPECT_STATUS(0, instance->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceValidation, ANullKeyIsLoggedAtLevel0AndThrows18) {
  Model model;
  auto instance = model.left->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(18, instance->Validate({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance Left: key property Name is NULL"}}));
}

TEST(InstanceValidation, AKeyWithADefaultNeedsNoValueOfItsOwn) {
  Repository repository;
  auto cls = repository.Allocate("Defaulted");
  repository.Key(cls, "Id", TCIMValue(std::uint32_t{1}));
  EXPECT_STATUS(0, cls->AllocateInstance({})->Validate({}));
}

TEST(InstanceValidation, AKeyAssignedNullThrows18) {
  Repository repository;
  auto cls = repository.Allocate("Defaulted");
  repository.Key(cls, "Id", TCIMValue(std::uint32_t{1}));
  auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("Id", TCIMValue::Null(kCIMUInt32), {});
  EXPECT_STATUS(18, instance->Validate({}));
}

TEST(InstanceValidation, AnInheritedKeyCountsAndTheLineNamesTheInstancesClass) {
  Model model;
  auto sub = model.repository.Class("SubLeft", model.left);
  RecordingLogger log;
  EXPECT_STATUS(18, sub->AllocateInstance({})->Validate({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance SubLeft: key property Name is NULL"}}));
}

TEST(InstanceValidation, StopsAtTheFirstNullKeyInTheOrderOfTheFoldedNames) {
  Repository repository;
  auto cls = repository.Allocate("TwoKeys");
  repository.Key(cls, "second");
  repository.Key(cls, "First");
  RecordingLogger log;
  EXPECT_STATUS(18, cls->AllocateInstance({})->Validate({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance TwoKeys: key property First is NULL"}}));
}

TEST(InstanceValidation, AKeyDeclaredAfterTheInstanceWasMadeThrows15) {
  Repository repository;
  auto cls = repository.Class("Late");
  auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  repository.Key(cls, "Added");
  EXPECT_STATUS(15, instance->Validate({}));
}

TEST(InstanceValidation, ANullPropertyThatIsNoKeyIsFine) {
  Repository repository;
  auto cls = repository.Allocate("Loose");
  repository.Property(cls, "Note", TCIMValue::Null(kCIMString));
  RecordingLogger log;
  EXPECT_STATUS(0, cls->AllocateInstance({})->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceValidation, AcceptsAnAssociationWhoseReferencesLeadToStoredInstances) {
  Model model;
  const auto b = model.repository.Instance(model.right, {{"Name", TCIMValue("b")}});
  auto instance = model.NewLink(model.ThereLeft("a"), b->GetReference({}));
  RecordingLogger log;
  EXPECT_STATUS(0, instance->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceValidation, AReferenceToNothingIsLoggedAtLevel0AndThrows15) {
  Model model;
  auto instance = model.NewLink(model.ThereLeft("a"), model.Nowhere(model.right));
  RecordingLogger log;
  EXPECT_STATUS(15, instance->Validate({}));
  EXPECT_EQ(log.Take(),
            (LogLines{{0, "Inmem: Reference Right.Name=\"gone\" doesn't point to anything!"}}));
}

TEST(InstanceValidation, StopsAtTheFirstReferenceToNothingInTheOrderOfTheSlots) {
  Model model;
  auto instance = model.NewLink(model.Nowhere(model.left), model.Nowhere(model.right));
  RecordingLogger log;
  EXPECT_STATUS(15, instance->Validate({}));
  EXPECT_EQ(log.Take(),
            (LogLines{{0, "Inmem: Reference Left.Name=\"gone\" doesn't point to anything!"}}));
}

TEST(InstanceValidation, TheLineLeavesTheNamespaceNameOut) {
  Model model;
  auto gone = model.Nowhere(model.left);
  gone.SetNameSpaceName("root/cimv2");
  auto instance = model.NewLink(gone, model.Nowhere(model.right));
  RecordingLogger log;
  EXPECT_STATUS(15, instance->Validate({}));
  EXPECT_EQ(log.Take(),
            (LogLines{{0, "Inmem: Reference Left.Name=\"gone\" doesn't point to anything!"}}));
}

TEST(InstanceValidation, AReferenceToAnInstanceThatWasNeverStoredLeadsToNothing) {
  Model model;
  auto unstored = model.right->AllocateInstance({});
  unstored->SetPropertyValue("Name", TCIMValue("b"), {});
  auto instance = model.NewLink(model.ThereLeft("a"), unstored->GetReference({}));
  EXPECT_STATUS(15, instance->Validate({}));
}

TEST(InstanceValidation, AReferenceToADeletedInstanceLeadsToNothing) {
  Model model;
  auto b = model.repository.Instance(model.right, {{"Name", TCIMValue("b")}});
  auto instance = model.NewLink(model.ThereLeft("a"), b->GetReference({}));
  b->Delete({});
  EXPECT_STATUS(15, instance->Validate({}));
}

TEST(InstanceValidation, ANullReferenceThatIsNoKeyIsSkipped) {
  Model model;
  auto loose = model.repository.Allocate("Loose", {}, {{"Association", TCIMValue(true)}});
  model.repository.Reference(loose, "Antecedent", model.left);
  RecordingLogger log;
  EXPECT_STATUS(0, loose->AllocateInstance({})->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceValidation, KeysAreCheckedBeforeReferences) {
  Model model;
  auto instance = model.link->AllocateInstance({});
  instance->SetPropertyValue("Antecedent", TCIMValue(model.Nowhere(model.left)), {});
  RecordingLogger log;
  EXPECT_STATUS(18, instance->Validate({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance Link: key property Dependent is NULL"}}));
}

TEST(InstanceValidation, AnotherStatusOfAReferencePassesWithoutALogLine) {
  Model model;
  auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  auto elsewhere = ReferenceTo(model.right, {{"Name", TCIMValue("b")}}, host);
  auto instance = model.NewLink(model.ThereLeft("a"), elsewhere);
  host->FailWithStatus(7);
  RecordingLogger log;
  EXPECT_STATUS(7, instance->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(InstanceAddToNamespace, WithANullKeyLogsTwoLinesThrowsNothingAndStoresNothing) {
  Model model;
  auto instance = model.left->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(0, instance->AddToNamespace({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance Left: key property Name is NULL"},
                                  {0, "Inmem: Instance Left: invalid references"}}));
  EXPECT_EQ(Stored(model.left), std::vector<std::string>{});
}

TEST(InstanceAddToNamespace, WithAReferenceToNothingLogsTwoLinesThrowsNothingAndStoresNothing) {
  Model model;
  auto instance = model.NewLink(model.ThereLeft("a"), model.Nowhere(model.right));
  RecordingLogger log;
  EXPECT_STATUS(0, instance->AddToNamespace({}));
  EXPECT_EQ(log.Take(),
            (LogLines{{0, "Inmem: Reference Right.Name=\"gone\" doesn't point to anything!"},
                      {0, "Inmem: Instance Link: invalid references"}}));
  EXPECT_EQ(Stored(model.link), std::vector<std::string>{});
}

TEST(InstanceAddToNamespace, SwallowsEveryStatusOfTheValidationWithOneLine) {
  Model model;
  auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  auto elsewhere = ReferenceTo(model.right, {{"Name", TCIMValue("b")}}, host);
  auto instance = model.NewLink(model.ThereLeft("a"), elsewhere);
  host->FailWithStatus(7);
  RecordingLogger log;
  EXPECT_STATUS(0, instance->AddToNamespace({}));
  EXPECT_EQ(log.Take(), (LogLines{{0, "Inmem: Instance Link: invalid references"}}));
  EXPECT_EQ(Stored(model.link), std::vector<std::string>{});
}

TEST(InstanceAddToNamespace, LetsOtherExceptionsOfTheValidationThroughAndStoresNothing) {
  Model model;
  auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  auto elsewhere = ReferenceTo(model.right, {{"Name", TCIMValue("b")}}, host);
  auto instance = model.NewLink(model.ThereLeft("a"), elsewhere);
  host->FailWith(std::runtime_error("host failure"));
  RecordingLogger log;
  EXPECT_THROW(instance->AddToNamespace({}), std::runtime_error);
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(Stored(model.link), std::vector<std::string>{});
}

TEST(InstanceAddToNamespace, AnInstanceThatFailedBeforeIsStoredOnceItIsInOrder) {
  Model model;
  auto instance = model.left->AllocateInstance({});
  instance->AddToNamespace({});
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  instance->AddToNamespace({});
  EXPECT_EQ(Stored(model.left), (std::vector<std::string>{"Left.Name=\"a\""}));
}

TEST(InstanceAddToNamespace, AStoredInstanceThatNoLongerValidatesStaysStored) {
  Model model;
  auto instance = model.repository.Instance(model.left, {{"Name", TCIMValue("a")}});
  instance->SetPropertyValue("Name", TCIMValue::Null(kCIMString), {});
  instance->AddToNamespace({});
  const auto path = ReferenceTo(model.left, {{"Name", TCIMValue("a")}});
  EXPECT_EQ(model.repository.ns->GetInstance(path, {}), instance);
}

}  // namespace
}  // namespace havtest

// Object paths: the reference that an instance answers, its text, and the way back.
#include "support/Instances.h"

namespace havtest {
namespace {

TOptions ProvNsp(const std::string& name) { return {{"ProvNSP", TCIMValue(name)}}; }

InstancePtr Named(const Repository& repository, const ClassPtr& cls, const std::string& name) {
  return repository.Instance(cls, {{"Name", TCIMValue(name)}});
}

TEST(ObjectPath, HasTheClassTheKeysAndAnEmptyNamespaceName) {
  Repository repository;
  auto cls = repository.Class("Thing");
  const TCIMReference reference = Named(repository, cls, "a")->GetReference({});
  EXPECT_EQ(reference.GetClass(), cls);
  EXPECT_EQ(reference.GetClassName(), "Thing");
  EXPECT_EQ(reference.GetNameSpaceName(), "");
  EXPECT_EQ(reference.GetKeyValues(), (std::map<std::string, TCIMValue>{{"Name", TCIMValue("a")}}));
}

TEST(ObjectPath, TakesTheNamespaceNameFromTheOptionProvNSP) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  EXPECT_EQ(instance->GetReference(ProvNsp("root/cimv2")).GetNameSpaceName(), "root/cimv2");
}

TEST(ObjectPath, TakesTheOptionAsItIsSpelt) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  EXPECT_EQ(instance->GetReference({{"provnsp", TCIMValue("root")}}).GetNameSpaceName(), "");
}

TEST(ObjectPath, AProvNSPThatIsNoStringThrows14) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  EXPECT_STATUS(14, instance->GetReference({{"ProvNSP", TCIMValue(std::uint32_t{1})}}));
}

TEST(ObjectPath, TwoNamespaceNamesGivePathsThatDifferInNothingElse) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  const auto one = instance->GetReference(ProvNsp("root/one"));
  const auto two = instance->GetReference(ProvNsp("root/two"));
  EXPECT_EQ(one.GetFullPath(), "root/one:Thing.Name=\"a\"");
  EXPECT_EQ(two.GetFullPath(), "root/two:Thing.Name=\"a\"");
  EXPECT_EQ(one.GetPath(), two.GetPath());
  EXPECT_EQ(one.GetKeyValues(), two.GetKeyValues());
}

TEST(ObjectPath, GetInstanceReferenceIsTheSame) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  EXPECT_EQ(instance->GetInstanceReference({}), instance->GetReference({}));
  EXPECT_EQ(instance->GetInstanceReference(ProvNsp("root/x")).GetFullPath(),
            "root/x:Thing.Name=\"a\"");
}

TEST(ObjectPath, OfAKeylessClassHasNoKeys) {
  Repository repository;
  auto cls = repository.Allocate("Keyless");
  repository.Property(cls, "Note", TCIMValue("n"));
  const auto reference = cls->AllocateInstance({})->GetReference(ProvNsp("root/x"));
  EXPECT_TRUE(reference.GetKeyValues().empty());
  EXPECT_EQ(reference.GetFullPath(), "root/x:Keyless");
}

TEST(ObjectPath, WritesTheKeysInTheOrderOfTheirFoldedNamesAsTheyAreDeclared) {
  Repository repository;
  auto cls = repository.Allocate("Keys");
  repository.Key(cls, "text");
  repository.Key(cls, "Flag", TCIMValue::Null(kCIMBoolean));
  repository.Key(cls, "number", TCIMValue::Null(kCIMUInt64));
  auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("Text", TCIMValue("say \"\\\""), {});
  instance->SetPropertyValue("Flag", TCIMValue(true), {});
  instance->SetPropertyValue("Number", TCIMValue(~std::uint64_t{0}), {});
  EXPECT_EQ(PathOf(instance),
            "Keys.Flag=TRUE,number=18446744073709551615,text=\"say \\\"\\\\\\\"\"");
}

TEST(ObjectPath, LeavesPropertiesThatAreNoKeysOut) {
  Repository repository;
  auto cls = repository.Allocate("Thing");
  repository.Key(cls, "Name");
  repository.Property(cls, "Note", TCIMValue("n"), {{"Key", TCIMValue(false)}});
  auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  EXPECT_EQ(PathOf(instance), "Thing.Name=\"a\"");
}

TEST(ObjectPath, HasTheInheritedKeysUnderTheNameOfTheInstancesClass) {
  Repository repository;
  auto sub = repository.Class("SubThing", repository.Class("Thing"));
  EXPECT_EQ(PathOf(Named(repository, sub, "a")), "SubThing.Name=\"a\"");
}

TEST(ObjectPath, HasANullKeyAsItIs) {
  Repository repository;
  auto instance = repository.Class("Thing")->AllocateInstance({});
  RecordingLogger log;
  const auto reference = instance->GetReference({});
  EXPECT_EQ(reference.GetKeyValues(),
            (std::map<std::string, TCIMValue>{{"Name", TCIMValue::Null(kCIMString)}}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(ObjectPath, HasTheDefaultOfAKeyWithoutAValue) {
  Repository repository;
  auto cls = repository.Allocate("Thing");
  repository.Key(cls, "Id", TCIMValue(std::uint8_t{3}));
  EXPECT_EQ(PathOf(cls->AllocateInstance({})), "Thing.Id=3");
}

TEST(ObjectPath, OfAnInstanceOlderThanAKeyThrows15) {
  Repository repository;
  auto cls = repository.Class("Thing");
  auto instance = Named(repository, cls, "a");
  repository.Key(cls, "Added");
  RecordingLogger log;
  EXPECT_STATUS(15, instance->GetReference({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(ObjectPath, OfAnAssociationQuotesThePathsOfItsEnds) {
  Repository repository;
  auto cls = repository.Class("Thing");
  auto link = repository.Association("Link", "Antecedent", cls, "Dependent", cls);
  auto instance = repository.Link(link, "Antecedent", Named(repository, cls, "a"), "Dependent",
                                  Named(repository, cls, "b"));
  EXPECT_EQ(PathOf(instance),
            "Link.Antecedent=\"Thing.Name=\\\"a\\\"\","
            "Dependent=\"Thing.Name=\\\"b\\\"\"");
}

TEST(ObjectPath, FollowsTheKeyValue) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  const auto before = instance->GetReference({});
  instance->SetPropertyValue("Name", TCIMValue("b"), {});
  EXPECT_EQ(PathOf(instance), "Thing.Name=\"b\"");
  EXPECT_EQ(before.GetPath(), "Thing.Name=\"a\"");
}

TEST(ObjectPath, ResolvesToTheStoredInstance) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  const auto element = instance->GetReference({}).GetCIMElement(false);
  EXPECT_EQ(boost::dynamic_pointer_cast<ICIMInstance>(element), instance);
}

TEST(ObjectPath, OfAnInstanceThatIsNotStoredResolvesWith15) {
  Repository repository;
  auto instance = repository.Class("Thing")->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue("a"), {});
  EXPECT_STATUS(15, instance->GetReference({}).GetCIMElement(false));
}

TEST(ObjectPath, FindsTheInstanceWhenItsTextIsReadBack) {
  Repository repository;
  auto cls = repository.Class("Thing");
  auto link = repository.Association("Link", "Antecedent", cls, "Dependent", cls);
  auto instance = repository.Link(link, "Antecedent", Named(repository, cls, "x=\"1\""),
                                  "Dependent", Named(repository, cls, "\\"));
  const auto path = TCIMReference::Parse(PathOf(instance), repository.ns);
  EXPECT_EQ(repository.ns->GetInstance(path, {}), instance);
}

TEST(ObjectPath, FindsTheInstanceWhateverTheCaseOfClassAndKeyNames) {
  Repository repository;
  auto instance = Named(repository, repository.Class("Thing"), "a");
  const auto path = TCIMReference::Parse("THING.NAME=\"a\"", repository.ns);
  EXPECT_EQ(repository.ns->GetInstance(path, {}), instance);
}

TEST(ObjectPath, OfKeysThatAreNoNamesIsLookedUpInSilence) {
  Repository repository;
  auto cls = repository.Class("Thing");
  Named(repository, cls, "a");
  RecordingLogger log;
  TCIMReference path = ReferenceTo(cls, {{"bad-key", TCIMValue("a")}, {"1", TCIMValue("a")}});
  path.AddKeyValue("worse key", TCIMValue("a"));
  EXPECT_FALSE(repository.ns->GetInstance(path, {}));
  TCIMReference unbound({}, {{"bad-key", TCIMValue("a")}});
  EXPECT_STATUS(15, repository.ns->GetInstance(unbound, {}));
  unbound.SetClass(cls);
  EXPECT_STATUS(15, unbound.GetCIMElement(false));
  EXPECT_EQ(path.GetPath(), "Thing.1=\"a\",bad-key=\"a\",worse key=\"a\"");
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(ObjectPath, DistinguishesTheCaseOfKeyValues) {
  Repository repository;
  auto cls = repository.Class("Thing");
  Named(repository, cls, "a");
  EXPECT_FALSE(repository.ns->GetInstance(ReferenceTo(cls, {{"Name", TCIMValue("A")}}), {}));
}

}  // namespace
}  // namespace havtest

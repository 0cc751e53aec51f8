// Derived properties: the standard properties that every instance answers, declared or not.
#include "support/Instances.h"

namespace havtest {
namespace {

struct Plain {
  Repository repository;
  ClassPtr cls = repository.Class("Plain");
  InstancePtr instance = repository.Instance(cls, {{"Name", TCIMValue("one")}});
};

TEST(DerivedProperties, SpeedDuplexIsUnknown) {
  Plain plain;
  EXPECT_EQ(ValueOf(plain.instance, "speedDuplex"), TCIMValue("Unknown"));
}

TEST(DerivedProperties, SpeedDuplexMayStandAnywhereInTheNameAndIsDeclaredWithoutTheRest) {
  Plain plain;
  auto slot = plain.instance->GetProperty("PortspeedDuplexMode", {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue("Unknown"));
  EXPECT_EQ(slot->GetDecl({})->GetName({}), "speedDuplex");
}

TEST(DerivedProperties, SpeedDuplexStaysUnknownAfterAnIgnoredAssignment) {
  Plain plain;
  plain.instance->SetPropertyValue("speedDuplex", TCIMValue("Full"), {});
  EXPECT_EQ(ValueOf(plain.instance, "speedDuplex"), TCIMValue("Unknown"));
}

TEST(DerivedProperties, StatusPropertiesAreUint16Zero) {
  for (const char* name : {"CommunicationStatus", "DetailedStatus", "HealthState",
                           "OperatingStatus", "PrimaryStatus"}) {
    Plain plain;
    auto slot = plain.instance->GetProperty(name, {});
    EXPECT_EQ(slot->GetValue({}), TCIMValue(std::uint16_t{0})) << name;
    EXPECT_EQ(slot->GetDecl({})->GetName({}), name);
    EXPECT_TRUE(slot->IsValueDefault({})) << name;
  }
}

TEST(DerivedProperties, AStatusNameMayStandInsideALongerOneWhichIsThenTheName) {
  Plain plain;
  auto slot = plain.instance->GetProperty("LastHealthState2", {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue(std::uint16_t{0}));
  EXPECT_EQ(slot->GetDecl({})->GetName({}), "LastHealthState2");
}

TEST(DerivedProperties, DescriptionIsASingleSpace) {
  Plain plain;
  auto slot = plain.instance->GetProperty("Description", {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue(" "));
  EXPECT_EQ(slot->GetDecl({})->GetName({}), "Description");
}

TEST(DerivedProperties, ALongerNameWithDescriptionInItAnswersTheDescription) {
  Plain plain;
  auto slot = plain.instance->GetProperty("ElementDescription", {});
  EXPECT_EQ(slot->GetValue({}), TCIMValue(" "));
  EXPECT_EQ(slot->GetDecl({})->GetName({}), "Description");
}

TEST(DerivedProperties, DescriptionComesBeforeTheStatusNames) {
  Plain plain;
  EXPECT_EQ(ValueOf(plain.instance, "HealthStateDescription"), TCIMValue(" "));
}

TEST(DerivedProperties, SpeedDuplexComesBeforeDescriptionAndTheStatusNames) {
  Plain plain;
  EXPECT_EQ(ValueOf(plain.instance, "speedDuplexDescription"), TCIMValue("Unknown"));
  EXPECT_EQ(ValueOf(plain.instance, "speedDuplexHealthState"), TCIMValue("Unknown"));
}

TEST(DerivedProperties, AreRecognisedAsTheyAreSpelt) {
  for (const char* name : {"healthstate", "HEALTHSTATE", "description", "SpeedDuplex",
                           "speedduplex", "detailedStatus"}) {
    Plain plain;
    RecordingLogger log;
    EXPECT_STATUS(15, plain.instance->GetProperty(name, {})) << name;
    EXPECT_EQ(log.Take(), LogLines{}) << name;
  }
}

TEST(DerivedProperties, ANameThatIsNoCimNameIsRefusedFirst) {
  Plain plain;
  RecordingLogger log;
  EXPECT_STATUS(25, plain.instance->GetProperty("Health State.HealthState", {}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name 'Health State.HealthState' is invalid"}}));
}

TEST(DerivedProperties, AreReadWithoutALogLine) {
  Plain plain;
  RecordingLogger log;
  for (const char* name : {"speedDuplex", "HealthState", "Description"}) {
    plain.instance->GetProperty(name, {});
    plain.instance->GetProperty(name, {});
  }
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(DerivedProperties, ADeclaredPropertyComesFirst) {
  Repository repository;
  auto cls = repository.Allocate("Full");
  repository.Property(cls, "Description", TCIMValue("declared"));
  repository.Property(cls, "HealthState", TCIMValue(std::uint32_t{5}));
  auto instance = cls->AllocateInstance({});
  EXPECT_EQ(ValueOf(instance, "Description"), TCIMValue("declared"));
  EXPECT_EQ(ValueOf(instance, "HealthState"), TCIMValue(std::uint32_t{5}));
}

TEST(DerivedProperties, ReadingDeclaresThePropertyInTheClass) {
  Plain plain;
  EXPECT_STATUS(15, plain.cls->GetPropertyDecl("HealthState", {}));
  auto slot = plain.instance->GetProperty("HealthState", {});
  EXPECT_EQ(plain.cls->GetPropertyDecl("HealthState", {}), slot->GetDecl({}));
  EXPECT_EQ(slot->GetDecl({})->GetClass({}), plain.cls);
}

TEST(DerivedProperties, InstancesMadeAfterTheReadingHaveASlotOfTheirOwn) {
  Plain plain;
  plain.instance->GetProperty("HealthState", {});
  auto later = plain.cls->AllocateInstance({});
  EXPECT_EQ(SlotNames(later), (std::vector<std::string>{"HealthState", "Name"}));
  later->SetPropertyValue("HealthState", TCIMValue(std::uint16_t{5}), {});
  EXPECT_EQ(ValueOf(later, "HealthState"), TCIMValue(std::uint16_t{5}));
}

TEST(DerivedProperties, AreNotKeptByTheInstance) {
  Plain plain;
  auto slot = plain.instance->GetProperty("HealthState", {});
  slot->SetValue(TCIMValue(std::uint16_t{5}), {});
  EXPECT_EQ(ValueOf(plain.instance, "HealthState"), TCIMValue(std::uint16_t{0}));
  EXPECT_EQ(SlotNames(plain.instance), (std::vector<std::string>{"Name"}));
  EXPECT_STATUS(15,
                plain.instance->SetPropertyValue("HealthState", TCIMValue(std::uint16_t{5}), {}));
}

TEST(DerivedProperties, AStatusReadTwiceKeepsItsFirstDeclaration) {
  Plain plain;
  auto first = plain.instance->GetProperty("HealthState", {});
  auto second = plain.instance->GetProperty("HealthState", {});
  EXPECT_NE(first, second);
  EXPECT_EQ(first->GetDecl({}), second->GetDecl({}));
}

TEST(DerivedProperties, SpeedDuplexReadTwiceIsDeclaredAnewAndTheFirstSlotStaysReadable) {
  Plain plain;
  auto first = plain.instance->GetProperty("speedDuplex", {});
  auto second = plain.instance->GetProperty("speedDuplex", {});
  ASSERT_TRUE(first->GetDecl({}));
  EXPECT_NE(first->GetDecl({}), second->GetDecl({}));
  EXPECT_EQ(plain.cls->GetPropertyDecl("speedDuplex", {}), second->GetDecl({}));
  EXPECT_EQ(first->GetValue({}), TCIMValue("Unknown"));
  EXPECT_EQ(first->GetDisplayValue({}), "Unknown");
}

TEST(DerivedProperties, ASlotThatTheInstanceKeepsSurvivesARedeclarationThroughAnotherInstance) {
  Plain plain;
  plain.instance->GetProperty("speedDuplex", {});
  auto later = plain.cls->AllocateInstance({});
  plain.instance->GetProperty("speedDuplex", {});
  EXPECT_EQ(ValueOf(later, "speedDuplex"), TCIMValue("Unknown"));
  ASSERT_TRUE(later->GetProperty("speedDuplex", {})->GetDecl({}));
  later->SetPropertyValue("speedDuplex", TCIMValue("Full"), {});
  EXPECT_EQ(ValueOf(later, "speedDuplex"), TCIMValue("Full"));
}

TEST(DerivedProperties, AnswerTheDeclarationThatTheClassHasGotMeanwhile) {
  Plain plain;
  plain.repository.Property(plain.cls, "Description", TCIMValue(std::uint32_t{7}));
  EXPECT_EQ(ValueOf(plain.instance, "Description"), TCIMValue(std::uint32_t{7}));
}

TEST(DerivedProperties, OfASubclassAreDeclaredThere) {
  Plain plain;
  auto sub = plain.repository.Class("Sub", plain.cls);
  auto instance = sub->AllocateInstance({});
  instance->GetProperty("PrimaryStatus", {});
  EXPECT_EQ(sub->GetPropertyDecl("PrimaryStatus", {})->GetClass({}), sub);
  EXPECT_STATUS(15, plain.cls->GetPropertyDecl("PrimaryStatus", {}));
}

}  // namespace
}  // namespace havtest

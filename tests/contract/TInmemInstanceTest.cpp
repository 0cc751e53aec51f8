// Instances: what construction makes, reading and writing by property name, the walk over
// the slots, comparison.
#include <stdexcept>

#include "support/Instances.h"

namespace havtest {
namespace {

// A class with properties whose order of declaration is not their order by name.
ClassPtr Device(const Repository& repository) {
  auto cls = repository.Allocate("Device");
  repository.Key(cls, "Name");
  repository.Property(cls, "speed", TCIMValue(std::uint32_t{10}));
  repository.Property(cls, "Enabled", TCIMValue::Null(kCIMBoolean));
  cls->AddToNamespace({});
  return cls;
}

TEST(TInmemInstance, HasOneSlotForEveryDeclaredPropertyInTheOrderOfTheFoldedNames) {
  Repository repository;
  auto device = Device(repository);
  EXPECT_EQ(SlotNames(device->AllocateInstance({})),
            (std::vector<std::string>{"Enabled", "Name", "speed"}));
}

TEST(TInmemInstance, HasASlotForEveryInheritedProperty) {
  Repository repository;
  auto device = Device(repository);
  auto disk = repository.Allocate("Disk", device);
  repository.Property(disk, "Blocks", TCIMValue(std::uint64_t{0}));
  disk->AddToNamespace({});
  EXPECT_EQ(SlotNames(disk->AllocateInstance({})),
            (std::vector<std::string>{"Blocks", "Enabled", "Name", "speed"}));
}

TEST(TInmemInstance, StartsWithTheDeclaredDefaults) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  EXPECT_EQ(ValueOf(instance, "speed"), TCIMValue(std::uint32_t{10}));
  EXPECT_EQ(ValueOf(instance, "Enabled"), TCIMValue::Null(kCIMBoolean));
  EXPECT_TRUE(instance->GetProperty("speed", {})->IsValueDefault({}));
}

TEST(TInmemInstance, OfAnyNumberOfPropertiesHasTheDefaultsOfThoseThatAreNotSet) {
  for (const int count : {1, 31, 32, 33, 34, 64, 65, 200}) {
    Repository repository;
    auto cls = repository.Allocate("Wide");
    const auto name = [](int i) { return "P" + std::to_string(1000 + i); };
    for (int i = 0; i < count; ++i) repository.Property(cls, name(i), TCIMValue(std::uint32_t{7}));
    // Each by itself, then one more in the same instance.
    for (int set = 0; set < count; ++set) {
      auto instance = cls->AllocateInstance({});
      const int more = (set * 7 + 33) % count;
      for (const int i : {set, more})
        instance->SetPropertyValue(name(i), TCIMValue(std::uint32_t(100 + i)), {});
      for (int i = 0; i < count; ++i) {
        const bool isSet = i == set || i == more;
        const auto slot = instance->GetProperty(name(i), {});
        ASSERT_EQ(slot->IsValueDefault({}), !isSet) << count << ", " << set << ", " << i;
        ASSERT_EQ(slot->GetValue({}), TCIMValue(std::uint32_t(isSet ? 100 + i : 7)));
      }
      set += count / 40;
    }
  }
}

TEST(TInmemInstance, OfAClassWithoutPropertiesHasNoSlots) {
  Repository repository;
  auto empty = repository.Allocate("Empty");
  auto instance = empty->AllocateInstance({});
  EXPECT_EQ(SlotNames(instance), std::vector<std::string>{});
}

TEST(TInmemInstance, GetsNoSlotForAPropertyThatIsDeclaredLater) {
  Repository repository;
  auto device = Device(repository);
  auto instance = device->AllocateInstance({});
  repository.Property(device, "Later", TCIMValue(true));
  EXPECT_STATUS(15, instance->GetProperty("Later", {}));
  EXPECT_STATUS(15, instance->SetPropertyValue("Later", TCIMValue(false), {}));
}

TEST(TInmemInstance, GetsTheTimeOfItsMakingInADeclaredDateTimeOfCollection) {
  Repository repository;
  auto cls = repository.Allocate("Collected");
  repository.Property(cls, "datetimeofcollection", TCIMValue::Null(kCIMDateTime));
  const TCIMDateTime before = TOSSpecific::GetLocalTime();
  auto instance = cls->AllocateInstance({});
  const TCIMDateTime after = TOSSpecific::GetLocalTime();

  const TCIMValue value = ValueOf(instance, "DateTimeOfCollection");
  ASSERT_FALSE(value.IsNull());
  const auto time = static_cast<TCIMDateTime>(value);
  EXPECT_FALSE(time.IsInterval());
  EXPECT_FALSE(time < before);
  EXPECT_FALSE(after < time);
}

TEST(TInmemInstance, IsMadeWithoutALogLineWhenNoCollectionTimeIsDeclared) {
  Repository repository;
  auto device = Device(repository);
  RecordingLogger log;
  device->AllocateInstance({});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstance, IsMadeAllTheSameWhenTheCollectionTimeHasAnotherType) {
  Repository repository;
  auto cls = repository.Allocate("Collected");
  repository.Property(cls, "DateTimeOfCollection", TCIMValue("never"));
  RecordingLogger log;
  auto instance = cls->AllocateInstance({});
  EXPECT_EQ(log.Take(), (LogLines{{3,
                                   "Inmem: SetValue: decl is type string but value is type "
                                   "datetime"}}));
  EXPECT_EQ(ValueOf(instance, "DateTimeOfCollection"), TCIMValue("never"));
}

TEST(TInmemInstance, AnswersTheClassThatMadeIt) {
  Repository repository;
  auto device = Device(repository);
  EXPECT_EQ(device->AllocateInstance({})->GetClass({}), device);
}

TEST(TInmemInstance, FindsASlotByItsNameInAnyCase) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  EXPECT_EQ(instance->GetProperty("SPEED", {}), instance->GetProperty("speed", {}));
}

TEST(TInmemInstance, HandsOutItsOwnSlot) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  instance->GetProperty("Speed", {})->SetValue(TCIMValue(std::uint32_t{7}), {});
  EXPECT_EQ(ValueOf(instance, "speed"), TCIMValue(std::uint32_t{7}));
}

TEST(TInmemInstance, GetPropertyOfAnUndeclaredNameThrows15AndLogsNothing) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(15, instance->GetProperty("Serial", {}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstance, GetPropertyOfANameThatIsNoCimNameThrows25AfterOneLine) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(25, instance->GetProperty("Link-Speed", {}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name 'Link-Speed' is invalid"}}));
}

TEST(TInmemInstance, SetPropertyValueStoresUnderTheNameInAnyCase) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  instance->SetPropertyValue("SPEED", TCIMValue(std::uint32_t{42}), {});
  EXPECT_EQ(ValueOf(instance, "speed"), TCIMValue(std::uint32_t{42}));
}

TEST(TInmemInstance, SetPropertyValueOfAnUndeclaredNameThrows15AndLogsNothing) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(15, instance->SetPropertyValue("Serial", TCIMValue("1"), {}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstance, SetPropertyValueOfANameThatIsNoCimNameThrows25AfterOneLine) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  RecordingLogger log;
  EXPECT_STATUS(25, instance->SetPropertyValue("2nd", TCIMValue("1"), {}));
  EXPECT_EQ(log.Take(), (LogLines{{3, "Inmem: CIM name '2nd' is invalid"}}));
}

TEST(TInmemInstance, SetPropertyValueOfAnotherTypeThrows14AndKeepsTheValue) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  instance->SetPropertyValue("speed", TCIMValue(std::uint32_t{42}), {});
  RecordingLogger log;
  EXPECT_STATUS(14, instance->SetPropertyValue("speed", TCIMValue("fast"), {}));
  EXPECT_EQ(log.Take(), (LogLines{{3,
                                   "Inmem: SetValue: decl is type uint32 but value is type "
                                   "string"}}));
  EXPECT_EQ(ValueOf(instance, "speed"), TCIMValue(std::uint32_t{42}));
}

TEST(TInmemInstance, SetPropertyValueOfAnUndeclaredSpeedDuplexIsIgnored) {
  Repository repository;
  auto device = Device(repository);
  auto instance = device->AllocateInstance({});
  RecordingLogger log;
  instance->SetPropertyValue("speedDuplex", TCIMValue("Full"), {});
  instance->SetPropertyValue("PortspeedDuplexMode", TCIMValue("Full"), {});
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(SlotNames(instance), (std::vector<std::string>{"Enabled", "Name", "speed"}));
  EXPECT_STATUS(15, device->GetPropertyDecl("speedDuplex", {}));
}

TEST(TInmemInstance, SetPropertyValueTakesSpeedDuplexAsItIsSpelt) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  EXPECT_STATUS(15, instance->SetPropertyValue("SpeedDuplex", TCIMValue("Full"), {}));
}

TEST(TInmemInstance, SetPropertyValueStoresADeclaredSpeedDuplex) {
  Repository repository;
  auto cls = repository.Allocate("Port");
  repository.Property(cls, "speedDuplex", TCIMValue("Unknown"));
  auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("SPEEDDUPLEX", TCIMValue("Full"), {});
  EXPECT_EQ(ValueOf(instance, "speedDuplex"), TCIMValue("Full"));
}

TEST(TInmemInstance, EnumeratePropertiesVisitsEverySlotWhateverTheCallbackAnswers) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  int visited = 0;
  instance->EnumerateProperties([&](PropertyPtr) { return ++visited, false; }, {});
  EXPECT_EQ(visited, 3);
}

TEST(TInmemInstance, EnumeratePropertiesLogsAHavExceptionOfTheCallbackAndGoesOn) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  std::vector<std::string> visited;
  RecordingLogger log;
  instance->EnumerateProperties(
      [&](PropertyPtr slot) -> bool {
        visited.push_back(slot->GetDecl({})->GetName({}));
        if (visited.back() == "Name") throw THAVException(kHAVNotSupported);
        return true;
      },
      {});
  EXPECT_EQ(visited, (std::vector<std::string>{"Enabled", "Name", "speed"}));
  EXPECT_EQ(log.Take(), (LogLines{{3,
                                   "TInmemInstance::EnumerateProperties: Failed in Enumerate "
                                   "the Property \"Name\" of Class Device"}}));
}

TEST(TInmemInstance, EnumeratePropertiesLogsOneLineForEveryFailedSlot) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  RecordingLogger log;
  instance->EnumerateProperties([](PropertyPtr) -> bool { throw THAVException(kHAVNotFound); }, {});
  const std::string failed =
      "TInmemInstance::EnumerateProperties: Failed in Enumerate the Property ";
  EXPECT_EQ(log.Take(), (LogLines{{3, failed + "\"Enabled\" of Class Device"},
                                  {3, failed + "\"Name\" of Class Device"},
                                  {3, failed + "\"speed\" of Class Device"}}));
}

TEST(TInmemInstance, EnumeratePropertiesLetsOtherExceptionsThrough) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  int visited = 0;
  RecordingLogger log;
  EXPECT_THROW(instance->EnumerateProperties(
                   [&](PropertyPtr) -> bool {
                     ++visited;
                     throw std::runtime_error("enough");
                   },
                   {}),
               std::runtime_error);
  EXPECT_EQ(visited, 1);
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstance, EnumeratePropertiesWithAnEmptyCallbackThrowsBadFunctionCall) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  EXPECT_THROW(instance->EnumerateProperties({}, {}), boost::bad_function_call);
}

TEST(TInmemInstance, EnumeratePropertiesLeavesOutWhatTheCallbackDerives) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  int visited = 0;
  instance->EnumerateProperties(
      [&](PropertyPtr) {
        instance->GetProperty("HealthState", {});
        return ++visited, true;
      },
      {});
  EXPECT_EQ(visited, 3);
}

TEST(TInmemInstance, EnumeratePropertiesOutlastsTheLossOfTheLastHoldOnTheInstance) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  instance->SetPropertyValue("Name", TCIMValue(std::string(100, 'n')), {});
  std::vector<TCIMValue> values;
  instance.get()->EnumerateProperties(
      [&](PropertyPtr slot) {
        instance.reset();
        values.push_back(slot->GetValue({}));
        return true;
      },
      {});
  EXPECT_EQ(values,
            (std::vector<TCIMValue>{TCIMValue::Null(kCIMBoolean), TCIMValue(std::string(100, 'n')),
                                    TCIMValue(std::uint32_t{10})}));
}

TEST(TInmemInstance, EqualsEveryInstanceOfItsClassWhateverTheirKeys) {
  Repository repository;
  auto device = Device(repository);
  auto first = repository.Instance(device, {{"Name", TCIMValue("first")}});
  auto second = repository.Instance(device, {{"Name", TCIMValue("second")}});
  EXPECT_TRUE(*first == *second);
  EXPECT_FALSE(*first < *second);
  EXPECT_FALSE(*second < *first);
}

TEST(TInmemInstance, OfAnotherClassIsUnequalAndOrderedOneWay) {
  Repository repository;
  auto device = Device(repository);
  auto disk = repository.Class("Disk", device);
  auto a = repository.Instance(device, {{"Name", TCIMValue("same")}});
  auto b = repository.Instance(disk, {{"Name", TCIMValue("same")}});
  EXPECT_FALSE(*a == *b);
  EXPECT_NE(*a < *b, *b < *a);
}

TEST(TInmemInstance, AssignmentCopiesNothing) {
  Repository repository;
  auto device = Device(repository);
  auto a = device->AllocateInstance({});
  auto b = device->AllocateInstance({});
  b->SetPropertyValue("Name", TCIMValue("b"), {});
  EXPECT_EQ(&(*a = *b), a.get());
  EXPECT_TRUE(ValueOf(a, "Name").IsNull());
}

TEST(TInmemInstance, ModifyInstanceChangesNothing) {
  Repository repository;
  auto device = Device(repository);
  auto a = repository.Instance(device, {{"Name", TCIMValue("a")}});
  auto b = device->AllocateInstance({});
  b->SetPropertyValue("Name", TCIMValue("b"), {});
  a->ModifyInstance(b, {});
  EXPECT_EQ(ValueOf(a, "Name"), TCIMValue("a"));
  EXPECT_EQ(Stored(device), (std::vector<std::string>{"Device.Name=\"a\""}));
}

TEST(TInmemInstance, InvokeMethodRunsNothingAndAnswersNull) {
  Repository repository;
  auto instance = Device(repository)->AllocateInstance({});
  std::map<std::string, TCIMValue> parameters{{"Force", TCIMValue(true)}};
  const auto before = parameters;
  EXPECT_EQ(instance->InvokeMethod("Reset", parameters, {}), TCIMValue());
  EXPECT_EQ(parameters, before);
}

TEST(TInmemInstance, PegasusNamespaceTextIsEmpty) {
  Repository repository;
  EXPECT_EQ(Device(repository)->AllocateInstance({})->GetPegasusNSPStr(), "");
}

}  // namespace
}  // namespace havtest

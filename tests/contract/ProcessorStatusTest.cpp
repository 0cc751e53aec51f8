// The walk over a class's instances, and what it does to those of processor classes.
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

LogLine Status(const std::string& text) { return Error("cpuStatus is " + text); }

// Sets the three switches, and sets them back to unknown at the end.
class CacheSwitches {
 public:
  CacheSwitches() { Set(-1, -1, -1); }
  ~CacheSwitches() { Set(-1, -1, -1); }
  void Set(std::int32_t l1, std::int32_t l2, std::int32_t l3) {
    CacheSwitch(1) = l1;
    CacheSwitch(2) = l2;
    CacheSwitch(3) = l3;
  }
};

class ProcessorStatus : public testing::Test {
 protected:
  // A class with the properties of a processor, "Name" being its key.
  ClassPtr Processor(const std::string& name = "ORVSG_CPU", const ClassPtr& superclass = {}) {
    auto cls = repository.Allocate(name, superclass);
    if (!superclass) {
      repository.Key(cls, "Name");
      repository.Property(cls, "CPUStatus", TCIMValue::Null(kCIMUInt16));
      for (const char* level : {"L1Enabled", "L2Enabled", "L3Enabled"})
        repository.Property(cls, level, TCIMValue::Null(kCIMBoolean));
    }
    cls->AddToNamespace({});
    return cls;
  }
  InstancePtr Cpu(const ClassPtr& cls, const std::string& name, std::uint16_t status) {
    return repository.Instance(cls, {{"Name", TCIMValue(name)}, {"CPUStatus", TCIMValue(status)}});
  }
  static std::vector<TCIMValue> Levels(const InstancePtr& cpu) {
    return {ValueOf(cpu, "L1Enabled"), ValueOf(cpu, "L2Enabled"), ValueOf(cpu, "L3Enabled")};
  }
  static Names Walk(const ClassPtr& cls, bool deep = false) {
    return Paths([&](auto callback) { cls->EnumerateInstances(callback, deep, {}); });
  }

  const TCIMValue kUnset = TCIMValue::Null(kCIMBoolean);
  const TCIMValue kOn = TCIMValue(true);
  const TCIMValue kOff = TCIMValue(false);

  LoggedRepository repository;
  CacheSwitches switches;
};

TEST_F(ProcessorStatus, WithUnknownSwitchesIsLoggedAndNothingChanges) {
  auto cls = Processor();
  auto cpu = Cpu(cls, "0", 1);
  EXPECT_EQ(Walk(cls), Names{"ORVSG_CPU.Name=\"0\""});
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kUnset, kUnset, kUnset}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("1")});
}

TEST_F(ProcessorStatus, OneWritesTheSwitchesIntoTheInstance) {
  auto cls = Processor();
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(1, 0, 1);
  EXPECT_EQ(Walk(cls), Names{"ORVSG_CPU.Name=\"0\""});
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOn, kOff, kOn}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("1")});
}

TEST_F(ProcessorStatus, SwitchesThatAreNeitherZeroNorOneLeaveTheirLevelAlone) {
  auto cls = Processor();
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(1, 1, 1);
  Walk(cls);
  switches.Set(2, std::numeric_limits<std::int32_t>::min(),
               std::numeric_limits<std::int32_t>::max());
  Walk(cls);
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOn, kOn, kOn}));
  switches.Set(-1, 0, 256);
  Walk(cls);
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOn, kOff, kOn}));
}

TEST_F(ProcessorStatus, ChangeStaysInTheStoredInstance) {
  auto cls = Processor();
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(0, 0, 0);
  Walk(cls);
  switches.Set(-1, -1, -1);
  auto stored = repository.ns->GetInstance(cpu->GetReference({}), {});
  EXPECT_EQ(stored, cpu);
  EXPECT_EQ(Levels(stored), (std::vector<TCIMValue>{kOff, kOff, kOff}));
}

TEST_F(ProcessorStatus, CallbackSeesTheChange) {
  auto cls = Processor();
  Cpu(cls, "0", 1);
  switches.Set(1, 1, 0);
  std::vector<TCIMValue> seen;
  cls->EnumerateInstances(
      [&](InstancePtr cpu) {
        seen = Levels(cpu);
        return true;
      },
      false, {});
  EXPECT_EQ(seen, (std::vector<TCIMValue>{kOn, kOn, kOff}));
}

TEST_F(ProcessorStatus, OtherThanOneIsLoggedAndNothingChanges) {
  auto cls = Processor();
  auto zero = Cpu(cls, "0", 0);
  auto eleven = Cpu(cls, "1", 11);
  auto unset = repository.Instance(cls, {{"Name", TCIMValue("2")}});
  switches.Set(1, 1, 1);
  EXPECT_EQ(Walk(cls).size(), 3u);
  for (const auto& cpu : {zero, eleven, unset})
    EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kUnset, kUnset, kUnset}));
  EXPECT_EQ(repository.TakeLog(), (LogLines{Status("0"), Status("11"), Status("NULL")}));
}

TEST_F(ProcessorStatus, IsReadAsText) {
  auto cls = repository.Allocate("ORVSG_CPU");
  repository.Key(cls, "Name");
  repository.Property(cls, "CPUStatus", TCIMValue("1"));
  repository.Property(cls, "L1Enabled", TCIMValue::Null(kCIMBoolean));
  cls->AddToNamespace({});
  auto cpu = repository.Instance(cls, {{"Name", TCIMValue("0")}});
  switches.Set(1, -1, -1);
  Walk(cls);
  EXPECT_EQ(ValueOf(cpu, "L1Enabled"), kOn);
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("1")});
}

TEST_F(ProcessorStatus, SwitchesAreReadForEveryInstanceAnew) {
  auto cls = Processor();
  auto first = Cpu(cls, "0", 1);
  auto second = Cpu(cls, "1", 1);
  switches.Set(1, 1, 1);
  cls->EnumerateInstances(
      [&](InstancePtr) {
        switches.Set(0, 0, 0);
        return true;
      },
      false, {});
  EXPECT_EQ(Levels(first), (std::vector<TCIMValue>{kOn, kOn, kOn}));
  EXPECT_EQ(Levels(second), (std::vector<TCIMValue>{kOff, kOff, kOff}));
}

class ProcessorClassName : public ProcessorStatus,
                           public testing::WithParamInterface<const char*> {};

TEST_P(ProcessorClassName, GetsTheRule) {
  auto cls = Processor(GetParam());
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(1, 1, 1);
  EXPECT_EQ(Walk(cls).size(), 1u);
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOn, kOn, kOn}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("1")});
}

INSTANTIATE_TEST_SUITE_P(Names, ProcessorClassName,
                         testing::Values("ORVSG_CPU", "ORVSG_Processor"));

class OtherClassName : public ProcessorClassName {};

TEST_P(OtherClassName, DoesNotGetTheRule) {
  auto cls = Processor(GetParam());
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(1, 1, 1);
  EXPECT_EQ(Walk(cls).size(), 1u);
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kUnset, kUnset, kUnset}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

INSTANTIATE_TEST_SUITE_P(Names, OtherClassName,
                         testing::Values("ORVSG_cpu", "orvsg_processor", "ORVSG_CPU2", "CPU",
                                         "ORVSG_CP"));

TEST_F(ProcessorStatus, DoesNotApplyToSubclassesOfOtherNames) {
  auto sub = Processor("ORVSG_CPUCore", Processor());
  auto core = Cpu(sub, "0", 1);
  switches.Set(1, 1, 1);
  EXPECT_EQ(Walk(sub).size(), 1u);
  EXPECT_EQ(Levels(core), (std::vector<TCIMValue>{kUnset, kUnset, kUnset}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(ProcessorStatus, AppliesInADeepWalkFromAnAncestor) {
  auto base = Processor("ORVSG_Device");
  auto cls = Processor("ORVSG_Processor", base);
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(0, 1, 0);
  EXPECT_EQ(Walk(base, true), Names{"ORVSG_Processor.Name=\"0\""});
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOff, kOn, kOff}));
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("1")});
}

TEST_F(ProcessorStatus, ThatCannotBeReadLeavesTheInstanceOut) {
  auto cls = repository.Class("ORVSG_CPU");
  repository.Instance(cls, {{"Name", TCIMValue("0")}});
  EXPECT_EQ(Walk(cls), Names{});
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(ProcessorStatus, LeavesOnlyTheInstanceOutThatCannotBeRead) {
  auto cls = repository.Class("ORVSG_CPU");
  repository.Instance(cls, {{"Name", TCIMValue("0")}});
  repository.Property(cls, "CPUStatus", TCIMValue(std::uint16_t{2}));
  repository.Instance(cls, {{"Name", TCIMValue("1")}});
  EXPECT_EQ(Walk(cls), Names{"ORVSG_CPU.Name=\"1\""});
  EXPECT_EQ(repository.TakeLog(), LogLines{Status("2")});
}

TEST_F(ProcessorStatus, WithALevelThatCannotBeWrittenLeavesTheInstanceOut) {
  auto cls = repository.Allocate("ORVSG_CPU");
  repository.Key(cls, "Name");
  repository.Property(cls, "CPUStatus", TCIMValue(std::uint16_t{1}));
  repository.Property(cls, "L1Enabled", TCIMValue::Null(kCIMBoolean));
  repository.Property(cls, "L2Enabled", TCIMValue("text"));
  repository.Property(cls, "L3Enabled", TCIMValue::Null(kCIMBoolean));
  cls->AddToNamespace({});
  auto cpu = repository.Instance(cls, {{"Name", TCIMValue("0")}});
  switches.Set(1, 1, 1);
  EXPECT_EQ(Walk(cls), Names{});
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kOn, TCIMValue("text"), kUnset}));
  EXPECT_EQ(repository.TakeLog(),
            (LogLines{Status("1"),
                      Error("Inmem: SetValue: decl is type string but value is type boolean")}));
}

TEST_F(ProcessorStatus, NeedsOnlyTheLevelsWhoseSwitchIsKnown) {
  auto cls = repository.Allocate("ORVSG_CPU");
  repository.Key(cls, "Name");
  repository.Property(cls, "CPUStatus", TCIMValue(std::uint16_t{1}));
  cls->AddToNamespace({});
  repository.Instance(cls, {{"Name", TCIMValue("0")}});
  EXPECT_EQ(Walk(cls).size(), 1u);
  switches.Set(-1, -1, 0);
  EXPECT_EQ(Walk(cls).size(), 0u);
  EXPECT_EQ(repository.TakeLog(), (LogLines{Status("1"), Status("1")}));
}

TEST_F(ProcessorStatus, IsLeftAloneByALookUpOfTheInstance) {
  auto cls = Processor();
  auto cpu = Cpu(cls, "0", 1);
  switches.Set(1, 1, 1);
  EXPECT_EQ(repository.ns->GetInstance(cpu->GetReference({}), {}), cpu);
  EXPECT_EQ(Levels(cpu), (std::vector<TCIMValue>{kUnset, kUnset, kUnset}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

}  // namespace
}  // namespace havtest

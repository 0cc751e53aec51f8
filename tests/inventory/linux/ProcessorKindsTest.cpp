// Machines of one to eight sockets and of several architectures, whole and with threads that
// are offline, as nobody but their kernels describes them.
#include <gtest/gtest.h>

#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"

namespace havtest {
namespace {

using namespace hav::inventory;

Texts Sockets(unsigned count) {
  Texts names;
  for (unsigned i = 0; i < count; ++i) names.push_back("CPU" + std::to_string(i));
  return names;
}

std::string Text(const TElement& element, const char* property) {
  return element.Get(property).ToString(10);
}

TEST(ProcessorKinds, OneToEightSocketsOfEachKind) {
  for (const auto kind : {ProcessorPlan::kX86, ProcessorPlan::kArm, ProcessorPlan::kPower})
    for (const unsigned sockets : {1U, 2U, 8U}) {
      SCOPED_TRACE(std::to_string(kind) + ", sockets: " + std::to_string(sockets));
      ProcessorPlan plan;
      plan.kind = kind;
      plan.sockets = sockets;
      plan.cores = 2;
      plan.threads = kind == ProcessorPlan::kPower ? 8 : kind == ProcessorPlan::kArm ? 1 : 2;
      FakeMachine machine;
      machine.Processors(plan);
      machine.NumaNodes(plan);
      const auto found = machine.Gather();
      EXPECT_EQ(Names(found, "ORVSG_Processor"), Sockets(sockets));
      EXPECT_EQ(Names(found, "ORVSG_CacheMemory").size(), 4 * sockets);
      EXPECT_EQ(Names(found, "ORVSG_NumaNode").size(), sockets);
      for (unsigned socket = 0; socket < sockets; ++socket) {
        const auto cpu = Element(found, "ORVSG_Processor", "CPU" + std::to_string(socket));
        EXPECT_EQ(Text(cpu, "SocketNumber"), std::to_string(socket));
        EXPECT_EQ(Text(cpu, "NumberOfCores"), "2");
        EXPECT_EQ(Text(cpu, "NumberOfLogicalProcessors"), std::to_string(2 * plan.threads));
      }
    }
}

TElement FirstProcessorOf(ProcessorPlan::EKind kind) {
  ProcessorPlan plan;
  plan.kind = kind;
  FakeMachine machine;
  machine.Processors(plan);
  return Element(machine.Gather(), "ORVSG_Processor", "CPU0");
}

TEST(ProcessorKinds, X86TellsItsNumbersAlsoWhereNothingTellsTheArchitecture) {
  const auto cpu = FirstProcessorOf(ProcessorPlan::kX86);
  EXPECT_EQ(Text(cpu, "Caption"), "CPU0, Example Processor 9000");
  EXPECT_EQ(Text(cpu, "Manufacturer"), "GenuineIntel");
  EXPECT_EQ(Text(cpu, "FamilyNumber"), "6");
  EXPECT_EQ(Text(cpu, "ModelNumber"), "85");
  EXPECT_EQ(Text(cpu, "Stepping"), "7");
  EXPECT_EQ(Text(cpu, "CurrentClockSpeedMHz"), "2400");
}

TEST(ProcessorKinds, ArmTellsItsMakerByNumber) {
  const auto cpu = FirstProcessorOf(ProcessorPlan::kArm);
  EXPECT_EQ(Text(cpu, "Manufacturer"), "ARM");
  EXPECT_EQ(Text(cpu, "FamilyNumber"), "8");
  EXPECT_EQ(Text(cpu, "ModelNumber"), "3340");
  EXPECT_EQ(Text(cpu, "Stepping"), "1");
}

TEST(ProcessorKinds, PowerTellsItsModelAndClock) {
  const auto cpu = FirstProcessorOf(ProcessorPlan::kPower);
  EXPECT_EQ(Text(cpu, "Caption"), "CPU0, POWER9 (architected), altivec supported");
  EXPECT_EQ(Text(cpu, "CurrentClockSpeedMHz"), "3800");
}

TEST(OfflineThreads, OfTheFirstCoreHideNoProcessor) {
  ProcessorPlan plan;
  plan.sockets = 2;
  plan.cores = 2;
  plan.offline = {0, 1};
  FakeMachine machine;
  machine.Processors(plan);
  const auto found = machine.Gather();
  EXPECT_EQ(Failures(found).size(), 6U);
  EXPECT_EQ(Names(found, "ORVSG_Processor"), Sockets(2));
  const auto cpu = Element(found, "ORVSG_Processor", "CPU0");
  EXPECT_EQ(Text(cpu, "NumberOfCores"), "1");
  EXPECT_EQ(Text(cpu, "NumberOfLogicalProcessors"), "2");
  EXPECT_EQ(Text(cpu, "CurrentClockSpeedMHz"), "2400");
}

TEST(OfflineThreads, OfAWholeSocketLeaveTheOthersTheirNumbers) {
  ProcessorPlan plan;
  plan.sockets = 2;
  plan.offline = {0, 1};
  FakeMachine machine;
  machine.Processors(plan);
  const auto cpu = Element(machine.Gather(), "ORVSG_Processor", "CPU0");
  EXPECT_EQ(Text(cpu, "SocketNumber"), "1");
}

TEST(Architecture, IsWhatTheKernelOrTheProcessorsSay) {
  const auto of = [](ProcessorPlan::EKind kind, const std::string& kernels) {
    ProcessorPlan plan;
    plan.kind = kind;
    FakeMachine machine;
    machine.Processors(plan);
    machine.File("/proc/sys/kernel/ostype", "Linux\n");
    if (!kernels.empty()) machine.File("/proc/sys/kernel/arch", kernels + "\n");
    return Text(Element(machine.Gather(), "ORVSG_OperatingSystem", "Linux"), "Architecture");
  };
  EXPECT_EQ(of(ProcessorPlan::kX86, ""), "x86_64");
  EXPECT_EQ(of(ProcessorPlan::kArm, ""), "aarch64");
  // Which of its two byte orders the kernel uses, the processors do not say.
  EXPECT_EQ(of(ProcessorPlan::kPower, ""), "NULL");
  EXPECT_EQ(of(ProcessorPlan::kPower, "ppc64le"), "ppc64le");
}

TEST(NumaNodes, HaveMemoryProcessorsAndDistances) {
  ProcessorPlan plan;
  plan.sockets = 2;
  plan.cores = 2;
  plan.offline = {5};
  FakeMachine machine;
  machine.NumaNodes(plan);
  EXPECT_EQ(Values(Element(machine.Gather(), "ORVSG_NumaNode", "Node 1")),
            (Texts{"Name=Node 1", "NodeNumber=1", "LogicalProcessors=4,6-7", "TotalSize=16777216",
                   "FreeSize=1048576", "Distances={21, 10}"}));
}

}  // namespace
}  // namespace havtest

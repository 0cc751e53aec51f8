// Costs that must not grow with what else is there: classes by the hundred thousand, association
// classes that have no links, small namespaces, threads.

#include <thread>

#include "bench/Cases.h"
#include "bench/InmemSubject.h"
#include "support/Plugin.h"

namespace havbench {
namespace {

using NORVHAV20::ICIMClass;
using NORVHAV20::ICIMNamespace;
using NORVHAV20::TCIMValue;
using TClassPtr = boost::shared_ptr<ICIMClass>;

// Registers `n` classes made by `make`, walks what `walk` walks, and deletes them again.
template <class MakeOne, class Walk>
void TimeClasses(benchmark::State& state, std::size_t n, MakeOne&& make, Walk&& walk) {
  for (auto _ : state) {
    const auto start = TClock::now();
    std::vector<TClassPtr> made;
    made.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
      made.push_back(make(i));
      made.back()->AddToNamespace({});
    }
    Refuse(state, walk() == n);
    for (const auto& cls : made) cls->Delete({});
    state.SetIterationTime(Seconds(TClock::now() - start));
  }
  ReportTime(state, n);
}

void Subclasses(benchmark::State& state, std::size_t n) {
  InmemSubject subject;
  ICIMNamespace& ns = subject.Namespace();
  const auto base = ns.GetClass("Bench_Disk", {});
  TimeClasses(
      state, n,
      [&](std::size_t i) { return ns.AllocateClass("Sub" + std::to_string(i), base, {}); },
      [&] {
        std::size_t found = 0;
        base->EnumerateSubclasses([&](TClassPtr) { return ++found != 0; }, {});
        return found;
      });
}

void AssociationsOfOneClass(benchmark::State& state, std::size_t n) {
  InmemSubject subject;
  ICIMNamespace& ns = subject.Namespace();
  const auto disk = ns.GetClass("Bench_Disk", {});
  const auto link = ns.GetClass("Bench_Link", {});
  const auto size = [&] {
    std::size_t found = 0;
    disk->EnumerateAssociationClasses([&](TClassPtr) { return ++found != 0; }, "", "", {});
    return found - 1;  // Bench_Link itself
  };
  TimeClasses(
      state, n,
      [&](std::size_t i) { return ns.AllocateClass("Link" + std::to_string(i), link, {}); }, size);
}

// Association classes that nothing uses, of a class that is asked about.
void IdleAssociations(benchmark::State& state, std::size_t n) {
  const auto subject = Linked<InmemSubject>(1000);
  ICIMNamespace& ns = subject->Namespace();
  const auto link = ns.GetClass("Bench_Link", {});
  for (std::size_t i = 0; i < n; ++i)
    ns.AllocateClass("Idle" + std::to_string(i), link, {})->AddToNamespace({});
  for (int time = 0; time < 3; ++time) Refuse(state, subject->References(0) == 2 * kLinksOfEach);
  Time(state, [&](std::size_t place) { return subject->References(place); });
}

// Small namespaces of a dozen instances; beside the bytes of one of those, what all else that
// a namespace holds comes to.
void Namespaces(benchmark::State& state, std::size_t n) {
  constexpr std::size_t kInstances = 12;
  double empty = 0;
  double filled = 0;
  for (auto _ : state) {
    std::vector<std::unique_ptr<InmemSubject>> subjects(n);
    const Heap before = HeapNow();
    for (auto& subject : subjects) subject = std::make_unique<InmemSubject>();
    const Heap made = HeapNow();
    for (auto& subject : subjects)
      for (std::size_t i = 0; i < kInstances; ++i) subject->Make(DiskNumber(i));
    const Heap after = HeapNow();
    empty = static_cast<double>(made.bytes - before.bytes);
    filled = static_cast<double>(after.bytes - made.bytes);
    Refuse(state, subjects.back()->Enumerate() == kInstances);
  }
  ReportTime(state, n);
  state.counters["empty"] = empty / static_cast<double>(n);
  state.counters["bytes"] = filled / static_cast<double>(n * kInstances);
}

// What a host does with a namespace of its own.
void WorkWithANamespace() {
  const auto subject = Linked<InmemSubject>(20000);
  for (int time = 0; time < 20; ++time) benchmark::DoNotOptimize(subject->TotalSize());
  for (std::size_t i = 0; i < 100 * kAsked; ++i) {
    benchmark::DoNotOptimize(subject->GetAndRead(i % kAsked));
    benchmark::DoNotOptimize(subject->Associators(i % kAsked));
  }
}

// Four namespaces on so many threads, each on one of them.
void Threads(benchmark::State& state, std::size_t n) {
  constexpr std::size_t kNamespaces = 4;
  for (auto _ : state) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < n; ++i)
      threads.emplace_back([n] {
        for (std::size_t done = 0; done < kNamespaces / n; ++done) WorkWithANamespace();
      });
    for (auto& thread : threads) thread.join();
  }
  ReportTime(state, 1);
}

}  // namespace

void RegisterGrowthCases() {
  for (const std::size_t n : {2000u, 20000u, 200000u}) {
    Register("subclasses", "inmem", n, Subclasses)->UseManualTime()->Iterations(1);
    Register("associations", "inmem", n, AssociationsOfOneClass)->UseManualTime()->Iterations(1);
  }
  for (const std::size_t n : {10u, 1000u}) Register("idle", "inmem", n, IdleAssociations);
  Register("namespaces", "inmem", 10000, Namespaces)->Iterations(1);
  for (const std::size_t n : {1u, 2u})
    Register("threads", "inmem", n, Threads)->UseRealTime()->Iterations(3);
}

}  // namespace havbench

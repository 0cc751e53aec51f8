// Objects at rest: making, finding, reading, walking, dropping, and what they weigh.

#include <sqlite3.h>

#include "bench/Cases.h"
#include "bench/InmemSubject.h"
#include "bench/ProtobufSubject.h"
#include "bench/SqliteSubject.h"
#include "bench/StructSubject.h"

namespace havbench {
namespace {

std::uint64_t SizeAt(std::size_t place, std::size_t n) {
  return DiskNumber(Shuffled(place * 7919, n)).size;
}

template <class Subject>
void Make(benchmark::State& state, std::size_t n) {
  const Heap before = HeapNow();
  for (auto _ : state) {
    const auto subject = std::make_unique<Subject>();
    const auto start = TClock::now();
    for (std::size_t i = 0; i < n; ++i) subject->Make(DiskNumber(Shuffled(i, n)));
    state.SetIterationTime(Seconds(TClock::now() - start));
  }
  Report(state, n, before);
}

template <class Subject>
void Get(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  for (std::size_t i = 0; i < kAsked; ++i) Refuse(state, subject->Get(i));
  Time(state, [&](std::size_t place) { return subject->Get(place); });
}

template <class Subject>
void GetAndRead(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  for (std::size_t i = 0; i < kAsked; ++i) Refuse(state, subject->GetAndRead(i) == SizeAt(i, n));
  Time(state, [&](std::size_t place) { return subject->GetAndRead(place); });
}

template <class Subject>
void PropertyByName(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  for (std::size_t i = 0; i < kAsked; ++i) Refuse(state, subject->SizeOf(i) == SizeAt(i, n));
  Time(state, [&](std::size_t place) { return subject->SizeOf(place); });
}

template <class Subject>
void Enumerate(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  Refuse(state, subject->Enumerate() == n);
  const Heap before = HeapNow();
  for (auto _ : state) benchmark::DoNotOptimize(subject->Enumerate());
  Report(state, n, before);
}

template <class Subject>
void WalkAndRead(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < n; ++i) total += DiskNumber(i).size;
  Refuse(state, subject->TotalSize() == total);
  const Heap before = HeapNow();
  for (auto _ : state) benchmark::DoNotOptimize(subject->TotalSize());
  Report(state, n, before);
}

template <class Subject>
void Associators(benchmark::State& state, std::size_t links) {
  const auto subject = Linked<Subject>(links);
  for (int time = 0; time < 3; ++time)
    for (std::size_t i = 0; i < 8; ++i) Refuse(state, subject->Associators(i) == 2 * kLinksOfEach);
  Time(state, [&](std::size_t place) { return subject->Associators(place); });
}

template <class Subject>
void References(benchmark::State& state, std::size_t links) {
  const auto subject = Linked<Subject>(links);
  for (int time = 0; time < 3; ++time) Refuse(state, subject->References(0) == 2 * kLinksOfEach);
  Time(state, [&](std::size_t place) { return subject->References(place); });
}

template <class Subject>
void Memory(benchmark::State& state, std::size_t n) {
  double bytes = 0;
  for (auto _ : state) {
    const auto subject = std::make_unique<Subject>();
    const auto before =
        static_cast<double>(HeapNow().bytes) + static_cast<double>(sqlite3_memory_used());
    for (std::size_t i = 0; i < n; ++i) subject->Make(DiskNumber(Shuffled(i, n)));
    bytes =
        static_cast<double>(HeapNow().bytes) + static_cast<double>(sqlite3_memory_used()) - before;
  }
  state.counters["bytes"] = bytes / static_cast<double>(n);
}

template <class Subject>
void Drop(benchmark::State& state, std::size_t n) {
  for (auto _ : state) {
    auto subject = Filled<Subject>(n);
    const auto start = TClock::now();
    subject.reset();
    state.SetIterationTime(Seconds(TClock::now() - start));
  }
  ReportTime(state, n);
}

template <class Subject>
void RegisterObjects(std::size_t n) {
  const auto times = [n](benchmark::internal::Benchmark* made) {
    made->UseManualTime()->Iterations(n >= 500000 ? 1 : n >= 100000 ? 3 : 15);
  };
  times(Register("make", Subject::kName, n, Make<Subject>));
  Register("get", Subject::kName, n, Get<Subject>);
  Register("get-read", Subject::kName, n, GetAndRead<Subject>);
  Register("enumerate", Subject::kName, n, Enumerate<Subject>);
  Register("walk-read", Subject::kName, n, WalkAndRead<Subject>);
  times(Register("drop", Subject::kName, n, Drop<Subject>));
}

}  // namespace

void RegisterStoreCases() {
  for (const std::size_t n : {1000u, 20000u, 100000u, 500000u}) {
    RegisterObjects<InmemSubject>(n);
    RegisterObjects<StructSubject>(n);
    RegisterObjects<ProtobufSubject>(n);
    RegisterObjects<SqliteSubject>(n);
    Register("property", "inmem", n, PropertyByName<InmemSubject>);
    Register("property", "struct", n, PropertyByName<StructSubject>);
    Register("property", "protobuf", n, PropertyByName<ProtobufSubject>);
  }
  for (const std::size_t n : {1000u, 20000u, 100000u, 1000000u}) {
    Register("associators", "inmem", n, Associators<InmemSubject>);
    Register("associators", "sqlite", n, Associators<SqliteSubject>);
    Register("references", "inmem", n, References<InmemSubject>);
    Register("references", "sqlite", n, References<SqliteSubject>);
  }
  for (const std::size_t n : {20000u, 500000u}) {
    Register("memory", "inmem", n, Memory<InmemSubject>)->Iterations(1);
    Register("memory", "struct", n, Memory<StructSubject>)->Iterations(1);
    Register("memory", "protobuf", n, Memory<ProtobufSubject>)->Iterations(1);
    Register("memory", "sqlite", n, Memory<SqliteSubject>)->Iterations(1);
  }
}

}  // namespace havbench

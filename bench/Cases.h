// Cases: what the groups of benchmarks share. Names are work/subject/size; the number that
// counts is the counter "per_item", in seconds. Every case checks its answer before it times.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/Disk.h"
#include "bench/Heap.h"

namespace havbench {

using TClock = std::chrono::steady_clock;
using TCase = std::function<void(benchmark::State&, std::size_t)>;

constexpr std::size_t kAsked = 1024;  // look-ups go round this many objects
constexpr std::size_t kLinksOfEach = 4;

inline double Seconds(TClock::duration d) { return std::chrono::duration<double>(d).count(); }

inline void ReportTime(benchmark::State& state, std::size_t items) {
  const double all = static_cast<double>(items) * static_cast<double>(state.iterations());
  state.counters["per_item"] =
      benchmark::Counter(all, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Reports the time of `items` things done by each iteration, and what they allocated.
inline void Report(benchmark::State& state, std::size_t items, Heap before) {
  ReportTime(state, items);
  state.counters["allocations"] =
      static_cast<double>(HeapNow().calls - before.calls) /
      (static_cast<double>(items) * static_cast<double>(state.iterations()));
}

inline void Refuse(benchmark::State& state, bool right) {
  if (!right) state.SkipWithError("the answer is wrong");
}

// Asks round and round by place.
template <class Ask>
void Time(benchmark::State& state, Ask&& ask) {
  std::size_t place = 0;
  const Heap before = HeapNow();
  for (auto _ : state) {
    benchmark::DoNotOptimize(ask(place));
    place = (place + 1) % kAsked;
  }
  Report(state, 1, before);
}

template <class Subject>
std::unique_ptr<Subject> Filled(std::size_t n) {
  auto subject = std::make_unique<Subject>();
  for (std::size_t i = 0; i < n; ++i) subject->Make(DiskNumber(Shuffled(i, n)));
  std::vector<std::size_t> asked;
  for (std::size_t i = 0; i < kAsked; ++i) asked.push_back(Shuffled(i * 7919, n));
  subject->Prepare(asked);
  return subject;
}

// Disks in a ring, each linked to the next few: as many links as `links`, and every disk at
// the end of twice kLinksOfEach.
template <class Subject>
std::unique_ptr<Subject> Linked(std::size_t links) {
  const std::size_t disks = links / kLinksOfEach;
  auto subject = Filled<Subject>(disks);
  for (std::size_t i = 0; i < links; ++i) {
    const std::size_t from = Shuffled(i / kLinksOfEach, disks);
    subject->MakeLink(from, (from + 1 + i % kLinksOfEach) % disks);
  }
  return subject;
}

inline benchmark::internal::Benchmark* Register(const std::string& work, const char* subject,
                                                std::size_t n, const TCase& run) {
  const std::string name = work + "/" + subject + "/" + std::to_string(n);
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [run, n](benchmark::State& state) { run(state, n); })
      ->Unit(benchmark::kMicrosecond);
}

void RegisterSchema();
void RegisterLiveCases();
void RegisterStoreCases();
void RegisterGrowthCases();
void RegisterLoadCases();
void RegisterOtherCases();

}  // namespace havbench

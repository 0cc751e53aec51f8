// The cases. Names are work/subject/size; the number that counts is the counter "per_item", in
// seconds. Every case checks its answer before it times.

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sqlite3.h>
#include <sys/resource.h>

#include "bench/Disk.h"
#include "bench/Heap.h"
#include "bench/InmemSubject.h"
#include "bench/ProtobufSubject.h"
#include "bench/SqliteSubject.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "support/Plugin.h"

namespace havbench {
namespace {

using NORVHAV20::ICIMClass;
using NORVHAV20::ICIMInstance;
using NORVHAV20::ICIMNamespace;
using NORVHAV20::TCIMValue;
using TClock = std::chrono::steady_clock;

constexpr std::size_t kAsked = 1024;  // look-ups go round this many objects
constexpr std::size_t kLinksOfEach = 4;

double Seconds(TClock::duration d) { return std::chrono::duration<double>(d).count(); }

// Reports the time of `items` things done by each iteration, and what they allocated.
void Report(benchmark::State& state, std::size_t items, Heap before) {
  const double all = static_cast<double>(items) * static_cast<double>(state.iterations());
  state.counters["per_item"] =
      benchmark::Counter(all, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.counters["allocations"] = static_cast<double>(HeapNow().calls - before.calls) / all;
}

void Refuse(benchmark::State& state, bool right) {
  if (!right) state.SkipWithError("the answer is wrong");
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
  std::size_t place = 0;
  const Heap before = HeapNow();
  for (auto _ : state) {
    benchmark::DoNotOptimize(subject->Get(place));
    place = (place + 1) % kAsked;
  }
  Report(state, 1, before);
}

template <class Subject>
void PropertyByName(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  for (std::size_t i = 0; i < kAsked; ++i)
    Refuse(state, subject->SizeOf(i) == DiskNumber(Shuffled(i * 7919, n)).size);
  std::size_t place = 0;
  const Heap before = HeapNow();
  for (auto _ : state) {
    benchmark::DoNotOptimize(subject->SizeOf(place));
    place = (place + 1) % kAsked;
  }
  Report(state, 1, before);
}

template <class Subject>
void Enumerate(benchmark::State& state, std::size_t n) {
  const auto subject = Filled<Subject>(n);
  Refuse(state, subject->Enumerate() == n);
  const Heap before = HeapNow();
  for (auto _ : state) benchmark::DoNotOptimize(subject->Enumerate());
  Report(state, n, before);
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

template <class Subject>
void Associators(benchmark::State& state, std::size_t links) {
  const auto subject = Linked<Subject>(links);
  for (int time = 0; time < 3; ++time)
    for (std::size_t i = 0; i < 8; ++i) Refuse(state, subject->Associators(i) == 2 * kLinksOfEach);
  std::size_t place = 0;
  const Heap before = HeapNow();
  for (auto _ : state) {
    benchmark::DoNotOptimize(subject->Associators(place));
    place = (place + 1) % kAsked;
  }
  Report(state, 1, before);
}

void References(benchmark::State& state, std::size_t links) {
  const auto subject = Linked<InmemSubject>(links);
  for (int time = 0; time < 3; ++time) Refuse(state, subject->References(0) == 2 * kLinksOfEach);
  std::size_t place = 0;
  const Heap before = HeapNow();
  for (auto _ : state) {
    benchmark::DoNotOptimize(subject->References(place));
    place = (place + 1) % kAsked;
  }
  Report(state, 1, before);
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

// A class of 60 properties of which 5 are set: what an unset one costs.
void WideClass(benchmark::State& state) {
  constexpr std::size_t kInstances = 10000;
  const auto bytesWith = [&](int declared) {
    const auto ns = havtest::Provider()->AllocateNamespace({}, false, "");
    const auto cls = ns->AllocateClass("Bench_Wide", {}, {});
    for (int i = 0; i < declared; ++i)
      Declare(*ns, *cls, ("Property" + std::to_string(i)).c_str(),
              TCIMValue::Null(NORVHAV20::kCIMUInt32));
    std::vector<boost::shared_ptr<ICIMInstance>> made;
    made.reserve(kInstances + 1);
    const auto make = [&] {
      const auto instance = cls->AllocateInstance({});
      for (int i = 0; i < 5; ++i)
        instance->SetPropertyValue("Property" + std::to_string(i), std::uint32_t{7}, {});
      made.push_back(instance);
    };
    make();  // what stands once per class is there from here on
    const Heap before = HeapNow();
    for (std::size_t i = 0; i < kInstances; ++i) make();
    return static_cast<double>(HeapNow().bytes - before.bytes) / kInstances;
  };
  double bytes = 0;
  for (auto _ : state) bytes = (bytesWith(60) - bytesWith(5)) / 55;
  state.counters["bytes"] = bytes;
}

void Drop(benchmark::State& state, std::size_t n) {
  for (auto _ : state) {
    auto subject = Filled<InmemSubject>(n);
    const auto start = TClock::now();
    subject.reset();
    state.SetIterationTime(Seconds(TClock::now() - start));
  }
  state.counters["per_item"] =
      benchmark::Counter(static_cast<double>(n) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void Namespaces(benchmark::State& state, std::size_t n) {
  for (auto _ : state) {
    std::vector<std::unique_ptr<InmemSubject>> subjects;
    for (std::size_t i = 0; i < n; ++i) {
      subjects.push_back(std::make_unique<InmemSubject>());
      subjects.back()->Make(DiskNumber(i));
    }
    Refuse(state, subjects.back()->Enumerate() == 1);
  }
  Report(state, n, HeapNow());
}

void DisplayText(benchmark::State& state, bool valueMap) {
  const auto ns = havtest::Provider()->AllocateNamespace({}, false, "");
  const auto cls = ns->AllocateClass("Bench_Display", {}, {});
  const auto decl = cls->AllocatePropertyDecl("Value", TCIMValue::Null(NORVHAV20::kCIMUInt64), {});
  const auto qualify = [&](const char* name, const TCIMValue& value) {
    const auto declared = ns->AllocateQualifierDecl(
        name, TCIMValue::Null(value.GetType()), NORVHAV20::ICIMQualifierDecl::kScopeAny,
        NORVHAV20::ICIMQualifierDecl::kFlavorOverridable, {});
    decl->AllocateQualifier(declared, value, NORVHAV20::TOptions());
  };
  if (valueMap) {
    std::vector<TCIMValue> values;
    std::vector<TCIMValue> map;
    for (int i = 0; i < 50; ++i) {
      values.emplace_back("Text " + std::to_string(i));
      map.emplace_back(std::to_string(2 * i));
    }
    qualify("Values", TCIMValue(NORVHAV20::kCIMString, values));
    qualify("ValueMap", TCIMValue(NORVHAV20::kCIMString, map));
  } else {
    qualify("UNITS", TCIMValue("Bytes"));
    qualify("DISPLAYFIXEDUNITS", TCIMValue::Null(NORVHAV20::kCIMString));
    qualify("ABBREVIATEUNITS", TCIMValue(true));
  }
  decl->AddToClass({});
  const auto instance = cls->AllocateInstance({});
  instance->SetPropertyValue("Value", std::uint64_t{valueMap ? 98u : 1610612736u}, {});
  const auto slot = instance->GetProperty("Value", {});
  Refuse(state, slot->GetDisplayValue({}) == (valueMap ? "Text 49" : "1.5 GB"));
  const Heap before = HeapNow();
  for (auto _ : state) benchmark::DoNotOptimize(slot->GetDisplayValue({}));
  Report(state, 1, before);
}

void Schema(benchmark::State& state) {
  std::size_t classes = 0;
  for (auto _ : state) {
    hav::mof::TMofFolderSource source({HAV_CIM_SCHEMA});
    hav::mof::TMofReport report;
    hav::mof::TMofLoader loader(*havtest::Provider(), source);
    const auto start = TClock::now();
    const auto ns = loader.Load({"cim_schema_2.49.0.mof"}, report);
    state.SetIterationTime(Seconds(TClock::now() - start));
    if (!ns) return state.SkipWithError("the schema does not load");
    classes = report.classes;
  }
  Refuse(state, classes == 1631);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["resident"] = static_cast<double>(usage.ru_maxrss) * 1024;
  state.counters["per_item"] =
      benchmark::Counter(static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

using TCase = std::function<void(benchmark::State&, std::size_t)>;

void Register(const std::string& work, const char* subject, std::size_t n, const TCase& run,
              bool manual = false) {
  const std::string name = work + "/" + subject + "/" + std::to_string(n);
  auto* made = benchmark::RegisterBenchmark(name.c_str(),
                                            [run, n](benchmark::State& state) { run(state, n); });
  made->Unit(benchmark::kMicrosecond);
  if (manual) made->UseManualTime()->Iterations(n >= 500000 ? 1 : 3);
}

void RegisterAll() {
  // First, while the process is small: it tells the peak of its memory.
  benchmark::RegisterBenchmark("schema/inmem/1631", Schema)->UseManualTime()->Iterations(5);
  for (const std::size_t n : {1000u, 20000u, 100000u, 1000000u}) {
    Register("make", "inmem", n, Make<InmemSubject>, true);
    Register("make", "protobuf", n, Make<ProtobufSubject>, true);
    Register("make", "sqlite", n, Make<SqliteSubject>, true);
    Register("get", "inmem", n, Get<InmemSubject>);
    Register("get", "protobuf", n, Get<ProtobufSubject>);
    Register("get", "sqlite", n, Get<SqliteSubject>);
    Register("property", "inmem", n, PropertyByName<InmemSubject>);
    Register("property", "protobuf", n, PropertyByName<ProtobufSubject>);
    Register("enumerate", "inmem", n, Enumerate<InmemSubject>);
    Register("enumerate", "protobuf", n, Enumerate<ProtobufSubject>);
    Register("enumerate", "sqlite", n, Enumerate<SqliteSubject>);
    Register("associators", "inmem", n, Associators<InmemSubject>);
    Register("associators", "sqlite", n, Associators<SqliteSubject>);
    Register("references", "inmem", n, References);
    Register("drop", "inmem", n, Drop, true);
  }
  for (const std::size_t n : {20000u}) {
    const auto once = [&](const char* subject, const TCase& run) {
      const std::string name = std::string("memory/") + subject + "/" + std::to_string(n);
      benchmark::RegisterBenchmark(name.c_str(), [run, n](benchmark::State& state) {
        run(state, n);
      })->Iterations(1);
    };
    once("inmem", Memory<InmemSubject>);
    once("protobuf", Memory<ProtobufSubject>);
    once("sqlite", Memory<SqliteSubject>);
  }
  benchmark::RegisterBenchmark("wide/inmem/60", WideClass)->Iterations(1);
  benchmark::RegisterBenchmark("namespaces/inmem/10000", [](benchmark::State& state) {
    Namespaces(state, 10000);
  })->Iterations(1);
  benchmark::RegisterBenchmark("display/inmem/valuemap50", DisplayText, true);
  benchmark::RegisterBenchmark("display/inmem/quantity", DisplayText, false);
}

}  // namespace
}  // namespace havbench

int main(int argc, char** argv) {
  struct Quiet : NORVHAV20::ILogger {
    void Log(int, const std::string&) override {}
  } quiet;
  NORVHAV20::TRootObject::SetCoreLogger(&quiet);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  havbench::RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

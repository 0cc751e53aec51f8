// What else a host sees of speed and size: wide classes, display text, a schema read from files.

#include <sys/resource.h>

#include "bench/Cases.h"
#include "bench/InmemSubject.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "support/Plugin.h"

namespace havbench {
namespace {

using NORVHAV20::ICIMInstance;
using NORVHAV20::TCIMValue;

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

// The text of one value: of a scaled quantity, or of the last entry of a value map.
void DisplayText(benchmark::State& state, std::size_t entries) {
  const auto ns = havtest::Provider()->AllocateNamespace({}, false, "");
  const auto cls = ns->AllocateClass("Bench_Display", {}, {});
  const auto decl = cls->AllocatePropertyDecl("Value", TCIMValue::Null(NORVHAV20::kCIMUInt64), {});
  const auto qualify = [&](const char* name, const TCIMValue& value) {
    const auto declared = ns->AllocateQualifierDecl(
        name, TCIMValue::Null(value.GetType()), NORVHAV20::ICIMQualifierDecl::kScopeAny,
        NORVHAV20::ICIMQualifierDecl::kFlavorOverridable, {});
    decl->AllocateQualifier(declared, value, NORVHAV20::TOptions());
  };
  if (entries > 0) {
    std::vector<TCIMValue> values;
    std::vector<TCIMValue> map;
    for (std::size_t i = 0; i < entries; ++i) {
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
  instance->SetPropertyValue("Value", std::uint64_t{entries > 0 ? 2 * (entries - 1) : 1610612736u},
                             {});
  const auto slot = instance->GetProperty("Value", {});
  const std::string text = entries > 0 ? "Text " + std::to_string(entries - 1) : "1.5 GB";
  Refuse(state, slot->GetDisplayValue({}) == text);
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
  ReportTime(state, 1);
}

}  // namespace

void RegisterSchema() {
  benchmark::RegisterBenchmark("schema/inmem/1631", Schema)->UseManualTime()->Iterations(5);
}

void RegisterOtherCases() {
  benchmark::RegisterBenchmark("wide/inmem/60", WideClass)->Iterations(1);
  for (const std::size_t entries : {50u, 10000u})
    Register("display-valuemap", "inmem", entries, DisplayText);
  Register("display-quantity", "inmem", 0, DisplayText);
}

}  // namespace havbench

// A namespace from MOF text, beside the same objects made through the contract.

#include "bench/Cases.h"
#include "bench/Loading.h"

namespace havbench {
namespace {

using TNamespace = boost::shared_ptr<NORVHAV20::ICIMNamespace>;

// Times `make`, and tells what it leaves in memory, each per item, and the most that it took. One
// goes before that is not timed: the case that ran last may have given its memory back to the
// system, and the first to come would pay for getting it again.
template <class Make, class Count>
void Fill(benchmark::State& state, std::size_t n, Make&& make, Count&& count) {
  double bytes = 0;
  double peak = 0;
  make();
  for (auto _ : state) {
    const auto before = HeapNow().bytes;
    ForgetHeapPeak();
    const auto start = TClock::now();
    const TNamespace made = make();
    state.SetIterationTime(Seconds(TClock::now() - start));
    bytes = static_cast<double>(HeapNow().bytes - before) / static_cast<double>(n);
    peak = static_cast<double>(HeapPeak() - before) / static_cast<double>(n);
    if (!made || count(*made) != n) return state.SkipWithError("the answer is wrong");
  }
  state.counters["bytes"] = bytes;
  state.counters["peak"] = peak;
  ReportTime(state, n);
}

template <Loading kind>
void Load(benchmark::State& state, std::size_t n) {
  const auto text = LoadingText(kind, n);
  Fill(
      state, n, [&] { return LoadText(text); }, CountObjects);
}

template <Loading kind>
void Make(benchmark::State& state, std::size_t n) {
  Fill(
      state, n, [&] { return MakeObjects(kind, n); }, CountObjects);
}

void LoadClasses(benchmark::State& state, std::size_t n) {
  const auto text = ClassesText(n);
  Fill(
      state, n, [&] { return LoadText(text); }, CountClasses);
}

void MakeSame(benchmark::State& state, std::size_t n) {
  Fill(
      state, n, [&] { return MakeClasses(n); }, CountClasses);
}

void RegisterBoth(const std::string& work, std::size_t n, const TCase& load, const TCase& make) {
  const int times = n >= 500000 ? 1 : n >= 20000 ? 3 : 50;
  Register(work, "made", n, make)->UseManualTime()->Iterations(times);
  Register(work, "loaded", n, load)->UseManualTime()->Iterations(times);
}

}  // namespace

void RegisterLoadCases() {
  for (const std::size_t n : {1000u, 20000u, 100000u, 1000000u}) {
    RegisterBoth("load", n, Load<Loading::kThings>, Make<Loading::kThings>);
    RegisterBoth("load-links", n, Load<Loading::kLinksLast>, Make<Loading::kLinksLast>);
    RegisterBoth("load-links-first", n, Load<Loading::kLinksFirst>, Make<Loading::kLinksFirst>);
  }
  for (const std::size_t n : {1000u, 10000u, 100000u})
    RegisterBoth("load-classes", n, LoadClasses, MakeSame);
}

}  // namespace havbench

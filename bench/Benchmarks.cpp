// All cases, in the order in which they are reported.

#include "bench/Cases.h"
#include "havcore/havcore.h"

int main(int argc, char** argv) {
  struct Quiet : NORVHAV20::ILogger {
    void Log(int, const std::string&) override {}
  } quiet;
  NORVHAV20::TRootObject::SetCoreLogger(&quiet);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  havbench::RegisterSchema();  // first, while the process is small: it tells the peak of its memory
  havbench::RegisterLiveCases();
  havbench::RegisterStoreCases();
  havbench::RegisterGrowthCases();
  havbench::RegisterLoadCases();
  havbench::RegisterOtherCases();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

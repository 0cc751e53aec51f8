// The plug-in beside the model, operation by operation, over random programs. HAV_ORACLE_SEED and
// HAV_ORACLE_PROGRAMS say where to begin and how many programs to run; with HAV_ORACLE_TRACE the
// operations are shown with what both sides answered.
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/oracle/TProgram.h"

namespace havtest::oracle {
namespace {

std::uint64_t Setting(const char* name, std::uint64_t otherwise) {
  const char* const said = std::getenv(name);
  return said != nullptr ? std::stoull(said) : otherwise;
}

void ExpectSameAnswers(std::size_t programs, std::size_t length, EMemory memory) {
  const auto first = Setting("HAV_ORACLE_SEED", 1);
  programs = Setting("HAV_ORACLE_PROGRAMS", programs);
  const bool show = std::getenv("HAV_ORACLE_TRACE") != nullptr;
  for (std::uint64_t seed = first; seed < first + programs; ++seed) {
    const auto program = RandomProgram(seed, length);
    std::vector<std::string> trace;
    const auto difference = Compare(program, memory, show ? &trace : nullptr);
    for (const auto& line : trace) std::cout << line << '\n';
    if (difference.at == program.size()) continue;
    // Said before the search for the smallest program, which takes its time.
    ADD_FAILURE() << "seed " << seed << " differs";
    FAIL() << Explain(program, memory);
  }
  std::cout << programs * length << " operations compared\n";
}

TEST(Oracle, AnswersEveryOperationAsThePlugInDoes) {
  ExpectSameAnswers(500, 400, EMemory::kEnough);
}

TEST(Oracle, NotesNoTraceOfAnOperationThatLackedMemoryOnce) {
  const auto before = FailedAllocations();
  ExpectSameAnswers(60, 200, EMemory::kFailsOnce);
  std::cout << FailedAllocations() - before << " allocations failed\n";
  EXPECT_GT(FailedAllocations(), before);
}

TEST(Oracle, NotesNoTraceOfAnOperationThatLackedMemoryFromThenOn) {
  const auto before = FailedAllocations();
  ExpectSameAnswers(60, 200, EMemory::kFailsFromThenOn);
  std::cout << FailedAllocations() - before << " allocations failed\n";
  EXPECT_GT(FailedAllocations(), before);
}

TEST(Oracle, NotesNoTraceOfAnOperationWhoseLineTheLogRefused) {
  const auto before = FailedLogLines();
  ExpectSameAnswers(250, 200, EMemory::kLogThrows);
  std::cout << FailedLogLines() - before << " lines of the log refused\n";
  EXPECT_GT(FailedLogLines(), before);
}

}  // namespace
}  // namespace havtest::oracle

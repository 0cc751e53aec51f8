// The main program of every suite of an instrumented build.
//
//   SUITE --record FILE   runs every test and writes a line for each: its name, the microseconds
//                         of processor time that it took, and the numbers of the places that it
//                         reached, separated by tabs
//   SUITE --serve         answers each line of standard input, `NUMBER SECONDS TEST:LIMIT...` with
//                         limits in microseconds: runs these tests, in that order, with that
//                         change switched on until one fails. The answer is `survived`, or
//                         `failed`, `crashed` or `endless` and the test.
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/mutants/Mutants.h"

namespace {

using hav::mutants::hav_mutant;
using hav::mutants::hav_reached;
using hav::mutants::kMost;

constexpr int kFailed = 77;
constexpr rlim_t kMemory = rlim_t{6} << 30;

class TRecorder : public testing::EmptyTestEventListener {
 public:
  explicit TRecorder(const char* file) : m_out(file) {}

  void OnTestStart(const testing::TestInfo&) override { m_begin = std::clock(); }
  void OnTestEnd(const testing::TestInfo& test) override {
    m_out << test.test_suite_name() << '.' << test.name() << '\t'
          << (std::clock() - m_begin) * 1000000 / CLOCKS_PER_SEC;
    for (int number = 0; number < kMost; ++number)
      if (hav_reached[number]) m_out << '\t' << number;
    m_out << '\n';
    std::memset(hav_reached, 0, kMost);
  }

 private:
  std::ofstream m_out;
  std::clock_t m_begin = 0;
};

// In the child that has the change: the first failure is enough.
class TStopper : public testing::EmptyTestEventListener {
 public:
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (result.failed()) _exit(kFailed);
  }
};

struct TTest {
  std::string name;
  long limit;
};

void Limit(long microseconds) {
  const itimerval limit{{0, 0}, {microseconds / 1000000, microseconds % 1000000}};
  setitimer(ITIMER_PROF, &limit, nullptr);
}

[[noreturn]] void RunWith(int mutant, unsigned seconds, const std::vector<TTest>& tests, int* at) {
  const int nothing = open("/dev/null", O_RDWR);
  for (const int fd : {0, 1, 2}) dup2(nothing, fd);
  const rlimit memory{kMemory, kMemory};
  setrlimit(RLIMIT_AS, &memory);
  const rlimit core{0, 0};
  setrlimit(RLIMIT_CORE, &core);
  alarm(seconds);
  auto& listeners = testing::UnitTest::GetInstance()->listeners();
  delete listeners.Release(listeners.default_result_printer());
  listeners.Append(new TStopper);
  hav_mutant = mutant;
  for (*at = 0; *at < static_cast<int>(tests.size()); ++*at) {
    const TTest& test = tests[static_cast<std::size_t>(*at)];
    Limit(test.limit);
    testing::GTEST_FLAG(filter) = test.name;
    if (RUN_ALL_TESTS() != 0) _exit(kFailed);
  }
  _exit(0);
}

std::string Verdict(int status) {
  if (WIFEXITED(status)) {
    if (WEXITSTATUS(status) == 0) return "survived";
    return WEXITSTATUS(status) == kFailed ? "failed" : "crashed";
  }
  const int signal = WTERMSIG(status);
  return signal == SIGPROF || signal == SIGALRM ? "endless" : "crashed";
}

int Serve() {
  auto* at = static_cast<int*>(
      mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    int mutant = 0;
    unsigned seconds = 0;
    words >> mutant >> seconds;
    std::vector<TTest> tests;
    for (std::string word; words >> word;) {
      const auto colon = word.rfind(':');
      tests.push_back({word.substr(0, colon), std::stol(word.substr(colon + 1))});
    }
    *at = 0;
    const pid_t child = fork();
    if (child == 0) RunWith(mutant, seconds, tests, at);
    int status = 0;
    waitpid(child, &status, 0);
    const std::string verdict = Verdict(status);
    std::cout << verdict;
    if (verdict != "survived" && *at < static_cast<int>(tests.size()))
      std::cout << ' ' << tests[static_cast<std::size_t>(*at)].name;
    std::cout << std::endl;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const std::string mode = argc > 1 ? argv[1] : "";
  if (mode == "--serve") return Serve();
  if (mode == "--record" && argc > 2)
    testing::UnitTest::GetInstance()->listeners().Append(new TRecorder(argv[2]));
  return RUN_ALL_TESTS();
}

// Bytes as a program over the contract, eight for each operation: the first says which, the others
// what it is done to. The plug-in and the model of its rules have to answer the same.
#include <cstdint>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "tests/oracle/TProgram.h"

namespace {

using namespace havtest::oracle;

constexpr std::size_t kLongest = 300;

TProgram ReadProgram(havfuzz::TInput& input) {
  TProgram program;
  while (!input.IsAtEnd() && program.size() < kLongest) {
    TOperation operation{static_cast<EOp>(input.Byte() % static_cast<unsigned>(EOp::kCount)), {}};
    for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
      auto& argument = operation.arguments[i];
      // The last ones are seldom looked at.
      argument = i < 7 ? input.Byte() : operation.arguments[i - 4] / 3;
      // A value's kind is in the lowest bits, and what it holds in those above.
      argument |= argument << 8U;
    }
    program.push_back(operation);
  }
  return program;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  havfuzz::TInput input(data, size);
  const auto program = ReadProgram(input);
  if (Compare(program).at < program.size())
    havfuzz::Fail("the plug-in and the model differ:\n", Explain(program, EMemory::kEnough));
  return 0;
}

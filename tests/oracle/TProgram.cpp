#include "tests/oracle/TProgram.h"

#include <algorithm>
#include <random>

namespace havtest::oracle {

namespace {

// How often an operation comes while the schema is made, and afterwards.
struct TWeight {
  EOp op;
  unsigned early, late;
};

// A collector's way: classes with a key, associations between them, instances and links; then
// questions, with changes between them.
constexpr TWeight kOrderly[] = {
    {EOp::kMakeClass, 30, 1},        {EOp::kMakeAssociation, 20, 1},
    {EOp::kMakeInstance, 0, 30},     {EOp::kMakeLink, 0, 40},
    {EOp::kDeclareProperty, 2, 1},   {EOp::kAddClass, 1, 1},
    {EOp::kSetProperty, 0, 12},      {EOp::kAddInstance, 0, 8},
    {EOp::kDeleteInstance, 0, 5},    {EOp::kStoreIn, 0, 1},
    {EOp::kGetProperty, 0, 4},       {EOp::kSetSlot, 0, 3},
    {EOp::kSetDefault, 0, 2},        {EOp::kClearInstances, 0, 1},
    {EOp::kFindInstance, 0, 3},      {EOp::kEnumerate, 0, 10},
    {EOp::kReferences, 0, 40},       {EOp::kAssociators, 0, 40},
    {EOp::kClassAssociations, 1, 5}, {EOp::kSetSwitch, 0, 2},
    {EOp::kDeleteClass, 0, 1},       {EOp::kDump, 0, 2},
    {EOp::kCopyNamespace, 0, 1},     {EOp::kWrapInstance, 0, 4},
    {EOp::kWrapClass, 2, 0},
};

// Anything in any order.
constexpr TWeight kUnruly[] = {
    {EOp::kNewNamespace, 1, 1},
    {EOp::kCopyNamespace, 1, 1},
    {EOp::kDropNamespace, 0, 1},
    {EOp::kAllocateQualifierDecl, 12, 1},
    {EOp::kGetQualifierDecl, 1, 1},
    {EOp::kAllocateClass, 22, 4},
    {EOp::kGetClass, 1, 2},
    {EOp::kQualifyClass, 16, 3},
    {EOp::kQualifyDecl, 4, 2},
    {EOp::kChangeQualifier, 1, 1},
    {EOp::kDeclareProperty, 24, 3},
    {EOp::kDeclareReference, 16, 3},
    {EOp::kDeclareMethod, 4, 1},
    {EOp::kAddPropertyTo, 2, 1},
    {EOp::kRemoveProperty, 1, 1},
    {EOp::kRemoveMethod, 1, 1},
    {EOp::kSetDefault, 2, 4},
    {EOp::kAddClass, 22, 5},
    {EOp::kDeleteClass, 1, 2},
    {EOp::kWrapClass, 3, 1},
    {EOp::kLinkClasses, 2, 2},
    {EOp::kPassNothing, 1, 2},
    {EOp::kAllocateInstance, 4, 24},
    {EOp::kWrapInstance, 0, 4},
    {EOp::kSetProperty, 4, 50},
    {EOp::kAddInstance, 2, 28},
    {EOp::kDeleteInstance, 0, 6},
    {EOp::kStoreIn, 0, 3},
    {EOp::kRemoveFrom, 0, 2},
    {EOp::kGetProperty, 1, 8},
    {EOp::kSetSlot, 1, 8},
    {EOp::kSetPrevious, 0, 4},
    {EOp::kClearPrevious, 0, 2},
    {EOp::kCompareSlots, 0, 2},
    {EOp::kClearInstances, 0, 1},
    {EOp::kFindInstance, 0, 4},
    {EOp::kEnumerate, 0, 6},
    {EOp::kReferences, 0, 16},
    {EOp::kAssociators, 0, 16},
    {EOp::kClassAssociations, 2, 4},
    {EOp::kCompareClasses, 1, 2},
    {EOp::kSetSwitch, 0, 2},
    {EOp::kMakeClass, 14, 1},
    {EOp::kMakeAssociation, 8, 1},
    {EOp::kMakeInstance, 1, 22},
    {EOp::kMakeLink, 0, 40},
    {EOp::kDump, 0, 1},
};

template <std::size_t n>
EOp Choose(const TWeight (&weights)[n], std::uint64_t number, bool early) {
  unsigned total = 0;
  for (const TWeight& weight : weights) total += early ? weight.early : weight.late;
  auto left = static_cast<unsigned>(number % total);
  for (const TWeight& weight : weights) {
    const unsigned share = early ? weight.early : weight.late;
    if (left < share) return weight.op;
    left -= share;
  }
  return EOp::kDump;
}

bool Differs(const TProgram& program, EMemory memory) {
  return Compare(program, memory).at < program.size();
}

bool RemoveOperations(TProgram& program, EMemory memory) {
  const std::size_t before = program.size();
  for (std::size_t chunk = std::max<std::size_t>(before / 2, 1); chunk > 0; chunk /= 2) {
    for (std::size_t at = 0; at + chunk <= program.size();) {
      TProgram shorter = program;
      const auto begin = shorter.begin() + static_cast<std::ptrdiff_t>(at);
      shorter.erase(begin, begin + static_cast<std::ptrdiff_t>(chunk));
      if (Differs(shorter, memory))
        program.swap(shorter);
      else
        at += chunk;
    }
  }
  return program.size() < before;
}

// What stands first needs no operations before it that only count up to it.
bool SmallerArguments(TProgram& program, EMemory memory) {
  bool changed = false;
  for (TOperation& operation : program) {
    for (unsigned& argument : operation.arguments) {
      const unsigned given = argument;
      for (unsigned smaller = 0; smaller < std::min(given, 12u); ++smaller) {
        argument = smaller;
        if (Differs(program, memory)) break;
        argument = given;
      }
      changed = changed || argument != given;
    }
  }
  return changed;
}

}  // namespace

TProgram RandomProgram(std::uint64_t seed, std::size_t length) {
  std::mt19937_64 random(seed);
  TProgram program;
  const bool orderly = random() % 3 != 0;
  const std::size_t schema =
      orderly ? length / 20 + random() % 20 : length / 3 + random() % (length / 3 + 1);
  for (std::size_t i = 0; i < length; ++i) {
    const auto number = random();
    TOperation operation{
        orderly ? Choose(kOrderly, number, i < schema) : Choose(kUnruly, number, i < schema), {}};
    for (unsigned& argument : operation.arguments) argument = static_cast<unsigned>(random() >> 33);
    // First some classes to associate.
    if (orderly && operation.op == EOp::kMakeAssociation && i < schema / 2)
      operation.op = EOp::kMakeClass;
    program.push_back(operation);
  }
  return program;
}

TProgram Minimal(TProgram program, EMemory memory) {
  program.resize(std::min(program.size(), Compare(program, memory).at + 1));
  while (RemoveOperations(program, memory) || SmallerArguments(program, memory)) {
  }
  return program;
}

std::string Explain(const TProgram& program, EMemory memory) {
  const TProgram minimal = Minimal(program, memory);
  std::vector<std::string> trace;
  const TDifference difference = Compare(minimal, memory, &trace);
  std::string text;
  for (const auto& line : trace) text += line + '\n';
  return text + "plug-in: " + difference.plugin + "\nmodel:   " + difference.model + '\n';
}

}  // namespace havtest::oracle

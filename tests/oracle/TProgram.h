// TProgram: a sequence of operations on the contract, each with a few numbers for what it is done
// to. Numbers count modulo what there is, so that any subsequence is a program too and a failing
// one can be cut down.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace havtest::oracle {

enum class EOp : unsigned {
  kNewNamespace,
  kCopyNamespace,
  kDropNamespace,
  kAllocateQualifierDecl,
  kGetQualifierDecl,
  kAllocateClass,
  kGetClass,
  kQualifyClass,
  kQualifyDecl,
  kChangeQualifier,
  kDeclareProperty,
  kDeclareReference,
  kDeclareMethod,
  kAddPropertyTo,
  kRemoveProperty,
  kRemoveMethod,
  kSetDefault,
  kAddClass,
  kWrapClass,
  kDeleteClass,
  kLinkClasses,
  kPassNothing,
  kAllocateInstance,
  kWrapInstance,
  kSetProperty,
  kAddInstance,
  kDeleteInstance,
  kStoreIn,
  kRemoveFrom,
  kGetProperty,
  kSetSlot,
  kSetPrevious,
  kClearPrevious,
  kCompareSlots,
  kClearInstances,
  kFindInstance,
  kEnumerate,
  kReferences,
  kAssociators,
  kClassAssociations,
  kCompareClasses,
  kSetSwitch,
  // Several operations at once, so that there is something to ask about.
  kMakeClass,
  kMakeAssociation,
  kMakeInstance,
  kMakeLink,
  kDump,
  kCount
};

struct TOperation {
  EOp op;
  std::array<unsigned, 10> arguments;
};

using TProgram = std::vector<TOperation>;

// A program of `length` operations; the same seed gives the same one.
TProgram RandomProgram(std::uint64_t seed, std::size_t length);

struct TDifference {
  // The first operation on which the two sides differ; the program's length for none.
  std::size_t at;
  std::string plugin, model;
};

// What is done to the plug-in's side: nothing; or each operation is tried with its first
// allocation failing, its second and so on, until it gets through; the failure is one, or all
// allocations fail from then on. Or there is memory enough, and the log throws at its first line,
// its second and so on. What was tried in vain must have changed nothing.
enum class EMemory { kEnough, kFailsOnce, kFailsFromThenOn, kLogThrows };

// Runs the program on both sides. `trace` gets a line for each operation when it is there.
TDifference Compare(const TProgram& program, EMemory memory = EMemory::kEnough,
                    std::vector<std::string>* trace = nullptr);

// The program cut down to what still makes the two sides differ.
TProgram Minimal(TProgram program, EMemory memory);

// What a failed comparison shows: the minimal program, operation by operation, and the two
// answers.
std::string Explain(const TProgram& program, EMemory memory);

// How many allocations, and lines of the log, have been made to fail so far.
std::size_t FailedAllocations();
std::size_t FailedLogLines();

}  // namespace havtest::oracle

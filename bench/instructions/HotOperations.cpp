// Does one hot operation a number of times, after the same preparation whatever the number:
// what two runs differ by is what the operation costs.
//
//   hav_instructions OPERATION COUNT
//   hav_instructions --list

#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "bench/InmemSubject.h"

namespace {

using namespace havbench;
using namespace NORVHAV20;

constexpr std::size_t kDisks = 500;
constexpr std::size_t kSpare = 2;  // more, for changes to use
constexpr std::size_t kEntries = 200;

// A slot whose display text is that of the last of many entries.
boost::shared_ptr<ICIMProperty> ShownByValueMap(ICIMNamespace& ns) {
  std::vector<TCIMValue> texts;
  for (std::size_t i = 0; i < kEntries; ++i) texts.emplace_back("Text " + std::to_string(i));
  const TCIMValue values(kCIMString, texts);
  const auto cls = ns.AllocateClass("Bench_Display", {}, {});
  Declare(ns, *cls, "Name", TCIMValue::Null(kCIMString), true);
  const auto decl = cls->AllocatePropertyDecl("Value", TCIMValue(std::uint32_t{kEntries - 1}), {});
  decl->AllocateQualifier(
      ns.AllocateQualifierDecl("Values", TCIMValue::Null(values.GetType()),
                               ICIMQualifierDecl::kScopeAny, ICIMQualifierDecl::kFlavorNone, {}),
      values, TOptions());
  decl->AddToClass({});
  cls->AddToNamespace({});
  return cls->AllocateInstance({})->GetProperty("Value", {});
}

struct Operation {
  std::function<bool(std::size_t)> once;  // false when its answer is wrong
};

std::map<std::string, Operation> Operations(InmemSubject& subject) {
  const auto shown = ShownByValueMap(subject.Namespace());
  return {
      {"make", {[&](std::size_t i) {
         subject.Make(DiskNumber(kDisks + kSpare + i));
         return true;
       }}},
      {"get", {[&](std::size_t i) { return subject.Get(i % kDisks); }}},
      {"property",
       {[&](std::size_t i) { return subject.SizeOf(i % kDisks) == DiskNumber(i % kDisks).size; }}},
      {"walk-after-change", {[&](std::size_t) {
         subject.Do(Change::kInstance);
         const bool right = subject.Enumerate() == kDisks + kSpare + 1;
         subject.Undo(Change::kInstance);
         return right;
       }}},
      {"display-valuemap",
       {[shown](std::size_t) { return shown->GetDisplayValue({}) == "Text 199"; }}},
      {"enumerate", {[&](std::size_t) { return subject.Enumerate() == kDisks + kSpare; }}},
      {"references", {[&](std::size_t i) { return subject.References(i % kDisks) == 2; }}},
      {"associators", {[&](std::size_t i) { return subject.Associators(i % kDisks) == 2; }}},
      {"key-names", {[&](std::size_t) {
         int keys = 0;
         subject.Namespace()
             .GetClass("Bench_Disk", {})
             ->EnumerateKeyNames([&](const std::string*) { return ++keys != 0; }, {});
         return keys == 2;
       }}},
      {"class-by-name",
       {[&](std::size_t) { return subject.Namespace().GetClass("bench_DISK", {}) != nullptr; }}},
  };
}

int Fail(const std::string& text) {
  std::cerr << "hav_instructions: " << text << '\n';
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  InmemSubject subject;
  const auto operations = Operations(subject);
  if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
    for (const auto& entry : operations) std::cout << entry.first << '\n';
    return 0;
  }
  if (argc != 3) return Fail("OPERATION and COUNT are needed, or --list");
  const auto found = operations.find(argv[1]);
  if (found == operations.end()) return Fail(std::string("no operation ") + argv[1]);

  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < kDisks; ++i) {
    subject.Make(DiskNumber(i));
    numbers.push_back(i);
  }
  subject.Prepare(numbers);
  for (std::size_t i = 0; i < kDisks; ++i) subject.MakeLink(i, (i + 1) % kDisks);
  subject.PrepareChanges(kDisks);
  for (std::size_t i = 0; i < kDisks; ++i) {
    subject.SizeOf(i);
    subject.Associators(i);
  }

  const std::size_t count = std::strtoul(argv[2], nullptr, 10);
  for (std::size_t i = 0; i < count; ++i)
    if (!found->second.once(i)) return Fail(std::string("the answer of ") + argv[1] + " is wrong");
  return 0;
}

// Does one hot operation a number of times, after the same preparation whatever the number:
// what two runs differ by is what the operation costs.
//
//   hav_instructions OPERATION COUNT [SIZE]
//   hav_instructions --list
//
// SIZE is the number of disks, of links and of subclasses that are there before, 500 when it is
// not given. The list tells of each operation by how much its cost may grow when SIZE grows five
// times: 0 where it is meant to grow.

#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "bench/InmemSubject.h"
#include "bench/Loading.h"

namespace {

using namespace havbench;
using namespace NORVHAV20;

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
  double growth = 0;                      // with five times the size, at most
};

// A change, then a question about an object that the change has nothing to do with.
bool AsksAfterChange(InmemSubject& subject, std::size_t i, std::size_t disks) {
  constexpr Change kChanges[] = {Change::kInstance,  Change::kLink,     Change::kUnlink,
                                 Change::kReference, Change::kProperty, Change::kRekey,
                                 Change::kNeighbour, Change::kDerived};
  const Change change = kChanges[i % std::size(kChanges)];
  subject.Do(change);
  const bool right =
      subject.References(i % disks) == 2 && subject.Associators((i + 1) % disks) == 2;
  subject.Undo(change);
  return right;
}

boost::shared_ptr<ICIMClass> AddSubclass(InmemSubject& subject, std::size_t number) {
  ICIMNamespace& ns = subject.Namespace();
  const auto cls = ns.AllocateClass("Bench_Subclass" + std::to_string(number),
                                    ns.GetClass("Bench_Disk", {}), {});
  cls->AddToNamespace({});
  return cls;
}

// One load for all the times; what is there before stands in the same text.
Operation Loads(Loading kind, std::size_t objects) {
  return {[=](std::size_t i) {
            if (i != 0) return true;
            const auto ns = LoadText(LoadingText(kind, objects));
            return ns && CountObjects(*ns) == objects;
          },
          1.1};
}

// The same objects through the contract: what a load is measured by.
Operation Makes(Loading kind, std::size_t objects) {
  return {
      [=](std::size_t i) { return i != 0 || CountObjects(*MakeObjects(kind, objects)) == objects; },
      1.1};
}

// The same with classes. They are not walked: there are as many as objects elsewhere.
Operation LoadsClasses(std::size_t classes) {
  return {[=](std::size_t i) { return i != 0 || LoadText(ClassesText(classes)); }, 1.1};
}

// `count`: how often each will be done.
std::map<std::string, Operation> Operations(InmemSubject& subject, std::size_t disks,
                                            std::size_t count) {
  const auto shown = ShownByValueMap(subject.Namespace());
  return {
      {"make", {[&, disks](std::size_t i) {
         subject.Make(DiskNumber(disks + kSpare + i));
         return true;
       }}},
      {"ask-after-change",
       {[&, disks](std::size_t i) { return AsksAfterChange(subject, i, disks); }, 1.2}},
      // Those deleted before keep their names.
      {"add-subclass",
       {[&, disks](std::size_t i) {
          AddSubclass(subject, disks + i)->Delete({});
          return true;
        },
        1.2}},
      {"get", {[&, disks](std::size_t i) { return subject.Get(i % disks); }, 1.2}},
      {"property",
       {[&, disks](std::size_t i) {
          return subject.SizeOf(i % disks) == DiskNumber(i % disks).size;
        },
        1.2}},
      {"walk-after-change", {[&, disks](std::size_t) {
         subject.Do(Change::kInstance);
         const bool right = subject.Enumerate() == disks + kSpare + 1;
         subject.Undo(Change::kInstance);
         return right;
       }}},
      {"display-valuemap",
       {[shown](std::size_t) { return shown->GetDisplayValue({}) == "Text 199"; }}},
      {"enumerate", {[&, disks](std::size_t) { return subject.Enumerate() == disks + kSpare; }}},
      {"references",
       {[&, disks](std::size_t i) { return subject.References(i % disks) == 2; }, 1.2}},
      {"associators",
       {[&, disks](std::size_t i) { return subject.Associators(i % disks) == 2; }, 1.2}},
      {"key-names",
       {[&](std::size_t) {
          int keys = 0;
          subject.Namespace()
              .GetClass("Bench_Disk", {})
              ->EnumerateKeyNames([&](const std::string*) { return ++keys != 0; }, {});
          return keys == 2;
        },
        1.2}},
      {"class-by-name",
       {[&](std::size_t) { return subject.Namespace().GetClass("bench_DISK", {}) != nullptr; },
        1.2}},
      {"made-object", Makes(Loading::kThings, disks + count)},
      {"made-link", Makes(Loading::kLinksLast, disks + count)},
      {"load-object", Loads(Loading::kThings, disks + count)},
      {"load-link", Loads(Loading::kLinksLast, disks + count)},
      {"load-link-first", Loads(Loading::kLinksFirst, disks + count)},
      {"load-class", LoadsClasses(disks + count)},
  };
}

int Fail(const std::string& text) {
  std::cerr << "hav_instructions: " << text << '\n';
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  InmemSubject subject;
  const std::size_t disks = argc == 4 ? std::strtoul(argv[3], nullptr, 10) : 500;
  const std::size_t count = argc >= 3 ? std::strtoul(argv[2], nullptr, 10) : 0;
  const auto operations = Operations(subject, disks, count);
  if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
    for (const auto& entry : operations)
      std::cout << entry.first << ' ' << entry.second.growth << '\n';
    return 0;
  }
  if (argc < 3 || argc > 4 || disks == 0) return Fail("OPERATION and COUNT are needed, or --list");
  const auto found = operations.find(argv[1]);
  if (found == operations.end()) return Fail(std::string("no operation ") + argv[1]);

  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < disks; ++i) {
    subject.Make(DiskNumber(i));
    numbers.push_back(i);
  }
  subject.Prepare(numbers);
  for (std::size_t i = 0; i < disks; ++i) subject.MakeLink(i, (i + 1) % disks);
  subject.PrepareChanges(disks);
  if (found->first == "add-subclass")
    for (std::size_t i = 0; i < disks; ++i) AddSubclass(subject, i);
  for (std::size_t i = 0; i < disks; ++i) {
    subject.SizeOf(i);
    subject.Associators(i);
  }

  for (std::size_t i = 0; i < count; ++i)
    if (!found->second.once(i)) return Fail(std::string("the answer of ") + argv[1] + " is wrong");
  return 0;
}

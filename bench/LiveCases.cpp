// A change, then a question: only the question is timed. At rest there is no change; it is timed
// in the same way, so that the one can be compared with the other.

#include <utility>

#include "bench/Cases.h"
#include "bench/InmemSubject.h"
#include "bench/SqliteSubject.h"

namespace havbench {
namespace {

constexpr std::pair<Change, const char*> kChanges[] = {
    {Change::kNone, "rest"},     {Change::kInstance, "instance"},   {Change::kLink, "link"},
    {Change::kUnlink, "unlink"}, {Change::kReference, "reference"}, {Change::kProperty, "property"},
    {Change::kRekey, "rekey"},   {Change::kNeighbour, "neighbour"}, {Change::kDerived, "derived"}};

// Cases of one subject and size follow each other, and share what they ask.
template <class Subject>
Subject& SharedLinked(std::size_t links) {
  static std::size_t size = 0;
  static std::unique_ptr<Subject> subject;
  if (size != links) {
    subject.reset();
    subject = Linked<Subject>(links);
    subject->PrepareChanges(links / kLinksOfEach);
    size = links;
  }
  return *subject;
}

template <class Subject, class Ask>
void AskAfter(benchmark::State& state, Subject& subject, Change change, std::size_t answer,
              Ask&& ask) {
  for (std::size_t place = 0; place < 3; ++place) {
    subject.Do(change);
    Refuse(state, ask(place) == answer);
    subject.Undo(change);
  }
  std::size_t place = 0;
  for (auto _ : state) {
    subject.Do(change);
    const auto start = TClock::now();
    benchmark::DoNotOptimize(ask(place));
    state.SetIterationTime(Seconds(TClock::now() - start));
    subject.Undo(change);
    place = (place + 1) % kAsked;
  }
}

template <class Subject>
void RegisterTraversal(std::size_t links) {
  for (const auto& [change, name] : kChanges) {
    const auto timed = [change = change](bool associators) {
      return [=](benchmark::State& state, std::size_t n) {
        Subject& subject = SharedLinked<Subject>(n);
        AskAfter(state, subject, change, 2 * kLinksOfEach, [&](std::size_t place) {
          return associators ? subject.Associators(place) : subject.References(place);
        });
        ReportTime(state, 1);
      };
    };
    Register(std::string("associators-after-") + name, Subject::kName, links, timed(true))
        ->UseManualTime();
    Register(std::string("references-after-") + name, Subject::kName, links, timed(false))
        ->UseManualTime();
  }
}

template <class Subject>
void RegisterWalks(std::size_t disks) {
  for (const auto& [change, name] : {kChanges[0], kChanges[1]}) {
    const auto timed = [change = change](benchmark::State& state, std::size_t n) {
      const auto subject = Filled<Subject>(n);
      subject->PrepareChanges(n);
      const std::size_t stored = n + 2 + (change == Change::kInstance ? 1 : 0);
      AskAfter(state, *subject, change, stored, [&](std::size_t) { return subject->Enumerate(); });
      ReportTime(state, n);
    };
    Register(std::string("walk-after-") + name, Subject::kName, disks, timed)->UseManualTime();
  }
}

}  // namespace

void RegisterLiveCases() {
  for (const std::size_t links : {1000u, 10000u, 100000u, 1000000u}) {
    RegisterTraversal<InmemSubject>(links);
    RegisterTraversal<SqliteSubject>(links);
  }
  for (const std::size_t disks : {1000u, 20000u, 100000u, 500000u}) {
    RegisterWalks<InmemSubject>(disks);
    RegisterWalks<SqliteSubject>(disks);
  }
}

}  // namespace havbench

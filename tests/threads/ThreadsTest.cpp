// What the headers allow several threads to do at once: each namespace has one thread at a time,
// values are anybody's, and what is let go may end on any thread.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <queue>

#include <gtest/gtest.h>

#include "havcore/client/TPluginLoader.h"
#include "support/CompareNamespaces.h"
#include "support/Repository.h"
#include "support/Walks.h"
#include "threads/Threads.h"

namespace havtest {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 20;
constexpr int kInstances = 60;

// What several namespaces have in common: texts, arrays, references and datetimes.
struct SharedValues {
  TCIMValue text{std::string(200, 't')};
  TCIMValue texts{kCIMString, {text, TCIMValue("none"), text}};
  TCIMValue time{TCIMDateTime::Parse("20240101000000.000000+000")};
  TCIMValue path{TCIMReference({}, {{"Name", text}, {"Time", time}})};
  TCIMValue names{kCIMString, {TCIMValue("off"), TCIMValue("on")}};
};

// Fills a namespace, asks it everything, and changes it.
NamespacePtr Filled(const INamespaceProvider& provider, const SharedValues& shared) {
  const Repository repository(provider.AllocateNamespace({}, true, "root/test"));
  const ClassPtr node = repository.Class("Node");
  repository.Property(node, "Text", shared.text);
  repository.Property(node, "Texts", shared.texts);
  repository.Property(node, "Time", shared.time);
  repository.Property(node, "Path", shared.text, {{"Description", shared.text}});
  repository.Property(node, "State", TCIMValue(std::uint8_t{1}), {{"Values", shared.names}});
  const ClassPtr leaf = repository.Class("Leaf", node);
  const ClassPtr link = repository.Association("Link", "From", node, "To", node);
  std::vector<InstancePtr> made;
  for (int i = 0; i < kInstances; ++i) {
    made.push_back(repository.Instance(
        i % 2 ? node : leaf,
        {{"Name", TCIMValue(std::to_string(i))}, {"Text", shared.text}, {"Texts", shared.texts}}));
    if (i > 0)
      repository.Link(link, "From", made[static_cast<std::size_t>(i) - 1], "To", made.back());
  }
  for (int question = 0; question < 3; ++question)
    for (const auto& instance : made)
      instance->EnumerateAssociatedInstances([](const InstancePtr&) { return true; }, "", "<root>",
                                             "", "", {});
  for (const auto& instance : made) {
    EXPECT_EQ(instance->GetProperty("State", {})->GetDisplayValue({}), "on");
    instance->GetProperty("Text", {})->SetPrevValue(shared.text, {});
  }
  node->EnumerateInstances([](const InstancePtr&) { return true; }, true, {});
  made[1]->Delete({});
  repository.Class("Leaf", node);
  EXPECT_STATUS(25, repository.ns->GetClass("no name", {}));
  return repository.ns;
}

TEST(Threads, EachWithNamespacesOfItsOwnShareValues) {
  const SharedValues shared;
  const NamespacePtr alone = Filled(*Provider(), shared);
  std::array<std::vector<std::string>, kThreads> differences;
  std::array<NamespacePtr, kThreads> last;
  OnThreads(kThreads, [&](int number) {
    for (int round = 0; round < kRounds; ++round)
      last[static_cast<std::size_t>(number)] = Filled(*Provider(), shared);
  });
  for (const auto& filled : last)
    EXPECT_EQ(Differences(*alone, *filled), std::vector<std::string>());
}

// Hands things from one thread to another.
class Belt {
 public:
  void Put(std::shared_ptr<void> thing) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_things.push(std::move(thing));
  }
  std::shared_ptr<void> Take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_things.empty()) return {};
    auto thing = std::move(m_things.front());
    m_things.pop();
    return thing;
  }

 private:
  std::mutex m_mutex;
  std::queue<std::shared_ptr<void>> m_things;
};

template <class T>
std::shared_ptr<void> Held(T thing) {
  return std::make_shared<T>(std::move(thing));
}

// One thread works on; the other only lets go what it gets.
void WhileAnotherLetsGo(const std::function<void(Belt&)>& work) {
  Belt belt;
  std::atomic<bool> done{false};
  OnThreads(2, [&](int number) {
    if (number == 0) {
      work(belt);
      done = true;
      return;
    }
    while (!done) belt.Take();
    while (belt.Take()) {
    }
  });
}

TEST(Threads, LetGoElementsOfANamespaceThatAnotherUses) {
  const SharedValues shared;
  WhileAnotherLetsGo([&](Belt& belt) {
    for (int round = 0; round < kRounds; ++round) {
      const Repository repository;
      const ClassPtr node = repository.Class("Node");
      for (int i = 0; i < kInstances; ++i) {
        InstancePtr stored = repository.Instance(node, {{"Name", TCIMValue(std::to_string(i))}});
        InstancePtr loose = node->AllocateInstance({});
        loose->SetPropertyValue("Name", shared.text, {});
        belt.Put(Held(stored->GetProperty("Name", {})));
        belt.Put(Held(stored->GetReference({})));
        belt.Put(Held(std::move(loose)));
        belt.Put(Held(node->AllocatePropertyDecl("Loose", shared.texts, {})));
        belt.Put(Held(repository.ns->AllocateClass("Loose" + std::to_string(i), node, {})));
        if (i % 2) stored->Delete({});
        belt.Put(Held(std::move(stored)));
      }
      node->EnumerateInstances([](const InstancePtr&) { return true; }, true, {});
      belt.Put(Held(repository.ns));
    }
  });
}

TEST(Threads, LetGoWholeNamespacesWhileOthersAreMade) {
  const SharedValues shared;
  WhileAnotherLetsGo([&](Belt& belt) {
    for (int round = 0; round < kRounds; ++round) belt.Put(Held(Filled(*Provider(), shared)));
  });
}

// A reference holds the class of the other namespace weakly: to copy it, compare it by its text
// and let it go asks nothing of that namespace.
TEST(Threads, KeepReferencesIntoANamespaceThatAnotherLetsGo) {
  WhileAnotherLetsGo([&](Belt& belt) {
    const Repository here;
    const ClassPtr cls = here.Class("Holder");
    here.Property(cls, "Text", TCIMValue::Null(kCIMString));
    for (int round = 0; round < kRounds * 10; ++round) {
      Repository there;
      const ClassPtr other = there.Class("Other");
      const TCIMValue path(there.Instance(other, {{"Name", TCIMValue("one")}})->GetReference({}));
      belt.Put(Held(std::move(there.ns)));
      const TCIMValue copy = path;
      here.Instance(cls, {{"Name", TCIMValue(std::to_string(round))},
                          {"Text", TCIMValue(copy.ToString(10))}});
      EXPECT_EQ(copy.ToString(10), "Other.Name=\"one\"");
      EXPECT_EQ(copy.GetReferencedClassName(), "Other");
      belt.Put(Held(copy));
    }
  });
}

class CountingLogger : public ILogger {
 public:
  void Log(int, const std::string&) override { ++lines; }
  std::atomic<int> lines{0};
};

TEST(Threads, LogWhileTheLoggerIsChanged) {
  CountingLogger first;
  CountingLogger second;
  ILogger* const before = TRootObject::SetCoreLogger(&first);
  std::atomic<int> working{kThreads - 1};
  OnThreads(kThreads, [&](int number) {
    if (number == 0) {
      for (bool toFirst = false; working != 0; toFirst = !toFirst)
        TRootObject::SetCoreLogger(toFirst ? &first : &second);
      return;
    }
    const Repository repository;
    for (int i = 0; i < 500; ++i) EXPECT_STATUS(25, repository.ns->GetClass("no name", {}));
    --working;
  });
  TRootObject::SetCoreLogger(before);
  EXPECT_EQ(first.lines + second.lines, 500 * (kThreads - 1));
}

// The library is loaded by whoever comes first, and its provider is made by whoever asks first.
TEST(Threads, LoadThePluginAndUseItsProviderForTheFirstTime) {
  const SharedValues shared;
  const NamespacePtr alone = Filled(*Provider(), shared);
  const auto manager = TRootObject::GetNamespaceProviderManager();
  for (int round = 0; round < 3; ++round)
    OnThreads(kThreads, [&](int) {
      for (int time = 0; time < 5; ++time) {
        const hav::client::TPluginLoader plugin(INMEM_LIBRARY);
        EXPECT_EQ(plugin.GetProvider().GetName({}), "inmem");
        const Repository repository(plugin.GetProvider().AllocateNamespace({}, false, "root/test"));
        repository.Instance(repository.Class("Node"), {{"Name", shared.text}});
      }
    });
  EXPECT_EQ(TRootObject::GetNamespaceProviderManager(), manager);
}

}  // namespace
}  // namespace havtest

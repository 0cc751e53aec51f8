// What questions about links ask of memory, and what they do without it. On Windows each library
// has operators of its own, so that what one makes and another frees would be counted once.
#if !defined(_WIN32)

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "model/LinkModel.h"
#include "support/FailingAllocations.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

constexpr std::size_t kNever = 1000000;

template <class F>
std::size_t AllocationsOf(F&& part) {
  const FailingAllocation none(kNever);
  part();
  return none.Count();
}

// A hub with links to nodes whose paths are so long that resolving one takes memory.
struct Star : LinkModel {
  explicit Star(int count) {
    for (int i = 0; i < count; ++i) {
      ends.push_back(Node(std::string(400, 'n') + std::to_string(i)));
      links.push_back(Link(hub, ends.back()));
    }
  }
  InstancePtr hub = Node(std::string(400, 'h'));
  std::vector<InstancePtr> ends;
  std::vector<InstancePtr> links;
};

using Question = std::function<void(const InstancePtr&, const TEnumCallback<ICIMInstance>&)>;

const Question kQuestions[] = {[](const auto& hub, const auto& found) {
                                 hub->EnumerateAssociationInstances(found, "", "", {});
                               },
                               [](const auto& hub, const auto& found) {
                                 hub->EnumerateAssociationInstances(found, "", "From", {});
                               },
                               [](const auto& hub, const auto& found) {
                                 hub->EnumerateAssociatedInstances(found, "", "Node", "", "", {});
                               },
                               [](const auto& hub, const auto& found) {
                                 hub->EnumerateAssociatedInstances(found, "", "Node", "From", "",
                                                                   {});
                               },
                               [](const auto& hub, const auto& found) {
                                 hub->EnumerateAssociatedInstances(found, "", "Node", "", "To", {});
                               }};

// How many are found; asking takes no memory of its own.
std::size_t Ask(const Question& question, const InstancePtr& hub) {
  std::size_t found = 0;
  std::size_t* const count = &found;
  question(hub, [count](const InstancePtr&) { return ++*count, true; });
  return found;
}

std::size_t AllocationsToAsk(const Question& question, const Star& star) {
  std::size_t found = 0;
  const std::size_t allocations = AllocationsOf([&] { found = Ask(question, star.hub); });
  EXPECT_EQ(found, star.links.size());
  return allocations;
}

TEST(LinkMemory, WhatIsKnownIsNotResolvedAgainHoweverMuchItIs) {
  for (const Question& question : kQuestions) {
    Star few(10);
    Star many(30);
    for (int time = 0; time < 3; ++time)
      for (const Star* star : {&few, &many}) Ask(question, star->hub);
    EXPECT_EQ(AllocationsToAsk(question, few), AllocationsToAsk(question, many));
    // What has changed is resolved, and nothing else.
    for (Star* star : {&few, &many}) {
      star->links[3]->Delete({});
      star->links[3] = star->Link(star->hub, star->ends[3]);
    }
    const std::size_t changed = AllocationsToAsk(question, few);
    EXPECT_EQ(changed, AllocationsToAsk(question, many));
    EXPECT_GT(changed, AllocationsToAsk(question, few));
  }
}

TEST(LinkMemory, LinksThatComeAndGoAskForAsMuchEachTime) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto c = model.Node("c");
  model.Link(a, b);
  IndexOf(model.link);
  const auto association = model.link->AllocateInstance({});
  association->SetPropertyValue("From", TCIMValue(a->GetReference({})), {});
  association->SetPropertyValue("To", TCIMValue(c->GetReference({})), {});
  const auto rounds = [&](int count) {
    return AllocationsOf([&] {
      for (int round = 0; round < count; ++round) {
        association->AddToNamespace({});
        association->Delete({});
      }
    });
  };
  rounds(100);
  const std::size_t one = rounds(1);
  EXPECT_EQ(rounds(1000), 1000 * one);
}

TEST(LinkMemory, LinksThatReferElsewhereAskForAsMuchEachTime) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto association = model.Link(a, model.Node("b"));
  model.Link(a, model.Node("c"));
  IndexOf(model.link);
  const TCIMValue values[] = {TCIMValue(a->GetReference({})),
                              TCIMValue(model.Node("d")->GetReference({}))};
  const auto rounds = [&](int count) {
    return AllocationsOf([&] {
      for (int round = 0; round < count; ++round)
        for (const TCIMValue& value : values) association->SetPropertyValue("To", value, {});
    });
  };
  rounds(100);
  const std::size_t one = rounds(1);
  EXPECT_EQ(rounds(1000), 1000 * one);
}

TEST(LinkMemory, LinksThatAreGoneLeaveNoBlockOfTheirsBehind) {
  LinkModel model;
  const auto hub = model.Node("hub");
  model.Link(hub, hub);
  std::vector<InstancePtr> nodes;
  std::vector<InstancePtr> links;
  for (int i = 0; i < 40; ++i) nodes.push_back(model.Node(std::to_string(i)));
  links.reserve(nodes.size());
  for (int time = 0; time < 3; ++time) Associators(hub);
  const auto come = [&](std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) links.push_back(model.Link(hub, nodes[i]));
    for (int time = 0; time < 3; ++time) Associators(hub);
    EXPECT_EQ(KnownEnd(links.back(), "To"), nodes[count - 1]);
  };
  const auto go = [&] {
    for (const auto& link : links) link->Delete({});
    links.clear();
    EXPECT_EQ(Associators(hub).size(), 1u);
  };
  come(1);
  go();
  const long before = LiveAllocations();
  come(nodes.size());
  go();
  EXPECT_EQ(LiveAllocations(), before);
  // Nor do they keep the memory of the instances that they led to.
  const auto freedBy = [](std::vector<InstancePtr>& instances) {
    for (const auto& instance : instances) instance->Delete({});
    const long deleted = LiveAllocations();
    instances.clear();
    return deleted - LiveAllocations();
  };
  const long freed = freedBy(nodes);
  for (int i = 0; i < 40; ++i) nodes.push_back(model.Node(std::to_string(i)));
  EXPECT_EQ(freed, freedBy(nodes));
}

TEST(LinkMemory, AnIndexThatCouldNotBeMadeIsToldOfNothing) {
  for (std::size_t allowed = 0;; ++allowed) {
    LinkModel model;
    const auto a = model.Node("a");
    const auto b = model.Node("b");
    const auto association = model.Link(a, b);
    const auto& cls = *TInmemClass::Own(*model.link);
    cls.Links();
    const TLinkIndex* made = nullptr;
    bool failed = false;
    {
      const FailingAllocation failing(allowed);
      made = cls.Links();
      failed = failing.HasFailed();
    }
    EXPECT_EQ(made == nullptr, failed);
    EXPECT_EQ(Own(association).Values().Layout().Watcher(), made);
    association->SetPropertyValue("From", TCIMValue(b->GetReference({})), {});
    EXPECT_EQ(References(a), Names());
    EXPECT_EQ(References(b).size(), 1u);
    if (!failed) break;
  }
}

TEST(LinkMemory, AnIndexThatIsGoneIsToldOfNothing) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto association = model.Link(a, a);
  const auto& layout = Own(association).Values().Layout();
  const TLinkIndex& index = IndexOf(model.link);
  EXPECT_EQ(layout.Watcher(), &index);
  model.repository.ns->ClearInstances();
  EXPECT_EQ(layout.Watcher(), nullptr);
}

// Those of the stored associations whose property names the instance.
Names Naming(const LinkModel& model, const InstancePtr& instance) {
  Names names;
  model.link->EnumerateInstances(
      [&](InstancePtr link) {
        const TCIMValue to = ValueOf(link, "To");
        if (static_cast<const TCIMReference&>(to).GetPath() == PathOf(instance))
          names.push_back(PathOf(link));
        return true;
      },
      false, {});
  return names;
}

// A change for which the index has no memory makes it no index any more, until a question makes
// a new one.
void ExpectFollowed(int links, const std::function<void(LinkModel&, const InstancePtr&)>& change,
                    int& broken) {
  for (std::size_t allowed = 0;; ++allowed) {
    LinkModel model;
    const auto hub = model.Node("hub");
    const auto other = model.Node("other");
    InstancePtr last;
    for (int i = 0; i < links; ++i) last = model.Link(model.Node(std::to_string(i)), hub);
    const auto next = model.link->AllocateInstance({});
    next->SetPropertyValue("From", TCIMValue(other->GetReference({})), {});
    next->SetPropertyValue("To", TCIMValue(hub->GetReference({})), {});
    TLinkIndex& index = IndexOf(model.link);
    bool failed = false;
    {
      const FailingAllocation failing(allowed);
      try {
        change(model, last ? last : next);
        model.link->AddInstance(next, {});
      } catch (const std::bad_alloc&) {
      }
      failed = failing.HasFailed();
    }
    if (!index.IsWhole()) {
      ++broken;
      EXPECT_TRUE(failed);
      next->SetPropertyValue("From", TCIMValue(hub->GetReference({})), {});
      EXPECT_FALSE(index.IsWhole());
      EXPECT_EQ(TInmemClass::Own(*model.link)->CurrentLinks(), nullptr);
    }
    EXPECT_EQ(References(hub, "", "To"), Naming(model, hub));
    EXPECT_EQ(References(other, "", "To"), Naming(model, other));
    if (!failed) break;
  }
}

TEST(LinkMemory, AChangeThatTheIndexHasNoMemoryForIsFollowedAllTheSame) {
  int broken = 0;
  for (int links = 0; links < 18; ++links) {
    ExpectFollowed(
        links, [](LinkModel&, const InstancePtr&) {}, broken);
    ExpectFollowed(
        links,
        [](LinkModel& model, const InstancePtr& link) {
          link->SetPropertyValue(
              "To",
              TCIMValue(model.repository.ns
                            ->GetInstance(TCIMReference::Parse("Node.Name=\"other\"", {}), {})
                            ->GetReference({})),
              {});
        },
        broken);
  }
  EXPECT_GT(broken, 20);
}

TEST(LinkMemory, AQuestionThatHadNoMemoryForAllOfItsAnswerFails) {
  for (const Question& question : kQuestions)
    for (int asked = 0; asked < 4; ++asked) {
      for (std::size_t allowed = 0;; ++allowed) {
        Star star(3);
        for (int time = 0; time < asked; ++time) Ask(question, star.hub);
        std::size_t found = 0;
        bool thrown = false;
        bool failed = false;
        {
          const FailingAllocation failing(allowed);
          try {
            found = Ask(question, star.hub);
          } catch (const std::bad_alloc&) {
            thrown = true;
          }
          failed = failing.HasFailed();
        }
        EXPECT_TRUE(thrown || found == star.links.size()) << asked << ", " << allowed;
        EXPECT_FALSE(thrown && !failed);
        EXPECT_EQ(Ask(question, star.hub), star.links.size());
        if (!failed) break;
      }
    }
}

// What was added during another walk takes memory to be put in order.
TEST(LinkMemory, AWalkThatCouldNotKeepWhatWasStoredSaysSo) {
  LinkModel model;
  const auto a = model.Node("a");
  model.Link(a, a);
  TLinkIndex& index = IndexOf(model.link);
  int walks = 0;
  model.link->EnumerateInstances(
      [&](InstancePtr) {
        model.Link(a, model.Node("b"));
        TLinkIndex::TWalk walk(index, Own(a));
        const auto first = walk.Candidates().front();
        {
          const FailingAllocation failing(0, FailingAllocation::kFromThenOn);
          index.BeforeChange();
          EXPECT_TRUE(failing.HasFailed());
        }
        EXPECT_FALSE(walk.IsCurrent());
        EXPECT_THROW(walk.After(first), std::bad_alloc);
        return ++walks != 0;
      },
      false, {});
  EXPECT_EQ(walks, 1);
}

}  // namespace

#endif

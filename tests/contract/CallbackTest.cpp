// What the callback of a walk may do: anything. Each walk visits what was there when it
// began, once, and nothing that is freed.
#include <functional>

#if defined(__linux__)
#include <pthread.h>
#endif

#include "support/LoggedRepository.h"

namespace havtest {
namespace {

using Visit = std::function<void()>;

// A namespace with at least two of everything that can be walked, most of it on "Edge".
struct Model {
  Model()
      : node(repository.Class("Node")),
        edge(repository.Association("Edge", "First", node, "Second", node)) {
    repository.Class("Sub1", node);
    repository.Class("Sub2", node);
    repository.Association("Link", "One", node, "Two", repository.Class("Other"));
    repository.Qualify(*edge, {{"Version", TCIMValue("1")}});
    edge->AllocateMethodDecl("Stop", kCIMUInt32, {})->AddToClass({});
    method = edge->AllocateMethodDecl("Start", kCIMUInt32, {});
    method->AllocateParameter("Force", TCIMValue(true), {});
    method->AllocateParameter("Timeout", TCIMValue(true), {});
    repository.Qualify(*method, {{"Description", TCIMValue("text")}, {"Version", TCIMValue("1")}});
    method->AddToClass({});
    for (const char* name : {"1", "2"}) repository.Instance(node, {{"Name", TCIMValue(name)}});
    repository.Instance(repository.ns->GetClass("Sub1", {}), {{"Name", TCIMValue("3")}});
  }

  // One more of everything.
  void Add() {
    repository.Class("NewSub", node);
    repository.Association("NewLink", "One", node, "Two", repository.Class("New"));
    repository.Reference(edge, "Third", node, {{"Key", TCIMValue(true)}});
    repository.Qualify(*edge, {{"NewQualifier", TCIMValue("1")}});
    repository.Qualify(*method, {{"NewQualifier", TCIMValue("1")}});
    method->AllocateParameter("NewParameter", TCIMValue(true), {});
    edge->AllocateMethodDecl("NewMethod", kCIMUInt32, {})->AddToClass({});
    repository.Instance(node, {{"Name", TCIMValue("new")}});
    repository.Instance(repository.ns->GetClass("Sub2", {}), {{"Name", TCIMValue("new")}});
  }
  // Everything that can be taken away again.
  void Remove() {
    repository.ns->ClearInstances();
    for (const char* name : {"Link", "Edge", "Sub1", "Sub2"})
      repository.ns->GetClass(name, {})->Delete({});
    for (const char* name : {"First", "Second"})
      edge->RemovePropertyDecl(edge->GetPropertyDecl(name, {}), {});
    for (const char* name : {"Start", "Stop"})
      edge->RemoveMethodDecl(edge->GetMethodDecl(name, {}), {});
  }
  // Every owner.
  void Drop() {
    repository.ns.reset();
    node.reset();
    edge.reset();
    method.reset();
  }

  LoggedRepository repository;
  ClassPtr node;
  ClassPtr edge;
  MethodDeclPtr method;
};

// Reads the element, so that one that is freed is found out, and reports the visit.
template <class Element>
TEnumCallback<Element> Reading(const Visit& visit) {
  return [visit](boost::shared_ptr<Element> element) {
    EXPECT_FALSE(element->GetName({}).empty());
    visit();
    EXPECT_FALSE(element->GetName({}).empty());
    return true;
  };
}

// A walk of the model. It holds no owner of its own: the model's are the only ones.
struct Walk {
  const char* name;
  void (*run)(Model& model, const Visit& visit);
};

const Walk kWalks[] = {
    {"RootClasses",
     [](Model& m, const Visit& v) {
       m.repository.ns->EnumerateRootClasses(Reading<ICIMClass>(v), {});
     }},
    {"QualifierDecls",
     [](Model& m, const Visit& v) {
       m.repository.ns->EnumerateQualifierDecls(Reading<ICIMQualifierDecl>(v), {});
     }},
    {"Subclasses",
     [](Model& m, const Visit& v) { m.node->EnumerateSubclasses(Reading<ICIMClass>(v), {}); }},
    {"PropertyDecls",
     [](Model& m, const Visit& v) {
       m.edge->EnumeratePropertyDecls(Reading<ICIMPropertyDecl>(v), {});
     }},
    {"ReferenceDecls",
     [](Model& m, const Visit& v) {
       m.edge->EnumerateReferenceDecls(Reading<ICIMPropertyDecl>(v), {});
     }},
    {"MethodDecls",
     [](Model& m, const Visit& v) {
       m.edge->EnumerateMethodDecls(Reading<ICIMMethodDecl>(v), {});
     }},
    {"Keys",
     [](Model& m, const Visit& v) {
       m.edge->EnumerateKeyNames(
           [v](const std::string* name) {
             const std::string before = *name;
             v();
             EXPECT_EQ(*name, before);
             return true;
           },
           {});
     }},
    {"ClassQualifiers",
     [](Model& m, const Visit& v) { m.edge->EnumerateQualifiers(Reading<ICIMQualifier>(v), {}); }},
    {"MethodQualifiers",
     [](Model& m, const Visit& v) {
       m.method->EnumerateQualifiers(Reading<ICIMQualifier>(v), {});
     }},
    {"Parameters",
     [](Model& m, const Visit& v) {
       m.method->EnumerateParameters(Reading<ICIMParameterDecl>(v), {});
     }},
    {"AssociationClasses",
     [](Model& m, const Visit& v) {
       m.node->EnumerateAssociationClasses(Reading<ICIMClass>(v), "", "", {});
     }},
    {"AssociatedClasses",
     [](Model& m, const Visit& v) {
       m.node->EnumerateAssociatedClasses(Reading<ICIMClass>(v), "", "", "", "", {});
     }},
    {"Instances",
     [](Model& m, const Visit& v) {
       m.node->EnumerateInstances(
           [v](InstancePtr instance) {
             v();
             EXPECT_EQ(instance->GetPegasusNSPStr(), "");
             EXPECT_FALSE(instance->GetProperty("Name", {})->GetValue({}).IsNull());
             return true;
           },
           true, {});
     }},
};

class Callback : public testing::TestWithParam<Walk> {
 protected:
  // How many elements the walk visits when the first visit does `act`.
  int VisitsWhen(const Visit& act) {
    int visits = 0;
    GetParam().run(model, [&] {
      if (++visits == 1) act();
    });
    return visits;
  }

  Model model;
};

TEST_P(Callback, MayAddToWhatIsWalked) {
  const int before = VisitsWhen([] {});
  ASSERT_GE(before, 2);
  EXPECT_EQ(VisitsWhen([&] { model.Add(); }), before);
  EXPECT_GT(VisitsWhen([] {}), before);
}

TEST_P(Callback, MayRemoveWhatIsWalked) {
  const int before = VisitsWhen([] {});
  EXPECT_EQ(VisitsWhen([&] { model.Remove(); }), before);
}

TEST_P(Callback, MayDropTheLastOwnerOfWhatIsWalked) {
  const int before = VisitsWhen([] {});
  EXPECT_EQ(VisitsWhen([&] { model.Drop(); }), before);
}

TEST_P(Callback, MayWalkTheSameAgain) {
  const int before = VisitsWhen([] {});
  int inner = 0;
  EXPECT_EQ(VisitsWhen([&] { GetParam().run(model, [&] { ++inner; }); }), before);
  EXPECT_EQ(inner, before);
}

#if defined(__linux__)
// Ends its thread from inside the walk, as thread cancellation does: by a forced unwinding
// that a handler of all exceptions must not stop.
TEST_P(Callback, MayEndItsThread) {
  struct Run {
    Model* model;
    const Walk* walk;
    int visits;
  } run = {&model, &GetParam(), 0};
  pthread_t thread;
  ASSERT_EQ(pthread_create(
                &thread, nullptr,
                [](void* argument) -> void* {
                  auto& r = *static_cast<Run*>(argument);
                  r.walk->run(*r.model, [&r] {
                    ++r.visits;
                    pthread_exit(&r);
                  });
                  return nullptr;
                },
                &run),
            0);
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, &run);
  EXPECT_EQ(run.visits, 1);
}
#endif

INSTANTIATE_TEST_SUITE_P(Walks, Callback, testing::ValuesIn(kWalks),
                         [](const auto& walk) { return std::string(walk.param.name); });

TEST(CallbackMutation, MayReplaceTheQualifierThatItIsGiven) {
  Repository repository;
  auto cls = repository.Allocate("A", {}, {{"P", TCIMValue("1")}, {"Q", TCIMValue("1")}});
  int visits = 0;
  cls->EnumerateQualifiers(
      [&](QualifierPtr qualifier) {
        ++visits;
        repository.Qualify(*cls, {{"P", TCIMValue("2")}, {"Q", TCIMValue("2")}});
        EXPECT_EQ(qualifier->GetValue({}).ToString(10), "1");
        return true;
      },
      {});
  EXPECT_EQ(visits, 2);
}

TEST(CallbackMutation, MayRedefineTheClassThatItIsGiven) {
  Repository repository(true);
  auto second = repository.Allocate("A");
  repository.Key(second, "Name");
  repository.Class("A");
  repository.Class("B");
  Names visited;
  repository.ns->EnumerateRootClasses(
      [&](ClassPtr cls) {
        if (visited.empty()) second->AddToNamespace({});
        visited.push_back(cls->GetName({}));
        return true;
      },
      {});
  EXPECT_EQ(visited, (Names{"A", "B"}));
}

TEST(CallbackMutation, MayReadDerivedPropertiesWhichDeclareThemselves) {
  Repository repository;
  auto cls = repository.Class("A");
  for (const char* name : {"1", "2"}) repository.Instance(cls, {{"Name", TCIMValue(name)}});
  int visits = 0;
  cls->EnumerateInstances(
      [&](InstancePtr instance) {
        ++visits;
        cls->EnumeratePropertyDecls(
            [&](PropertyDeclPtr) {
              instance->GetProperty("HealthState", {});
              instance->GetProperty("speedDuplex", {});
              return true;
            },
            {});
        return true;
      },
      false, {});
  EXPECT_EQ(visits, 2);
  EXPECT_EQ(PropertyNames(cls), (Names{"HealthState", "Name", "speedDuplex"}));
}

}  // namespace
}  // namespace havtest

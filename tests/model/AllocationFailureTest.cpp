// Every operation that changes a namespace, with each of its allocations failing in turn: it
// throws, and leaves the namespace as it was; what is tried again succeeds.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>

#include <boost/make_shared.hpp>

#include "support/CompareNamespaces.h"
#include "support/FailingAllocations.h"
#include "support/ForeignClass.h"
#include "support/Repository.h"

namespace {

using namespace havtest;

// Longer than a look-up folds without memory.
const std::string kLongName(100, 'n');

// A small namespace with everything in it that the operations need.
struct Model {
  explicit Model(bool redefinitionAllowed) : repository(redefinitionAllowed) {
    base = repository.Class("Base");
    node = repository.Class("Node", base);
    repository.Property(node, "Size", TCIMValue(std::uint32_t{0}));
    link = repository.Association("Link", "From", node, "To", node);
    first = repository.Instance(node, {{"Name", TCIMValue("first")}});
    second = repository.Instance(node, {{"Name", TCIMValue("second")}});
    repository.Link(link, "From", first, "To", second);
    leaf = repository.Class("Leaf", node);
    longFresh = repository.Allocate(kLongName, base);
    longNamed = repository.Class(kLongName, node);
    longLink = repository.Allocate(kLongName + "Link", {}, {{"Association", TCIMValue(true)}});
    repository.Reference(longLink, kLongName, longNamed);
    repository.Reference(longLink, "Other", node);
    longLink->AddToNamespace({});
    fresh = repository.Allocate("Fresh", node, {{"Version", TCIMValue("1.0")}});
    freshLink = repository.Allocate("FreshLink", link);
    method = node->AllocateMethodDecl("Reset", kCIMUInt32, {});
    method->AddToClass({});
    loose = node->AllocateInstance({});
    loose->SetPropertyValue("Name", TCIMValue("a name too long to stand in any object"), {});
    keyed = repository.Instance(node, {{"Name", TCIMValue("keyed")}});
    keyed->SetPropertyValue("Name", TCIMValue("another key, under which it is not stored"), {});
    shared = repository.Instance(node, {{"Name", TCIMValue("shared")}});
    leaf->AddInstance(shared, {});
    log.Take();
  }

  RecordingLogger log;
  Repository repository;
  ClassPtr base, node, link, leaf, longNamed, longFresh, longLink, fresh, freshLink;
  InstancePtr first, second, loose, keyed, shared;
  MethodDeclPtr method;
};

using Names = std::vector<std::string>;
using Change = std::function<void(Model&)>;

// What the model shows of itself beyond what namespaces are compared by.
std::vector<std::string> Shown(Model& model) {
  std::vector<std::string> shown = ClassNames(
      [&](const auto& callback) { model.node->EnumerateAssociationClasses(callback, "", "", {}); });
  shown.push_back(model.fresh->GetPropertyDecl("Size", {})->GetClass({})->GetName({}));
  for (const auto& found : Paths([&](const auto& callback) {
         model.first->EnumerateAssociatedInstances(callback, "", "<root>", "", "", {});
       }))
    shown.push_back(found);
  return shown;
}

// On Windows text has its memory from the library of the C++ runtime, where none is made to fail.
#if defined(_WIN32)
constexpr std::size_t kAllocationsOfText = 0;
#else
constexpr std::size_t kAllocationsOfText = 1;
#endif

// `least`: how many allocations the change makes at the least.
void ExpectAllOrNothing(const Change& change, bool redefinitionAllowed = false,
                        std::size_t least = 1) {
  for (std::size_t allowed = 0; allowed < 5000; ++allowed) {
    Model model(redefinitionAllowed);
    Model untouched(redefinitionAllowed);
    bool failed = false;
    bool threw = false;
    {
      FailingAllocation failure(allowed);
      try {
        change(model);
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failure.HasFailed();
    }
    if (!failed) {
      EXPECT_GE(allowed, least);
      return;
    }
    ASSERT_TRUE(threw) << "allocation " << allowed << " failed and nobody was told";
    ASSERT_EQ(Differences(*model.repository.ns, *untouched.repository.ns),
              std::vector<std::string>())
        << "allocation " << allowed;
    ASSERT_EQ(Shown(model), Shown(untouched)) << "allocation " << allowed;
    ASSERT_NO_THROW(change(model)) << "again, after allocation " << allowed;
  }
  FAIL() << "it never came to an end";
}

TEST(AllocationFailure, RegisteringAClass) {
  ExpectAllOrNothing([](Model& model) { model.fresh->AddToNamespace({}); });
}

TEST(AllocationFailure, RegisteringAnAssociation) {
  ExpectAllOrNothing([](Model& model) { model.freshLink->AddToNamespace({}); });
}

TEST(AllocationFailure, RegisteringAClassAgainWhereRedefinitionIsAllowedNeedsNoMemory) {
  Model model(true);
  FailingAllocation failure(0);
  model.node->AddToNamespace({});
  EXPECT_FALSE(failure.HasFailed());
}

TEST(AllocationFailure, RegisteringAClassOfALongNameAgain) {
  ExpectAllOrNothing([](Model& model) { model.longNamed->AddToNamespace({}); }, true,
                     kAllocationsOfText);
}

TEST(AllocationFailure, RegisteringAnAssociationOfALongNameAgain) {
  ExpectAllOrNothing([](Model& model) { model.longLink->AddToNamespace({}); }, true);
}

TEST(AllocationFailure, RegisteringAnotherClassOfALongName) {
  ExpectAllOrNothing([](Model& model) { model.longFresh->AddToNamespace({}); }, true);
}

TEST(AllocationFailure, DeletingClassesNeedsNoMemory) {
  Model model(false);
  FailingAllocation failure(0);
  model.leaf->Delete({});
  model.link->Delete({});
  EXPECT_FALSE(failure.HasFailed());
}

TEST(AllocationFailure, AllocatingAQualifierDeclaration) {
  ExpectAllOrNothing([](Model& model) {
    model.repository.ns->AllocateQualifierDecl("A_Qualifier_With_A_Long_Name", TCIMValue("text"),
                                               ICIMQualifierDecl::kScopeAny,
                                               ICIMQualifierDecl::kFlavorNone, {});
  });
}

TEST(AllocationFailure, QualifyingAClass) {
  ExpectAllOrNothing([](Model& model) {
    model.node->AllocateQualifier(model.repository.ns->GetQualifierDecl("Version", {}),
                                  TCIMValue("2.0, and more"), TOptions());
  });
}

TEST(AllocationFailure, DeclaringAProperty) {
  ExpectAllOrNothing([](Model& model) {
    model.node->AllocatePropertyDecl("A_Property_With_A_Long_Name", TCIMValue(true), {})
        ->AddToClass({});
  });
}

TEST(AllocationFailure, DeclaringAMethod) {
  ExpectAllOrNothing([](Model& model) {
    model.node->AllocateMethodDecl("A_Method_With_A_Long_Name", kCIMUInt32, {})->AddToClass({});
  });
}

TEST(AllocationFailure, AddingAParameter) {
  ExpectAllOrNothing([](Model& model) {
    model.method->AllocateParameter("A_Parameter_With_A_Long_Name", TCIMValue(true), {});
  });
}

TEST(AllocationFailure, StoringAnInstance) {
  ExpectAllOrNothing([](Model& model) { model.loose->AddToNamespace({}); });
}

TEST(AllocationFailure, StoringAnInstanceAgainUnderAnotherKey) {
  ExpectAllOrNothing([](Model& model) { model.keyed->AddToNamespace({}); });
}

TEST(AllocationFailure, StoringAnInstanceOfTwoClassesAgain) {
  ExpectAllOrNothing([](Model& model) { model.leaf->AddInstance(model.shared, {}); });
}

TEST(AllocationFailure, AskingForASlot) {
  ExpectAllOrNothing([](Model& model) { model.first->GetProperty("Size", {}); });
}

TEST(AllocationFailure, RemovingAnInstanceDuringAWalkNeedsNoMemoryToSucceed) {
  for (std::size_t allowed = 0; allowed < 100; ++allowed) {
    Model model(false);
    std::size_t visited = 0;
    bool failed = false;
    model.node->EnumerateInstances(
        [&](InstancePtr) {
          if (visited++ != 0) return true;
          try {
            const FailingAllocation failure(allowed);
            model.second->Delete({});
            failed = failure.HasFailed();
          } catch (const std::bad_alloc&) {
            failed = true;
            model.second->Delete({});
          }
          return true;
        },
        false, {});
    EXPECT_EQ(visited, 4u);
    const auto left =
        Paths([&](const auto& callback) { model.node->EnumerateInstances(callback, false, {}); });
    EXPECT_EQ(left.size(), 3u);
    if (!failed) return;
  }
  FAIL() << "it never came to an end";
}

TEST(AllocationFailure, RemovingAnInstance) {
  ExpectAllOrNothing([](Model& model) { model.second->Delete({}); });
}

TEST(AllocationFailure, ReadingADerivedProperty) {
  for (const std::string name : {"speedDuplex", "HealthState", "Description"})
    ExpectAllOrNothing([&](Model& model) { model.first->GetProperty(name, {}); });
  ExpectAllOrNothing([](Model& model) { model.first->GetProperty(kLongName + "HealthState", {}); });
}

TEST(AllocationFailure, AllocatingARegisteredClassOfALongName) {
  ExpectAllOrNothing(
      [](Model& model) {
        const ClassPtr registered = model.longNamed;
        ASSERT_EQ(model.repository.ns->AllocateClass(kLongName, {}, {}), registered);
      },
      false, kAllocationsOfText);
}

// Processors, whose walk logs, with a subclass of the host's making among the subclasses.
struct Processors {
  Processors() {
    auto processor = repository.Allocate("ORVSG_Processor");
    repository.Key(processor, "Name");
    repository.Property(processor, "CPUStatus", TCIMValue(std::uint16_t{2}));
    processor->AddToNamespace({});
    auto sub = repository.Class("Sub", processor);
    auto behind = repository.Class("Behind");
    processor->AddSubclass(boost::make_shared<ForeignClass>(behind), {});
    repository.Class("Last", processor);
    for (const char* name : {"ORVSG_Processor", "Sub", "Behind", "Last"})
      repository.Instance(repository.ns->GetClass(name, {}), {{"Name", TCIMValue("a")}});
    cls = processor;
  }

  RecordingLogger log;
  Repository repository;
  ClassPtr cls;
};

TEST(AllocationFailure, OfADeepWalkIsNeverAPartOfTheAnswer) {
  for (std::size_t allowed = 0; allowed < 5000; ++allowed) {
    Processors processors;
    int visits = 0;
    bool failed = false;
    bool threw = false;
    const TEnumCallback<ICIMInstance> count = [&](InstancePtr) {
      ++visits;
      return true;
    };
    {
      FailingAllocation failure(allowed);
      try {
        processors.cls->EnumerateInstances(count, true, {});
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failure.HasFailed();
    }
    ASSERT_EQ(threw, failed) << "allocation " << allowed;
    if (failed) continue;
    EXPECT_EQ(visits, 4);
    EXPECT_GT(allowed, 4u);
    return;
  }
  FAIL() << "it never came to an end";
}

TEST(AllocationFailure, RepeatingTheInheritanceOfARegisteredClass) {
  ExpectAllOrNothing([](Model& model) { model.repository.ns->AllocateClass("Node", {}, {}); });
}

// A question whose allocations fail in turn: it throws, or its answer is whole.
void ExpectWholeOrNoAnswer(const std::function<Names(Model&)>& ask) {
  // The first question walks, the third has an index.
  for (int before = 0; before < 3; ++before) {
    bool failed = true;
    for (std::size_t allowed = 0; failed && allowed < 5000; ++allowed) {
      Model model(false);
      Names whole;
      for (int time = 0; time < before; ++time) whole = ask(model);
      if (before == 0) whole = ask(*std::make_unique<Model>(false));
      Names answer;
      bool threw = false;
      {
        FailingAllocation failure(allowed);
        try {
          answer = ask(model);
        } catch (const std::bad_alloc&) {
          threw = true;
        }
        failed = failure.HasFailed();
      }
      ASSERT_TRUE(threw || answer == whole) << "allocation " << allowed << ", " << before;
      ASSERT_EQ(ask(model), whole);
    }
    EXPECT_FALSE(failed) << "it never came to an end";
  }
}

// What the callback gets; it never allocates.
template <class Enumerate>
Names Found(Enumerate&& enumerate) {
  std::array<const ICIMInstance*, 4> found{};
  std::size_t count = 0;
  enumerate(TEnumCallback<ICIMInstance>(
      [&](const InstancePtr& instance) { return found.at(count++) = instance.get(), true; }));
  Names names;
  for (std::size_t i = 0; i < count; ++i) names.push_back("found");
  return names;
}

TEST(AllocationFailure, AskingForReferences) {
  ExpectWholeOrNoAnswer([](Model& model) {
    return Found([&](const auto& callback) {
      model.first->EnumerateAssociationInstances(callback, "", "", {});
    });
  });
}

TEST(AllocationFailure, AskingForReferencesInARole) {
  ExpectWholeOrNoAnswer([](Model& model) {
    return Found([&](const auto& callback) {
      model.first->EnumerateAssociationInstances(callback, "Link", "From", {});
    });
  });
}

TEST(AllocationFailure, AskingForAssociators) {
  ExpectWholeOrNoAnswer([](Model& model) {
    return Found([&](const auto& callback) {
      model.first->EnumerateAssociatedInstances(callback, "", "Node", "", "", {});
    });
  });
}

TEST(AllocationFailure, AskingForAssociatorsInAResultRole) {
  ExpectWholeOrNoAnswer([](Model& model) {
    return Found([&](const auto& callback) {
      model.first->EnumerateAssociatedInstances(callback, "Link", "Node", "", "To", {});
    });
  });
}

TEST(AllocationFailure, AskingForReferencesOfAClassUnderOneOfTheHostsMaking) {
  Model model(false);
  const auto above = boost::make_shared<ForeignClass>(model.node);
  const ClassPtr under = model.repository.Class("Under", above);
  const auto asked = model.repository.Instance(under, {{"Name", TCIMValue("asked")}});
  model.repository.Link(model.link, "From", asked, "To", model.first);
  bool failed = true;
  for (std::size_t allowed = 0; failed && allowed < 5000; ++allowed) {
    Names found;
    bool threw = false;
    {
      FailingAllocation failure(allowed, FailingAllocation::kFromThenOn);
      try {
        found = Found([&](const auto& callback) {
          asked->EnumerateAssociationInstances(callback, "", "", {});
        });
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failure.HasFailed();
    }
    ASSERT_TRUE(threw || found == Names{"found"}) << "allocation " << allowed;
  }
  EXPECT_FALSE(failed) << "it never came to an end";
}

// How many elements an enumeration gives.
template <class T, class Enumerate>
Names Counted(Enumerate&& enumerate) {
  std::size_t count = 0;
  enumerate(TEnumCallback<T>([&](const boost::shared_ptr<T>&) { return ++count != 0; }));
  return {std::to_string(count)};
}

TEST(AllocationFailure, EveryOtherQuestion) {
  const std::function<Names(Model&)> questions[] = {
      [](Model& m) {
        return Counted<ICIMClass>([&](auto c) { m.base->EnumerateSubclasses(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMClass>([&](auto c) { m.repository.ns->EnumerateRootClasses(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMQualifierDecl>(
            [&](auto c) { m.repository.ns->EnumerateQualifierDecls(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMPropertyDecl>([&](auto c) { m.link->EnumeratePropertyDecls(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMPropertyDecl>([&](auto c) { m.link->EnumerateReferenceDecls(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMMethodDecl>([&](auto c) { m.node->EnumerateMethodDecls(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMQualifier>([&](auto c) { m.link->EnumerateQualifiers(c, {}); });
      },
      [](Model& m) {
        return Counted<ICIMClass>(
            [&](auto c) { m.leaf->EnumerateAssociationClasses(c, "Link", "From", {}); });
      },
      [](Model& m) {
        return Counted<ICIMClass>([&](auto c) {
          m.leaf->EnumerateAssociatedClasses(c, "Link", "Node", "From", "To", {});
        });
      },
      [](Model& m) {
        return Counted<ICIMProperty>([&](auto c) { m.first->EnumerateProperties(c, {}); });
      },
      [](Model& m) {
        std::size_t count = 0;
        m.link->EnumerateKeyNames([&](const std::string*) { return ++count != 0; }, {});
        return Names{std::to_string(count)};
      },
      [](Model& m) { return Names{m.repository.ns->GetClass(kLongName, {})->GetName({})}; },
      [](Model& m) { return Names{m.first->GetReference({}).GetPath()}; },
      [](Model& m) {
        const auto path = TCIMReference::Parse("node.name=\"first\"", {});
        return Names{m.repository.ns->GetInstance(path, {}) == m.first ? "found" : "not found"};
      },
      [](Model& m) { return Names{m.first->GetProperty("Size", {})->GetDisplayValue({})}; },
      [](Model& m) { return Names{m.first->GetProperty("Name", {})->GetDisplayValues({})}; },
      [](Model& m) {
        m.second->Validate({});
        return Names{m.leaf->IsA(m.base, {}) ? "is" : "is not"};
      },
      [](Model& m) {
        const auto made = m.leaf->AllocateInstance({});
        return Names{made->GetProperty("Size", {})->GetValue({}).ToString(10)};
      },
  };
  for (std::size_t i = 0; i < std::size(questions); ++i) {
    SCOPED_TRACE(i);
    ExpectWholeOrNoAnswer(questions[i]);
  }
}

}  // namespace

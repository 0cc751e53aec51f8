// The index of links against the walk that it stands for: a repository goes through a million
// random changes and questions, and every answer is compared with one worked out here, from
// the contract alone, by resolving each reference of each association.

#include <gtest/gtest.h>

#include <random>

#include "support/Repository.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

struct Question {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

boost::shared_ptr<ICIMElement> ResolveOrNull(const TCIMValue& value) {
  try {
    return static_cast<const TCIMReference&>(value).GetCIMElement(false);
  } catch (const THAVException& failure) {
    EXPECT_EQ(failure.GetStatusCode(), kHAVNotFound);
    return {};
  }
}

std::vector<std::pair<std::string, TCIMValue>> References(ICIMInstance& association) {
  std::vector<std::pair<std::string, TCIMValue>> references;
  association.EnumerateProperties(
      [&](boost::shared_ptr<ICIMProperty> slot) {
        if (slot->GetValue({}).IsReference())
          references.emplace_back(slot->GetDecl({})->GetName({}), slot->GetValue({}));
        return true;
      },
      {});
  return references;
}

// The association instances that refer to `instance`, in the order of a walk.
std::vector<InstancePtr> PlainReferences(const InstancePtr& instance, const std::string& cls,
                                         const std::string& role) {
  std::vector<InstancePtr> found;
  instance->GetClass({})->EnumerateAssociationClasses(
      [&](ClassPtr association) {
        association->EnumerateInstances(
            [&](InstancePtr candidate) {
              for (const auto& [name, value] : References(*candidate))
                if ((role.empty() || name == role) && ResolveOrNull(value) == instance) {
                  found.push_back(candidate);
                  break;
                }
              return true;
            },
            false, {});
        return true;
      },
      cls, role, {});
  return found;
}

InstancePtr PlainOtherEnd(const InstancePtr& instance, const InstancePtr& association,
                          const ClassPtr& result, const Question& question) {
  bool selfSeen = false;
  for (const auto& [name, value] : References(*association)) {
    const auto element = ResolveOrNull(value);
    const bool passes = value.GetReferencedClass() && value.GetReferencedClass()->IsA(result, {});
    if (!question.resultRole.empty()) {
      if (name == question.resultRole && passes)
        return boost::dynamic_pointer_cast<ICIMInstance>(element);
      continue;
    }
    if (!selfSeen) {
      selfSeen = question.role.empty()
                     ? value.GetReferencedClass() == instance->GetClass({}) && element == instance
                     : name == question.role;
      if (selfSeen) continue;
    }
    if (passes) return boost::dynamic_pointer_cast<ICIMInstance>(element);
  }
  return {};
}

Names PlainAssociators(const NamespacePtr& ns, const InstancePtr& instance,
                       const Question& question) {
  Names names;
  const auto result = ns->GetClass(question.resultClass, {});
  for (const auto& association : PlainReferences(instance, question.associationClass, ""))
    if (const auto other = PlainOtherEnd(instance, association, result, question))
      names.push_back(other->GetReference({}).GetPath());
  return names;
}

class RandomModel {
 public:
  explicit RandomModel(unsigned seed) : m_random(seed) {
    base = repository.Class("Node");
    nodes = {base, repository.Class("LeafA", base), repository.Class("LeafB", base)};
    links = {repository.Association("Link", "Alpha", base, "Beta", base),
             repository.Association("Holds", "Group", nodes[1], "Part", base)};
    // Never assigned: it refers to what its declaration says at the moment.
    extra = repository.Reference(links[1], "Extra", base);
    auto sub = repository.Allocate("SpecialLink", links[0]);
    sub->AddToNamespace({});
    links.push_back(sub);
    nodeInstances.resize(12);
    linkInstances.resize(18);
  }

  std::size_t Pick(std::size_t n) { return m_random() % n; }

  void Change() {
    switch (Pick(40)) {
      case 0: AddNode(); break;
      case 1: DropNode(); break;
      case 2:
      case 3:
      case 4:
      case 5: AddLink(); break;
      case 6:
      case 7: DropLink(); break;
      case 8:
      case 9: MoveLinkEnd(); break;
      case 10: RekeyNode(); break;
      case 11: ReadUndeclared(); break;
      case 12:
        if (Pick(200) == 0) links[Pick(links.size())]->GetNamespace({})->ClearInstances();
        break;
      case 13: Redefault(); break;
      default: AddLink(); break;
    }
  }

  InstancePtr AnyNode() { return nodeInstances[Pick(nodeInstances.size())]; }

  Question AnyQuestion() {
    static const char* const classes[] = {"", "", "Link", "SpecialLink", "Holds", "Unknown"};
    static const char* const results[] = {"<root>", "<root>", "Node", "LeafA", "LeafB"};
    static const char* const roles[] = {"", "", "Alpha", "Beta", "Group", "Part", "Nobody"};
    return {classes[Pick(6)], results[Pick(5)], roles[Pick(7)], roles[Pick(7)]};
  }

  Repository repository;
  ClassPtr base;
  std::vector<ClassPtr> nodes;
  std::vector<ClassPtr> links;
  PropertyDeclPtr extra;
  std::vector<InstancePtr> nodeInstances;
  std::vector<InstancePtr> linkInstances;

 private:
  void AddNode() {
    auto& place = nodeInstances[Pick(nodeInstances.size())];
    if (place) place->Delete({});
    place = repository.Instance(nodes[Pick(nodes.size())],
                                {{"Name", TCIMValue(std::to_string(Pick(12)))}});
  }
  void DropNode() {
    if (auto& place = nodeInstances[Pick(nodeInstances.size())]) {
      place->Delete({});
      place.reset();
    }
  }
  void AddLink() {
    const auto from = AnyNode();
    const auto to = AnyNode();
    if (!from || !to) return AddNode();
    auto& place = linkInstances[Pick(linkInstances.size())];
    if (place) place->Delete({});
    const auto& cls = links[Pick(links.size())];
    const bool holds = cls == links[1];
    place = repository.Link(cls, holds ? "Group" : "Alpha", from, holds ? "Part" : "Beta", to);
  }
  void DropLink() {
    if (auto& place = linkInstances[Pick(linkInstances.size())]) {
      place->Delete({});
      place.reset();
    }
  }
  void MoveLinkEnd() {
    const auto& link = linkInstances[Pick(linkInstances.size())];
    const auto node = AnyNode();
    if (!link || !node) return;
    const bool holds = link->GetClass({}) == links[1];
    link->SetPropertyValue(holds ? "Part" : "Beta", TCIMValue(node->GetReference({})), {});
    if (Pick(2) == 0) link->AddToNamespace({});
  }
  void RekeyNode() {
    const auto node = AnyNode();
    if (!node) return;
    node->SetPropertyValue("Name", TCIMValue(std::to_string(Pick(12))), {});
    if (Pick(2) == 0) node->AddToNamespace({});
  }
  void ReadUndeclared() {
    if (const auto node = AnyNode()) node->GetProperty("speedDuplex", {});
  }
  void Redefault() {
    const auto node = AnyNode();
    extra->SetDefaultValue(
        node ? TCIMValue(node->GetReference({})) : TCIMValue::NullReference(base), {});
  }

  std::mt19937 m_random;
};

// What a traversal finds, with `onFound` done to the model at each find.
template <class OnFound>
Names Associators(const InstancePtr& node, const Question& question, OnFound&& onFound) {
  Names found;
  node->EnumerateAssociatedInstances(
      [&](InstancePtr other) {
        found.push_back(other->GetReference({}).GetPath());
        onFound();
        return true;
      },
      question.associationClass, question.resultClass, question.role, question.resultRole, {});
  return found;
}

std::vector<InstancePtr> References(const InstancePtr& node, const Question& question) {
  std::vector<InstancePtr> found;
  node->EnumerateAssociationInstances(
      [&](InstancePtr association) {
        found.push_back(association);
        return true;
      },
      question.associationClass, question.role, {});
  return found;
}

TEST(TLinkIndex, AnswersAsTheWalkDoesThroughAMillionChangesAndQuestions) {
  RecordingLogger log;
  RandomModel model(20240607);
  std::size_t answered = 0;
  for (int operation = 0; operation < 1000000; ++operation) {
    if (operation % 16 != 0) {
      model.Change();
      continue;
    }
    const auto node = model.AnyNode();
    if (!node) continue;
    const Question question = model.AnyQuestion();
    const auto references = PlainReferences(node, question.associationClass, question.role);
    const auto associators = PlainAssociators(model.repository.ns, node, question);
    // The first question walks, the second makes the index, the third finds it.
    for (int time = 0; time < 3; ++time) {
      ASSERT_EQ(References(node, question), references) << operation;
      ASSERT_EQ(Associators(node, question, [] {}), associators) << operation;
    }
    answered += associators.size();
    log.Take();
  }
  EXPECT_GT(answered, 10000u);
}

// Two equal models are walked by callbacks that change them in the same way: one is asked for
// the first time after a change and walks, the other has its index.
TEST(TLinkIndex, GoesOnAsTheWalkDoesWhenTheCallbackChangesTheModel) {
  RecordingLogger log;
  for (unsigned seed = 0; seed < 300; ++seed) {
    RandomModel walked(seed);
    RandomModel indexed(seed);
    for (int i = 0; i < 300; ++i) {
      walked.Change();
      indexed.Change();
    }
    for (std::size_t i = 0; i < walked.nodeInstances.size(); ++i) {
      const auto& plain = walked.nodeInstances[i];
      const auto& node = indexed.nodeInstances[i];
      ASSERT_EQ(!plain, !node);
      if (!plain) continue;
      const Question everything{"", "<root>", "", ""};
      for (int time = 0; time < 3; ++time) Associators(node, everything, [] {});
      const auto expected = Associators(plain, everything, [&] { walked.Change(); });
      EXPECT_EQ(Associators(node, everything, [&] { indexed.Change(); }), expected) << seed;
    }
    log.Take();
  }
}

}  // namespace

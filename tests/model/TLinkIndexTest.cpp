// The index of links against the walk that it stands for: a repository goes through random
// changes, one at least between any two questions, and every answer is compared with one worked
// out here, from the contract alone, by resolving each reference of each association. What can
// be asked for an index is asked whether there is one.

#include <gtest/gtest.h>

#include <random>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemClass.h"
#include "support/ForeignClass.h"
#include "support/ForeignInstance.h"
#include "support/Repository.h"
#include "support/UnreliableNamespace.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

struct Question {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

// What a reference leads to, empty when that is nothing. Fails the examination of its
// association where resolving fails otherwise.
boost::shared_ptr<ICIMElement> ResolveOrNull(const TCIMValue& value) {
  try {
    return static_cast<const TCIMReference&>(value).GetCIMElement(false);
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return {};
  }
}

std::vector<std::pair<std::string, TCIMValue>> References(ICIMInstance& association) {
  std::vector<std::pair<std::string, TCIMValue>> references;
  association.EnumerateProperties(
      [&](boost::shared_ptr<ICIMProperty> slot) {
        const TCIMValue value = slot->GetValue({});
        if (value.IsReference()) references.emplace_back(slot->GetDecl({})->GetName({}), value);
        return true;
      },
      {});
  return references;
}

bool Refers(ICIMInstance& association, const InstancePtr& instance, const std::string& role) {
  try {
    for (const auto& [name, value] : References(association))
      if ((role.empty() || name == role) && ResolveOrNull(value) == instance) return true;
  } catch (const THAVException&) {
    // Then it counts as not referring.
  }
  return false;
}

// Calls back with the association instances that refer to `instance`, in the order of a walk:
// of each class those that it had when its turn came.
template <class OnFound>
void PlainWalk(const InstancePtr& instance, const std::string& cls, const std::string& role,
               OnFound&& onFound) {
  instance->GetClass({})->EnumerateAssociationClasses(
      [&](ClassPtr association) {
        association->EnumerateInstances(
            [&](InstancePtr candidate) {
              if (Refers(*candidate, instance, role)) onFound(candidate);
              return true;
            },
            false, {});
        return true;
      },
      cls, role, {});
}

InstancePtr PlainOtherEnd(const InstancePtr& instance, const InstancePtr& association,
                          const ClassPtr& result, const Question& question) {
  bool selfSeen = false;
  for (const auto& [name, value] : References(*association)) {
    const auto referenced = value.GetReferencedClass();
    const bool passes = referenced && referenced->IsA(result, {});
    if (!question.resultRole.empty()) {
      if (name == question.resultRole && passes)
        return boost::dynamic_pointer_cast<ICIMInstance>(ResolveOrNull(value));
      continue;
    }
    if (!selfSeen) {
      selfSeen = question.role.empty()
                     ? referenced == instance->GetClass({}) && ResolveOrNull(value) == instance
                     : name == question.role;
      if (selfSeen) continue;
    }
    if (passes) return boost::dynamic_pointer_cast<ICIMInstance>(ResolveOrNull(value));
  }
  return {};
}

template <class OnFound>
void PlainAssociators(const InstancePtr& instance, const Question& question, OnFound&& onFound) {
  ClassPtr result;
  try {
    result = instance->GetClass({})->GetNamespace({})->GetClass(question.resultClass, {});
  } catch (const THAVException& failure) {
    EXPECT_EQ(failure.GetStatusCode(), kHAVNotFound);
    return;
  }
  PlainWalk(instance, question.associationClass, "", [&](const InstancePtr& association) {
    // What a host made is no association of which the other end is looked for.
    if (dynamic_cast<const ForeignInstance*>(association.get())) return;
    InstancePtr other;
    try {
      other = PlainOtherEnd(instance, association, result, question);
    } catch (const THAVException&) {
    }
    if (other) onFound(other);
  });
}

class RandomModel {
 public:
  explicit RandomModel(unsigned seed) : m_random(seed) {
    base = repository.Class("Node");
    for (int i = 0; i < kSpares; ++i) spareLeaves.push_back(repository.Allocate("LeafB", base));
    nodes = {base, repository.Class("LeafA", base), repository.Class("LeafB", base)};
    for (int i = 0; i < kSpares; ++i) {
      spareLinks.push_back(repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}}));
      for (const char* role : {"Alpha", "Beta"})
        repository.Reference(spareLinks.back(), role, base, {{"Key", TCIMValue(true)}});
    }
    links = {repository.Association("Link", "Alpha", base, "Beta", base),
             repository.Association("Holds", "Group", nodes[1], "Part", base)};
    // Never assigned: it refers to what its declaration says at the moment.
    extra = repository.Reference(links[1], "Extra", base);
    text = repository.Property(links[0], "Text", TCIMValue("text"));
    auto sub = repository.Allocate("SpecialLink", links[0]);
    sub->AddToNamespace({});
    links.push_back(sub);
    // The same names in a namespace beside it.
    otherNode = other.Class("Node");
    links.push_back(repository.Association("Bridge", "Here", base, "There", otherNode));
    foreign = boost::make_shared<ForeignClass>(base);
    host = boost::make_shared<UnreliableNamespace>(repository.ns);
    nodeInstances.resize(12);
    linkInstances.resize(30);
  }

  std::size_t Pick(std::size_t n) { return m_random() % n; }

  void Change() {
    switch (Pick(44)) {
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
        if (Pick(50) == 0) links[Pick(links.size())]->GetNamespace({})->ClearInstances();
        break;
      case 13: Redefault(); break;
      case 14: AddNodeBeside(); break;
      case 15: PointElsewhere(); break;
      case 16: PointByText(); break;
      case 17: PointToNothing(); break;
      case 18:
        if (Pick(8) == 0) PointThroughHost();
        break;
      case 19:
        if (Pick(8) == 0) StoreElsewhere();
        break;
      case 20:
        if (Pick(20) == 0) Redefine();
        break;
      case 21:
        if (Pick(20) == 0) Respell();
        break;
      case 22:
        if (Pick(20) == 0) Retype();
        break;
      case 23:
        if (Pick(20) == 0) StoreForeign();
        break;
      default: AddLink(); break;
    }
  }

  InstancePtr AnyNode() { return nodeInstances[Pick(nodeInstances.size())]; }

  Question AnyQuestion() {
    static const char* const classes[] = {"", "", "", "Link", "SpecialLink", "Holds", "Unknown"};
    static const char* const results[] = {"<root>", "<root>", "Node", "LeafA", "LeafB"};
    static const char* const roles[] = {"",     "",      "",     "Alpha", "Beta",
                                        "Here", "Group", "Part", "Nobody"};
    return {classes[Pick(7)], results[Pick(5)], roles[Pick(9)], roles[Pick(9)]};
  }

  // The association classes that have been asked twice have an index while they have instances.
  void ExpectIndexes() const {
    for (const auto& cls : links) {
      const auto& own = *TInmemClass::Own(*cls);
      if (!own.HasInstances()) continue;
      own.Links();
      EXPECT_NE(own.Links(), nullptr) << cls->GetName({});
    }
  }

  Repository repository{true};
  Repository other;
  ClassPtr base;
  ClassPtr otherNode;
  ClassPtr foreign;
  boost::shared_ptr<UnreliableNamespace> host;
  std::vector<ClassPtr> nodes;
  std::vector<ClassPtr> links;
  std::vector<ClassPtr> spareLeaves;
  std::vector<ClassPtr> spareLinks;
  PropertyDeclPtr extra;
  PropertyDeclPtr text;
  std::vector<InstancePtr> nodeInstances;
  std::vector<InstancePtr> linkInstances;

 private:
  TCIMValue AnyName() { return TCIMValue(std::to_string(Pick(12))); }
  using Ends = std::pair<const char*, const char*>;
  static Ends EndsOf(const ClassPtr& cls) {
    const auto& name = cls->GetName({});
    if (name == "Holds") return {"Group", "Part"};
    if (name == "Bridge") return {"Here", "There"};
    return {"Alpha", "Beta"};
  }
  void Point(const TCIMValue& reference) {
    const auto& link = linkInstances[Pick(linkInstances.size())];
    if (!link) return;
    link->SetPropertyValue(EndsOf(link->GetClass({})).second, reference, {});
    // Not valid everywhere: then it stays where it was.
    if (Pick(3) == 0) link->AddToNamespace({});
  }
  TCIMReference ReferenceTo(const ClassPtr& cls, const NamespacePtr& home = {}) {
    TCIMReference reference(home, {{"Name", AnyName()}});
    reference.SetClass(cls);
    return reference;
  }

  void AddNode() {
    auto& place = nodeInstances[Pick(nodeInstances.size())];
    if (place) place->Delete({});
    place = repository.Instance(nodes[Pick(nodes.size())], {{"Name", AnyName()}});
  }
  void AddNodeBeside() {
    auto& place = nodeInstances[Pick(nodeInstances.size())];
    if (place) place->Delete({});
    place = other.Instance(otherNode, {{"Name", AnyName()}});
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
    const Ends ends = EndsOf(cls);
    place = repository.Link(cls, ends.first, from, ends.second, to);
  }
  void DropLink() {
    if (auto& place = linkInstances[Pick(linkInstances.size())]) {
      place->Delete({});
      place.reset();
    }
  }
  void MoveLinkEnd() {
    if (const auto node = AnyNode()) Point(TCIMValue(node->GetReference({})));
  }
  void RekeyNode() {
    const auto node = AnyNode();
    if (!node) return;
    node->SetPropertyValue("Name", AnyName(), {});
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
  // Into the namespace beside, or from a class there into this one.
  void PointElsewhere() {
    Point(TCIMValue(Pick(2) == 0 ? ReferenceTo(otherNode) : ReferenceTo(otherNode, repository.ns)));
  }
  void PointByText() {
    const auto name = "node.NAME=\"" + std::to_string(Pick(12)) + "\"";
    Point(TCIMValue(TCIMReference::Parse(name, Pick(2) == 0 ? repository.ns : NamespacePtr())));
  }
  void PointToNothing() {
    static const char* const texts[] = {"Nowhere.Name=\"1\"", "LeafA", "Node.Other=\"1\""};
    Point(Pick(4) == 0 ? TCIMValue::NullReference(base)
                       : TCIMValue(TCIMReference::Parse(texts[Pick(3)], repository.ns)));
  }
  void PointThroughHost() {
    Point(TCIMValue(Pick(2) == 0 ? ReferenceTo(base, host) : ReferenceTo(foreign)));
  }
  // In the store of another class, here or beside.
  void StoreElsewhere() {
    const auto node = AnyNode();
    if (!node) return;
    const auto& cls = Pick(2) == 0 ? otherNode : nodes[Pick(nodes.size())];
    if (Pick(2) == 0)
      cls->AddInstance(node, {});
    else
      cls->RemoveInstance(node, {});
  }
  void Redefine() {
    const bool leaf = Pick(2) == 0;
    auto& spares = leaf ? spareLeaves : spareLinks;
    if (spares.empty()) return;
    spares.back()->AddToNamespace({});
    (leaf ? nodes[2] : links[0]) = spares.back();
    spares.pop_back();
  }
  // The key, in another case.
  void Respell() { repository.Key(base, Pick(2) == 0 ? "NAME" : "Name"); }
  void Retype() {
    const auto node = AnyNode();
    text->SetDefaultValue(node ? TCIMValue(node->GetReference({})) : TCIMValue("text"), {});
  }
  // A host's instance in place of one of the links.
  void StoreForeign() {
    const auto& link = linkInstances[Pick(linkInstances.size())];
    if (link) link->GetClass({})->AddInstance(boost::make_shared<ForeignInstance>(link), {});
  }

  static constexpr int kSpares = 20;

  std::mt19937 m_random;
};

Names PathsOf(const std::vector<InstancePtr>& instances) {
  Names paths;
  for (const auto& instance : instances) paths.push_back(instance->GetReference({}).GetPath());
  return paths;
}

template <class OnFound>
void References(const InstancePtr& node, const Question& question, OnFound&& onFound) {
  node->EnumerateAssociationInstances([&](InstancePtr found) { return onFound(found), true; },
                                      question.associationClass, question.role, {});
}

template <class OnFound>
void Associators(const InstancePtr& node, const Question& question, OnFound&& onFound) {
  node->EnumerateAssociatedInstances([&](InstancePtr found) { return onFound(found), true; },
                                     question.associationClass, question.resultClass, question.role,
                                     question.resultRole, {});
}

template <class Ask>
std::vector<InstancePtr> Found(Ask&& ask) {
  std::vector<InstancePtr> found;
  ask([&](const InstancePtr& instance) { found.push_back(instance); });
  return found;
}

TEST(TLinkIndex, AnswersAsTheWalkDoesWhateverChangedBetweenTwoQuestions) {
  RecordingLogger log;
  std::size_t answered = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    RandomModel model(20240607 + seed);
    for (int i = 0; i < 100; ++i) model.Change();
    for (int question = 0; question < 700; ++question) {
      for (std::size_t changes = 1 + model.Pick(3); changes > 0; --changes) model.Change();
      const auto node = model.AnyNode();
      if (!node) continue;
      const Question asked = model.AnyQuestion();
      const auto references = Found([&](const auto& onFound) {
        PlainWalk(node, asked.associationClass, asked.role, onFound);
      });
      const auto associators =
          Found([&](const auto& onFound) { PlainAssociators(node, asked, onFound); });
      for (int time = 0; time < 2; ++time) {
        ASSERT_EQ(PathsOf(Found([&](const auto& onFound) { References(node, asked, onFound); })),
                  PathsOf(references))
            << seed << ", question " << question;
        ASSERT_EQ(Found([&](const auto& onFound) { References(node, asked, onFound); }),
                  references);
        ASSERT_EQ(PathsOf(Found([&](const auto& onFound) { Associators(node, asked, onFound); })),
                  PathsOf(associators))
            << seed << ", question " << question;
      }
      answered += associators.size();
      if (question > 10) model.ExpectIndexes();
      log.Take();
    }
  }
  EXPECT_GT(answered, 6000u);
}

// Two equal models are walked by callbacks that change them in the same way: one by the plain
// walk, the other by questions that have their index.
TEST(TLinkIndex, GoesOnAsTheWalkDoesWhenTheCallbackChangesTheModel) {
  RecordingLogger log;
  const Question everything{"", "<root>", "", ""};
  std::size_t found = 0;
  for (unsigned seed = 0; seed < 300; ++seed) {
    RandomModel walked(seed);
    RandomModel indexed(seed);
    for (int i = 0; i < 300; ++i) {
      walked.Change();
      indexed.Change();
    }
    for (std::size_t i = 0; i < walked.nodeInstances.size(); ++i) {
      const auto plain = walked.nodeInstances[i];
      const auto node = indexed.nodeInstances[i];
      ASSERT_EQ(!plain, !node);
      if (!plain) continue;
      for (int time = 0; time < 2; ++time) References(node, everything, [](const auto&) {});
      Names expected;
      Names answer;
      const bool references = seed % 2 == 0;
      const auto changes = 1 + seed % 3;
      const auto noting = [&](Names& names, RandomModel& model) {
        return [&, changes](const InstancePtr& it) {
          names.push_back(it->GetReference({}).GetPath());
          for (unsigned change = 0; change < changes; ++change) model.Change();
        };
      };
      if (references) {
        PlainWalk(plain, "", "", noting(expected, walked));
        References(node, everything, noting(answer, indexed));
      } else {
        PlainAssociators(plain, everything, noting(expected, walked));
        Associators(node, everything, noting(answer, indexed));
      }
      ASSERT_EQ(answer, expected) << seed << ", node " << i;
      found += answer.size();
    }
    log.Take();
  }
  EXPECT_GT(found, 2000u);
}

struct SmallModel {
  Repository repository;
  ClassPtr node = repository.Class("Node");
  ClassPtr link = repository.Association("Link", "From", node, "To", node);
  InstancePtr a = repository.Instance(node, {{"Name", TCIMValue("a")}});
  InstancePtr b = repository.Instance(node, {{"Name", TCIMValue("b")}});
  InstancePtr joined = repository.Link(link, "From", a, "To", b);

  // What is asked often enough for an index.
  static Names ReferencesTo(const InstancePtr& instance) {
    Names names;
    for (int time = 0; time < 3; ++time)
      names = PathsOf(Found([&](const auto& onFound) { References(instance, {}, onFound); }));
    return names;
  }
};

TEST(TLinkIndex, FindsAnInstanceThatAnotherClassStoresUnderAnotherPath) {
  SmallModel model;
  Repository beside;
  const auto otherNode = beside.Class("Node");
  TCIMReference there(NamespacePtr(), {{"Name", TCIMValue("c")}});
  there.SetClass(otherNode);
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
  model.joined->SetPropertyValue("From", TCIMValue(there), {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 0u);
  model.a->SetPropertyValue("Name", TCIMValue("c"), {});
  otherNode->AddInstance(model.a, {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
}

// Names that differ in one bit have one hash where that bit is the one of the case.
TEST(TLinkIndex, TellsTwoPathsOfOneHashApart) {
  SmallModel model;
  const auto at = model.repository.Instance(model.node, {{"Name", TCIMValue("@")}});
  const auto grave = model.repository.Instance(model.node, {{"Name", TCIMValue("`")}});
  const auto toAt = model.repository.Link(model.link, "From", at, "To", model.b);
  const auto toGrave = model.repository.Link(model.link, "From", grave, "To", model.b);
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(SmallModel::ReferencesTo(at), PathsOf({toAt}));
    EXPECT_EQ(SmallModel::ReferencesTo(grave), PathsOf({toGrave}));
    for (const auto& end : {at, grave})
      EXPECT_EQ(Found([&](const auto& onFound) {
                  Associators(end, {"", "Node", "", ""}, onFound);
                }),
                std::vector<InstancePtr>{model.b});
  }
  toAt->Delete({});
  EXPECT_EQ(SmallModel::ReferencesTo(at), Names());
  EXPECT_EQ(SmallModel::ReferencesTo(grave), PathsOf({toGrave}));
}

TEST(TLinkIndex, FindsAnAssociationOfAHostsMakingAndFollowsItsReferences) {
  SmallModel model;
  const auto behind = model.link->AllocateInstance({});
  behind->SetPropertyValue("From", TCIMValue(model.b->GetReference({})), {});
  behind->SetPropertyValue("To", TCIMValue(model.a->GetReference({})), {});
  const auto wrapper = boost::make_shared<ForeignInstance>(behind);
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
  model.link->AddInstance(wrapper, {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 2u);
  EXPECT_EQ(SmallModel::ReferencesTo(model.b).size(), 2u);
  // What it refers to changes without a word to the index.
  behind->SetPropertyValue("To", TCIMValue(model.b->GetReference({})), {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
  model.link->RemoveInstance(wrapper, {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.b).size(), 1u);
}

TEST(TLinkIndex, ADanglingLinkIsPassedOverAndAnotherFailureEndsItsAssociation) {
  SmallModel model;
  const auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  TCIMReference through(host, {{"Name", TCIMValue("b")}});
  through.SetClass(model.node);
  const auto behindHost = model.link->AllocateInstance({});
  behindHost->SetPropertyValue("From", TCIMValue(through), {});
  behindHost->SetPropertyValue("To", TCIMValue(model.a->GetReference({})), {});
  behindHost->AddToNamespace({});
  const auto c = model.repository.Instance(model.node, {{"Name", TCIMValue("c")}});
  const auto dangling = model.repository.Link(model.link, "From", c, "To", model.a);
  c->Delete({});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 3u);
  const auto others = [&] {
    return PathsOf(Found([&](const auto& onFound) {
      Associators(model.a, {"", "Node", "", ""}, onFound);
    }));
  };
  // One link leads to b, one to b through the host, one to nothing any more.
  EXPECT_EQ(others(), (Names{"Node.Name=\"b\"", "Node.Name=\"b\""}));
  host->FailWithStatus(kHAVNotFound);
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 3u);
  EXPECT_EQ(others(), Names{"Node.Name=\"b\""});
  host->FailWithStatus(kHAVTypesDiffer);
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 2u);
  EXPECT_EQ(others(), Names{"Node.Name=\"b\""});
}

// The index is told of nothing that happens at the other ends.
TEST(TLinkIndex, LinksIntoAnotherNamespaceEndWhenThatIsCleared) {
  SmallModel model;
  model.joined->Delete({});
  Repository beside;
  const auto otherNode = beside.Class("Other");
  const auto bridge =
      model.repository.Association("Bridge", "Here", model.node, "There", otherNode);
  const auto ask = [&](const InstancePtr& instance) {
    for (int time = 0; time < 3; ++time)
      Found([&](const auto& onFound) { Associators(instance, {"", "<root>", "", ""}, onFound); });
    return PathsOf(Found([&](const auto& onFound) {
      Associators(instance, {"", "<root>", "", ""}, onFound);
    }));
  };
  auto there = beside.Instance(otherNode, {{"Name", TCIMValue("there")}});
  model.repository.Link(bridge, "Here", model.a, "There", there);
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(ask(model.a), Names{"Other.Name=\"there\""});
    EXPECT_EQ(ask(there), Names{"Node.Name=\"a\""});
    beside.ns->ClearInstances();
    EXPECT_EQ(ask(model.a), Names());
    there = beside.Instance(otherNode, {{"Name", TCIMValue("there")}});
    EXPECT_EQ(ask(model.a), Names{"Other.Name=\"there\""});
  }
  model.repository.ns->ClearInstances();
  EXPECT_EQ(ask(there), Names());
}

std::vector<InstancePtr> OthersOf(const InstancePtr& instance) {
  return Found([&](const auto& onFound) { Associators(instance, {"", "Node", "", ""}, onFound); });
}

// Often enough that what the links lead to is known.
void GetToKnow(const InstancePtr& instance) {
  for (int time = 0; time < 4; ++time) OthersOf(instance);
}

TEST(TLinkIndex, AnEndThatLeftItsPlaceIsLookedForAgain) {
  SmallModel model;
  GetToKnow(model.a);
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>{model.b});
  model.b->Delete({});
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>());
  model.b->AddToNamespace({});
  GetToKnow(model.a);
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>{model.b});
  model.b->SetPropertyValue("Name", TCIMValue("elsewhere"), {});
  model.b->AddToNamespace({});
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>());
  const auto other = model.repository.Instance(model.node, {{"Name", TCIMValue("b")}});
  GetToKnow(model.a);
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>{other});
  EXPECT_EQ(SmallModel::ReferencesTo(other).size(), 1u);
  EXPECT_EQ(SmallModel::ReferencesTo(model.b).size(), 0u);
}

// One that nobody holds any more may give its memory to the next that is made.
TEST(TLinkIndex, AnotherInstanceInTheMemoryOfAnEndIsNotTakenForIt) {
  SmallModel model;
  for (int time = 0; time < 20; ++time) {
    GetToKnow(model.a);
    model.b->Delete({});
    model.b.reset();
    const auto next = model.repository.Instance(model.node, {{"Name", TCIMValue("next")}});
    EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>());
    next->Delete({});
    model.b = model.repository.Instance(model.node, {{"Name", TCIMValue("b")}});
    EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>{model.b});
  }
}

TEST(TLinkIndex, AnEndThatTheCallbackDeletesIsNotReported) {
  SmallModel model;
  const auto c = model.repository.Instance(model.node, {{"Name", TCIMValue("c")}});
  model.repository.Link(model.link, "From", model.a, "To", c);
  GetToKnow(model.a);
  EXPECT_EQ(OthersOf(model.a), (std::vector<InstancePtr>{model.b, c}));
  std::vector<InstancePtr> found;
  Associators(model.a, {"", "Node", "", ""}, [&](const InstancePtr& other) {
    found.push_back(other);
    if (other == model.b) c->Delete({});
  });
  EXPECT_EQ(found, std::vector<InstancePtr>{model.b});
}

TEST(TLinkIndex, AnAssociationOfAnInstanceWithItselfHasItAtTheOtherEnd) {
  SmallModel model;
  model.joined->Delete({});
  model.repository.Link(model.link, "From", model.a, "To", model.a);
  GetToKnow(model.a);
  EXPECT_EQ(OthersOf(model.a), std::vector<InstancePtr>{model.a});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
}

// A host's namespace that calls an instance what it likes.
class AliasNamespace : public UnreliableNamespace {
 public:
  AliasNamespace(NamespacePtr behind, InstancePtr instance)
      : UnreliableNamespace(std::move(behind)), m_instance(std::move(instance)) {}
  InstancePtr GetInstance(const TCIMReference&, TOptions) const override { return m_instance; }

 private:
  InstancePtr m_instance;
};

TEST(TLinkIndex, FindsAnInstanceThatAHostsNamespaceCallsByAnotherPath) {
  SmallModel model;
  const auto alias = boost::make_shared<AliasNamespace>(model.repository.ns, model.a);
  TCIMReference there(alias, {{"Name", TCIMValue("nothing")}});
  there.SetClass(model.node);
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
  model.joined->SetPropertyValue("From", TCIMValue(there), {});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
  model.link->GetPropertyDecl("From", {})->SetDefaultValue(TCIMValue(there), {});
  const auto unassigned = model.link->AllocateInstance({});
  unassigned->SetPropertyValue("To", TCIMValue(model.b->GetReference({})), {});
  unassigned->AddToNamespace({});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 2u);
  // Both have the path of the other by now.
  model.joined->Delete({});
  unassigned->AddToNamespace({});
  EXPECT_EQ(SmallModel::ReferencesTo(model.a).size(), 1u);
}

}  // namespace

// What the index of links knows of where references lead, without resolving them: what a question
// has found, for as long as it stands.

#include <gtest/gtest.h>

#include <functional>

#include <boost/make_shared.hpp>

#include "model/LinkModel.h"
#include "support/ForeignClass.h"
#include "support/UnreliableNamespace.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

struct LinkedPair : LinkModel {
  InstancePtr a = Node("a");
  InstancePtr b = Node("b");
  InstancePtr joined = Link(a, b);
};

// Often enough that there is an index, and that it knows what it can.
void GetToKnow(const InstancePtr& instance) {
  for (int time = 0; time < 4; ++time) Associators(instance);
}

TEST(LinkEnds, AreKnownWhenAQuestionHasFoundThem) {
  LinkedPair model;
  EXPECT_EQ(KnownEnd(model.joined, "From"), nullptr);
  IndexOf(model.link);
  EXPECT_EQ(KnownEnd(model.joined, "From"), nullptr);
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  References(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "From"), model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  Associators(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "From"), model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
  EXPECT_EQ(KnownEnd(model.joined, "Nothing"), nullptr);
  EXPECT_EQ(KnownEnd(model.Link(model.b, model.a), "From"), nullptr);
}

TEST(LinkEnds, AreKnownWhenOnlyAResultRoleWasAskedFor) {
  LinkedPair model;
  for (int time = 0; time < 3; ++time)
    EXPECT_EQ(Associators(model.a, {"", "Node", "", "To"}), Names{"Node.Name=\"b\""});
  EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
}

TEST(LinkEnds, OfManyAssociationsAreAllKnownAndAnotherChangeForgetsNoneOfTheOthers) {
  LinkModel model;
  const auto hub = model.Node("hub");
  std::vector<InstancePtr> nodes;
  std::vector<InstancePtr> links;
  for (int i = 0; i < 20; ++i) {
    nodes.push_back(model.Node(std::to_string(i)));
    links.push_back(model.Link(hub, nodes.back()));
  }
  GetToKnow(hub);
  const auto expectKnown = [&](std::size_t from) {
    for (std::size_t i = from; i < links.size(); ++i) {
      EXPECT_EQ(KnownEnd(links[i], "From"), hub) << i;
      EXPECT_EQ(KnownEnd(links[i], "To"), nodes[i]) << i;
    }
  };
  expectKnown(0);
  links[0]->Delete({});
  expectKnown(1);
  const auto again = model.Link(hub, nodes[0]);
  EXPECT_EQ(KnownEnd(again, "From"), nullptr);
  EXPECT_EQ(KnownEnd(again, "To"), nullptr);
  links[1]->SetPropertyValue("To", TCIMValue(nodes[2]->GetReference({})), {});
  expectKnown(2);
  nodes[3]->Delete({});
  expectKnown(4);
  EXPECT_EQ(KnownEnd(links[3], "To"), nullptr);
}

TEST(LinkEnds, AreKnownAgainWhenALinkWasMadeAgain) {
  LinkedPair model;
  for (int time = 0; time < 3; ++time) {
    GetToKnow(model.a);
    GetToKnow(model.b);
    EXPECT_EQ(KnownEnd(model.joined, "From"), model.a);
    EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
    model.joined->Delete({});
    model.joined = model.Link(model.a, model.b);
  }
}

TEST(LinkEnds, AreKnownAgainOnceTheNamespaceWasCleared) {
  LinkedPair model;
  for (int time = 0; time < 3; ++time) {
    GetToKnow(model.a);
    EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
    model.repository.ns->ClearInstances();
    for (const auto& instance : {model.a, model.b, model.joined}) instance->AddToNamespace({});
    EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  }
}

TEST(LinkEnds, AreAnotherInstanceWhenThatStandsInThePlace) {
  LinkedPair model;
  GetToKnow(model.a);
  const auto successor = model.Node("b");
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  GetToKnow(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), successor);
  // The same instance again is another stay.
  successor->Delete({});
  model.b->AddToNamespace({});
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  GetToKnow(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
  model.b->AddToNamespace({});
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

// All links to a path share what is known of it: an older answer is none for the newer.
TEST(LinkEnds, AreForgottenByAllThatNameThePathWhenAnotherStandsThere) {
  LinkedPair model;
  const auto c = model.Node("c");
  const auto other = model.Link(c, model.b);
  GetToKnow(model.a);
  GetToKnow(c);
  const auto successor = model.Node("b");
  GetToKnow(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), successor);
  EXPECT_EQ(KnownEnd(other, "To"), nullptr);
  GetToKnow(c);
  EXPECT_EQ(KnownEnd(other, "To"), successor);
}

// What moves the place that a path leads to without moving the instance.
TEST(LinkEnds, AreLookedForAgainWhenAKeyIsSpeltOtherwise) {
  LinkedPair model;
  GetToKnow(model.a);
  model.repository.Key(model.node, "NAME");
  EXPECT_EQ(KnownEnd(model.joined, "From"), nullptr);
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  // From then on paths may be spelt either way: nothing is kept.
  GetToKnow(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

TEST(LinkEnds, AreLookedForAgainWhenAHostsInstanceMayStandInTheirPlace) {
  LinkedPair model;
  GetToKnow(model.a);
  TInmemClass& cls = dynamic_cast<TInmemClass&>(*model.node);
  EXPECT_TRUE(cls.IsPredictable());
  const auto other = model.repository.Class("Other");
  model.node->AddInstance(model.repository.Instance(other, {{"Name", TCIMValue("x")}}), {});
  EXPECT_FALSE(cls.IsPredictable());
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  GetToKnow(model.a);
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

TEST(LinkEnds, AreLookedForAgainWhenTheirClassIsDefinedAnew) {
  Repository repository(true);
  const auto node = repository.Allocate("Node");
  const auto successor = repository.Allocate("Node");
  for (const auto& cls : {node, successor}) repository.Key(cls, "Name");
  node->AddToNamespace({});
  const auto link = repository.Association("Link", "From", node, "To", node);
  const auto a = repository.Instance(node, {{"Name", TCIMValue("a")}});
  const auto b = repository.Instance(node, {{"Name", TCIMValue("b")}});
  const auto joined = repository.Link(link, "From", a, "To", b);
  GetToKnow(a);
  EXPECT_EQ(KnownEnd(joined, "To"), b);
  successor->AddToNamespace({});
  // It still stands in the class that it is of; the path leads to the other.
  node->AddInstance(b, {});
  EXPECT_EQ(KnownEnd(joined, "To"), nullptr);
  EXPECT_EQ(References(b), Names());
}

TEST(LinkEnds, AreNotKeptForAnInstanceThatIsStoredElsewhereAsWell) {
  LinkedPair model;
  GetToKnow(model.a);
  Repository beside;
  beside.Class("Node")->AddInstance(model.b, {});
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  GetToKnow(model.a);
  EXPECT_EQ(Associators(model.a), Names{"Node.Name=\"b\""});
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

TEST(LinkEnds, AreNotKeptForAnInstanceOfAHostsClass) {
  LinkedPair model;
  const boost::shared_ptr<ICIMClass> foreign = boost::make_shared<ForeignClass>(model.node);
  const InstancePtr end = boost::make_shared<TInmemInstance>(foreign, 0);
  end->SetPropertyValue("Name", TCIMValue("b"), {});
  model.node->AddInstance(end, {});
  for (int time = 0; time < 4; ++time) {
    EXPECT_EQ(Associators(model.a), Names{"Node.Name=\"b\""});
    EXPECT_EQ(References(end).size(), 1u);
    EXPECT_EQ(Associators(end), Names{"Node.Name=\"a\""});
  }
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

// By another class than that which the reference names: the answer to a filter would differ.
TEST(LinkEnds, AreNotKeptWhereTheReferenceNamesAnotherClass) {
  LinkedPair model;
  Repository beside;
  const auto otherNode = beside.Class("Node");
  const auto away = ReferenceTo(otherNode, {{"Name", TCIMValue("b")}}, model.repository.ns);
  model.joined->SetPropertyValue("To", TCIMValue(away), {});
  for (int time = 0; time < 4; ++time) EXPECT_EQ(Associators(model.a), Names{"Node.Name=\"b\""});
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  EXPECT_EQ(KnownEnd(model.joined, "From"), model.a);
}

// What a declaration says changes without a word to the association.
TEST(LinkEnds, AreNotKeptForWhatADeclarationSays) {
  LinkedPair model;
  const auto extra = model.repository.Reference(model.link, "Another", model.node);
  extra->SetDefaultValue(TCIMValue(model.b->GetReference({})), {});
  const auto association = model.Link(model.a, model.a);
  for (int time = 0; time < 4; ++time) {
    EXPECT_EQ(Associators(model.a, {"", "Node", "", "Another"}), Names{"Node.Name=\"b\""});
    EXPECT_EQ(References(model.b).size(), 2u);
  }
  EXPECT_EQ(KnownEnd(association, "Another"), nullptr);
}

TEST(LinkEnds, AreNotKeptWhereTheReferenceHasAnotherValueByThen) {
  LinkedPair model;
  TLinkIndex& index = IndexOf(model.link);
  const auto& values = Own(model.joined).Values();
  const std::size_t to = values.Layout().FindSpelt("To");
  index.Know(values, to, TCIMValue(model.a->GetReference({})), Own(model.a));
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
  index.Know(values, to, TCIMValue(model.b->GetReference({})), Own(model.b));
  EXPECT_EQ(KnownEnd(model.joined, "To"), model.b);
}

// A slot without a value, and an association that is not stored, have nothing to keep.
TEST(LinkEnds, AreNotKeptForASlotWithoutAValueOrAnAssociationThatIsNotStored) {
  LinkedPair model;
  model.repository.Reference(model.link, "Another", model.node);
  const auto association = model.Link(model.b, model.b);
  TLinkIndex& index = IndexOf(model.link);
  const TCIMValue toA(model.a->GetReference({}));
  const auto& values = Own(association).Values();
  index.Know(values, values.Layout().FindSpelt("Another"), toA, Own(model.a));
  EXPECT_EQ(KnownEnd(association, "Another"), nullptr);
  const auto unstored = model.link->AllocateInstance({});
  unstored->SetPropertyValue("From", toA, {});
  const auto& nowhere = Own(unstored).Values();
  index.Know(nowhere, nowhere.Layout().FindSpelt("From"), toA, Own(model.a));
  EXPECT_EQ(KnownEnd(unstored, "From"), nullptr);
}

TEST(LinkEnds, DoNotKeepAnInstanceAlive) {
  LinkedPair model;
  GetToKnow(model.a);
  const boost::weak_ptr<ICIMInstance> watch = model.b;
  model.b->Delete({});
  model.b.reset();
  EXPECT_TRUE(watch.expired());
  EXPECT_EQ(KnownEnd(model.joined, "To"), nullptr);
}

}  // namespace

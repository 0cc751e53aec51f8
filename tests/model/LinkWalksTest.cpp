// Walks over what an index offers, under way while the model changes: a walk finds what one over
// all associations finds that were stored when it began.

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include <boost/make_shared.hpp>

#include "model/LinkModel.h"
#include "support/ForeignClass.h"
#include "support/UnreliableNamespace.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

// Three associations, of which the first two refer to `a`.
struct Walked : LinkModel {
  InstancePtr a = Node("a");
  InstancePtr b = Node("b");
  InstancePtr c = Node("c");
  PropertyDeclPtr text = repository.Property(link, "Text", TCIMValue("text"));
  PropertyDeclPtr extra = repository.Reference(link, "Extra", node);
  InstancePtr first = Link(a, b);
  InstancePtr second = Link(b, a);
  InstancePtr third = Link(c, c);
  InstancePtr unstored = link->AllocateInstance({});
  ClassPtr other = repository.Class("Other");

  TCIMValue To(const InstancePtr& instance) const { return TCIMValue(instance->GetReference({})); }
};

Names PathsOf(const std::vector<InstancePtr>& instances) {
  Names paths;
  for (const auto& instance : instances) paths.push_back(PathOf(instance));
  return paths;
}

TEST(LinkWalks, AreCurrentUntilSomethingChangesByWhichOthersMayRefer) {
  const std::vector<std::pair<const char*, std::function<void(Walked&)>>> changes{
      {"an association comes", [](Walked& m) { m.Link(m.b, m.b); }},
      {"an association goes", [](Walked& m) { m.third->Delete({}); }},
      {"one goes whose path can no longer be made",
       [](Walked& m) {
         m.repository.Key(m.link, "More");
         m.third->Delete({});
       }},
      {"it refers elsewhere", [](Walked& m) { m.third->SetPropertyValue("To", m.To(m.a), {}); }},
      {"it refers to nothing",
       [](Walked& m) { m.third->SetPropertyValue("To", TCIMValue::NullReference(m.node), {}); }},
      {"all associations go", [](Walked& m) { m.repository.ns->ClearInstances(); }},
      {"the instance comes to another place",
       [](Walked& m) {
         m.a->SetPropertyValue("Name", TCIMValue("d"), {});
         m.a->AddToNamespace({});
       }},
      {"the instance is stored elsewhere as well",
       [](Walked& m) { m.other->AddInstance(m.a, {}); }},
      {"both at once",
       [](Walked& m) {
         m.other->AddInstance(m.a, {});
         m.Node("d");
       }},
      {"a default changes", [](Walked& m) { m.extra->SetDefaultValue(m.To(m.a), {}); }},
      {"one becomes a reference", [](Walked& m) { m.text->SetDefaultValue(m.To(m.a), {}); }}};
  for (const auto& [what, change] : changes) {
    Walked model;
    TLinkIndex::TWalk walk(IndexOf(model.link), Own(model.a));
    ASSERT_EQ(walk.Candidates().size(), 2u);
    const std::vector<InstancePtr> rest{model.second, model.third};
    const auto from = walk.Candidates()[0];
    EXPECT_TRUE(walk.IsCurrent()) << what;
    change(model);
    EXPECT_FALSE(walk.IsCurrent()) << what;
    // What was stored when it began, whatever became of it.
    EXPECT_EQ(walk.After(from), rest) << what;
  }
}

TEST(LinkWalks, StayCurrentWhenNoOtherCanReferByAChange) {
  const std::vector<std::pair<const char*, std::function<void(Walked&)>>> changes{
      {"an unstored association refers elsewhere",
       [](Walked& m) { m.unstored->SetPropertyValue("To", m.To(m.a), {}); }},
      {"what is no reference changes",
       [](Walked& m) { m.third->SetPropertyValue("Text", TCIMValue("new"), {}); }},
      {"an instance of another class comes and goes",
       [](Walked& m) {
         m.repository.Instance(m.other, {{"Name", TCIMValue("x")}})->Delete({});
       }},
      {"another instance goes", [](Walked& m) { m.b->Delete({}); }},
      {"the instance goes", [](Walked& m) { m.a->Delete({}); }},
      {"the default of what is no reference changes",
       [](Walked& m) { m.text->SetDefaultValue(TCIMValue("new"), {}); }}};
  for (const auto& [what, change] : changes) {
    Walked model;
    TLinkIndex::TWalk walk(IndexOf(model.link), Own(model.a));
    change(model);
    EXPECT_TRUE(walk.IsCurrent()) << what;
  }
}

TEST(LinkWalks, WithinEachOtherHaveWhatWasThereWhenTheyBegan) {
  Walked model;
  TLinkIndex& index = IndexOf(model.link);
  TLinkIndex::TWalk outer(index, Own(model.a));
  const auto begin = outer.Candidates()[0];
  {
    const TLinkIndex::TWalk inner(index, Own(model.b));
    EXPECT_TRUE(inner.IsCurrent());
  }
  TLinkIndex::TWalk inner(index, Own(model.a));
  model.third->Delete({});
  EXPECT_FALSE(outer.IsCurrent());
  EXPECT_FALSE(inner.IsCurrent());
  const auto added = model.Link(model.c, model.b);
  TLinkIndex::TWalk late(index, Own(model.a));
  EXPECT_TRUE(late.IsCurrent());
  EXPECT_EQ(PathsOf(outer.After(begin)), PathsOf({model.second, model.third}));
  EXPECT_EQ(PathsOf(inner.After(begin)), PathsOf({model.second, model.third}));
  EXPECT_EQ(PathsOf(late.After(begin)), PathsOf({model.second, added}));
}

// Asked often enough for an index, then with a callback that changes the model at the first
// association that it gets.
Names WithChange(const InstancePtr& instance, const std::function<void()>& change) {
  for (int time = 0; time < 3; ++time) References(instance);
  Names found;
  bool changed = false;
  instance->EnumerateAssociationInstances(
      [&](InstancePtr association) {
        found.push_back(PathOf(association));
        if (!std::exchange(changed, true)) change();
        return true;
      },
      "", "", {});
  return found;
}

TEST(LinkWalks, FindWhatRefersToTheInstanceOnceItHasMoved) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto c = model.Node("c");
  const auto first = model.Link(a, b);
  const auto toC = model.Link(b, c);
  c->Delete({});
  EXPECT_EQ(WithChange(a,
                       [&] {
                         a->SetPropertyValue("Name", TCIMValue("c"), {});
                         a->AddToNamespace({});
                       }),
            PathsOf({first, toC}));
}

TEST(LinkWalks, FindWhatRefersToTheInstanceOnceItIsStoredElsewhere) {
  for (const bool andAnotherComes : {false, true}) {
    LinkModel model;
    Repository beside;
    const auto otherNode = beside.Class("Node");
    const auto a = model.Node("a");
    const auto b = model.Node("b");
    const auto first = model.Link(a, b);
    const auto there =
        model.LinkFrom(TCIMValue(ReferenceTo(otherNode, {{"Name", TCIMValue("c")}})), b);
    const Names expected = PathsOf({first, there});
    EXPECT_EQ(WithChange(a,
                         [&] {
                           a->SetPropertyValue("Name", TCIMValue("c"), {});
                           otherNode->AddInstance(a, {});
                           if (andAnotherComes) model.Node("x");
                         }),
              expected);
  }
}

TEST(LinkWalks, FindWhatRefersToTheInstanceOnceADefaultHasChanged) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto extra = model.repository.Reference(model.link, "Extra", model.node);
  const auto first = model.Link(a, b);
  const auto second = model.Link(b, b);
  EXPECT_EQ(WithChange(a, [&] { extra->SetDefaultValue(TCIMValue(a->GetReference({})), {}); }),
            PathsOf({first, second}));
}

// An instance whose class is of a host's making has no count of what comes.
TEST(LinkWalks, FindTheLinksOfAnInstanceOfAHostsClass) {
  LinkModel model;
  const auto b = model.Node("b");
  const boost::shared_ptr<ICIMClass> foreign = boost::make_shared<ForeignClass>(model.node);
  const InstancePtr a = boost::make_shared<TInmemInstance>(foreign, 0);
  a->SetPropertyValue("Name", TCIMValue("a"), {});
  model.LinkFrom(TCIMValue(ReferenceTo(model.node, {{"Name", TCIMValue("a")}})), b);
  EXPECT_EQ(Offers(model.link, a), Names());
  EXPECT_EQ(References(a), Names());
  model.node->AddInstance(a, {});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(References(a).size(), 1u);
}

// Two of its references have the text of the path; the first leads into another namespace.
TEST(LinkWalks, FindAnAssociationByTheReferenceThatLeadsToTheInstance) {
  LinkModel model;
  Repository beside;
  const auto there = beside.Instance(beside.Class("Node"), {{"Name", TCIMValue("a")}});
  const auto a = model.Node("a");
  model.LinkFrom(TCIMValue(there->GetReference({})), a);
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(References(a).size(), 1u);
    EXPECT_EQ(References(there).size(), 0u);
    EXPECT_EQ(References(a, "", "To").size(), 1u);
    EXPECT_EQ(References(a, "", "From").size(), 0u);
  }
}

// An instance that was made before a property was declared has no slot for it: the answer is that
// of a derived property, which asks the class.
TEST(LinkWalks, AskForARoleThatEveryInstanceAnswersAsAWalkDoes) {
  LinkModel model;
  const auto a = model.Node("a");
  model.Link(a, a);
  IndexOf(model.link);
  const auto declared = model.repository.Reference(model.link, "Description", model.node);
  EXPECT_EQ(References(a, "", "Description"), Names());
  declared->SetDefaultValue(TCIMValue(a->GetReference({})), {});
  IndexOf(model.link);
  EXPECT_EQ(References(a, "", "Description"), Stored(model.link));
}

// A host's namespace that does something when it is asked for an instance.
class BusyNamespace : public UnreliableNamespace {
 public:
  BusyNamespace(const NamespacePtr& behind, std::function<void()> busy)
      : UnreliableNamespace(behind), m_busy(std::move(busy)) {}
  InstancePtr GetInstance(const TCIMReference& path, TOptions options) const override {
    m_busy();
    return UnreliableNamespace::GetInstance(path, options);
  }

 private:
  std::function<void()> m_busy;
};

TEST(LinkWalks, GoOnWhenResolvingAReferenceChangesTheAssociations) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto extra = model.repository.Reference(model.link, "Another", model.node);
  const auto first = model.Link(b, b);
  const auto second = model.Link(b, a);
  InstancePtr extraLink;
  bool within = false;
  const auto busy = boost::make_shared<BusyNamespace>(model.repository.ns, [&] {
    if (std::exchange(within, true)) return;
    if (extraLink) extraLink->Delete({});
    extraLink = model.Link(a, b);
    within = false;
  });
  extra->SetDefaultValue(TCIMValue(ReferenceTo(model.node, {{"Name", TCIMValue("a")}}, busy)), {});
  for (int time = 0; time < 3; ++time) {
    const Names found = References(a);
    EXPECT_EQ(std::count(found.begin(), found.end(), PathOf(first)), 1);
    EXPECT_EQ(std::count(found.begin(), found.end(), PathOf(second)), 1);
  }
}

// The walk over the other ends, where the index knows some of them.
TEST(LinkWalks, PassOverAnEndOfAnotherClassThanTheOneAskedFor) {
  LinkModel model;
  const auto leaf = model.repository.Class("Leaf", model.node);
  const auto association = model.repository.Association("Triple", "A", model.node, "B", model.node);
  model.repository.Reference(association, "C", model.node);
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto c = model.repository.Instance(leaf, {{"Name", TCIMValue("c")}});
  const auto triple = model.repository.Link(association, "A", a, "B", b);
  triple->SetPropertyValue("C", TCIMValue(c->GetReference({})), {});
  for (int time = 0; time < 4; ++time) {
    EXPECT_EQ(Associators(a, {"", "Leaf"}), Names{"Leaf.Name=\"c\""});
    EXPECT_EQ(Associators(a, {"", "Node"}), Names{"Node.Name=\"b\""});
    EXPECT_EQ(Associators(c, {"", "Leaf"}), Names());
    EXPECT_EQ(Associators(b, {"", "Node"}), Names{"Node.Name=\"a\""});
    EXPECT_EQ(Associators(b, {"", "Leaf"}), Names{"Leaf.Name=\"c\""});
    EXPECT_EQ(Associators(b, {"", "Leaf", "B"}), Names{"Leaf.Name=\"c\""});
    EXPECT_EQ(Associators(b, {"", "Node", "C"}), Names{"Node.Name=\"a\""});
  }
}

TEST(LinkWalks, PassOverAReferenceToNoClassAtTheOtherEnd) {
  LinkModel model;
  model.repository.Property(model.link, "Any", TCIMValue::NullReference({}));
  const auto a = model.Node("a");
  const auto association = model.Link(a, model.Node("b"));
  association->SetPropertyValue("Any", TCIMValue(TCIMReference::Parse("Gone.Name=\"x\"", {})), {});
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(Associators(a), Names{"Node.Name=\"b\""});
    EXPECT_EQ(Associators(a, {"", "<root>", "From"}), Names{"Node.Name=\"b\""});
    EXPECT_EQ(Associators(a, {"", "<root>", "", "Any"}), Names());
  }
}

// The reference by which an association has an instance is one of its own class; one that leads
// there by the name of another class is an end like any other.
TEST(LinkWalks, TakeAReferenceThroughAnotherClassForTheOtherEnd) {
  LinkModel model;
  Repository beside;
  const auto otherNode = beside.Class("Node");
  const auto a = model.Node("a");
  otherNode->AddInstance(a, {});
  model.LinkFrom(TCIMValue(ReferenceTo(otherNode, {{"Name", TCIMValue("a")}})), a);
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Associators(a), Names{"Node.Name=\"a\""});
  const auto b = model.Node("b");
  model.link->EnumerateInstances([](InstancePtr link) { return link->Delete({}), true; }, false,
                                 {});
  model.LinkFrom(TCIMValue(ReferenceTo(otherNode, {{"Name", TCIMValue("a")}})), b);
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Associators(a), Names{"Node.Name=\"a\""});
}

}  // namespace

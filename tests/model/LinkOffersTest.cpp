// What the index of links offers as that which may refer to an instance: what names its path, and
// nothing else that can be judged by the text of a path.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include <boost/make_shared.hpp>

#include "model/LinkModel.h"
#include "support/ForeignClass.h"
#include "support/ForeignInstance.h"
#include "support/UnreliableNamespace.h"

namespace {

using namespace havtest;

using Names = std::vector<std::string>;

Names InRole(const std::vector<InstancePtr>& associations, const std::string& role) {
  Names offers;
  for (const auto& association : associations) offers.push_back(PathOf(association) + " " + role);
  std::sort(offers.begin(), offers.end());
  return offers;
}

TEST(LinkOffers, AreWhatNamesTheInstanceHoweverLongItsPathAndWhereverItDiffers) {
  LinkModel model;
  const auto hub = model.Node("hub");
  std::vector<InstancePtr> nodes;
  std::vector<InstancePtr> links;
  for (std::size_t length = 0; length < 20; ++length)
    for (const char* last : {"x", "y", "xx", "yx"}) {
      nodes.push_back(model.Node(std::string(length, 'n') + last));
      links.push_back(model.Link(nodes.back(), hub));
    }
  for (std::size_t i = 0; i < nodes.size(); ++i)
    EXPECT_EQ(Offers(model.link, nodes[i]), InRole({links[i]}, "from"));
  EXPECT_EQ(Offers(model.link, hub), InRole(links, "to"));
}

TEST(LinkOffers, AreWhatNamesTheInstanceInAnySpelling) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  for (const char* spelling : {"nODE.nAME=\"a\"", "node.Name=\"a\"", "Node.NAME=\"a\""}) {
    const auto unbound = TCIMReference::Parse(spelling, {});
    const auto association = model.LinkFrom(TCIMValue(unbound), b);
    EXPECT_EQ(Offers(model.link, a), InRole({association}, "from")) << spelling;
    model.link->RemoveInstance(association, {});
  }
}

TEST(LinkOffers, HaveNothingThatNamesNoneOrAnotherInstance) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto beside = boost::make_shared<Repository>();
  const auto there = beside->Instance(beside->Class("There"), {{"Name", TCIMValue("a")}});
  const std::vector<TCIMValue> references{
      TCIMValue(TCIMReference::Parse("Nowhere.Name=\"a\"", model.repository.ns)),
      TCIMValue(TCIMReference::Parse("Nowhere.Name=\"a\"", {})),
      TCIMValue(TCIMReference({}, {{"Name", TCIMValue("a")}})), TCIMValue(there->GetReference({})),
      TCIMValue::NullReference(model.node)};
  for (const auto& reference : references) model.LinkFrom(reference, b);
  EXPECT_EQ(Offers(model.link, a), Names());
  EXPECT_EQ(Offers(model.link, b).size(), Stored(model.link).size());
}

TEST(LinkOffers, ToAnInstanceThatIsStoredNowhereAreOnlyWhatNoTextTells) {
  LinkModel model;
  const auto a = model.Node("a");
  model.Link(a, a);
  model.repository.Reference(model.link, "Extra", model.node);
  model.Link(a, model.Node("b"));
  const auto nowhere = model.node->AllocateInstance({});
  nowhere->SetPropertyValue("Name", TCIMValue("a"), {});
  EXPECT_EQ(Offers(model.link, nowhere), Names());
}

TEST(LinkOffers, HaveWhatAHostsNamespaceOrClassResolvesForEverybody) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto c = model.Node("c");
  const auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  const auto through = ReferenceTo(model.node, {{"Name", TCIMValue("x")}}, host);
  const auto foreign = boost::make_shared<ForeignClass>(model.node);
  const auto byHost = model.LinkFrom(TCIMValue(through), b);
  const auto byClass =
      model.LinkFrom(TCIMValue(ReferenceTo(foreign, {{"Name", TCIMValue("y")}})), b);
  const Names expected = InRole({byHost, byClass}, "*");
  EXPECT_EQ(Offers(model.link, a), expected);
  EXPECT_EQ(Offers(model.link, b), expected);
  EXPECT_EQ(Offers(model.link, c), expected);
  byHost->SetPropertyValue("From", TCIMValue(a->GetReference({})), {});
  EXPECT_EQ(Offers(model.link, c), InRole({byClass}, "*"));
}

TEST(LinkOffers, HaveAssociationsOfAHostsMakingForEverybodyInTheOrderOfTheirPaths) {
  LinkModel model;
  const auto a = model.Node("a");
  std::vector<InstancePtr> wrappers;
  for (const char* name : {"b", "c", "d"}) {
    const auto behind = model.link->AllocateInstance({});
    behind->SetPropertyValue("From", TCIMValue(model.Node(name)->GetReference({})), {});
    behind->SetPropertyValue("To", TCIMValue(a->GetReference({})), {});
    wrappers.push_back(boost::make_shared<ForeignInstance>(behind));
  }
  model.link->AddInstance(wrappers[0], {});
  EXPECT_EQ(Offers(model.link, a), InRole({wrappers[0]}, "*"));
  model.link->AddInstance(wrappers[1], {});
  EXPECT_EQ(Offers(model.link, a), InRole({wrappers[0], wrappers[1]}, "*"));
  for (const std::size_t gone : {0u, 1u}) model.link->RemoveInstance(wrappers[gone], {});
  // As many as there were, from the last to the first.
  for (const std::size_t again : {2u, 0u}) model.link->AddInstance(wrappers[again], {});
  EXPECT_EQ(Offers(model.link, a), InRole({wrappers[0], wrappers[2]}, "*"));
}

TEST(LinkOffers, HaveAnAssociationOfAnotherClassForEverybodyAndItsOwnClassKeepsTrackOfIt) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto other = model.repository.Association("Other", "From", model.node, "To", model.node);
  const auto association = model.Link(a, b);
  IndexOf(model.link);
  const auto first = model.repository.Link(other, "From", b, "To", b);
  IndexOf(other);
  other->AddInstance(association, {});
  EXPECT_EQ(Offers(other, a), InRole({association}, "*"));
  association->SetPropertyValue("From", TCIMValue(b->GetReference({})), {});
  association->SetPropertyValue("To", TCIMValue(a->GetReference({})), {});
  const auto in = [&](const Names& offers) {
    Names roles;
    for (const auto& offer : offers) roles.push_back(offer.substr(offer.rfind(' ') + 1));
    return roles;
  };
  EXPECT_EQ(in(Offers(model.link, a)), Names{"to"});
  EXPECT_EQ(in(Offers(model.link, b)), Names{"from"});
}

TEST(LinkOffers, HaveAnAssociationWithADeclarationOfAHostsMakingForEverybody) {
  LinkModel model;
  const auto cls = model.repository.Allocate("Host", {}, {{"Association", TCIMValue(true)}});
  for (const char* role : {"From", "To"})
    model.repository.Reference(cls, role, model.node, {{"Key", TCIMValue(true)}});
  cls->AddPropertyDecl(
      boost::make_shared<ForeignPropertyDecl>(cls, "Extra", TCIMValue::NullReference(model.node)),
      {});
  cls->AddToNamespace({});
  const auto association =
      model.repository.Link(cls, "From", model.Node("b"), "To", model.Node("c"));
  EXPECT_EQ(Offers(cls, model.Node("a")), InRole({association}, "*"));
}

// Two references that no value was assigned to: each has its declaration's default.
TEST(LinkOffers, FollowTheDefaultOfEachDeclaration) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto c = model.Node("c");
  std::vector<PropertyDeclPtr> extras;
  for (const char* name : {"Extra1", "Extra2"})
    extras.push_back(model.repository.Reference(model.link, name, model.node));
  const auto association = model.Link(c, c);
  const auto another = model.Link(c, b);
  EXPECT_EQ(Offers(model.link, a), Names());
  extras[0]->SetDefaultValue(TCIMValue(a->GetReference({})), {});
  EXPECT_EQ(Offers(model.link, a), InRole({association, another}, "extra1"));
  extras[1]->SetDefaultValue(TCIMValue(b->GetReference({})), {});
  EXPECT_EQ(Offers(model.link, a), InRole({association, another}, "extra1"));
  // Beside what names it, each association in its place, its references in the order of names.
  EXPECT_EQ(Offers(model.link, b), (Names{PathOf(another) + " extra2", PathOf(another) + " to",
                                          PathOf(association) + " extra2"}));
  const auto host = boost::make_shared<UnreliableNamespace>(model.repository.ns);
  extras[0]->SetDefaultValue(TCIMValue(ReferenceTo(model.node, {{"Name", TCIMValue("x")}}, host)),
                             {});
  EXPECT_EQ(Offers(model.link, model.Node("d")), InRole({association, another}, "extra1"));
  association->SetPropertyValue("Extra1", TCIMValue::NullReference(model.node), {});
  association->SetPropertyValue("Extra2", TCIMValue(a->GetReference({})), {});
  EXPECT_EQ(Offers(model.link, a),
            (Names{PathOf(another) + " extra1", PathOf(association) + " extra2"}));
}

// Associations that come in an order when there is an index; one goes after the one `gone`.
void ExpectOrder(const std::vector<int>& order, bool asked, int gone) {
  LinkModel model;
  const auto hub = model.Node("hub");
  std::vector<InstancePtr> nodes;
  for (std::size_t i = 0; i < order.size(); ++i) nodes.push_back(model.Node(std::to_string(i)));
  model.Link(hub, nodes[0])->Delete({});
  auto first = model.Link(model.Node("first"), hub);
  IndexOf(model.link);
  std::vector<InstancePtr> links{first};
  for (const int next : order) {
    links.push_back(model.Link(nodes[static_cast<std::size_t>(next)], hub));
    if (asked) {
      EXPECT_EQ(Offers(model.link, hub), InRole(links, "to"));
    }
    if (next != gone) continue;
    links.front()->Delete({});
    links.erase(links.begin());
  }
  EXPECT_EQ(Offers(model.link, hub), InRole(links, "to"));
}

TEST(LinkOffers, StandInTheOrderOfPathsInWhateverOrderTheyCame) {
  for (const bool asked : {false, true})
    for (int gone = -1; gone < 4; ++gone) {
      std::vector<int> order{0, 1, 2, 3};
      do ExpectOrder(order, asked, gone);
      while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(LinkOffers, StandInTheOrderOfPathsHoweverManyCame) {
  for (int count = 5; count < 40; ++count) {
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    std::reverse(order.begin(), order.begin() + count / 2);
    std::rotate(order.begin(), order.begin() + count / 3, order.end());
    ExpectOrder(order, false, -1);
    ExpectOrder(order, false, count / 2);
  }
}

TEST(LinkOffers, AreTakenBackWhenTheAssociationGoesOrRefersElsewhere) {
  LinkModel model;
  const auto a = model.Node("a");
  const auto b = model.Node("b");
  const auto association = model.Link(a, b);
  TLinkIndex* const index = &IndexOf(model.link);
  EXPECT_EQ(Offers(model.link, a), InRole({association}, "from"));
  association->SetPropertyValue("From", TCIMValue(b->GetReference({})), {});
  EXPECT_EQ(Offers(model.link, a), Names());
  EXPECT_EQ(Offers(model.link, b),
            (Names{PathOf(association) + " from", PathOf(association) + " to"}));
  association->SetPropertyValue("From", TCIMValue::NullReference(model.node), {});
  EXPECT_EQ(Offers(model.link, b), Names{PathOf(association) + " to"});
  association->Delete({});
  const auto again = model.Link(b, a);
  EXPECT_EQ(Offers(model.link, a), InRole({again}, "to"));
  EXPECT_EQ(Offers(model.link, b), InRole({again}, "from"));
  // Each change was followed; nothing was made anew.
  EXPECT_EQ(&IndexOf(model.link), index);
}

}  // namespace

// Registration with classes of a host's making: what they are asked, what they are told, and in
// which order.
#include <functional>
#include <utility>

#include <boost/make_shared.hpp>

#include "support/ForeignClass.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

// Keeps the names of the operations that the repository calls.
class AskedClass : public ForeignClass {
 public:
  using ForeignClass::ForeignClass;

  std::function<void()> whenTold = [] {};
  bool isItself = true;
  std::string name;  // in place of that of the class behind it

  Names Take() { return std::exchange(m_calls, {}); }

  const std::string& GetName(TOptions o) const override {
    return name.empty() ? ForeignClass::GetName(o) : name;
  }
  bool IsA(ClassPtr other, TOptions o) const override {
    return isItself && ForeignClass::IsA(other, o);
  }
  void EnumerateSubclasses(const TEnumCallback<ICIMClass>& callback, TOptions o) const override {
    m_calls.push_back("EnumerateSubclasses");
    ForeignClass::EnumerateSubclasses(callback, o);
  }
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions o) const override {
    m_calls.push_back("EnumerateAssociationClasses");
    ForeignClass::EnumerateAssociationClasses(callback, resultClass, role, o);
  }
  void AddSubclass(ClassPtr subclass, TOptions o) override {
    m_calls.push_back("AddSubclass");
    whenTold();
    ForeignClass::AddSubclass(subclass, o);
  }
  void RemoveSubclass(ClassPtr subclass, TOptions o) override {
    m_calls.push_back("RemoveSubclass");
    ForeignClass::RemoveSubclass(subclass, o);
  }
  void AddAssociation(ClassPtr association, TOptions o) override {
    m_calls.push_back("AddAssociation");
    whenTold();
    ForeignClass::AddAssociation(association, o);
  }
  void RemoveAssociation(ClassPtr association, TOptions o) override {
    m_calls.push_back("RemoveAssociation");
    ForeignClass::RemoveAssociation(association, o);
  }

 private:
  mutable Names m_calls;
};

struct HostClassRegistration : testing::Test {
  Repository repository{true};
  ClassPtr behind = repository.Class("Base");
  boost::shared_ptr<AskedClass> base = boost::make_shared<AskedClass>(behind);
};

TEST_F(HostClassRegistration, TellsASuperclassOfANewSubclassAndAsksNothing) {
  const auto sub = repository.Allocate("Sub", base);
  base->Take();
  sub->AddToNamespace({});
  EXPECT_EQ(base->Take(), Names{"AddSubclass"});
}

TEST_F(HostClassRegistration, ThatIsRepeatedAsksASuperclassFirst) {
  const auto sub = repository.Class("Sub", base);
  base->Take();
  sub->AddToNamespace({});
  EXPECT_EQ(base->Take(), Names{"EnumerateSubclasses"});
  behind->RemoveSubclass(sub, {});
  sub->AddToNamespace({});
  EXPECT_EQ(base->Take(), (Names{"EnumerateSubclasses", "AddSubclass"}));
  EXPECT_EQ(SubclassNames(behind), Names{"Sub"});
}

// What it names are also the associations of its ancestors: only it knows its own.
TEST_F(HostClassRegistration, TellsAReferencedClassOfAnAssociationEachTime) {
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "End", base);
  base->Take();
  link->AddToNamespace({});
  EXPECT_EQ(base->Take(), Names{"AddAssociation"});
  link->AddToNamespace({});
  EXPECT_EQ(base->Take(), (Names{"EnumerateAssociationClasses", "AddAssociation"}));
  EXPECT_EQ(AssociationNames(behind), Names{"Link"});
}

TEST_F(HostClassRegistration, ThatFailsTakesBackWhatAReferencedClassDidNotHave) {
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "End", base);
  link->AddToNamespace({});
  const auto fresh = boost::make_shared<AskedClass>(repository.Class("Fresh"));
  const auto refusing = boost::make_shared<AskedClass>(repository.Class("Refusing"));
  refusing->whenTold = [] { throw THAVException(kHAVNotSupported); };
  repository.Reference(link, "Extra", fresh);
  repository.Reference(link, "Last", refusing);
  base->Take();
  EXPECT_STATUS(1, link->AddToNamespace({}));
  EXPECT_EQ(base->Take(), (Names{"EnumerateAssociationClasses", "AddAssociation"}));
  EXPECT_EQ(fresh->Take(),
            (Names{"EnumerateAssociationClasses", "AddAssociation", "RemoveAssociation"}));
  EXPECT_EQ(refusing->Take(), (Names{"EnumerateAssociationClasses", "AddAssociation"}));
}

TEST_F(HostClassRegistration, TellsAClassThatIsReferencedTwiceOnceWhateverItSaysOfItself) {
  const auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  repository.Reference(link, "One", base);
  repository.Reference(link, "Two", base);
  base->isItself = false;
  link->AddToNamespace({});
  EXPECT_EQ(base->Take(), Names{"AddAssociation"});
}

TEST_F(HostClassRegistration, OfANetworkPortWhoseNameASuperclassTakesMeanwhileLeavesNothing) {
  RecordingLogger log;
  const auto one = repository.Allocate("ORVSG_PhysicalNetworkPort", base);
  const auto two = repository.Allocate("ORVSG_PhysicalNetworkPort", base);
  bool isTaken = false;
  base->whenTold = [&] {
    if (!std::exchange(isTaken, true)) two->AddToNamespace({});
  };
  base->Take();
  EXPECT_STATUS(0, one->AddToNamespace({}));
  EXPECT_EQ(base->Take(), (Names{"AddSubclass", "AddSubclass", "RemoveSubclass"}));
  EXPECT_EQ(repository.ns->GetClass("ORVSG_PhysicalNetworkPort", {}), two);
  EXPECT_STATUS(17, one->Delete({}));
  EXPECT_STATUS(0, two->Delete({}));
  EXPECT_EQ(SubclassNames(behind), Names{});
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST_F(HostClassRegistration, UnderAClassOfTheNameThatIsRedefinedIsRefused) {
  const auto standing = repository.Allocate("Node", base);
  const auto redefining = repository.Allocate("Node");
  standing->AddToNamespace({});
  base->name = "Node";
  EXPECT_STATUS(16, redefining->AddToNamespace({}));
  EXPECT_EQ(repository.ns->GetClass("Node", {}), standing);
}

TEST_F(HostClassRegistration, ListsASubclassOfAHostsMakingUntilItIsRemoved) {
  const auto sub = boost::make_shared<AskedClass>(repository.Allocate("Sub"));
  behind->AddSubclass(sub, {});
  behind->AddSubclass(sub, {});
  EXPECT_EQ(SubclassNames(behind), Names{"Sub"});
  behind->RemoveSubclass(sub, {});
  EXPECT_EQ(SubclassNames(behind), Names{});
}

TEST_F(HostClassRegistration, InheritsTheFirstOfTwoDeclarationsOfOneName) {
  struct Repeating : ForeignClass {
    using ForeignClass::ForeignClass;
    PropertyDeclPtr again;
    void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                TOptions o) const override {
      ForeignClass::EnumeratePropertyDecls(callback, o);
      callback(again);
    }
  };
  const auto host = boost::make_shared<Repeating>(behind);
  host->again = behind->AllocatePropertyDecl("NAME", TCIMValue(true), {});
  const auto sub = repository.Class("Sub", host);
  EXPECT_EQ(sub->GetPropertyDecl("Name", {}), behind->GetPropertyDecl("Name", {}));
  EXPECT_EQ(PropertyNames(sub), Names{"Name"});
}

// The first key in the order of the folded names is enough.
TEST_F(HostClassRegistration, AsksADeclarationOfAHostsMakingForNothingWhenThereIsAKeyBeforeIt) {
  struct AskedDecl : ForeignPropertyDecl {
    using ForeignPropertyDecl::ForeignPropertyDecl;
    int asked = 0;
    QualifierPtr key;
    QualifierPtr GetQualifier(const std::string& name, TOptions o) override {
      ++asked;
      return name == "KEY" ? key : ForeignPropertyDecl::GetQualifier(name, o);
    }
  };
  const auto above = repository.Allocate("Above");
  const auto decl = boost::make_shared<AskedDecl>(above, "Zone", TCIMValue::Null(kCIMString));
  decl->key = repository.Key(behind, "Name")->GetQualifier("KEY", {});
  above->AddPropertyDecl(decl, {});
  above->AddToNamespace({});
  const auto sub = repository.Allocate("Sub", above);
  repository.Key(sub, "Name");
  decl->asked = 0;
  RecordingLogger log;
  sub->AddToNamespace({});
  EXPECT_EQ(decl->asked, 0);
  EXPECT_EQ(log.Take(), LogLines{});
}

}  // namespace
}  // namespace havtest

// Who keeps whom alive among namespaces, classes, declarations and qualifiers, and what an
// element answers when its owner is gone. Instances have tests of their own.
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

TEST(Lifetime, ClassesGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> root, base, sub;
  {
    Repository repository;
    root = repository.ns->GetClass("<root>", {});
    base = repository.Class("Base");
    sub = repository.Class("Sub", base.lock());
    EXPECT_FALSE(sub.expired());
  }
  EXPECT_TRUE(root.expired());
  EXPECT_TRUE(base.expired());
  EXPECT_TRUE(sub.expired());
}

TEST(Lifetime, DeclarationsAndQualifiersGoWithTheirNamespace) {
  boost::weak_ptr<ICIMQualifierDecl> decl;
  boost::weak_ptr<ICIMQualifier> qualifier;
  boost::weak_ptr<ICIMPropertyDecl> property;
  boost::weak_ptr<ICIMMethodDecl> method;
  boost::weak_ptr<ICIMParameterDecl> parameter;
  {
    Repository repository;
    auto cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
    auto reset = cls->AllocateMethodDecl("Reset", kCIMUInt32, {});
    parameter = reset->AllocateParameter("Force", TCIMValue(true), {});
    reset->AddToClass({});
    method = reset;
    decl = repository.ns->GetQualifierDecl("Version", {});
    qualifier = cls->GetQualifier("Version", {});
    property = cls->GetPropertyDecl("Name", {});
  }
  EXPECT_TRUE(decl.expired());
  EXPECT_TRUE(qualifier.expired());
  EXPECT_TRUE(property.expired());
  EXPECT_TRUE(method.expired());
  EXPECT_TRUE(parameter.expired());
}

TEST(Lifetime, ClassesThatAssociationsTieTogetherGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> a, b, link, ring;
  {
    Repository repository;
    a = repository.Class("A");
    b = repository.Class("B");
    link = repository.Association("Link", "Left", a.lock(), "Right", b.lock());
    auto self = repository.Allocate("Ring", {}, {{"Association", TCIMValue(true)}});
    repository.Reference(self, "Next", self, {{"Key", TCIMValue(true)}});
    self->AddToNamespace({});
    ring = self;
  }
  EXPECT_TRUE(a.expired());
  EXPECT_TRUE(b.expired());
  EXPECT_TRUE(link.expired());
  EXPECT_TRUE(ring.expired());
}

TEST(Lifetime, AssociationsOfEachOtherGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> one, two;
  {
    Repository repository;
    auto first = repository.Allocate("One", {}, {{"Association", TCIMValue(true)}});
    auto second = repository.Allocate("Two", {}, {{"Association", TCIMValue(true)}});
    repository.Reference(first, "Other", second, {{"Key", TCIMValue(true)}});
    repository.Reference(second, "Other", first, {{"Key", TCIMValue(true)}});
    first->AddToNamespace({});
    second->AddToNamespace({});
    one = first;
    two = second;
  }
  EXPECT_TRUE(one.expired());
  EXPECT_TRUE(two.expired());
}

TEST(Lifetime, DisplacedClassesGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> first, second;
  {
    Repository repository(true);
    auto define = [&] {
      auto cls = repository.Allocate("Ring", {}, {{"Association", TCIMValue(true)}});
      repository.Reference(cls, "Next", cls, {{"Key", TCIMValue(true)}});
      return cls;
    };
    auto one = define();
    auto two = define();
    one->AddToNamespace({});
    two->AddToNamespace({});
    first = one;
    second = two;
  }
  EXPECT_TRUE(first.expired());
  EXPECT_TRUE(second.expired());
}

// Associations that have been followed, over and over, between the same two instances.
struct FollowedLink {
  FollowedLink() {
    auto cls = repository.Class("A");
    auto one = repository.Instance(cls, {{"Name", TCIMValue("1")}});
    auto two = repository.Instance(cls, {{"Name", TCIMValue("2")}});
    association = repository.Association("Link", "Left", cls, "Right", cls);
    link = repository.Link(association, "Left", one, "Right", two);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(References(one).size(), 1u);
      EXPECT_EQ(Associators(one).size(), 1u);
    }
    end = one;
  }

  Repository repository;
  ClassPtr association;
  boost::weak_ptr<ICIMInstance> link;
  boost::weak_ptr<ICIMInstance> end;
};

TEST(Lifetime, FollowedAssociationsGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> association;
  boost::weak_ptr<ICIMInstance> link;
  boost::weak_ptr<ICIMInstance> end;
  {
    FollowedLink followed;
    association = followed.association;
    link = followed.link;
    end = followed.end;
  }
  EXPECT_TRUE(association.expired());
  EXPECT_TRUE(link.expired());
  EXPECT_TRUE(end.expired());
}

TEST(Lifetime, FollowedAssociationIsFreedWhenItIsDeleted) {
  FollowedLink followed;
  followed.link.lock()->Delete({});
  EXPECT_TRUE(followed.link.expired());
}

TEST(Lifetime, FollowedAssociationIsFreedWhenAnotherTakesItsPlace) {
  FollowedLink followed;
  auto other = followed.association->AllocateInstance({});
  for (const char* role : {"Left", "Right"})
    other->SetPropertyValue(role, ValueOf(followed.link.lock(), role), {});
  other->AddToNamespace({});
  EXPECT_EQ(Stored(followed.association), Names{PathOf(other)});
  EXPECT_TRUE(followed.link.expired());
}

TEST(Lifetime, FollowedAssociationIsFreedWhenTheNamespaceIsCleared) {
  FollowedLink followed;
  followed.repository.ns->ClearInstances();
  EXPECT_TRUE(followed.link.expired());
  EXPECT_TRUE(followed.end.expired());
}

TEST(Lifetime, DeletedClassesGoWithTheirNamespace) {
  boost::weak_ptr<ICIMClass> cls;
  {
    Repository repository;
    cls = repository.Class("A");
    cls.lock()->Delete({});
  }
  EXPECT_TRUE(cls.expired());
}

TEST(Lifetime, OwnersAreNotKeptAlive) {
  boost::weak_ptr<ICIMNamespace> ns;
  ClassPtr cls;
  PropertyDeclPtr property;
  QualifierDeclPtr decl;
  QualifierPtr qualifier;
  {
    Repository repository;
    ns = repository.ns;
    cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
    property = cls->GetPropertyDecl("Name", {});
    qualifier = cls->GetQualifier("Version", {});
    decl = qualifier->GetQualifierDecl({});
  }
  EXPECT_TRUE(ns.expired());
  EXPECT_FALSE(cls->GetNamespace({}));
  EXPECT_FALSE(decl->GetNamespace({}));
  EXPECT_EQ(property->GetClass({}), cls);
  cls.reset();
  EXPECT_FALSE(property->GetClass({}));
  EXPECT_FALSE(qualifier->GetElement({}));
}

TEST(Lifetime, InheritedDeclarationOutlivesTheClassThatDeclaresIt) {
  ClassPtr sub;
  {
    Repository repository;
    sub = repository.Class("Sub", repository.Class("Base"));
  }
  auto property = sub->GetPropertyDecl("Name", {});
  EXPECT_EQ(property->GetName({}), "Name");
  EXPECT_EQ(property->GetQualifier("Key", {})->GetValue({}), TCIMValue(true));
  EXPECT_FALSE(property->GetClass({}));
}

TEST(Lifetime, ClassWithoutItsNamespaceAnswersWhatItHas) {
  ClassPtr cls;
  {
    Repository repository;
    cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
    cls->AllocateMethodDecl("Reset", kCIMUInt32, {})->AddToClass({});
  }
  EXPECT_EQ(cls->GetName({}), "A");
  EXPECT_EQ(PropertyNames(cls), Names{"Name"});
  EXPECT_EQ(KeyNames(cls), Names{"Name"});
  EXPECT_EQ(MethodNames(cls), Names{"Reset"});
  EXPECT_EQ(QualifierNames(cls), Names{"Version"});
  EXPECT_EQ(SubclassNames(cls), Names{});
  EXPECT_EQ(AssociationNames(cls), Names{});
  EXPECT_EQ(Stored(cls), Names{});
  EXPECT_TRUE(cls->IsA(cls, {}));
}

TEST(Lifetime, ClassWithoutItsSuperclassAnswersAnEmptyPointer) {
  Repository other;
  auto base = other.Class("Base");
  ClassPtr sub;
  {
    Repository repository;
    sub = repository.Class("Sub", repository.Class("Base"));
    EXPECT_TRUE(sub->IsA(base, {}));
  }
  EXPECT_FALSE(sub->GetSuperClass({}));
  EXPECT_FALSE(sub->IsA(base, {}));
  EXPECT_TRUE(sub->IsA(sub, {}));
}

TEST(Lifetime, RegistrationWithoutTheNamespaceIsRefused) {
  RecordingLogger log;
  ClassPtr cls;
  QualifierDeclPtr decl;
  {
    Repository repository;
    cls = repository.Allocate("A");
    repository.Key(cls, "Name");
    decl = repository.ns->GetQualifierDecl("Key", {});
  }
  EXPECT_STATUS(15, cls->AddToNamespace({}));
  EXPECT_STATUS(15, decl->AddToNamespace({}));
  EXPECT_STATUS(17, cls->Delete({}));
  EXPECT_EQ(log.Take(), kNothingLogged);
}

TEST(Lifetime, DeclarationWithoutItsClassCannotBeAdded) {
  RecordingLogger log;
  PropertyDeclPtr property;
  MethodDeclPtr method;
  {
    Repository repository;
    auto cls = repository.Allocate("A");
    property = cls->AllocatePropertyDecl("P", TCIMValue(true), {});
    method = cls->AllocateMethodDecl("M", kCIMUInt32, {});
  }
  EXPECT_STATUS(15, property->AddToClass({}));
  EXPECT_STATUS(15, method->AddToClass({}));
  EXPECT_FALSE(property->GetClass({}));
  EXPECT_FALSE(method->GetClass({}));
  EXPECT_EQ(method->GetName({}), "M");
  EXPECT_EQ(log.Take(), kNothingLogged);
}

TEST(Lifetime, DeclarationWithoutItsClassTakesQualifiersAndParameters) {
  Repository repository;
  MethodDeclPtr method;
  {
    Repository gone;
    method = gone.Allocate("A")->AllocateMethodDecl("M", kCIMUInt32, {});
  }
  repository.Qualify(*method, {{"Description", TCIMValue("text")}});
  method->AllocateParameter("Force", TCIMValue(true), {});
  EXPECT_EQ(QualifierNames(method), Names{"Description"});
  EXPECT_EQ(ParameterNames(method), Names{"Force"});
}

TEST(Lifetime, QualifierWithoutItsElementCannotBeAdded) {
  LoggedRepository repository;
  auto decl = repository.Declaration("Version", TCIMValue(""));
  auto cls = repository.Allocate("A");
  auto qualifier = cls->AllocatePropertyDecl("P", TCIMValue(true), {})
                       ->AllocateQualifier(decl, TCIMValue("1"), TOptions());
  EXPECT_FALSE(qualifier->GetElement({}));
  EXPECT_STATUS(15, qualifier->AddToElement({}));
  EXPECT_EQ(qualifier->GetName({}), "Version");
  EXPECT_EQ(qualifier->GetValue({}), TCIMValue("1"));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(Lifetime, QualifierKeepsItsDeclaration) {
  QualifierPtr qualifier;
  ClassPtr cls;
  {
    Repository repository;
    cls = repository.Class("A", {}, {{"Version", TCIMValue("1")}});
    qualifier = cls->GetQualifier("Version", {});
  }
  EXPECT_EQ(qualifier->GetName({}), "Version");
  EXPECT_TRUE(*qualifier == *cls->GetQualifier("VERSION", {}));
}

TEST(Lifetime, ReferenceDeclarationDoesNotKeepTheReferencedClass) {
  Repository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  boost::weak_ptr<ICIMClass> target;
  {
    Repository other;
    auto cls = other.Class("Target");
    repository.Reference(link, "End", cls, {{"Key", TCIMValue(true)}});
    target = cls;
  }
  EXPECT_TRUE(target.expired());
  auto value = link->GetReferenceDecl("End", {})->GetDefaultValue({});
  EXPECT_FALSE(value.GetReferencedClass());
  EXPECT_EQ(value.GetReferencedClassName(), "Target");
}

TEST(Lifetime, AssociationWhoseReferencedClassIsGoneRegistersAllTheSame) {
  LoggedRepository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  {
    Repository other;
    repository.Reference(link, "End", other.Class("Target"), {{"Key", TCIMValue(true)}});
  }
  repository.Property(link, "Any", TCIMValue::Null(kCIMReference));
  EXPECT_STATUS(0, link->AddToNamespace({}));
  EXPECT_STATUS(0, link->Delete({}));
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST(Lifetime, AssociationCanBeDeletedWhenAReferencedClassIsGone) {
  Repository repository;
  auto link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});
  {
    Repository other;
    repository.Reference(link, "End", other.Class("Target"), {{"Key", TCIMValue(true)}});
    link->AddToNamespace({});
  }
  EXPECT_STATUS(0, link->Delete({}));
}

TEST(Lifetime, NamespacesOfTheSameClassNamesAreApart) {
  Repository one;
  Repository other;
  auto cls = one.Class("A");
  EXPECT_STATUS(15, other.ns->GetClass("A", {}));
  other.Class("A", {}, {{"Version", TCIMValue("2")}});
  one.Instance(cls, {{"Name", TCIMValue("1")}});
  EXPECT_EQ(Stored(other.ns->GetClass("A", {})), Names{});
  EXPECT_EQ(QualifierNames(cls), Names{});
}

}  // namespace
}  // namespace havtest

// Every operation on elements among which are some of a host's making, where each of the calls
// that reach those does something drastic in turn: lets the last owner of everything go, empties
// or refills what is being worked on, or throws. Nothing that is freed is touched, and what is
// left goes on working.
#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>

#include <boost/make_shared.hpp>

#include "support/Instances.h"
#include "support/MeddlingHost.h"
#include "support/Walks.h"

namespace havtest {
namespace {

// A class "A" under one of the host's, an association "Link" of it with itself, instances of
// both, and something of the host's in every table.
struct Model {
  std::unique_ptr<Repository> repository = std::make_unique<Repository>(true);
  ClassPtr base, super, cls, again, sub, link, linkAgain;
  InstancePtr a, b, fresh;
  PropertyPtr slot;
  TCIMReference path{{}, {}};
  QualifierDeclPtr overridable, fixed;

  Model() {
    Repository& r = *repository;
    overridable = r.Declaration("Q", TCIMValue(true));
    fixed = r.Declaration("Fixed", TCIMValue(true), ICIMQualifierDecl::kFlavorToSubclass);
    base = r.Class("Base");
    base->AddQualifier(boost::make_shared<MeddlingQualifier>(fixed, TCIMValue(true)), {});
    super = boost::make_shared<MeddlingClass>(base);
    cls = Define();
    again = Define();
    cls->AddToNamespace({});
    cls->AddSubclass(boost::make_shared<MeddlingClass>(r.Class("Behind")), {});
    sub = r.Class("Sub", super);
    link = DefineLink(cls);
    linkAgain = DefineLink(cls);
    link->AddToNamespace({});
    a = r.Instance(cls, {{"Name", TCIMValue("a")}});
    b = r.Instance(cls, {{"Name", TCIMValue("b")}});
    cls->AddInstance(Foreign("c"), {});
    fresh = Foreign("d");
    r.Link(link, "From", a, "To", b);
    r.Link(link, "From", b, "To", a);
    slot = a->GetProperty("Alien", {});
    path = TCIMReference::Parse("A.ALIEN=1,NAME=\"a\"", {});
  }

  ClassPtr Define() const {
    auto made = repository->Allocate("A", super);
    made->AddPropertyDecl(
        boost::make_shared<MeddlingDecl>(made, "Alien", TCIMValue(std::string(100, 'p'))), {});
    made->AddPropertyDecl(boost::make_shared<MeddlingDecl>(made, "DateTimeOfCollection",
                                                           TCIMValue::Null(kCIMDateTime)),
                          {});
    made->AddMethodDecl(boost::make_shared<MeddlingMethodDecl>(made, "M", kCIMUInt32), {});
    made->AddQualifier(boost::make_shared<MeddlingQualifier>(overridable, TCIMValue(true)), {});
    return made;
  }
  ClassPtr DefineLink(const ClassPtr& end) const {
    auto made = repository->Allocate("Link", {}, {{"Association", TCIMValue(true)}});
    repository->Reference(made, "From", end, {{"Key", TCIMValue(true)}});
    repository->Reference(made, "To", end, {{"Key", TCIMValue(true)}});
    made->AddPropertyDecl(
        boost::make_shared<MeddlingDecl>(made, "Via", TCIMValue::NullReference(super)), {});
    return made;
  }
  InstancePtr Foreign(const std::string& name) const {
    auto behind = cls->AllocateInstance({});
    behind->SetPropertyValue("Name", TCIMValue(name), {});
    return boost::make_shared<MeddlingInstance>(behind);
  }
  PropertyDeclPtr NewDecl(const std::string& name) const {
    return boost::make_shared<MeddlingDecl>(cls, name, TCIMValue(std::string(100, 'n')));
  }
  QualifierPtr NewQualifier(const QualifierDeclPtr& decl) const {
    return boost::make_shared<MeddlingQualifier>(decl, TCIMValue(true));
  }

  // What can be done in the middle of an operation.
  void Drop() {
    repository.reset();
    for (ClassPtr* owner : {&base, &super, &cls, &again, &sub, &link, &linkAgain}) owner->reset();
    for (InstancePtr* owner : {&a, &b, &fresh}) owner->reset();
    slot.reset();
    overridable.reset();
    fixed.reset();
  }
  void Strip() const {
    for (const auto& stripped : {cls, again, link}) {
      for (const auto& name : PropertyNames(stripped))
        stripped->RemovePropertyDecl(stripped->GetPropertyDecl(name, {}), {});
      for (const auto& name : MethodNames(stripped))
        stripped->RemoveMethodDecl(stripped->GetMethodDecl(name, {}), {});
    }
  }
  void Grow() const {
    for (int i = 0; i < 8; ++i) {
      const std::string name = "New" + std::to_string(i);
      repository->Property(cls, name, TCIMValue(true));
      repository->Qualify(*cls, {{name, TCIMValue(true)}});
      repository->Class(name, cls);
      repository->Instance(cls, {{"Name", TCIMValue(name)}});
    }
  }
};

struct Operation {
  const char* name;
  void (*run)(Model& m);
};

template <class T>
bool Ignore(const boost::shared_ptr<T>&) {
  return true;
}

const Operation kOperations[] = {
    {"ClassValidate", [](Model& m) { m.again->Validate({}); }},
    {"ClassRegister", [](Model& m) { m.cls->AddToNamespace({}); }},
    {"ClassRedefine", [](Model& m) { m.again->AddToNamespace({}); }},
    {"ClassDelete", [](Model& m) { m.sub->Delete({}); }},
    {"AssociationRegister", [](Model& m) { m.link->AddToNamespace({}); }},
    {"AssociationRedefine", [](Model& m) { m.linkAgain->AddToNamespace({}); }},
    {"AssociationDelete", [](Model& m) { m.link->Delete({}); }},
    {"ClassIsA", [](Model& m) { m.cls->IsA(m.super, {}); }},
    {"ClassEqual",
     [](Model& m) {
       const ClassPtr other = m.super;
       (void)(*m.cls == *other);
     }},
    {"ClassLess",
     [](Model& m) {
       const ClassPtr other = m.super;
       (void)(*m.cls < *other);
     }},
    {"ClassKeys",
     [](Model& m) { m.cls->EnumerateKeyNames([](const std::string*) { return true; }, {}); }},
    {"ClassReferences",
     [](Model& m) { m.link->EnumerateReferenceDecls(&Ignore<ICIMPropertyDecl>, {}); }},
    {"ClassReference", [](Model& m) { m.link->GetReferenceDecl("Via", {}); }},
    {"ClassAssociations",
     [](Model& m) { m.cls->EnumerateAssociationClasses(&Ignore<ICIMClass>, "Link", "From", {}); }},
    {"ClassAssociated",
     [](Model& m) {
       m.cls->EnumerateAssociatedClasses(&Ignore<ICIMClass>, "Link", "A", "From", "To", {});
     }},
    {"ClassInstances",
     [](Model& m) { m.cls->EnumerateInstances(&Ignore<ICIMInstance>, true, {}); }},
    {"ClassNewInstance", [](Model& m) { m.cls->AllocateInstance({}); }},
    {"ClassAddInstance", [](Model& m) { m.cls->AddInstance(m.fresh, {}); }},
    {"ClassReplaceInstance",
     [](Model& m) { m.cls->AddInstance(boost::make_shared<MeddlingInstance>(m.a), {}); }},
    {"ClassRemoveInstance",
     [](Model& m) { m.cls->RemoveInstance(boost::make_shared<MeddlingInstance>(m.b), {}); }},
    {"ClassAddProperty", [](Model& m) { m.cls->AddPropertyDecl(m.NewDecl("New"), {}); }},
    {"ClassReplaceProperty", [](Model& m) { m.cls->AddPropertyDecl(m.NewDecl("Alien"), {}); }},
    {"ClassRemoveProperty", [](Model& m) { m.cls->RemovePropertyDecl(m.NewDecl("Alien"), {}); }},
    {"ClassAddMethod",
     [](Model& m) {
       m.cls->AddMethodDecl(boost::make_shared<MeddlingMethodDecl>(m.cls, "N", kCIMUInt32), {});
     }},
    {"ClassRemoveMethod",
     [](Model& m) {
       m.cls->RemoveMethodDecl(boost::make_shared<MeddlingMethodDecl>(m.cls, "M", kCIMUInt32), {});
     }},
    {"ClassReplaceQualifier",
     [](Model& m) { m.cls->AddQualifier(m.NewQualifier(m.overridable), {}); }},
    {"ClassKeepQualifier", [](Model& m) { m.cls->AddQualifier(m.NewQualifier(m.fixed), {}); }},
    {"NamespaceInherit", [](Model& m) { m.repository->ns->AllocateClass("A", {}, {}); }},
    {"NamespaceAllocate", [](Model& m) { m.repository->ns->AllocateClass("B", m.super, {}); }},
    {"NamespaceFind", [](Model& m) { m.repository->ns->GetInstance(m.path, {}); }},
    {"NamespaceClear", [](Model& m) { m.repository->ns->ClearInstances(); }},
    {"InstanceValidate", [](Model& m) { m.a->Validate({}); }},
    {"InstanceStore", [](Model& m) { m.a->AddToNamespace({}); }},
    {"InstanceDelete", [](Model& m) { m.a->Delete({}); }},
    {"InstancePath", [](Model& m) { m.a->GetReference({}); }},
    {"InstanceSet",
     [](Model& m) { m.a->SetPropertyValue("Alien", TCIMValue(std::string(100, 'x')), {}); }},
    {"InstanceEqual",
     [](Model& m) {
       const InstancePtr other = m.fresh;
       (void)(*m.a == *other);
     }},
    {"InstanceLess",
     [](Model& m) {
       const InstancePtr other = m.fresh;
       (void)(*m.a < *other);
     }},
    {"InstanceReferences",
     [](Model& m) { m.a->EnumerateAssociationInstances(&Ignore<ICIMInstance>, "Link", "", {}); }},
    {"InstanceReferencesByRole",
     [](Model& m) {
       m.a->EnumerateAssociationInstances(&Ignore<ICIMInstance>, "Link", "From", {});
     }},
    {"InstanceAssociators",
     [](Model& m) {
       m.a->EnumerateAssociatedInstances(&Ignore<ICIMInstance>, "Link", "A", "From", "", {});
     }},
    {"InstanceAssociatorsByResultRole",
     [](Model& m) {
       m.a->EnumerateAssociatedInstances(&Ignore<ICIMInstance>, "", "A", "", "To", {});
     }},
    {"SlotType", [](Model& m) { m.slot->GetType({}); }},
    {"SlotArray", [](Model& m) { m.slot->IsArray({}); }},
    {"SlotSet", [](Model& m) { m.slot->SetValue(TCIMValue(std::string(100, 'x')), {}); }},
    {"SlotSetPrevious",
     [](Model& m) { m.slot->SetPrevValue(TCIMValue(std::string(99, 'x')), {}); }},
    {"SlotEqual",
     [](Model& m) {
       const PropertyPtr other = m.b->GetProperty("Alien", {});
       (void)(*m.slot == *other);
     }},
    {"SlotLess",
     [](Model& m) {
       const PropertyPtr other = m.b->GetProperty("Alien", {});
       (void)(*m.slot < *other);
     }},
    {"SlotText", [](Model& m) { m.slot->GetDisplayValue({}); }},
    {"SlotPreviousText", [](Model& m) { m.slot->GetPrevDisplayValue({}); }},
    {"SlotTexts", [](Model& m) { m.slot->GetDisplayValues({}); }},
};

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.name;
}

struct Act {
  const char* name;
  void (*run)(Model& m);
};

const Act kActs[] = {
    {"lets everything go", [](Model& m) { m.Drop(); }},
    {"removes every declaration", [](Model& m) { m.Strip(); }},
    {"adds to everything", [](Model& m) { m.Grow(); }},
    {"repeats the inheritance",
     [](Model& m) {
       for (const char* name : {"Base", "A", "Link"}) m.repository->ns->AllocateClass(name, {}, {});
     }},
    {"redefines the classes",
     [](Model& m) {
       m.again->AddToNamespace({});
       m.linkAgain->AddToNamespace({});
     }},
    {"deletes the classes",
     [](Model& m) {
       m.link->Delete({});
       m.cls->Delete({});
     }},
    {"clears the instances", [](Model& m) { m.repository->ns->ClearInstances(); }},
    {"throws 15", [](Model&) { throw THAVException(kHAVNotFound); }},
    {"throws something else", [](Model&) { throw std::runtime_error("no"); }},
    {"has no memory", [](Model&) { throw std::bad_alloc(); }},
};

class MeddlingHost : public testing::TestWithParam<Operation> {};

// What is left of the model answers, and takes what is new.
void ExpectUsable(const Model& model) {
  if (!model.repository) return;
  for (const auto& cls : {model.cls, model.again, model.link})
    for (const auto& name : PropertyNames(cls)) EXPECT_TRUE(cls->GetPropertyDecl(name, {}));
  auto fresh = model.repository->Class("Fresh");
  model.repository->Instance(fresh, {{"Name", TCIMValue("x")}});
  EXPECT_EQ(Stored(fresh), Names{"Fresh.Name=\"x\""});
  EXPECT_EQ(model.repository->ns->GetClass("Fresh", {}), fresh);
}

TEST_P(MeddlingHost, MayDoAnythingInEveryCall) {
  const RecordingLogger log;  // what is logged on the way is not looked at
  for (const Act& act : kActs) {
    SCOPED_TRACE(act.name);
    for (int call = 0;; ++call) {
      ASSERT_LT(call, 1000);
      Model model;
      Meddler::At(call, [&] { act.run(model); });
      try {
        GetParam().run(model);
      } catch (const std::exception&) {
        // Whatever the act threw, or the operation then lacked.
      }
      if (!Meddler::Rest()) {
        EXPECT_GT(call, 0) << "nothing of the host's was called";
        break;
      }
      ExpectUsable(model);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, MeddlingHost, testing::ValuesIn(kOperations),
                         [](const auto& operation) { return std::string(operation.param.name); });

// What the model shows of its classes.
Names Shown(const Model& m) {
  Names shown;
  const auto add = [&](const Names& names) {
    shown.insert(shown.end(), names.begin(), names.end());
    shown.push_back("");
  };
  for (const char* name : {"A", "Link", "New"})
    shown.push_back(StatusOf([&] { m.repository->ns->GetClass(name, {}); }) == 0 ? name : "none");
  shown.push_back(m.repository->ns->GetClass("A", {}) == m.cls ? "first" : "second");
  shown.push_back(m.repository->ns->GetClass("Link", {}) == m.link ? "first" : "second");
  for (const auto& cls :
       {m.base, m.cls, m.again, m.sub, m.link, m.linkAgain, m.fresh->GetClass({})}) {
    add(SubclassNames(cls));
    add(AssociationNames(cls));
    add(PropertyNames(cls));
    add(MethodNames(cls));
    add(QualifierNames(cls));
    add(Stored(cls));
  }
  return shown;
}

class MeddlingHostRefuses : public testing::TestWithParam<const char*> {};

TEST_P(MeddlingHostRefuses, AndNothingHasChanged) {
  const RecordingLogger log;
  const auto* const operation =
      std::find_if(std::begin(kOperations), std::end(kOperations),
                   [](const Operation& each) { return std::string(each.name) == GetParam(); });
  ASSERT_NE(operation, std::end(kOperations));
  int refusals = 0;
  for (int call = 0;; ++call) {
    Model model;
    const Names before = Shown(model);
    Meddler::At(call, [] { throw THAVException(kHAVNotSupported); });
    const unsigned status = StatusOf([&] { operation->run(model); });
    if (!Meddler::Rest()) break;
    if (status == 0) continue;
    ++refusals;
    EXPECT_EQ(status, 1u) << "call " << call;
    EXPECT_EQ(Shown(model), before) << "call " << call;
  }
  EXPECT_GT(refusals, 0);
}

INSTANTIATE_TEST_SUITE_P(Operations, MeddlingHostRefuses,
                         testing::Values("ClassRegister", "ClassRedefine", "ClassDelete",
                                         "AssociationRegister", "AssociationRedefine",
                                         "NamespaceInherit", "NamespaceAllocate",
                                         "ClassReplaceQualifier", "ClassKeepQualifier",
                                         "ClassAddMethod", "ClassRemoveMethod",
                                         "ClassRemoveProperty", "ClassAddInstance",
                                         "ClassReplaceInstance", "InstanceStore"),
                         [](const auto& operation) { return std::string(operation.param); });

}  // namespace
}  // namespace havtest

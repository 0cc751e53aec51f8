// Instances of a class of the host's making, each of whose operations may let the last owner of
// the instance go, change it, or throw.
#include <functional>
#include <new>
#include <stdexcept>

#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "support/Instances.h"
#include "support/MeddlingHost.h"

namespace havtest {
namespace {

// A class that instances can be made and stored of.
class StoringClass : public MeddlingClass {
 public:
  explicit StoringClass(const ClassPtr& behind) : MeddlingClass(behind), m_class(behind) {}

  void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                         TOptions options) const override {
    Meddler::Called();
    MeddlingClass::EnumerateKeyNames(callback, options);
    Meddler::Called();
  }
  void AddPropertyDecl(PropertyDeclPtr decl, TOptions options) override {
    Meddler::Called();
    m_class->AddPropertyDecl(decl, options);
  }
  void AddInstance(InstancePtr instance, TOptions) override {
    Meddler::Called();
    stored = instance.get();
  }
  void RemoveInstance(InstancePtr instance, TOptions) override {
    Meddler::Called();
    if (stored == instance.get()) stored = nullptr;
  }

  const ICIMInstance* stored = nullptr;

 private:
  ClassPtr m_class;
};

// An association of the host's making and an instance of it.
struct Model {
  Repository repository;
  ClassPtr thing = repository.Class("Thing");
  ClassPtr behind = repository.Association("Link", "From", thing, "To", thing);
  boost::shared_ptr<StoringClass> cls;
  InstancePtr instance, end;

  Model() {
    repository.Property(behind, "DateTimeOfCollection", TCIMValue::Null(kCIMDateTime));
    cls = boost::make_shared<StoringClass>(behind);
    instance = boost::make_shared<TInmemInstance>(cls, -1);
    end = repository.Instance(thing, {{"Name", TCIMValue("a")}});
    for (const char* role : {"From", "To"})
      instance->SetPropertyValue(role, TCIMValue(end->GetReference({})), {});
    // What refers to the end, the host says.
    thing->AddAssociation(cls, {});
  }
};

struct Operation {
  const char* name;
  void (*run)(Model& m);
};

const Operation kOperations[] = {
    {"Make", [](Model& m) { boost::make_shared<TInmemInstance>(m.cls, -1); }},
    {"Validate", [](Model& m) { m.instance->Validate({}); }},
    {"Store", [](Model& m) { m.instance->AddToNamespace({}); }},
    {"Delete", [](Model& m) { m.instance->Delete({}); }},
    {"Path", [](Model& m) { m.instance->GetReference({}); }},
    {"Derived", [](Model& m) { m.instance->GetProperty("speedDuplex", {}); }},
    {"Slots",
     [](Model& m) {
       m.instance->EnumerateProperties(
           [](const PropertyPtr&) -> bool { throw THAVException(kHAVNotSupported); }, {});
     }},
    {"References",
     [](Model& m) {
       m.end->EnumerateAssociationInstances([](const InstancePtr&) { return true; }, "", "", {});
     }},
    {"Associators",
     [](Model& m) {
       m.end->EnumerateAssociatedInstances([](const InstancePtr&) { return true; }, "", "Thing", "",
                                           "", {});
     }},
    {"ReferencesOfTheInstance",
     [](Model& m) {
       m.instance->EnumerateAssociationInstances([](const InstancePtr&) { return true; }, "Link",
                                                 "From", {});
     }},
};

struct Act {
  const char* name;
  void (*run)(Model& m);
};

const Act kActs[] = {
    {"lets everything go",
     [](Model& m) {
       m.instance.reset();
       m.end.reset();
       m.cls.reset();
       m.thing.reset();
       m.behind.reset();
       m.repository.ns.reset();
     }},
    {"adds a property", [](Model& m) { m.repository.Property(m.behind, "More", TCIMValue(true)); }},
    {"clears the instances", [](Model& m) { m.repository.ns->ClearInstances(); }},
    {"throws 15", [](Model&) { throw THAVException(kHAVNotFound); }},
    {"throws something else", [](Model&) { throw std::runtime_error("no"); }},
    {"has no memory", [](Model&) { throw std::bad_alloc(); }},
};

class MeddlingClassOf : public testing::TestWithParam<Operation> {};

TEST_P(MeddlingClassOf, MayDoAnythingInEveryCall) {
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
      if (Meddler::Rest()) continue;
      EXPECT_GT(call, 0) << "nothing of the host's was called";
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, MeddlingClassOf, testing::ValuesIn(kOperations),
                         [](const auto& operation) { return std::string(operation.param.name); });

}  // namespace
}  // namespace havtest

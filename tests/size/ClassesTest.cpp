// As many classes, levels and declarations as anybody makes.
#include "size/Size.h"
#include "support/Walks.h"

namespace havtest {
namespace {

std::string Numbered(const char* name, int number) { return name + std::to_string(number); }

TEST(Size, OfTwoHundredThousandSubclasses) {
  ExpectLinear(200'000, [](int count) {
    Repository repository;
    const ClassPtr top = repository.Class("Top");
    for (int i = 0; i < count; ++i) repository.Class(Numbered("Sub", i), top);
    int seen = 0;
    top->EnumerateSubclasses([&](const ClassPtr&) { return ++seen; }, {});
    EXPECT_EQ(seen, count);
    const ClassPtr last = repository.ns->GetClass(Numbered("SUB", count - 1), {});
    EXPECT_TRUE(last->IsA(top, {}));
    last->Delete({});
    top->EnumerateInstances([](const InstancePtr&) { return true; }, true, {});
  });
}

// A property in each level, so that the last has them all.
void ExpectDeep(int levels) {
  Repository repository;
  const ClassPtr top = repository.Class("Level0");
  ClassPtr bottom = top;
  for (int level = 1; level < levels; ++level) {
    bottom = repository.Allocate(Numbered("Level", level), bottom);
    repository.Property(bottom, Numbered("Property", level), TCIMValue::Null(kCIMString));
    bottom->AddToNamespace({});
  }
  EXPECT_TRUE(bottom->IsA(top, {}));
  EXPECT_EQ(bottom->GetPropertyDecl("PROPERTY1", {})->GetClass({})->GetName({}), "Level1");
  int declared = 0;
  bottom->EnumeratePropertyDecls([&](const PropertyDeclPtr&) { return ++declared; }, {});
  EXPECT_EQ(declared, levels);
  const InstancePtr instance =
      repository.Instance(bottom, {{"Name", TCIMValue("one")}, {"Property1", TCIMValue("first")}});
  EXPECT_EQ(Paths([&](const auto& take) { top->EnumerateInstances(take, true, {}); }),
            Names{Numbered("Level", levels - 1) + ".Name=\"one\""});
  // What the bottom inherits is taken anew.
  EXPECT_EQ(repository.ns->AllocateClass(bottom->GetName({}), {}, {}), bottom);
}

TEST(Size, OfTenThousandLevels) { ExpectLinear(10'000, ExpectDeep); }
TEST(Size, OfFortyThousandLevels) { ExpectLinear(40'000, ExpectDeep); }

TEST(Size, OfFiveThousandProperties) {
  ExpectLinear(5'000 * kShare, [](int count) {
    Repository repository;
    const ClassPtr cls = repository.Allocate("Wide");
    repository.Key(cls, "Name");
    for (int i = 0; i < count; ++i) repository.Property(cls, Numbered("P", i), TCIMValue(i));
    cls->AddToNamespace({});
    const ClassPtr sub = repository.Class("Wider", cls);
    const InstancePtr instance = repository.Instance(sub, {{"Name", TCIMValue("one")}});
    for (int i = 0; i < count; ++i)
      instance->SetPropertyValue(Numbered("p", i), TCIMValue(i + 1), {});
    for (int i = 0; i < count; i += 97)
      EXPECT_EQ(instance->GetProperty(Numbered("P", i), {})->GetValue({}), TCIMValue(i + 1));
    int seen = 0;
    instance->EnumerateProperties([&](const PropertyPtr&) { return ++seen; }, {});
    EXPECT_EQ(seen, count + 1);
  });
}

// Each association refers to the one before it, so that each is in the set of the next.
TEST(Size, OfAssociationsThatReferToAssociations) {
  ExpectLinear(50'000, [](int count) {
    boost::weak_ptr<ICIMClass> first;
    boost::weak_ptr<ICIMClass> last;
    {
      Repository repository;
      ClassPtr cls = repository.Class("Node");
      first = cls;
      for (int i = 0; i < count; ++i) {
        const ClassPtr link =
            repository.Allocate(Numbered("Link", i), {}, {{"Association", TCIMValue(true)}});
        repository.Reference(link, "Next", cls, {{"Key", TCIMValue(true)}});
        link->AddToNamespace({});
        cls = link;
      }
      last = cls;
    }
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(last.expired());
  });
}

}  // namespace
}  // namespace havtest

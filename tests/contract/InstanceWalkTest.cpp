// The walk over the instances of a class and of its subclasses.
#include <stdexcept>

#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

// Base with the instances 2 and 10; under it Zebra with 1, and Foal under Zebra with 0; then
// Apple with 3.
class InstanceWalk : public testing::Test {
 protected:
  InstanceWalk()
      : base(repository.Class("Base")),
        zebra(repository.Class("Zebra", base)),
        apple(repository.Class("Apple", base)),
        foal(repository.Class("Foal", zebra)) {
    for (const char* name : {"2", "10"}) Add(base, name);
    Add(zebra, "1");
    Add(foal, "0");
    Add(apple, "3");
  }
  InstancePtr Add(const ClassPtr& cls, const std::string& name) {
    return repository.Instance(cls, {{"Name", TCIMValue(name)}});
  }
  static Names Walk(const ClassPtr& cls, bool deep) {
    return Paths([&](auto callback) { cls->EnumerateInstances(callback, deep, {}); });
  }

  LoggedRepository repository;
  ClassPtr base;
  ClassPtr zebra;
  ClassPtr apple;
  ClassPtr foal;
};

TEST_F(InstanceWalk, VisitsTheClassesOwnInTheOrderOfTheirPaths) {
  EXPECT_EQ(Walk(base, false), (Names{"Base.Name=\"10\"", "Base.Name=\"2\""}));
}

TEST_F(InstanceWalk, VisitsDeeplyEachSubclassTreeInTheOrderOfRegistration) {
  EXPECT_EQ(Walk(base, true), (Names{"Base.Name=\"10\"", "Base.Name=\"2\"", "Zebra.Name=\"1\"",
                                     "Foal.Name=\"0\"", "Apple.Name=\"3\""}));
}

TEST_F(InstanceWalk, FromTheRootClassVisitsAll) {
  EXPECT_EQ(Walk(repository.ns->GetClass("<root>", {}), true).size(), 5u);
  EXPECT_EQ(Walk(repository.ns->GetClass("<root>", {}), false), Names{});
}

TEST_F(InstanceWalk, OfAnEmptyClassVisitsNothing) {
  EXPECT_EQ(Walk(repository.Class("Empty"), true), Names{});
}

TEST_F(InstanceWalk, GoesOnWhateverTheCallbackAnswers) {
  int visits = 0;
  base->EnumerateInstances(
      [&](InstancePtr) {
        ++visits;
        return false;
      },
      true, {});
  EXPECT_EQ(visits, 5);
}

TEST_F(InstanceWalk, DropsEveryExceptionOfTheCallback) {
  int visits = 0;
  EXPECT_NO_THROW(base->EnumerateInstances(
      [&](InstancePtr) -> bool {
        if (++visits % 2 == 0) throw THAVException(kHAVTypesDiffer);
        throw std::runtime_error("callback");
      },
      true, {}));
  EXPECT_EQ(visits, 5);
  EXPECT_EQ(repository.TakeLog(), kNothingLogged);
}

TEST_F(InstanceWalk, DropsTheErrorOfAnEmptyCallback) {
  EXPECT_NO_THROW(base->EnumerateInstances({}, true, {}));
}

TEST_F(InstanceWalk, HasOneEntryForAnInstanceAddedTwice) {
  auto instance = Add(apple, "4");
  instance->AddToNamespace({});
  EXPECT_EQ(Walk(apple, false), (Names{"Apple.Name=\"3\"", "Apple.Name=\"4\""}));
}

TEST_F(InstanceWalk, IgnoresOptions) {
  const TOptions options = {{"ProvNSP", TCIMValue("elsewhere")}};
  EXPECT_EQ(Paths([&](auto callback) { base->EnumerateInstances(callback, false, options); }),
            Walk(base, false));
}

}  // namespace
}  // namespace havtest

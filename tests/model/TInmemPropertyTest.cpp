// What a slot does where it lacks memory, and with classes of a host's making.
#include <new>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "support/FailingAllocations.h"
#include "support/ForeignClass.h"
#include "support/Repository.h"

namespace havtest {
namespace {

// Derives from any class, and from none.
class TObligingClass : public ForeignClass {
 public:
  using ForeignClass::ForeignClass;
  bool IsA(ClassPtr, TOptions) const override { return true; }
};

TEST(TInmemProperty, TellsWhyAValueIsRefusedInAWholeLineOrLacksMemory) {
  Repository repository;
  auto cls = repository.Allocate("Holder");
  repository.Property(cls, "P", TCIMValue(true));
  auto slot = cls->AllocateInstance({})->GetProperty("P", {});
  const TCIMValue text("text");
  for (std::size_t allowed = 0;; ++allowed) {
    RecordingLogger log;
    log.lines.reserve(1);
    bool refused = false;
    bool failed = false;
    {
      FailingAllocation failure(allowed);
      try {
        slot->SetValue(text, {});
      } catch (const THAVException& failed14) {
        refused = failed14.GetStatusCode() == kHAVTypesDiffer;
      } catch (const std::bad_alloc&) {
      }
      failed = failure.HasFailed();
    }
    EXPECT_NE(refused, failed) << allowed;
    const LogLines whole{{3, "Inmem: SetValue: decl is type boolean but value is type string"}};
    EXPECT_EQ(log.Take(), refused ? whole : LogLines()) << allowed;
    if (!failed) break;
    ASSERT_LT(allowed, 100u);
  }
}

TEST(TInmemProperty, AsksNoClassWhetherItDerivesFromOneThatIsGone) {
  Repository repository;
  auto link = repository.Allocate("Lost", {}, {{"Association", TCIMValue(true)}});
  {
    Repository other;
    repository.Reference(link, "End", other.Class("Gone"));
  }
  auto slot = link->AllocateInstance({})->GetProperty("End", {});
  const ClassPtr oblige = boost::make_shared<TObligingClass>(repository.Class("Any"));
  TCIMReference path({}, {});
  path.SetClass(oblige);
  EXPECT_STATUS(15, slot->SetPrevValue(TCIMValue(path), {}));
  EXPECT_FALSE(slot->HasPrevValue({}));
}

}  // namespace
}  // namespace havtest

// The values of one instance, whatever the number of its properties.
#include "inmem/values/TSlotTable.h"

#include <string>
#include <utility>
#include <vector>

#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include "havcore/havcore.h"
#include "inmem/values/TInmemProperty.h"
#include "support/AllocationMeter.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

using TablePtr = boost::intrusive_ptr<TSlotTable>;
using LayoutPtr = boost::intrusive_ptr<const TSlotLayout>;

LayoutPtr LayoutOf(std::size_t slots) {
  std::vector<TSlotLayout::TEntry> entries;
  for (std::size_t i = 0; i < slots; ++i) entries.push_back({"p" + std::to_string(i), {}});
  return {new TSlotLayout(std::move(entries))};
}

std::size_t BytesOfATable(std::size_t slots) {
  const LayoutPtr layout = LayoutOf(slots);
  const AllocationMeter meter;
  const TablePtr table = TSlotTable::Make(layout);
  return meter.Bytes();
}

// What a watcher was told, with the value that stood there then.
class TWatched : public IReferenceWatcher {
 public:
  TWatched() { m_layout->Watch(this); }
  ~TWatched() { m_layout->Watch(nullptr); }

  void Assigning(const TSlotTable& values) noexcept override { Note("from ", values); }
  void Assigned(const TSlotTable& values) noexcept override { Note("to ", values); }

  std::vector<std::string> Assign(const TCIMValue& value) {
    m_told.clear();
    m_table->Assign(0, value);
    return m_told;
  }

 private:
  void Note(const std::string& what, const TSlotTable& values) {
    EXPECT_EQ(&values, m_table.get());
    const TCIMValue* const value = values.Assigned(0);
    m_told.push_back(what + (value ? value->ToString(10) : "nothing"));
  }

  LayoutPtr m_layout = LayoutOf(1);
  TablePtr m_table = TSlotTable::Make(m_layout);
  std::vector<std::string> m_told;
};

TCIMValue Path(const std::string& text) { return TCIMValue(TCIMReference::Parse(text, {})); }

using Told = std::vector<std::string>;

TEST(TSlotTable, RemembersWhichSlotsAreAssigned) {
  for (const std::size_t slots : {1u, 2u, 31u, 32u, 33u, 63u, 64u, 65u, 96u, 97u, 200u}) {
    const TablePtr table = TSlotTable::Make(LayoutOf(slots));
    for (std::size_t next = 0; next < slots; ++next) {
      for (std::size_t i = 0; i < slots; ++i)
        ASSERT_EQ(table->Assigned(i) != nullptr, i < next) << slots << ' ' << next << ' ' << i;
      table->Assign(next, TCIMValue(static_cast<std::uint32_t>(next)));
      ASSERT_EQ(*table->Assigned(next), TCIMValue(static_cast<std::uint32_t>(next)));
    }
  }
}

TEST(TSlotTable, AssigningOneSlotLeavesTheOthersAsTheyAre) {
  for (const std::size_t slot : {0u, 5u, 31u, 32u, 64u, 99u}) {
    const TablePtr table = TSlotTable::Make(LayoutOf(100));
    table->Assign(slot, TCIMValue());
    for (std::size_t i = 0; i < 100; ++i)
      EXPECT_EQ(table->Assigned(i) != nullptr, i == slot) << slot << ' ' << i;
    EXPECT_TRUE(table->Assigned(slot)->IsNull());
  }
}

TEST(TSlotTable, TakesAValueForEachSlotAndABitForEachBeyondThoseThatFit) {
  const std::size_t none = BytesOfATable(0);
  for (const std::size_t slots : {1u, 31u, 32u, 33u, 64u, 100u, 1000u}) {
    const std::size_t bits = slots / 32 * 4;
    EXPECT_EQ(BytesOfATable(slots), none + slots * sizeof(TCIMValue) + bits) << slots;
  }
}

TEST(TSlotTable, APreviousValueTouchesNoOtherSlot) {
  const TablePtr table = TSlotTable::Make(LayoutOf(3));
  EXPECT_EQ(table->Previous(1), nullptr);
  table->SetPrevious(1, TCIMValue(1));
  EXPECT_EQ(table->Previous(0), nullptr);
  EXPECT_EQ(*table->Previous(1), TCIMValue(1));
  EXPECT_EQ(table->Previous(2), nullptr);
  EXPECT_EQ(table->Assigned(1), nullptr);
}

TEST(TSlotTable, ASlotIsOneObjectUntilItIsReleased) {
  const TablePtr table = TSlotTable::Make(LayoutOf(3));
  const auto slot = table->Slot(1);
  EXPECT_EQ(table->Slot(1), slot);
  EXPECT_NE(table->Slot(0), slot);
  const boost::weak_ptr<TInmemProperty> nobodys = table->Slot(2);
  EXPECT_FALSE(nobodys.expired());
  table->ReleaseSlots();
  EXPECT_TRUE(nobodys.expired());
  EXPECT_EQ(slot.use_count(), 1);
  EXPECT_NE(table->Slot(1), slot);
  table->ReleaseSlots();
}

TEST(TSlotTable, TheWatcherIsToldOfReferencesThatComeAndGo) {
  TWatched watched;
  EXPECT_EQ(watched.Assign(TCIMValue(1)), Told());
  EXPECT_EQ(watched.Assign(Path("A.K=1")), (Told{"from 1", "to A.K=1"}));
  EXPECT_EQ(watched.Assign(Path("B.K=1")), (Told{"from A.K=1", "to B.K=1"}));
  EXPECT_EQ(watched.Assign(TCIMValue()), (Told{"from B.K=1", "to NULL"}));
  EXPECT_EQ(watched.Assign(TCIMValue()), Told());
  EXPECT_EQ(watched.Assign(TCIMValue::Null(kCIMReference)), (Told{"from NULL", "to NULL"}));
  EXPECT_EQ(watched.Assign(TCIMValue("text")), Told());
}

TEST(TSlotTable, TheWatcherIsToldOfANullThatEndsTheReferenceOfTheDefault) {
  TWatched watched;
  EXPECT_EQ(watched.Assign(TCIMValue::Null(kCIMReference)), (Told{"from nothing", "to NULL"}));
}

}  // namespace
}  // namespace havtest

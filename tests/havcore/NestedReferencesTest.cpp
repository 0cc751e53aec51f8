// References that are keys of references that are keys …: deeper than any stack.
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AllocationCount.h"
#include "havcore/havcore.h"
#include "support/RecordingLogger.h"
#include "support/SmallStack.h"
#include "support/Status.h"

namespace {

using namespace NORVHAV20;
using namespace havtest;

constexpr int kLevels = 50'000;

const std::string kTooLong =
    "Havcore: the object path of class  is a key in another path, and its text is longer than "
    "16 MiB";

// A path that has what `inside` is as its key.
TCIMReference Around(const TCIMValue& inside) { return {{}, {{"K", inside}}}; }

TCIMValue Nested(int levels) {
  TCIMValue value("x");
  for (int level = 0; level < levels; ++level) value = TCIMValue(Around(value));
  return value;
}

TEST(NestedReferences, EndWithoutGoingDownTheStack) {
  OnSmallStack([] { Nested(kLevels); });
}

TEST(NestedReferences, EndWithoutGoingDownTheStackThroughArraysAndBesideOtherKeys) {
  OnSmallStack([] {
    TCIMValue value("x");
    const TCIMValue text(std::string(100, 't'));
    for (int level = 0; level < kLevels; ++level) {
      const TCIMValue none = TCIMValue::Null(kCIMReference);
      const TCIMValue inner(TCIMReference({}, {{"A", text}, {"B", value}, {"C", text}}));
      value = TCIMValue(kCIMReference, {none, inner, inner, none});
    }
  });
}

TEST(NestedReferences, LiveOnWhereTheyAreSharedWhenWhatIsAroundThemEnds) {
  OnSmallStack([] {
    const TCIMValue inner = Nested(3);
    const std::string path = inner.ToString(10);
    {
      TCIMValue outer = inner;
      for (int level = 0; level < kLevels; ++level)
        outer = TCIMValue(TCIMReference({}, {{"A", inner}, {"B", outer}}));
    }
    EXPECT_EQ(inner.ToString(10), path);
  });
}

#if !defined(_WIN32)  // where a library's operator new is its own and is not counted
TEST(NestedReferences, LeaveNoMemoryBehindWhateverTheyHoldAndShare) {
  const long before = LiveAllocations();
  {
    std::mt19937 random(3);
    std::vector<TCIMValue> values{TCIMValue("x"), TCIMValue(TCIMDateTime()), TCIMValue(1)};
    std::vector<TCIMValue> references{TCIMValue(TCIMReference({}, {}))};
    const auto one = [&](const std::vector<TCIMValue>& of) { return of[random() % of.size()]; };
    for (int round = 0; round < 2000; ++round) {
      TCIMReference path({}, {});
      for (auto keys = random() % 4; keys != 0; --keys)
        path.AddKeyValue(std::string(keys, 'K'), one(values));
      references.push_back(TCIMValue(path));
      std::vector<TCIMValue> elements;
      for (auto size = random() % 4; size != 0; --size) elements.push_back(one(references));
      values.push_back(TCIMValue(kCIMReference, elements));
      values.push_back(TCIMValue(path));
      // Many end long before the last.
      values[random() % values.size()] = TCIMValue("y");
      references[random() % references.size()] = TCIMValue::Null(kCIMReference);
    }
  }
  EXPECT_EQ(LiveAllocations(), before);
}
#endif

TEST(NestedReferences, AreCopiedAndAssignedInOneStep) {
  OnSmallStack([] {
    TCIMValue value = Nested(kLevels);
    TCIMReference path = static_cast<const TCIMReference&>(value);
    path = Around(TCIMValue(path));
    value = TCIMValue(1);
    EXPECT_EQ(path.GetKeyValues().size(), 1u);
  });
}

TEST(NestedReferences, HaveNoPathWhenItsTextWouldBeTooLong) {
  OnSmallStack([] {
    const RecordingLogger log;
    const TCIMReference path = Around(Nested(kLevels));
    EXPECT_STATUS(1, path.GetPath());
    EXPECT_STATUS(1, path.GetFullPath());
    EXPECT_STATUS(1, TCIMValue(path).ToString(10));
    EXPECT_STATUS(1, TCIMValue(kCIMReference, {TCIMValue(path)}).ToString(10));
  });
}

TEST(NestedReferences, HaveNoShortPathThatGoesDownTheStackWhateverTheirNames) {
  OnSmallStack([] {
    const RecordingLogger log;
    for (std::size_t length = 1; length <= 8; ++length) {
      TCIMReference path({}, {});
      for (int level = 0; level < kLevels / 10; ++level)
        path = TCIMReference({}, {{std::string(length, 'K'), TCIMValue(path)}});
      EXPECT_STATUS(1, path.GetPath());
    }
  });
}

TEST(NestedReferences, WithATextOfUpTo16MebibytesMayBeKeys) {
  RecordingLogger log;
  constexpr std::size_t kMost = std::size_t{1} << 24;
  const TCIMReference longest = Around(TCIMValue(std::string(kMost - 5, 'x')));
  EXPECT_EQ(longest.GetPath().size(), kMost);
  EXPECT_EQ(Around(longest).GetPath().size(), kMost + 7);
  EXPECT_EQ(log.Take(), LogLines());

  const TCIMReference longer = Around(TCIMValue(std::string(kMost - 4, 'x')));
  EXPECT_STATUS(1, Around(longer).GetPath());
  EXPECT_EQ(log.Take(), (LogLines{{ILogger::kError, kTooLong}}));
}

TEST(NestedReferences, OnlyAKeyIsToldThatItIsTooLong) {
  const RecordingLogger log;
  constexpr std::size_t kSize = (std::size_t{1} << 24) + 1;
  const TCIMReference longer = Around(TCIMValue(std::string(kSize - 5, 'x')));
  EXPECT_EQ(longer.GetPath().size(), kSize);
  EXPECT_EQ(longer.GetFullPath().size(), kSize);
  EXPECT_EQ(TCIMValue(longer).ToString(10).size(), kSize);
  EXPECT_EQ(TCIMValue(kCIMReference, {TCIMValue(longer)}).ToString(10).size(), kSize + 2);
}

TEST(NestedReferences, InArraysHaveTheirPath) {
  TCIMValue value = TCIMValue(Around(TCIMValue("x")));
  const auto around = [](const TCIMValue& inside) {
    return TCIMValue(Around(TCIMValue(kCIMReference, {inside})));
  };
  EXPECT_EQ(around(value).ToString(10), R"(.K="{.K=\"x\"}")");
  for (int level = 0; level < 14; ++level) value = around(value);
  EXPECT_GT(value.ToString(10).size(), std::size_t{1} << 14);
}

TEST(NestedReferences, ThatAreTooLongAreToldInTheLog) {
  RecordingLogger log;
  EXPECT_STATUS(1, Around(Nested(kLevels)).GetPath());
  EXPECT_EQ(log.Take(), (LogLines{{ILogger::kError, kTooLong}}));
}

TEST(NestedReferences, ThatFitHaveTheirPathAndReadBack) {
  const TCIMReference path = Around(Nested(15));
  const std::string text = path.GetPath();
  EXPECT_GT(text.size(), std::size_t{1} << 17);
  EXPECT_EQ(text.front(), '.');
}

TEST(NestedReferences, ThatDoubleWithEachLevelAreRefusedBeforeTheyTakeTheMemory) {
  RecordingLogger log;
  TCIMValue value("x");
  for (int level = 0; level < 100; ++level)
    value = TCIMValue(TCIMReference({}, {{"A", value}, {"B", value}}));
  EXPECT_STATUS(1, value.ToString(10));
  EXPECT_EQ(log.Take(), (LogLines{{ILogger::kError, kTooLong}}));
}

TEST(NestedReferences, CompareByWhatTheyShareFirst) {
  OnSmallStack([] {
    const RecordingLogger log;
    const TCIMReference path = Around(Nested(kLevels));
    const TCIMReference copy = path;
    EXPECT_TRUE(path == copy);
    EXPECT_FALSE(path < copy);
    EXPECT_TRUE(TCIMValue(path) == TCIMValue(copy));
    EXPECT_STATUS(1, (void)(path == Around(Nested(kLevels))));
    TCIMReference more = Around(Nested(kLevels));
    more.AddKeyValue("L", TCIMValue(true));
    EXPECT_FALSE(path == more);  // their number tells
  });
}

}  // namespace

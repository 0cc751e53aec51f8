// References that are keys of references that are keys …: deeper than any stack.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

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
  });
}

}  // namespace

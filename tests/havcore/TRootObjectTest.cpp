#include "havcore/TRootObject.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <boost/make_shared.hpp>

#include "havcore/TNamespaceProviderManager.h"
#include "support/RecordingLogger.h"

using namespace NORVHAV20;

namespace {

// Made before the library's services are first used, and so destroyed after everything that
// their first use makes.
struct LastWords {
  ~LastWords() {
    if (!text.empty()) TRootObject::GetCoreLogger()->Log(ILogger::kError, text);
  }
  std::string text;
} lastWords;

[[noreturn]] void ExitWithLastWords() {
  TRootObject::GetCoreLogger()->Log(ILogger::kNote, "first use");
  lastWords.text = "logged while statics are destroyed";
  std::exit(0);
}

}  // namespace

TEST(TRootObject, TheFirstLoggerWritesErrorsToStandardErrorAndDropsNotes) {
  ILogger* const logger = TRootObject::GetCoreLogger();
  ASSERT_NE(logger, nullptr);
  testing::internal::CaptureStderr();
  for (int level = 0; level < 5; ++level) logger->Log(level, "level " + std::to_string(level));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "level 3\nlevel 4\n");
}

TEST(TRootObject, TheCoreLoggerIsReplaceable) {
  ILogger* const first = TRootObject::GetCoreLogger();
  {
    havtest::RecordingLogger recording;
    EXPECT_EQ(TRootObject::GetCoreLogger(), &recording);
    TRootObject::GetCoreLogger()->Log(0, "a note");
    TRootObject::GetCoreLogger()->Log(3, "an error");
    EXPECT_EQ(recording.Take(), (havtest::LogLines{{0, "a note"}, {3, "an error"}}));
    EXPECT_EQ(TRootObject::SetCoreLogger(nullptr), &recording);
    EXPECT_EQ(TRootObject::GetCoreLogger(), first);
    EXPECT_EQ(TRootObject::SetCoreLogger(&recording), first);
  }
  EXPECT_EQ(TRootObject::GetCoreLogger(), first);
}

TEST(TRootObjectDeathTest, TheFirstLoggerOutlivesStatics) {
  EXPECT_EXIT(ExitWithLastWords(), testing::ExitedWithCode(0),
              "logged while statics are destroyed");
}

TEST(TRootObject, TheFirstManagerIsATNamespaceProviderManager) {
  const auto manager = TRootObject::GetNamespaceProviderManager();
  ASSERT_TRUE(manager);
  EXPECT_NE(dynamic_cast<TNamespaceProviderManager*>(manager.get()), nullptr);
  EXPECT_EQ(TRootObject::GetNamespaceProviderManager(), manager);
}

TEST(TRootObject, TheManagerIsReplaceable) {
  const auto first = TRootObject::GetNamespaceProviderManager();
  const auto second = boost::make_shared<TNamespaceProviderManager>();
  EXPECT_EQ(TRootObject::SetNamespaceProviderManager(second), first);
  EXPECT_EQ(TRootObject::GetNamespaceProviderManager(), second);
  EXPECT_EQ(TRootObject::SetNamespaceProviderManager({}), second);
  EXPECT_EQ(TRootObject::GetNamespaceProviderManager(), first);
  EXPECT_EQ(second.use_count(), 1);
}

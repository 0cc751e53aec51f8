#include "havcore/TOSSpecific.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>

using namespace NORVHAV20;

namespace {

// The time zone of this process while it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    const char* const before = std::getenv("TZ");
    m_before = before ? before : "";
    Set(zone);
  }
  ~TimeZone() { Set(m_before); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  static void Set(const std::string& zone) {
#if defined(_WIN32)
    _putenv_s("TZ", zone.c_str());
    _tzset();
#else
    if (zone.empty())
      unsetenv("TZ");
    else
      setenv("TZ", zone.c_str(), 1);
    tzset();
#endif
  }

  std::string m_before;
};

std::int64_t MicrosecondsSince1970(const TCIMDateTime& time) {
  static const TCIMDateTime epoch = TCIMDateTime::Timestamp(1970, 1, 1, 0, 0, 0, 0, 0);
  return time.GetMicroseconds() - epoch.GetMicroseconds();
}

std::int64_t Now() {
  using namespace std::chrono;
  return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

TEST(TOSSpecific, LocalTimeIsATimestampOfFullPrecision) {
  const TCIMDateTime time = TOSSpecific::GetLocalTime();
  EXPECT_FALSE(time.IsInterval());
  EXPECT_EQ(time.GetPrecision(), 20u);
}

TEST(TOSSpecific, LocalTimeIsNowToTheMicrosecond) {
  const std::int64_t before = Now();
  const std::int64_t local = MicrosecondsSince1970(TOSSpecific::GetLocalTime());
  const std::int64_t after = Now();
  EXPECT_LE(before, local);
  EXPECT_LE(local, after);
}

TEST(TOSSpecific, LocalTimeHasTheOffsetOfTheTimeZone) {
  // POSIX zone texts count westwards.
  const struct {
    const char* zone;
    std::int32_t minutesEast;
  } zones[] = {{"UTC0", 0}, {"AAA-2", 120}, {"BBB8", -480}, {"CCC-12", 720}, {"DDD3:30", -210}};
  for (const auto& [zone, minutesEast] : zones) {
    const TimeZone here(zone);
    const std::int64_t before = Now();
    const TCIMDateTime time = TOSSpecific::GetLocalTime();
    EXPECT_EQ(time.GetUtcOffset(), minutesEast) << zone;
    EXPECT_LE(before, MicrosecondsSince1970(time)) << zone;
  }
}

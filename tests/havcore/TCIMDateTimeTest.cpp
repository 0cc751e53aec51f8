#include "havcore/TCIMDateTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/Status.h"

using namespace NORVHAV20;

namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kHour = 3600 * kSecond;
constexpr std::int64_t kDay = 24 * kHour;

std::string UITextOf(const std::string& text) { return TCIMDateTime::Parse(text).ToUIString(); }

TCIMDateTime Interval(std::uint32_t days, std::uint16_t hours, std::uint16_t minutes,
                      std::uint16_t seconds, std::uint32_t microseconds) {
  TCIMDateTime interval;
  interval.Set(days, hours, minutes, seconds, microseconds);
  return interval;
}

}  // namespace

TEST(TCIMDateTime, TheDefaultIsTheIntervalOfLengthZero) {
  const TCIMDateTime zero;
  EXPECT_TRUE(zero.IsInterval());
  EXPECT_EQ(zero.GetMicroseconds(), 0);
  EXPECT_EQ(zero.GetUtcOffset(), 0);
  EXPECT_EQ(zero.GetPrecision(), 20u);
  EXPECT_EQ(zero.ToString(), "00000000000000.000000:000");
  EXPECT_EQ(zero.ToUIString(), "00:00:00");
}

TEST(TCIMDateTime, SetMakesAnInterval) {
  TCIMDateTime time = TCIMDateTime::Timestamp(2024, 2, 29, 23, 59, 59, 999999, 60);
  time.Set(99999999, 23, 59, 59, 999999);
  EXPECT_TRUE(time.IsInterval());
  EXPECT_EQ(time.GetUtcOffset(), 0);
  EXPECT_EQ(time.GetMicroseconds(), 100'000'000 * kDay - 1);
  EXPECT_EQ(time.ToString(), "99999999235959.999999:000");
}

TEST(TCIMDateTime, SetRefusesAFieldOutOfRangeAndChangesNothing) {
  TCIMDateTime time = Interval(1, 2, 3, 4, 5);
  EXPECT_STATUS(14, time.Set(100'000'000, 0, 0, 0, 0));
  EXPECT_STATUS(14, time.Set(0, 24, 0, 0, 0));
  EXPECT_STATUS(14, time.Set(0, 0, 60, 0, 0));
  EXPECT_STATUS(14, time.Set(0, 0, 0, 60, 0));
  EXPECT_STATUS(14, time.Set(0, 0, 0, 0, 1'000'000));
  EXPECT_EQ(time.ToString(), "00000001020304.000005:000");
}

TEST(TCIMDateTime, TimestampCountsFromTheYearZeroInUtc) {
  EXPECT_EQ(TCIMDateTime::Timestamp(0, 1, 1, 0, 0, 0, 0, 0).GetMicroseconds(), 0);
  EXPECT_EQ(TCIMDateTime::Timestamp(0, 1, 1, 0, 0, 0, 0, 60).GetMicroseconds(), -kHour);
  EXPECT_EQ(TCIMDateTime::Timestamp(1, 1, 1, 0, 0, 0, 0, 0).GetMicroseconds(), 366 * kDay);
  EXPECT_EQ(TCIMDateTime::Timestamp(1970, 1, 1, 0, 0, 0, 0, 0).GetMicroseconds(), 719'528 * kDay);
  EXPECT_EQ(TCIMDateTime::Timestamp(2000, 3, 1, 1, 0, 0, 0, 60).GetMicroseconds(), 730'545 * kDay);
}

TEST(TCIMDateTime, TimestampWritesItsLocalTime) {
  EXPECT_EQ(TCIMDateTime::Timestamp(2024, 2, 29, 13, 30, 15, 300, -300).ToString(),
            "20240229133015.000300-300");
  EXPECT_EQ(TCIMDateTime::Timestamp(0, 1, 1, 0, 0, 0, 0, 999).ToString(),
            "00000101000000.000000+999");
  EXPECT_EQ(TCIMDateTime::Timestamp(9999, 12, 31, 23, 59, 59, 999999, -999).ToString(),
            "99991231235959.999999-999");
}

TEST(TCIMDateTime, EveryDayOfFourCenturiesIsWrittenAsItWasRead) {
  std::int64_t expected = TCIMDateTime::Timestamp(1900, 1, 1, 12, 0, 0, 0, 0).GetMicroseconds();
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (unsigned year = 1900; year < 2300; ++year) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    for (unsigned month = 1; month <= 12; ++month) {
      const int length = lengths[month - 1] + (leap && month == 2 ? 1 : 0);
      for (int day = 1; day <= length; ++day, expected += kDay) {
        const auto time = TCIMDateTime::Timestamp(year, static_cast<std::uint16_t>(month),
                                                  static_cast<std::uint16_t>(day), 12, 0, 0, 0, 0);
        ASSERT_EQ(time.GetMicroseconds(), expected);
        ASSERT_EQ(TCIMDateTime::Parse(time.ToString()), time) << time.ToString();
      }
      EXPECT_STATUS(
          14, TCIMDateTime::Timestamp(year, static_cast<std::uint16_t>(month),
                                      static_cast<std::uint16_t>(length + 1), 12, 0, 0, 0, 0));
    }
  }
}

TEST(TCIMDateTime, TimestampRefusesAFieldOutOfRange) {
  EXPECT_STATUS(0, TCIMDateTime::Timestamp(2024, 1, 1, 0, 0, 0, 0, 0));
  for (const std::uint32_t year : {10000u, 300000u, 500000u, 1000000u, 4294967295u})
    EXPECT_STATUS(14, TCIMDateTime::Timestamp(year, 1, 1, 0, 0, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 0, 1, 0, 0, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 13, 1, 0, 0, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 0, 0, 0, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 24, 0, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 0, 60, 0, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 0, 0, 61, 0, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 0, 0, 0, 1'000'000, 0));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 0, 0, 0, 0, 1000));
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(2024, 1, 1, 0, 0, 0, 0, -1000));
}

TEST(TCIMDateTime, ALeapSecondCountsAsTheSecondAfterIt) {
  const auto leap = TCIMDateTime::Timestamp(2016, 12, 31, 23, 59, 60, 0, 0);
  EXPECT_EQ(leap, TCIMDateTime::Timestamp(2017, 1, 1, 0, 0, 0, 0, 0));
  EXPECT_EQ(leap.ToString(), "20170101000000.000000+000");
  EXPECT_EQ(TCIMDateTime::Parse("20161231235960.000000+000"), leap);
  EXPECT_STATUS(14, TCIMDateTime::Timestamp(9999, 12, 31, 23, 59, 60, 0, 0));
}

TEST(TCIMDateTime, TextOfFullPrecisionIsWrittenAsItWasRead) {
  for (const std::string text :
       {"20240229133015.123456+060", "20240229133015.000000-300", "00000101000000.000000+000",
        "12345678235959.999999:000", "00000000000000.000001:000"}) {
    const auto time = TCIMDateTime::Parse(text);
    EXPECT_EQ(time.ToString(), text);
    EXPECT_EQ(time.GetPrecision(), 20u) << text;
    EXPECT_EQ(time.IsInterval(), text[21] == ':') << text;
  }
}

TEST(TCIMDateTime, AsterisksAreWrittenAsTheyWereRead) {
  const struct {
    const char* text;
    unsigned precision;
  } rows[] = {
      {"20240229133015.12345*+060", 19}, {"20240229133015.1*****+060", 15},
      {"20240229133015.******+060", 14}, {"202402291330**.******+060", 12},
      {"2024022913****.******+060", 10}, {"20240229******.******+060", 8},
      {"202402********.******+060", 6},  {"2024**********.******+060", 4},
      {"**************.******+060", 0},  {"12345678235959.9*****:000", 15},
      {"12345678235959.******:000", 14}, {"123456782359**.******:000", 12},
      {"1234567823****.******:000", 10}, {"12345678******.******:000", 8},
      {"**************.******:000", 0},
  };
  for (const auto& [text, precision] : rows) {
    const auto time = TCIMDateTime::Parse(text);
    EXPECT_EQ(time.ToString(), text);
    EXPECT_EQ(time.GetPrecision(), precision) << text;
    EXPECT_EQ(TCIMDateTime::Parse(time.ToString()), time) << text;
  }
}

TEST(TCIMDateTime, RefusesTextThatIsNoDatetime) {
  for (const char* text : {
           "",
           "2024",
           "20240229133015.123456+06",
           "20240229133015.123456+0600",
           "20240229133015,123456+060",
           "20240229133015.123456 060",
           "20240229133015.123456*060",
           "20240229133015.123456+***",
           "20240229133015.123456+-60",
           "2024022913301a.123456+060",
           " 0240229133015.123456+060",
           "+0240229133015.123456+060",
           "20230229133015.123456+060",  // no leap year
           "20241301133015.123456+060",
           "20240229243015.123456+060",
           "20240229133015.*23456+060",  // a digit after an asterisk
           "2024022913301*.******+060",  // a part of a field
           "202402291*****.******+060",
           "202*022913****.******+060",
           "2024*2********.******+060",
           "12345678240000.000000:000",
           "12345678006000.000000:000",
           "12345678000060.000000:000",
           "1234567*******.******:000",
           "1234************.****:000",
           "12345678000000.000000:001",
           "12345678000000.000000:***",
       })
    EXPECT_STATUS(14, TCIMDateTime::Parse(text)) << text;
}

TEST(TCIMDateTime, OrdersByKindThenInstantThenPrecision) {
  // Each stands before all that follow it.
  const std::vector<std::string> ascending = {
      "**************.******:000", "00000000******.******:000", "00000000000000.000000:000",
      "00000000000000.000001:000", "99999999235959.999999:000", "00000101000000.000000+001",
      "**************.******+000", "0000**********.******+000", "00000101000000.000000+000",
      "2024**********.******+000", "202401********.******+000", "20240101******.******+000",
      "20240101000000.******+000", "20240101000000.000000+000", "20240101000000.000000-060",
      "20240101010000.000001+000"};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    const auto a = TCIMDateTime::Parse(ascending[i]);
    EXPECT_TRUE(a == a) << ascending[i];
    EXPECT_FALSE(a < a) << ascending[i];
    for (std::size_t j = i + 1; j < ascending.size(); ++j) {
      const auto b = TCIMDateTime::Parse(ascending[j]);
      EXPECT_TRUE(a < b) << ascending[i] << ' ' << ascending[j];
      EXPECT_FALSE(b < a) << ascending[i] << ' ' << ascending[j];
      EXPECT_TRUE(a != b) << ascending[i] << ' ' << ascending[j];
    }
  }
}

TEST(TCIMDateTime, OneInstantIsEqualWhateverTheOffset) {
  const auto utc = TCIMDateTime::Parse("20240101000000.000000+000");
  const auto east = TCIMDateTime::Parse("20240101020000.000000+120");
  EXPECT_EQ(utc, east);
  EXPECT_FALSE(utc < east);
  EXPECT_FALSE(east < utc);
  EXPECT_EQ(east.GetUtcOffset(), 120);
}

TEST(TCIMDateTime, UITextOfIntervals) {
  EXPECT_EQ(Interval(0, 2, 3, 4, 0).ToUIString(), "02:03:04");
  EXPECT_EQ(Interval(1, 2, 3, 4, 0).ToUIString(), "1 day 02:03:04");
  EXPECT_EQ(Interval(2, 0, 0, 0, 1000).ToUIString(), "2 days 00:00:00.001000");
  EXPECT_EQ(Interval(99999999, 23, 59, 59, 999999).ToUIString(), "99999999 days 23:59:59.999999");
}

TEST(TCIMDateTime, UITextOfTimestamps) {
  EXPECT_EQ(UITextOf("20240229133015.000000+060"), "2024-02-29 13:30:15 +01:00");
  EXPECT_EQ(UITextOf("20240229133015.000042-570"), "2024-02-29 13:30:15.000042 -09:30");
  EXPECT_EQ(UITextOf("00010203040506.000000+000"), "0001-02-03 04:05:06 +00:00");
}

TEST(TCIMDateTime, UITextOfALowerPrecisionShowsWhatIsSignificant) {
  EXPECT_EQ(UITextOf("20240229133015.12****+060"), "2024-02-29 13:30:15.12 +01:00");
  EXPECT_EQ(UITextOf("20240229133015.00****+060"), "2024-02-29 13:30:15 +01:00");
  EXPECT_EQ(UITextOf("20240229133015.******+060"), "2024-02-29 13:30:15 +01:00");
  EXPECT_EQ(UITextOf("202402291330**.******+060"), "2024-02-29 13:30 +01:00");
  EXPECT_EQ(UITextOf("2024022913****.******+060"), "2024-02-29 13:** +01:00");
  EXPECT_EQ(UITextOf("20240229******.******+060"), "2024-02-29");
  EXPECT_EQ(UITextOf("202402********.******+060"), "2024-02");
  EXPECT_EQ(UITextOf("2024**********.******+060"), "2024");
  EXPECT_EQ(UITextOf("**************.******+060"), "unknown");
  EXPECT_EQ(UITextOf("00000001020304.5*****:000"), "1 day 02:03:04.5");
  EXPECT_EQ(UITextOf("000000010203**.******:000"), "1 day 02:03");
  EXPECT_EQ(UITextOf("0000000002****.******:000"), "02:**");
  EXPECT_EQ(UITextOf("00000003******.******:000"), "3 days");
  EXPECT_EQ(UITextOf("00000000******.******:000"), "0 days");
  EXPECT_EQ(UITextOf("**************.******:000"), "unknown");
}

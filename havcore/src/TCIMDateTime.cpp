#include "havcore/TCIMDateTime.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <tuple>

#include "havcore/THAVException.h"

namespace NORVHAV20 {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

constexpr std::size_t kTextLength = 25;
constexpr std::size_t kPointAt = 14;
constexpr std::size_t kSignAt = 21;
constexpr unsigned kFullPrecision = 20;
constexpr unsigned kSecondsPrecision = 14;

struct TDate {
  std::int64_t year;
  unsigned month;
  unsigned day;
};

struct TTime {
  std::int64_t days;
  unsigned hours;
  unsigned minutes;
  unsigned seconds;
  unsigned microseconds;
};

[[noreturn]] void ThrowNoDateTime() { throw THAVException(kHAVTypesDiffer); }

void Require(bool holds) {
  if (!holds) ThrowNoDateTime();
}

bool IsLeapYear(std::int64_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

unsigned DaysOfMonth(std::int64_t year, unsigned month) {
  constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Days from 0000-01-01 to the first of January of `year`.
std::int64_t DaysBefore(std::int64_t year) {
  return 365 * year + (year + 3) / 4 - (year + 99) / 100 + (year + 399) / 400;
}

std::int64_t DaysFromDate(const TDate& date) {
  std::int64_t days = DaysBefore(date.year) + date.day - 1;
  for (unsigned month = 1; month < date.month; ++month) days += DaysOfMonth(date.year, month);
  return days;
}

TDate DateFromDays(std::int64_t days) {
  std::int64_t year = days / 366;
  while (DaysBefore(year + 1) <= days) ++year;
  days -= DaysBefore(year);
  unsigned month = 1;
  while (days >= DaysOfMonth(year, month)) days -= DaysOfMonth(year, month++);
  return {year, month, static_cast<unsigned>(days) + 1};
}

TTime Split(std::int64_t microseconds) {
  return {microseconds / kDay, static_cast<unsigned>(microseconds % kDay / kHour),
          static_cast<unsigned>(microseconds % kHour / kMinute),
          static_cast<unsigned>(microseconds % kMinute / kSecond),
          static_cast<unsigned>(microseconds % kSecond)};
}

std::int64_t Join(const TTime& time) {
  return time.days * kDay + time.hours * kHour + time.minutes * kMinute + time.seconds * kSecond +
         time.microseconds;
}

void AppendPadded(std::string& out, std::uint64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  out.append(width - std::min(width, digits.size()), '0');
  out += digits;
}

std::uint32_t ReadDigits(std::string_view text) {
  std::uint32_t number = 0;
  for (const char c : text) {
    Require(c >= '0' && c <= '9');
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return number;
}

// The digits of a datetime text, of which only the first `precision` count.
class TDigits {
 public:
  explicit TDigits(const std::string& text)
      : m_digits(text.substr(0, kPointAt) + text.substr(kPointAt + 1, kSignAt - kPointAt - 1)) {
    const std::size_t asterisk = std::min(m_digits.find('*'), m_digits.size());
    Require(m_digits.find_first_not_of('*', asterisk) == std::string::npos);
    m_precision = static_cast<unsigned>(asterisk);
  }

  unsigned GetPrecision() const { return m_precision; }

  // The next `width` digits as a number; `absent` when they do not count.
  std::uint32_t Take(std::size_t width, std::uint32_t absent = 0) {
    const std::size_t at = m_at;
    m_at += width;
    if (m_precision <= at) return absent;
    return ReadDigits(std::string_view(m_digits).substr(at, width));
  }

  // The microseconds: the one field of which a part may count.
  std::uint32_t TakeFraction() {
    std::string fraction = m_digits.substr(m_at);
    std::replace(fraction.begin(), fraction.end(), '*', '0');
    return ReadDigits(fraction);
  }

 private:
  std::string m_digits;
  unsigned m_precision = 0;
  std::size_t m_at = 0;
};

// "HH:MM:SS[.ffffff]" as far as `precision` goes; hours never stand alone.
void AppendClock(std::string& out, const TTime& time, unsigned precision) {
  AppendPadded(out, time.hours, 2);
  out += ':';
  if (precision < 12) {
    out += "**";
    return;
  }
  AppendPadded(out, time.minutes, 2);
  if (precision < kSecondsPrecision) return;
  out += ':';
  AppendPadded(out, time.seconds, 2);
  if (time.microseconds == 0) return;
  out += '.';
  AppendPadded(out, time.microseconds, 6);
  out.resize(out.size() - (kFullPrecision - precision));
}

// "YYYY-MM-DD" as far as `precision` goes.
void AppendDate(std::string& out, const TDate& date, unsigned precision) {
  AppendPadded(out, static_cast<std::uint64_t>(date.year), 4);
  if (precision < 6) return;
  out += '-';
  AppendPadded(out, date.month, 2);
  if (precision < 8) return;
  out += '-';
  AppendPadded(out, date.day, 2);
}

void AppendOffset(std::string& out, std::int32_t minutes) {
  const auto distance = static_cast<std::uint32_t>(std::abs(minutes));
  out += minutes < 0 ? '-' : '+';
  AppendPadded(out, distance / 60, 2);
  out += ':';
  AppendPadded(out, distance % 60, 2);
}

}  // namespace

TCIMDateTime::TCIMDateTime() noexcept = default;

TCIMDateTime TCIMDateTime::Parse(const std::string& text) {
  Require(text.size() == kTextLength && text[kPointAt] == '.');
  const char sign = text[kSignAt];
  const std::uint32_t offset = ReadDigits(std::string_view(text).substr(kSignAt + 1));
  TDigits digits(text);
  TCIMDateTime result;
  if (sign == ':') {
    Require(offset == 0);
    const std::uint32_t days = digits.Take(8);
    const auto hours = static_cast<std::uint16_t>(digits.Take(2));
    const auto minutes = static_cast<std::uint16_t>(digits.Take(2));
    const auto seconds = static_cast<std::uint16_t>(digits.Take(2));
    result.Set(days, hours, minutes, seconds, digits.TakeFraction());
  } else {
    Require(sign == '+' || sign == '-');
    const std::uint32_t year = digits.Take(4);
    const auto month = static_cast<std::uint16_t>(digits.Take(2, 1));
    const auto day = static_cast<std::uint16_t>(digits.Take(2, 1));
    const auto hours = static_cast<std::uint16_t>(digits.Take(2));
    const auto minutes = static_cast<std::uint16_t>(digits.Take(2));
    const auto seconds = static_cast<std::uint16_t>(digits.Take(2));
    const auto east = static_cast<std::int32_t>(offset);
    result = Timestamp(year, month, day, hours, minutes, seconds, digits.TakeFraction(),
                       sign == '-' ? -east : east);
  }
  result.m_precision = static_cast<std::uint8_t>(digits.GetPrecision());
  return result;
}

TCIMDateTime TCIMDateTime::Timestamp(std::uint32_t year, std::uint16_t month, std::uint16_t day,
                                     std::uint16_t hours, std::uint16_t minutes,
                                     std::uint16_t seconds, std::uint32_t microseconds,
                                     std::int32_t utcOffset) {
  Require(year <= 9999 && month >= 1 && month <= 12);
  Require(day >= 1 && day <= DaysOfMonth(year, month));
  Require(hours <= 23 && minutes <= 59 && seconds <= 60 && microseconds <= 999'999);
  Require(utcOffset >= -999 && utcOffset <= 999);
  // A leap second has no instant of its own here: it counts as the second after it.
  const std::int64_t local =
      Join({DaysFromDate({year, month, day}), hours, minutes, seconds, microseconds});
  Require(local < DaysBefore(10'000) * kDay);
  TCIMDateTime result;
  result.m_microseconds = local - utcOffset * kMinute;
  result.m_utcOffset = utcOffset;
  result.m_interval = false;
  return result;
}

void TCIMDateTime::Set(std::uint32_t days, std::uint16_t hours, std::uint16_t minutes,
                       std::uint16_t seconds, std::uint32_t microseconds) {
  Require(days <= 99'999'999 && hours <= 23 && minutes <= 59 && seconds <= 59 &&
          microseconds <= 999'999);
  *this = TCIMDateTime();
  m_microseconds = Join({days, hours, minutes, seconds, microseconds});
}

std::string TCIMDateTime::ToString() const {
  const TTime time = Split(m_microseconds + m_utcOffset * kMinute);
  std::string text;
  text.reserve(kTextLength);
  if (m_interval) {
    AppendPadded(text, static_cast<std::uint64_t>(time.days), 8);
  } else {
    const TDate date = DateFromDays(time.days);
    AppendPadded(text, static_cast<std::uint64_t>(date.year), 4);
    AppendPadded(text, date.month, 2);
    AppendPadded(text, date.day, 2);
  }
  AppendPadded(text, time.hours, 2);
  AppendPadded(text, time.minutes, 2);
  AppendPadded(text, time.seconds, 2);
  AppendPadded(text, time.microseconds, 6);
  std::fill(text.begin() + m_precision, text.end(), '*');
  text.insert(kPointAt, 1, '.');
  text += m_interval ? ':' : m_utcOffset < 0 ? '-' : '+';
  AppendPadded(text, static_cast<std::uint64_t>(std::abs(m_utcOffset)), 3);
  return text;
}

std::string TCIMDateTime::ToUIString() const {
  if (m_precision == 0) return "unknown";
  const TTime time = Split(m_microseconds + m_utcOffset * kMinute);
  const bool clock = m_precision >= 10;
  std::string text;
  if (m_interval) {
    if (time.days != 0 || !clock)
      text = std::to_string(time.days) + (time.days == 1 ? " day" : " days");
  } else {
    AppendDate(text, DateFromDays(time.days), m_precision);
  }
  if (!clock) return text;
  if (!text.empty()) text += ' ';
  AppendClock(text, time, m_precision);
  if (!m_interval) {
    text += ' ';
    AppendOffset(text, m_utcOffset);
  }
  return text;
}

bool operator==(const TCIMDateTime& a, const TCIMDateTime& b) noexcept {
  return a.m_interval == b.m_interval && a.m_microseconds == b.m_microseconds &&
         a.m_precision == b.m_precision;
}

bool operator<(const TCIMDateTime& a, const TCIMDateTime& b) noexcept {
  return std::make_tuple(!a.m_interval, a.m_microseconds, a.m_precision) <
         std::make_tuple(!b.m_interval, b.m_microseconds, b.m_precision);
}

}  // namespace NORVHAV20

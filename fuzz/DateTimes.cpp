// Texts as datetimes, a line each: each is read here character by character, with a calendar that
// was counted day by day, and must be read the same, written the same, and stand in the same order
// as the line before it.
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"

namespace {

using namespace NORVHAV20;
using havfuzz::Require;
using havfuzz::RequireEqual;

constexpr int kLastYear = 9999;

int DaysOf(int year, int month) {
  if (month == 2) {
    if (year % 400 == 0) return 29;
    if (year % 100 == 0) return 28;
    return year % 4 == 0 ? 29 : 28;
  }
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// The day on which each month begins, counted from the first of the year 0.
std::vector<std::int64_t> CountMonths() {
  std::vector<std::int64_t> months;
  std::int64_t day = 0;
  for (int year = 0; year <= kLastYear; ++year)
    for (int month = 1; month <= 12; ++month) {
      months.push_back(day);
      day += DaysOf(year, month);
    }
  return months;
}

// A datetime as its text has it: the twenty digits as fields.
struct TPlain {
  bool isInterval;
  unsigned precision;  // digits that are there
  int year, month, day, days, hours, minutes, seconds, microseconds, offset;

  std::int64_t Microseconds() const {
    static const auto months = CountMonths();
    const std::int64_t whole =
        isInterval ? days : months[static_cast<std::size_t>(year * 12 + month - 1)] + day - 1;
    const std::int64_t ofDay = (hours * 60LL + minutes - (isInterval ? 0 : offset)) * 60 + seconds;
    return (whole * 86400 + ofDay) * 1000000 + microseconds;
  }
  auto Order() const { return std::make_tuple(!isInterval, Microseconds(), precision); }

  // The leap second is the first of the next minute.
  bool CarryLeapSecond() {
    if (isInterval || seconds < 60) return true;
    seconds = 0;
    if (++minutes < 60) return true;
    minutes = 0;
    if (++hours < 24) return true;
    hours = 0;
    if (++day <= DaysOf(year, month)) return true;
    day = 1;
    if (++month <= 12) return true;
    month = 1;
    return ++year <= kLastYear;
  }
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A field of the digits, `absent` where asterisks stand for it.
int Field(const std::string& digits, std::size_t at, std::size_t width, int absent) {
  int number = 0;
  for (std::size_t i = at; i < at + width; ++i) {
    if (digits[i] == '*') return absent;
    number = number * 10 + (digits[i] - '0');
  }
  return number;
}

bool IsFieldEnd(std::size_t digits, bool isInterval) {
  if (digits == 4 || digits == 6) return !isInterval;
  return digits == 0 || digits == 8 || digits == 10 || digits == 12 || digits >= 14;
}

std::optional<TPlain> ReadPlain(std::string_view text) {
  if (text.size() != 25 || text[14] != '.') return {};
  const std::string digits = std::string(text.substr(0, 14)) + std::string(text.substr(15, 6));
  std::size_t there = 0;
  while (there < 20 && IsDigit(digits[there])) ++there;
  for (std::size_t i = there; i < 20; ++i)
    if (digits[i] != '*') return {};
  for (std::size_t i = 22; i < 25; ++i)
    if (!IsDigit(text[i])) return {};
  const char sign = text[21];
  if (sign != ':' && sign != '+' && sign != '-') return {};
  TPlain plain{};
  plain.isInterval = sign == ':';
  if (!IsFieldEnd(there, plain.isInterval)) return {};
  plain.precision = static_cast<unsigned>(there);
  plain.offset = Field(std::string(text), 22, 3, 0) * (sign == '-' ? -1 : 1);
  if (plain.isInterval && plain.offset != 0) return {};
  plain.days = Field(digits, 0, 8, 0);
  plain.year = Field(digits, 0, 4, 0);
  plain.month = Field(digits, 4, 2, 1);
  plain.day = Field(digits, 6, 2, 1);
  plain.hours = Field(digits, 8, 2, 0);
  plain.minutes = Field(digits, 10, 2, 0);
  plain.seconds = Field(digits, 12, 2, 0);
  std::string fraction = digits.substr(14);
  std::replace(fraction.begin(), fraction.end(), '*', '0');
  plain.microseconds = Field(fraction, 0, 6, 0);
  if (plain.hours > 23 || plain.minutes > 59) return {};
  if (plain.seconds > (plain.isInterval ? 59 : 60)) return {};
  if (!plain.isInterval) {
    if (plain.month < 1 || plain.month > 12 || plain.day < 1) return {};
    if (plain.day > DaysOf(plain.year, plain.month)) return {};
  }
  if (!plain.CarryLeapSecond()) return {};
  return plain;
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string TextOf(const TPlain& plain) {
  std::string digits = plain.isInterval
                           ? Padded(plain.days, 8)
                           : Padded(plain.year, 4) + Padded(plain.month, 2) + Padded(plain.day, 2);
  digits += Padded(plain.hours, 2) + Padded(plain.minutes, 2) + Padded(plain.seconds, 2) +
            Padded(plain.microseconds, 6);
  digits = digits.substr(0, plain.precision) + std::string(20 - plain.precision, '*');
  const char sign = plain.isInterval ? ':' : plain.offset < 0 ? '-' : '+';
  return digits.substr(0, 14) + '.' + digits.substr(14) + sign + Padded(std::abs(plain.offset), 3);
}

std::string UITextOf(const TPlain& plain) {
  const unsigned there = plain.precision;
  if (there == 0) return "unknown";
  std::string date = std::to_string(plain.days) + (plain.days == 1 ? " day" : " days");
  if (!plain.isInterval) {
    date = Padded(plain.year, 4);
    if (there >= 6) date += '-' + Padded(plain.month, 2);
    if (there >= 8) date += '-' + Padded(plain.day, 2);
  }
  if (there < 10) return date;
  std::string time = Padded(plain.hours, 2) + ':';
  time += there < 12 ? "**" : Padded(plain.minutes, 2);
  if (there >= 14) time += ':' + Padded(plain.seconds, 2);
  if (plain.microseconds != 0) time += '.' + Padded(plain.microseconds, 6).substr(0, there - 14);
  if (plain.isInterval) return plain.days == 0 ? time : date + ' ' + time;
  const int offset = std::abs(plain.offset);
  return date + ' ' + time + ' ' + (plain.offset < 0 ? '-' : '+') + Padded(offset / 60, 2) + ':' +
         Padded(offset % 60, 2);
}

std::optional<TCIMDateTime> Read(const std::string& text) {
  try {
    return TCIMDateTime::Parse(text);
  } catch (const THAVException& failure) {
    RequireEqual(static_cast<int>(failure.GetStatusCode()), 14, "status", text);
    return {};
  }
}

// The same from its fields.
void CheckMade(const TPlain& plain, const std::string& text) {
  const auto field = [](int number) { return static_cast<std::uint16_t>(number); };
  TCIMDateTime made;
  if (plain.isInterval)
    made.Set(static_cast<std::uint32_t>(plain.days), field(plain.hours), field(plain.minutes),
             field(plain.seconds), static_cast<std::uint32_t>(plain.microseconds));
  else
    made = TCIMDateTime::Timestamp(static_cast<std::uint32_t>(plain.year), field(plain.month),
                                   field(plain.day), field(plain.hours), field(plain.minutes),
                                   field(plain.seconds),
                                   static_cast<std::uint32_t>(plain.microseconds), plain.offset);
  TPlain whole = plain;
  whole.precision = 20;
  RequireEqual(made.ToString(), TextOf(whole), "text of the fields", text);
  RequireEqual(made.GetMicroseconds(), plain.Microseconds(), "instant of the fields", text);
}

void CheckRead(const TCIMDateTime& read, const TPlain& plain, const std::string& text) {
  RequireEqual(read.IsInterval(), plain.isInterval, "kind", text);
  RequireEqual(read.GetPrecision(), plain.precision, "precision", text);
  RequireEqual(read.GetUtcOffset(), plain.offset, "offset", text);
  RequireEqual(read.GetMicroseconds(), plain.Microseconds(), "microseconds", text);
  RequireEqual(read.ToString(), TextOf(plain), "text", text);
  RequireEqual(read.ToUIString(), UITextOf(plain), "text for people", text);
  Require(TCIMDateTime::Parse(read.ToString()) == read, "the text does not read back");
  CheckMade(plain, text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  havfuzz::TInput input(data, size);
  std::optional<TCIMDateTime> before;
  std::optional<TPlain> plainBefore;
  do {
    const std::string text(input.Until('\n'));
    const auto read = Read(text);
    const auto plain = ReadPlain(text);
    RequireEqual(read.has_value(), plain.has_value(), "whether it is a datetime", text);
    if (read) CheckRead(*read, *plain, text);
    if (read && before) {
      RequireEqual(*before < *read, plainBefore->Order() < plain->Order(), "order", text);
      RequireEqual(*read < *before, plain->Order() < plainBefore->Order(), "order", text);
      RequireEqual(*read == *before, plain->Order() == plainBefore->Order(), "equality", text);
    }
    before = read;
    plainBefore = plain;
  } while (!input.IsAtEnd());
  return 0;
}

// TCIMDateTime: a CIM datetime, which is either a point in time with an offset from UTC or
// an interval, to a precision of one microsecond or less.
//
// Text is the 25 characters of CIM: "yyyymmddhhmmss.mmmmmmsutc" for a timestamp (s is '+'
// or '-', utc the offset in minutes), "ddddddddhhmmss.mmmmmm:000" for an interval. Trailing
// fields may be asterisks, not significant: whole fields, and any number of the microseconds'
// digits. Such a value stands for the beginning of the time that it leaves open.
//
// Threads: a value.
// Errors:  THAVException 14 for text or fields that are no datetime.
#pragma once

#include <cstdint>
#include <string>

#include "havcore/Export.h"

namespace NORVHAV20 {

class HAVCORE_API TCIMDateTime {
 public:
  // The interval of length zero.
  TCIMDateTime() noexcept;

  // Reads the 25 characters. Throws 14 when they are no datetime.
  static TCIMDateTime Parse(const std::string& text);

  // A timestamp with full precision. `utcOffset` is in minutes, east positive, at most 999
  // either way. Throws 14 when a field is out of range; second 60, a leap second, is accepted
  // and counts as the second after it.
  static TCIMDateTime Timestamp(std::uint32_t year, std::uint16_t month, std::uint16_t day,
                                std::uint16_t hours, std::uint16_t minutes, std::uint16_t seconds,
                                std::uint32_t microseconds, std::int32_t utcOffset);

  // Makes this an interval with full precision. Throws 14, and changes nothing, when a
  // field is out of range: days to 99999999, hours to 23, minutes and seconds to 59,
  // microseconds to 999999.
  void Set(std::uint32_t days, std::uint16_t hours, std::uint16_t minutes, std::uint16_t seconds,
           std::uint32_t microseconds);

  bool IsInterval() const noexcept { return m_interval; }
  // The offset from UTC of a timestamp, in minutes; 0 for an interval.
  std::int32_t GetUtcOffset() const noexcept { return m_utcOffset; }
  // How many of the 20 digits before the offset are significant: 20 is full precision, and
  // every smaller number says that the rest are asterisks.
  unsigned GetPrecision() const noexcept { return m_precision; }
  // An interval's length; a timestamp's distance from 0000-01-01 00:00 UTC; microseconds.
  std::int64_t GetMicroseconds() const noexcept { return m_microseconds; }

  // The 25 characters. Parse gives back an equal value.
  std::string ToString() const;
  // For people: "[N day(s) ]HH:MM:SS[.ffffff]", or "YYYY-MM-DD HH:MM:SS[.ffffff] +HH:MM"; the
  // fraction when it is not zero, days when there are any. Of a lower precision only what is
  // significant ("2024-03", "2024-03-01 10:15 +01:00", "3 days"); hours alone as "10:**";
  // "unknown" when nothing is significant.
  std::string ToUIString() const;

  // Ordered by kind (intervals first), then instant or length, then precision, the lower
  // first: "March" stands before every other time in March. Two timestamps of one instant
  // and precision are equal whatever their offsets.
  friend HAVCORE_API bool operator==(const TCIMDateTime& a, const TCIMDateTime& b) noexcept;
  friend HAVCORE_API bool operator<(const TCIMDateTime& a, const TCIMDateTime& b) noexcept;
  friend bool operator!=(const TCIMDateTime& a, const TCIMDateTime& b) noexcept {
    return !(a == b);
  }

 private:
  std::int64_t m_microseconds = 0;
  std::int32_t m_utcOffset = 0;
  std::uint8_t m_precision = 20;
  bool m_interval = true;
};

}  // namespace NORVHAV20

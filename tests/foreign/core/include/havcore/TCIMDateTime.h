// TCIMDateTime of the foreign core; see its TCIMValue.h. It keeps the fields as they are given:
// days or year, month and day, then the time of day.
//
// Threads: a value.
// Errors:  THAVException 14 for fields that are no interval.
#pragma once

#include <cstdint>
#include <string>

#include "havcore/Export.h"

namespace NORVHAV20 {

class HAVCORE_API TCIMDateTime {
 public:
  TCIMDateTime();
  virtual ~TCIMDateTime();
  TCIMDateTime(const TCIMDateTime&) = default;
  TCIMDateTime& operator=(const TCIMDateTime&) = default;

  void Set(std::uint32_t days, std::uint16_t hours, std::uint16_t minutes, std::uint16_t seconds,
           std::uint32_t microseconds);
  std::string ToUIString() const;

#if defined(FOREIGN_CORE_HOST)
  bool IsInterval() const { return m_interval; }
  bool operator<(const TCIMDateTime& other) const { return ToUIString() < other.ToUIString(); }
  bool operator==(const TCIMDateTime& other) const { return ToUIString() == other.ToUIString(); }
#endif

 private:
  friend class TOSSpecific;
  friend class TCIMValue;

  std::string m_date;  // of a timestamp
  std::string m_offset;
  std::uint64_t m_days = 0;
  std::uint32_t m_microseconds = 0;
  unsigned m_hours = 0;
  unsigned m_minutes = 0;
  unsigned m_seconds = 0;
  bool m_interval = true;
};

}  // namespace NORVHAV20

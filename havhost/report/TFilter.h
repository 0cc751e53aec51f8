// TFilter: a condition that instances meet or not, as the user writes it:
//
//   Size > 1000000 and not (BusType = 'usb' or Removable = true)
//
//   condition  NAME = VALUE, also != <> < <= > >=; NAME like 'TEXT', where % stands for any text
//              and _ for any character, and letters match in either case; NAME is [not] null;
//              and, or, not, parentheses, of which `not` and parentheses nest 100 deep at most
//   value      a number (also 0x2A), 'text' or "text" (the quotation mark doubled stands for
//              itself), true, false, null
//
// Names and words are in any case. Integers compare exactly. Text compares in the natural order
// ("eth2" < "eth10"); what is no text compares with it by its display text, so that a value map
// can be asked by its names; a datetime also with the 25 characters of CIM. An array meets a
// comparison when one of its elements does. NULL meets none but "= null" and "is null".
//
// Ownership: a value.
// Threads:   reading from several threads is fine.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "havhost/report/InstanceReport.h"

namespace havhost {

class TFilter {
 public:
  using TCondition = std::function<bool(const TInstanceReport&)>;

  // The empty text is met by everything. Throws TUsageError, which says where the text is wrong.
  explicit TFilter(std::string_view text);

  bool Matches(const TInstanceReport& instance) const { return m_condition(instance); }
  // The properties that it names, as it spells them.
  const std::vector<std::string>& Names() const { return m_names; }

 private:
  TCondition m_condition;
  std::vector<std::string> m_names;
};

// Compares two values of one type as people order them: text naturally, all else by what it is.
// NULL stands after everything.
bool ValueLess(const NORVHAV20::TCIMValue& a, const NORVHAV20::TCIMValue& b);

}  // namespace havhost

// Dates as the product must compute them, from the rules for leap years and a table of months.
#pragma once

#include <cstdint>

namespace qmx::fuzz {

enum class Rule { Julian, Gregorian };

struct PlainDay {
  std::int64_t year = 1;
  std::int64_t month = 0;  // from 0
  std::int64_t day = 1;
};

// Counts days by a rule; both rules share the count. The month may lie outside the year and the day outside the month.
std::int64_t DayCount(Rule rule, const PlainDay& day);
PlainDay DayAt(Rule rule, std::int64_t count);

// The fields of a java.util.Date in UTC, which may be set to anything.
struct PlainDate {
  PlainDay day;
  std::int64_t hour = 0, minute = 0, second = 0;

  void SetMonth(std::int64_t month);  // carries into the year
  void Resolve();                     // as reading a field does
};

}  // namespace qmx::fuzz

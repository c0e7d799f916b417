// The calendar fields of a date object: kept as they were set, resolved only when one is read.
//
// A field may hold any number: day 31 waits until month and year are set, day 0 is the day before the first, hour 25 is
// one o'clock on the next day. Reading resolves all fields together and stores the result. Years before
// 1582 follow the Julian calendar, the Gregorian one begins on 15 October 1582.
//
// Each field behaves as that of java.util.Date in a zone without daylight saving. Only the range is smaller: a year
// outside 1 to 200,000,000 is error 6, and the fields stay unchanged.
#pragma once

#include <cstdint>

#include "platform/datetime.h"

namespace qmx {

class LenientDate {
 public:
  enum class Field { Year, Month, Day, Hour, Minute, Second };  // year from 1900, month from 0

  explicit LenientDate(DateTime moment);

  std::int32_t Get(Field field);  // resolves
  void Set(Field field, std::int32_t value);

 private:
  struct Fields {
    std::int64_t year, month, day, hour, minute, second;  // year 1 is year 1, month from 0 to 11
  };
  static Fields Resolved(const Fields& fields);
  void Put(std::int64_t& field, std::int64_t value);

  Fields fields_;
  bool resolved_ = false;
};

}  // namespace qmx

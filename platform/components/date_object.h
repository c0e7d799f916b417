// The built-in object "java:java.util.Date": the date accessors that components and the program exchange points in time
// with, on the fields of lenient_date.h.
//
// getYear/setYear (from 1900), getMonth/setMonth (from 0), getDate/setDate (day of the month), getHours/setHours,
// getMinutes/setMinutes, getSeconds/setSeconds; getters give 32-bit integers, setters give nothing. It starts at the
// clock's current time. Any other member is 438.
#pragma once

#include <string_view>

#include "platform/object.h"

namespace qmx {

class Clock;

inline constexpr std::string_view kDateProgId = "java:java.util.Date";

Object MakeDateObject(Clock& clock);

}  // namespace qmx

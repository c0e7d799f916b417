// The ERP's date object, as the getters of points in time return it: the year counted from 1900, the month from 0.
//
// Only for reading. A record without that point in time returns one of year 0 and month 0, which says "no date".
#pragma once

#include "binding/object.h"

namespace orvan {

class Date : public Component<Date> {
 public:
  static constexpr char kName[] = "orvan.Date";

  Date() = default;
  explicit Date(const Moment& moment)
      : year_(moment.year - 1900),
        month_(moment.month - 1),
        day_(moment.day),
        hours_(moment.hour),
        minutes_(moment.minute),
        seconds_(moment.second) {}

  static const auto& Methods() {
    static constexpr Method methods[] = {
        {"getYear", 0, &Date::Get<&Date::year_>},       {"getMonth", 0, &Date::Get<&Date::month_>},
        {"getDate", 0, &Date::Get<&Date::day_>},        {"getHours", 0, &Date::Get<&Date::hours_>},
        {"getMinutes", 0, &Date::Get<&Date::minutes_>}, {"getSeconds", 0, &Date::Get<&Date::seconds_>},
    };
    return methods;
  }

 private:
  template <int Date::*part>
  void Get(Arguments, Result result) {
    result.SetInteger(this->*part);
  }

  int year_ = 0;
  int month_ = 0;
  int day_ = 1;
  int hours_ = 0;
  int minutes_ = 0;
  int seconds_ = 0;
};

// A date object of anybody's, the host's included, as a moment.
Moment ReadDate(const ForeignObject& date);

}  // namespace orvan

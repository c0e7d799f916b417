// The ERP's date object, as the getters of points in time return it: the year counted from 1900, the month from 0.
//
// Read-only. A record without that point in time returns one of year 0 and month 0, which means "no date".
#pragma once

#include <optional>

#include "binding/object.h"

namespace orvan {

class Date : public Component<Date> {
 public:
  static constexpr char kName[] = "orvan.Date";

  // Changes the date to that moment, or to none.
  void Hold(const std::optional<Moment>& moment) {
    parts_ = moment ? Parts{moment->year - 1900, moment->month - 1, moment->day,
                            moment->hour,        moment->minute,    moment->second}
                    : Parts{0, 0, 1, 0, 0, 0};
  }

  struct Parts {
    int year, month, day, hours, minutes, seconds;
  };
  static const auto& Methods() {
    static constexpr Method methods[] = {
        {"getYear", 0, &Date::Get<&Parts::year>},       {"getMonth", 0, &Date::Get<&Parts::month>},
        {"getDate", 0, &Date::Get<&Parts::day>},        {"getHours", 0, &Date::Get<&Parts::hours>},
        {"getMinutes", 0, &Date::Get<&Parts::minutes>}, {"getSeconds", 0, &Date::Get<&Parts::seconds>},
    };
    return methods;
  }

 private:
  template <int Parts::*part>
  void Get(Arguments, Result result) {
    result.SetInteger(parts_.*part);
  }

  Parts parts_{};
};

// Reads a moment from any date object, including the host's.
Moment ReadDate(const ForeignObject& date);

}  // namespace orvan

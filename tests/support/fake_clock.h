// A clock that the test sets. Each reading moves it on by `step` seconds, so that the order and number of readings
// show.
#pragma once

#include "platform/clock.h"

namespace qmx::test {

class FakeClock : public Clock {
 public:
  explicit FakeClock(DateTime now = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)) : now(now) {}

  DateTime Now() override {
    const DateTime reading = now;
    now = now.PlusTime(0, 0, step);
    return reading;
  }
  std::string DateText(DateTime moment) override { return moment.DatePart().ToText(); }
  std::string TimeText(DateTime moment) override {
    const std::string text = moment.ToText();
    return text.size() > 10 ? text.substr(11) : "00:00:00";
  }

  DateTime now;
  int step = 0;
};

}  // namespace qmx::test

// The machine's clock, and its locale's short forms of date and time.
#pragma once

#include <locale.h>

#include <ctime>

#include "platform/clock.h"

namespace qmx {

// In the machine's time zone.
DateTime LocalTime(std::time_t moment);

class PosixClock : public Clock {
 public:
  PosixClock();                                        // uses the environment's locale for times
  explicit PosixClock(const std::string& localeName);  // "" and names that are not installed count as "C"
  ~PosixClock() override;
  PosixClock(const PosixClock&) = delete;
  PosixClock& operator=(const PosixClock&) = delete;

  DateTime Now() override;
  std::string DateText(DateTime moment) override;
  std::string TimeText(DateTime moment) override;

 private:
  std::string Format(const char* format, DateTime moment) const;

  locale_t locale_ = nullptr;  // null for the ISO forms
};

}  // namespace qmx

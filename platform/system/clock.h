// The machine's clock, and its locale's short forms of date and time.
#pragma once

#include <ctime>
#include <memory>

#include "platform/clock.h"

namespace qmx {

// In the machine's time zone.
DateTime LocalTime(std::time_t moment);

// The local time's offset from UTC at the moment, in seconds. Not for signal handlers.
long OffsetFromUtc(std::time_t moment);

class SystemClock : public Clock {
 public:
  SystemClock();                                        // uses the user's locale for times
  explicit SystemClock(const std::string& localeName);  // "" and names that are not installed give the ISO forms
  ~SystemClock() override;
  SystemClock(const SystemClock&) = delete;
  SystemClock& operator=(const SystemClock&) = delete;

  DateTime Now() override;
  std::string DateText(DateTime moment) override;
  std::string TimeText(DateTime moment) override;

 private:
  std::string Format(const char* format, DateTime moment) const;

  struct Locale;
  std::unique_ptr<Locale> locale_;  // null for the ISO forms
};

}  // namespace qmx

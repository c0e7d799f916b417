// The current date and time, and their text in the machine's short local forms.
//
// An interface, so that tests set the clock. Local civil time, no zone.
#pragma once

#include <string>

#include "platform/datetime.h"

namespace qmx {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() = 0;

  // For logs: the locale's short date and its time. Without a locale ("C" or "POSIX", as under cron) they are ISO 8601,
  // 2026-11-20 and 14:05:09, because the C locale's two-digit year is ambiguous.
  virtual std::string DateText(DateTime moment) = 0;
  virtual std::string TimeText(DateTime moment) = 0;
};

}  // namespace qmx

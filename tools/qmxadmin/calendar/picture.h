// One calendar's weeks as they are shown: what stands above them, and for a terminal the lines.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/calendar/weeks.h"

namespace qmx {

struct CalendarPicture {
  std::string code;
  std::string employee;  // number; empty where the calendar was asked for by its code
  std::string name;      // the employee's
  Weeks weeks;

  std::string Title() const;     // "Calendar CAL007"
  std::string Subtitle() const;  // employee, days shown, total
};

// For a terminal of so many columns, at least 45: a line a day, hours from left to right. A cell is shaded by how much
// of its time is worked.
std::string TerminalPicture(const CalendarPicture& picture, int columns);

}  // namespace qmx

// A calendar's weeks, as text for a terminal.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/calendar/weeks.h"

namespace qmx {

struct CalendarPicture {
  std::string code;
  std::string employee;  // number; empty if the calendar was named by its code
  std::string name;      // of the employee
  Weeks weeks;

  std::string Title() const;     // "Calendar CAL007"
  std::string Subtitle() const;  // employee, period, total
};

// Draws one line per day, with the hours from left to right. The more of a cell's time is worked, the darker its shade.
// `columns` is at least 45.
std::string TerminalPicture(const CalendarPicture& picture, int columns);

}  // namespace qmx

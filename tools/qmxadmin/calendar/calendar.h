// qmxadmin calendar: draws the working intervals of tscalender, in the terminal or as an SVG file.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CalendarArguments : DatabaseArguments {
  std::vector<std::string> codes;
  std::string employee;  // number of an employee whose calendar is drawn as well
  std::string from, to;  // days; whole weeks are drawn
  std::string svg;       // the file to write; "-" is standard output
  OutputForm form = OutputForm::Table;
};

// Raises 5 for an unknown calendar or employee, and for an invalid date.
AdminStatus ShowCalendars(const CalendarArguments& arguments);

}  // namespace qmx

// qmxadmin calendar: the working intervals of tscalender as a picture, in the terminal or as an SVG file.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CalendarArguments : DatabaseArguments {
  std::vector<std::string> codes;
  std::string employee;  // number of one whose calendar is shown besides
  std::string from, to;  // days; the weeks that hold them are shown
  std::string svg;       // file to write instead; "-" is standard output
  OutputForm form = OutputForm::Table;
};

// Raises 5 for a calendar or an employee that is not known, and for days that are none.
AdminStatus ShowCalendars(const CalendarArguments& arguments);

}  // namespace qmx

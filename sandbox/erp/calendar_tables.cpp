// Actual calendars and availability types.
#include "erp/table.h"

namespace orvan {

std::vector<Table> CalendarTables() {
  using enum ColumnType;
  return {
      {.code = "tcccp030",
       .description = "Calendars",
       .manager = "Calendars.CalendarManager",
       .record = "Calendars.ActualCalendar",
       .list = "listActualCalendar",
       .key = {"ccal", "ract", "stdt", "sttm"},
       .bounds = {"ccal", "ract", "stdt", "sttm"},
       .columns =
           {
               {"ccal", Text, "getCalendar"},
               {"ract", Text, "getAvailabilityType"},
               {"stdt", Day, "getStartDate"},
               {"sttm", Whole, "getStartTime"},
               {"endt", Day, "getEndDate"},
               {"entm", Whole, "getEndTime"},
               {"cutm", Number, "getCumulativeTime"},
               {"ccap", Number, "getCumulativeCapacity"},
           }},
      {.code = "tcccp001",
       .description = "Availability Types",
       .manager = "AvailabilityType.AvailabilityTypeManager",
       .record = "AvailabilityType.AvailabilityType",
       .list = "ListAllAvailable",
       .key = {"ract"},
       .bounds = {"ract"},
       .columns =
           {
               {"ract", Text, "getAvailabilityType"},
               {"dsca", Text, "getDescription"},
               {"ptmu", Whole, "getPlanTimeUnit"},
               {"hrsd", Number, "getNoOfHoursPerDay"},
               {"avlb", Whole, "getAvailable"},
           }},
  };
}

}  // namespace orvan
